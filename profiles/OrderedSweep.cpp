#include "profiles/OrderedSweep.h"

#include <algorithm>
#include <cmath>
#include <memory_resource>
#include <numbers>
#include <numeric>
#include <set>
#include <vector>

namespace tgp {

namespace {

constexpr double kQuarterTurn = std::numbers::pi / 2;

// A part of a segment that runs one way in x, from its left end to its right end (ends ordered by
// x, then y). A vertical piece runs up.
struct Piece {
    double lx, ly, rx, ry;
    std::uint32_t segment;
    std::int32_t frame;  // the arc's frame, -1 for a straight piece
    bool upper;          // an arc's piece above its centre (between the turns in x it is on one side)
};

bool Before(double ax, double ay, double bx, double by) {
    return ax < bx || (ax == bx && ay < by);
}

class Sweep {
  public:
    explicit Sweep(std::span<const LoopDLine> segments) {
        pieces_.reserve(segments.size() + segments.size() / 2);
        for (std::uint32_t i = 0; i < segments.size(); ++i) AddSegment(segments[i], i);
    }

    bool Run(const std::function<bool(std::uint32_t, std::uint32_t)>& crosses) {
        // Pieces arrive in their own order once sorted by left end, and leave in the order of an
        // index sorted by right end. At one point pieces arrive before others leave, so that what
        // meets only there (an outline that returns to a vertex it passed) is present together.
        std::sort(pieces_.begin(), pieces_.end(), [](const Piece& a, const Piece& b) {
            if (a.lx != b.lx || a.ly != b.ly) return Before(a.lx, a.ly, b.lx, b.ly);
            return a.segment < b.segment;
        });
        std::vector<std::uint32_t> leaving(pieces_.size());
        std::iota(leaving.begin(), leaving.end(), 0u);
        std::sort(leaving.begin(), leaving.end(), [&](std::uint32_t a, std::uint32_t b) {
            const Piece &p = pieces_[a], &q = pieces_[b];
            if (p.rx != q.rx || p.ry != q.ry) return Before(p.rx, p.ry, q.rx, q.ry);
            return a < b;
        });
        const auto test = [&](std::uint32_t a, std::uint32_t b) {
            const std::uint32_t sa = pieces_[a].segment, sb = pieces_[b].segment;
            return sa != sb && crosses(sa, sb);
        };
        // Nodes come from a pool: a star keeps half its pieces in the status at once.
        std::pmr::unsynchronized_pool_resource pool;
        Status status(Order{this}, &pool);
        std::vector<Status::iterator> where(pieces_.size());
        std::uint32_t arriving = 0;
        for (const std::uint32_t k : leaving) {
            const Piece& out = pieces_[k];
            for (; arriving < pieces_.size() &&
                   !Before(out.rx, out.ry, pieces_[arriving].lx, pieces_[arriving].ly);
                 ++arriving) {
                x_ = pieces_[arriving].lx;
                y_ = pieces_[arriving].ly;
                const auto it = status.insert(arriving).first;
                where[arriving] = it;
                if (it != status.begin() && test(*std::prev(it), arriving)) return true;
                if (std::next(it) != status.end() && test(arriving, *std::next(it))) return true;
            }
            x_ = out.rx;
            y_ = out.ry;
            const auto it = where[k];
            if (it != status.begin() && std::next(it) != status.end() && test(*std::prev(it), *std::next(it)))
                return true;
            status.erase(it);
        }
        return false;
    }

  private:
    // Pieces in their order along the sweep line at the current event: by height there, then by
    // the direction in which they go on to the right, then by number.
    struct Order {
        const Sweep* sweep;
        bool operator()(std::uint32_t a, std::uint32_t b) const {
            if (a == b) return false;
            const double ya = sweep->HeightOf(a), yb = sweep->HeightOf(b);
            if (ya != yb) return ya < yb;
            const double da = sweep->DirectionOf(a, ya), db = sweep->DirectionOf(b, yb);
            if (da != db) return da < db;
            return a < b;
        }
    };
    using Status = std::pmr::set<std::uint32_t, Order>;

    void AddPiece(const Point3& p, const Point3& q, std::uint32_t segment, std::int32_t frame,
                  bool upper = false) {
        if (Before(q[0], q[1], p[0], p[1]))
            pieces_.push_back({q[0], q[1], p[0], p[1], segment, frame, upper});
        else
            pieces_.push_back({p[0], p[1], q[0], q[1], segment, frame, upper});
    }

    // An arc is cut where it turns back in x (its leftmost and rightmost points, where it has them).
    void AddSegment(const LoopDLine& s, std::uint32_t index) {
        if (!s.IsArc() || s.Radius() == 0) {
            AddPiece(s.StartPoint(), s.EndPoint(), index, -1);
            return;
        }
        const auto frame = static_cast<std::int32_t>(frames_.size());
        frames_.push_back(ChordFrame::Of(s.StartPoint(), s.EndPoint(), s.Alfa()));
        double inner[2];
        int n = 0;
        for (const Point3 e : {Point3{1, 0, 0}, Point3{-1, 0, 0}}) {
            Point3 extreme{};
            if (frames_.back().ExtremeTowards(e, extreme)) inner[n++] = s.ParameterOf(extreme);
        }
        if (n == 2 && inner[1] < inner[0]) std::swap(inner[0], inner[1]);
        const double cuts[4] = {0, n > 0 ? inner[0] : 1, n > 1 ? inner[1] : 1, 1};
        const ChordFrame& f = frames_.back();
        const double centreY =
            f.m[1] - f.c / f.kappa * f.wy;  // far off, but on the right side, when nearly straight
        Point3 from = s.StartPoint();
        for (int k = 1; k < 4; ++k) {
            if (cuts[k] <= cuts[k - 1]) continue;
            const Point3 to = cuts[k] == 1 ? s.EndPoint() : s.PointAt(cuts[k]);
            AddPiece(from, to, index, frame, s.PointAt((cuts[k - 1] + cuts[k]) / 2)[1] > centreY);
            from = to;
        }
    }

    // The height of a piece where the sweep line is; a vertical piece is where the sweep point is,
    // within its ends.
    double HeightOf(std::uint32_t k) const {
        const Piece& p = pieces_[k];
        if (p.lx == p.rx) return std::clamp(y_, p.ly, p.ry);
        if (x_ <= p.lx) return p.ly;
        if (x_ >= p.rx) return p.ry;
        const double chord = p.ly + (x_ - p.lx) * ((p.ry - p.ly) / (p.rx - p.lx));
        if (p.frame < 0) return chord;
        // The vertical line meets the circle twice (or touches it): the piece's point is the upper
        // or the lower meeting point, as the piece lies above or below the centre.
        double tau[3];
        const ChordFrame& f = frames_[static_cast<std::size_t>(p.frame)];
        const int n = f.LinePositions({x_, 0, 0}, {0, 1, 0}, tau);
        if (n == 0) return chord;
        if (n < 3) return tau[0];
        return p.upper == (tau[0] > tau[1]) ? tau[0] : tau[1];
    }

    // The angle from the x axis at which a piece goes on to the right from height y, in
    // [-pi/2, pi/2] (a vertical piece pi/2).
    double DirectionOf(std::uint32_t k, double y) const {
        const Piece& p = pieces_[k];
        if (p.lx == p.rx) return kQuarterTurn;
        if (p.frame < 0) return std::atan2(p.ry - p.ly, p.rx - p.lx);
        const ChordFrame& f = frames_[static_cast<std::size_t>(p.frame)];
        const double u = f.U({x_, y, 0}), v = f.V({x_, y, 0});
        // Along the circle: perpendicular to the gradient of F (a unit vector on the circle), turned
        // to point right. Where the circle turns back in x the piece goes up or down from there as
        // it lies above or below the centre, whichever way rounding tips the tangent.
        Point3 d = f.WorldDirection(-(f.kappa * v + f.c), f.kappa * u);
        if (std::fabs(d[0]) <= 1e-9) return (p.upper == (x_ <= p.lx)) ? kQuarterTurn : -kQuarterTurn;
        if (d[0] < 0) d = Scaled(d, -1);
        return std::atan2(d[1], d[0]);
    }

    std::vector<Piece> pieces_;
    std::vector<ChordFrame> frames_;
    double x_ = 0, y_ = 0;  // the current event
};

}  // namespace

bool SweepNeighbours(std::span<const LoopDLine> segments,
                     const std::function<bool(std::uint32_t, std::uint32_t)>& crosses) {
    return Sweep(segments).Run(crosses);
}

}  // namespace tgp
