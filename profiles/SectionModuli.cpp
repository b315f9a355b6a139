#include "profiles/SectionModuli.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <span>
#include <vector>

#include "core/LargeBlockAllocator.h"
#include "profiles/ChordFrame.h"

namespace tgp {

namespace {

// One boundary segment, moved so that the centroid is the origin, with what the integrals above a
// line need: its height range, ∫dx, ∫y dx and ∫y² dx along it (the segment's own exact integrals),
// and the sign that makes its loop count positive for material and negative for a hole.
struct Piece {
    const LoopDLine* segment;  // as drawn: placed again only where a line cuts it
    double ymin, ymax;
    double dx, y1, y2;
    double sign;
};

// Where the pieces are taken: moved by -centre, and with x and y exchanged when `swap` (a mirror,
// which turns arcs the other way), so that the vertical axis is found as a horizontal one.
struct Placement {
    Point3 centre;
    bool swap;

    Point3 Place(const Point3& p) const {
        const double x = p[0] - centre[0], y = p[1] - centre[1];
        return swap ? Point3{y, x, 0} : Point3{x, y, 0};
    }
    double Alfa(const LoopDLine& s) const { return s.IsArc() ? (swap ? -s.Alfa() : s.Alfa()) : 0.0; }
};

using Pieces = std::vector<Piece, LargeBlockAllocator<Piece>>;

// Area above the line y = t, its first moment about the line, and the width of the section along
// the line (minus the derivative of the area with respect to t).
struct Above {
    double area = 0, moment = 0, width = 0;
};

// 8-point Gauss-Legendre rule on [-1, 1]; arcs are cut into pieces of at most kLongestStep
// radians, on which the rule integrates the trigonometric polynomials below to rounding.
constexpr double kNodes[4] = {0.1834346424956498, 0.5255324099163290, 0.7966664774136267, 0.9602898564975363};
constexpr double kWeights[4] = {0.3626837833783620, 0.3137066458778873, 0.2223810344533745,
                                0.1012285362903763};
constexpr double kLongestStep = 0.25;

// The part of a straight segment above y = t (it crosses the line).
void ClipLine(const Piece& p, const Placement& at, double t, Above& sum) {
    const double a = at.Place(p.segment->StartPoint())[1] - t, b = at.Place(p.segment->EndPoint())[1] - t;
    const double m = std::max(a, b), span = std::fabs(b - a);
    if (m <= 0 || span == 0) return;
    const double fraction = m / span;  // of the segment's run above the line
    sum.area += p.sign * p.dx * m * fraction / 2;
    sum.moment += p.sign * p.dx * m * m * fraction / 6;
    sum.width += p.sign * p.dx * fraction;
}

// The part of an arc above y = t, in the arc's chord frame: phi runs from -theta at the start to
// theta at the end, x = mx + u tx + v wx, y = my + u ty + v wy.
void ClipArc(const Piece& p, const Placement& at, double t, Above& sum) {
    const ChordFrame f = ChordFrame::Of(at.Place(p.segment->StartPoint()), at.Place(p.segment->EndPoint()),
                                        at.Alfa(*p.segment));
    const double R = f.a / f.s;
    auto height = [&](double phi) {
        double u = 0, v = 0;
        f.PointAt(phi, u, v);
        return (f.m[1] - t) + u * f.ty + v * f.wy;
    };
    auto x = [&](double phi) {
        double u = 0, v = 0;
        f.PointAt(phi, u, v);
        return u * f.tx + v * f.wx;
    };
    // height(phi) = 0 where ty sin(phi) + wy cos(phi) = cos(phi - beta) = q.
    std::vector<double> cuts{-f.theta, f.theta};
    const double q = (t - f.m[1]) / R + f.c * f.wy;
    if (std::fabs(q) <= 1) {
        const double beta = std::atan2(f.ty, f.wy), spread = std::acos(q);
        for (double root : {beta - spread, beta + spread}) {
            for (double turn : {-2 * std::numbers::pi, 0.0, 2 * std::numbers::pi}) {
                const double phi = root + turn;
                if (phi > -f.theta && phi < f.theta) cuts.push_back(phi);
            }
        }
    }
    std::sort(cuts.begin(), cuts.end());
    for (std::size_t i = 1; i < cuts.size(); ++i) {
        const double from = cuts[i - 1], to = cuts[i];
        if (!(to > from) || height((from + to) / 2) <= 0) continue;
        sum.width += p.sign * (x(to) - x(from));
        const int steps = static_cast<int>(std::ceil((to - from) / kLongestStep));
        const double h = (to - from) / steps;
        for (int k = 0; k < steps; ++k) {
            const double mid = from + (k + 0.5) * h;
            for (int n = 0; n < 4; ++n) {
                for (double side : {-1.0, 1.0}) {
                    const double phi = mid + side * kNodes[n] * h / 2;
                    const double y = std::max(height(phi), 0.0);
                    const double dxdphi = R * (std::cos(phi) * f.tx - std::sin(phi) * f.wx);
                    const double w = kWeights[n] * h / 2 * dxdphi * p.sign;
                    sum.area += w * y;
                    sum.moment += w * y * y / 2;
                }
            }
        }
    }
}

// The pieces wholly above every line still in question, summed once: their signed ∫dx, ∫y dx and
// ∫y² dx, from which the area above y = t and its moment follow for any t.
struct Settled {
    double dx = 0, y1 = 0, y2 = 0;

    void Add(const Piece& p) {
        dx += p.sign * p.dx;
        y1 += p.sign * p.y1;
        y2 += p.sign * p.y2;
    }
};

Above AboveLine(std::span<const Piece> pieces, const Placement& placement, const Settled& settled, double t) {
    Above sum;
    sum.area = settled.y1 - t * settled.dx;
    sum.moment = ((settled.y2 - 2 * t * settled.y1) + t * t * settled.dx) / 2;
    sum.width = settled.dx;
    for (const Piece& p : pieces) {
        if (p.ymax <= t) continue;
        if (p.ymin >= t) {
            sum.area += p.sign * (p.y1 - t * p.dx);
            sum.moment += p.sign * ((p.y2 - 2 * t * p.y1) + t * t * p.dx) / 2;
            sum.width += p.sign * p.dx;
        } else if (p.segment->IsArc()) {
            ClipArc(p, placement, t, sum);
        } else {
            ClipLine(p, placement, t, sum);
        }
    }
    return sum;
}

// The pieces of every loop, placed, into `pieces` (its memory reused from axis to axis).
void FillPieces(Pieces& pieces, std::span<const std::shared_ptr<Loop7>> loops, const std::vector<bool>& holes,
                const Placement& placement) {
    pieces.clear();
    std::size_t count = 0;
    for (const auto& loop : loops) count += loop->Count();
    pieces.reserve(count);
    for (std::size_t i = 0; i < loops.size(); ++i) {
        const Loop7& loop = *loops[i];
        const double depthSign = holes[i] ? -1 : 1;
        const std::size_t first = pieces.size();
        double area = 0;
        for (const LoopDLine& original : loop.Segments()) {
            // Box and integrals from the end points and the angle: no segment is rebuilt.
            const Point3 a = placement.Place(original.StartPoint()), b = placement.Place(original.EndPoint());
            const SegmentBox box = original.BoundingBox();
            const SegmentIntegrals integrals = LoopDLine::IntegralsOf(a, b, placement.Alfa(original));
            Piece piece{};
            piece.segment = &original;
            piece.ymin = placement.swap ? box.xmin - placement.centre[0] : box.ymin - placement.centre[1];
            piece.ymax = placement.swap ? box.xmax - placement.centre[0] : box.ymax - placement.centre[1];
            piece.dx = b[0] - a[0];
            piece.y1 = integrals.Area;
            piece.y2 = 2 * integrals.StaticMomentX;
            area += integrals.Area;
            pieces.push_back(piece);
        }
        // The loop's own direction gives its area a sign; material counts positive, holes negative.
        const double sign = depthSign * (area < 0 ? -1 : 1);
        for (std::size_t k = first; k < pieces.size(); ++k) pieces[k].sign = sign;
    }
}

// Keeps the first `active` pieces that reach into (lo, hi) at the front and returns their count;
// those wholly above it join the settled sums, those wholly below it are left out.
std::size_t Narrow(Pieces& pieces, std::size_t active, double lo, double hi, Settled& settled) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < active; ++i) {
        const Piece& p = pieces[i];
        if (p.ymin >= hi)
            settled.Add(p);
        else if (p.ymax > lo)
            pieces[kept++] = p;
    }
    return kept;
}

// The equal-area line y = t of the pieces and the plastic modulus about it: a Newton step on the
// area above the line (its derivative is minus the width there) kept inside a shrinking bracket,
// bisecting where the step would leave it (a gap between parts has no width).
// Every step the pieces wholly above the bracket are settled and those wholly below it dropped, so
// that the passes after the first few visit only the pieces near the axis.
void EqualAreaAxis(Pieces& pieces, const Placement& placement, double ymin, double ymax, double area,
                   double& axis, double& z) {
    double lo = ymin, hi = ymax, t = 0;  // the centroid is a good first guess
    Settled settled;
    std::size_t active = pieces.size();
    Above at = AboveLine({pieces.data(), active}, placement, settled, t);
    for (int iteration = 0; iteration < 200; ++iteration) {
        const double excess = at.area - area / 2;  // decreasing in t
        if (excess == 0) break;
        if (excess > 0)
            lo = t;
        else
            hi = t;
        double next = at.width > 0 ? t + excess / at.width : (lo + hi) / 2;
        if (!(next > lo && next < hi)) next = (lo + hi) / 2;
        if (next == t ||
            hi - lo <= 4 * std::numeric_limits<double>::epsilon() * (std::fabs(lo) + std::fabs(hi)))
            break;
        t = next;
        active = Narrow(pieces, active, lo, hi, settled);
        at = AboveLine({pieces.data(), active}, placement, settled, t);
    }
    axis = t;
    // ∫|y − t| dA = (moment above) + (moment below) = 2 (moment above) − ∫(y − t) dA, and ∫ y dA = 0
    // about the centroid.
    z = 2 * at.moment + area * t;
}

}  // namespace

SectionModuli ComputeModuli(Loop7s& section, const InertiaBlock* composite, const SegmentBox* given) {
    auto block = composite ? composite->Copy() : section.InertiaBlock();
    std::vector<bool> holes;
    for (std::size_t i = 1; i <= section.Count(); ++i) holes.push_back(section.IsHole(i));
    return ComputeModuli(section.Loops(), holes, *block, given);
}

SectionModuli ComputeModuli(std::span<const std::shared_ptr<Loop7>> loops, const std::vector<bool>& holes,
                            const InertiaBlock& composite, const SegmentBox* given) {
    const auto block = composite.Copy();
    const Point c = block->Centroid();
    const double area = block->Area()->Millimetres();
    const double ix = block->MomentOfInertiaX()->Millimetres(), iy = block->MomentOfInertiaY()->Millimetres();
    SegmentBox box = SegmentBox::Empty();
    if (given)
        box = *given;
    else {
        for (const auto& loop : loops) {
            for (const LoopDLine& segment : loop->Segments()) box.Include(segment.BoundingBox());
        }
    }
    SectionModuli m{};
    m.top = box.ymax - c[1];
    m.bottom = c[1] - box.ymin;
    m.right = box.xmax - c[0];
    m.left = c[0] - box.xmin;
    m.wxTop = ix / m.top;
    m.wxBottom = ix / m.bottom;
    m.wyLeft = iy / m.left;
    m.wyRight = iy / m.right;
    const Point3 centre{c[0], c[1], 0};
    double axis = 0;
    Pieces pieces;
    const Placement horizontal{centre, false}, vertical{centre, true};
    FillPieces(pieces, loops, holes, horizontal);
    EqualAreaAxis(pieces, horizontal, -m.bottom, m.top, area, axis, m.zx);
    m.plasticAxisY = c[1] + axis;
    FillPieces(pieces, loops, holes, vertical);
    EqualAreaAxis(pieces, vertical, -m.left, m.right, area, axis, m.zy);
    m.plasticAxisX = c[0] + axis;
    return m;
}

}  // namespace tgp
