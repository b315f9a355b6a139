#include "profiles/SegmentSweep.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/Constants.h"

namespace tgp {

namespace {

constexpr double kBoxMargin = LoopDLine::kOnLineTolerance;

struct Item {
    std::uint32_t index;
    std::uint32_t owner;
};

// A run of consecutive segments of one loop that all advance strictly in x the same way (arcs
// only when they have no x extreme inside). Two segments of one chain can meet only where they
// join, so only pairs from different chains need testing, and two chains are compared by walking
// both in ascending x. Chains keep only their range and box: a walk computes the boxes it visits,
// so no per-segment table is built.
struct Chain {
    SegmentBox box;
    const LoopDLine* segments;  // the loop's first segment
    std::uint32_t begin, end;   // segment range
    std::int32_t direction;     // +1 ascending x, -1 descending, 0 a single segment
    std::uint32_t owner;

    std::uint32_t Size() const { return end - begin; }
    // The k-th segment in ascending x.
    std::uint32_t IndexAt(std::uint32_t k) const { return direction < 0 ? end - 1 - k : begin + k; }
    SegmentBox BoxAt(std::uint32_t k) const { return segments[IndexAt(k)].BoundingBox(); }
};

bool BoxesMeet(const SegmentBox& a, const SegmentBox& b) {
    return a.xmin <= b.xmax + kBoxMargin && b.xmin <= a.xmax + kBoxMargin && a.ymin <= b.ymax + kBoxMargin &&
           b.ymin <= a.ymax + kBoxMargin;
}

SegmentBox Union(const SegmentBox& a, const SegmentBox& b) {
    return {std::min(a.xmin, b.xmin), std::min(a.ymin, b.ymin), std::max(a.xmax, b.xmax), std::max(a.ymax, b.ymax)};
}

// +1 or -1 for a segment that runs strictly right or left without turning back in x, else 0.
int XDirection(const LoopDLine& s, const SegmentBox& box) {
    const double x0 = s.StartPoint()[0], x1 = s.EndPoint()[0];
    if (x0 == x1) return 0;
    if (box.xmin < std::min(x0, x1) || box.xmax > std::max(x0, x1)) return 0;
    return x0 < x1 ? 1 : -1;
}

class ChainSet {
public:
    void AddLoop(std::span<const LoopDLine> segments, std::uint32_t owner) {
        const auto n = static_cast<std::uint32_t>(segments.size());
        Chain chain{};
        for (std::uint32_t i = 0; i < n; ++i) {
            const SegmentBox box = segments[i].BoundingBox();
            const int direction = XDirection(segments[i], box);
            if (i > 0 && direction != 0 && direction == chain.direction) {
                chain.box = Union(chain.box, box);
                chain.end = i + 1;
                continue;
            }
            if (i > 0) chains_.push_back(chain);
            chain = {box, segments.data(), i, i + 1, direction, owner};
        }
        if (n > 0) chains_.push_back(chain);
    }

    // Calls test(a, b) for pairs of segments from different chains whose boxes meet (and, with
    // ownersDiffer, from different loops), until it returns true.
    template <class PairTest>
    bool Pairs(bool ownersDiffer, PairTest test) {
        // A NaN coordinate must not break the ordering the sort relies on: it sorts last.
        const auto key = [](const Chain& c) { return std::isnan(c.box.xmin) ? HUGE_VAL : c.box.xmin; };
        std::sort(chains_.begin(), chains_.end(), [&](const Chain& a, const Chain& b) { return key(a) < key(b); });
        std::vector<const Chain*> active;
        for (const Chain& chain : chains_) {
            for (std::size_t i = 0; i < active.size();) {
                if (active[i]->box.xmax + kBoxMargin < chain.box.xmin) {
                    active[i] = active.back();
                    active.pop_back();
                    continue;
                }
                const bool wanted = !ownersDiffer || active[i]->owner != chain.owner;
                if (wanted && BoxesMeet(active[i]->box, chain.box) && Walk(*active[i], chain, test)) return true;
                ++i;
            }
            active.push_back(&chain);
        }
        return false;
    }

private:
    // The position of the first segment of a chain that reaches x (right edges ascend along it).
    static std::uint32_t FirstReaching(const Chain& c, double x) {
        std::uint32_t lo = 0, hi = c.Size();
        while (lo < hi) {
            const std::uint32_t mid = lo + (hi - lo) / 2;
            if (c.BoxAt(mid).xmax + kBoxMargin < x) lo = mid + 1;
            else hi = mid;
        }
        return lo;
    }

    // Both chains ascend in x with intervals that only touch: starting where their x ranges begin
    // to overlap and advancing whichever segment ends first meets every overlapping pair once.
    template <class PairTest>
    static bool Walk(const Chain& a, const Chain& b, PairTest& test) {
        const double from = std::max(a.box.xmin, b.box.xmin), to = std::min(a.box.xmax, b.box.xmax) + kBoxMargin;
        std::uint32_t i = FirstReaching(a, from), j = FirstReaching(b, from);
        if (i >= a.Size() || j >= b.Size()) return false;
        SegmentBox p = a.BoxAt(i), q = b.BoxAt(j);
        while (p.xmin <= to && q.xmin <= to) {
            bool advanceA;
            if (p.xmax + kBoxMargin < q.xmin) advanceA = true;
            else if (q.xmax + kBoxMargin < p.xmin) advanceA = false;
            else {
                if (BoxesMeet(p, q) && test(Item{a.IndexAt(i), a.owner}, Item{b.IndexAt(j), b.owner})) return true;
                advanceA = p.xmax < q.xmax;
            }
            if (advanceA) {
                if (++i == a.Size()) break;
                p = a.BoxAt(i);
            } else {
                if (++j == b.Size()) break;
                q = b.BoxAt(j);
            }
        }
        return false;
    }

    std::vector<Chain> chains_;
};

// The end point two neighbouring segments share, if they are neighbours.
int SharedJoints(std::size_t i, std::size_t j, std::size_t count, bool closed, std::span<const LoopDLine> segments,
                 PlanePoint joints[2]) {
    const std::size_t lo = std::min(i, j), hi = std::max(i, j);
    int n = 0;
    if (hi == lo + 1) joints[n++] = segments[lo].EndPoint();
    if (closed && lo == 0 && hi == count - 1) joints[n++] = segments[hi].EndPoint();
    return n;
}

bool NearAny(const PlanePoint& p, const PlanePoint* joints, int count, double tolerance) {
    for (int k = 0; k < count; ++k) {
        if (Distance2(p, joints[k]) <= tolerance) return true;
    }
    return false;
}

}  // namespace

bool FindSelfIntersections(std::span<const LoopDLine> segments, bool closed, std::vector<PlanePoint>* Points) {
    ChainSet chains;
    chains.AddLoop(segments, 0);
    std::vector<PlanePoint> found;
    bool any = false;
    chains.Pairs(false, [&](const Item& a, const Item& b) {
        const LoopDLine& p = segments[a.index];
        const LoopDLine& q = segments[b.index];
        PlanePoint joints[2];
        const int shared = SharedJoints(a.index, b.index, segments.size(), closed, segments, joints);
        found.clear();
        if (!p.IntersectWithDline(q, &found)) return false;
        // Neighbours meet at their joint; a gap left by a dropped zero-length segment counts as one.
        const double jointTolerance = kZeroLengthTolerance + 1e-6 * std::max(p.Length(), q.Length());
        for (const PlanePoint& x : found) {
            if (NearAny(x, joints, shared, jointTolerance)) continue;
            any = true;
            if (!Points) return true;
            Points->push_back(x);
        }
        return false;
    });
    return any;
}

bool FindIntersections(std::span<const LoopDLine> first, std::span<const LoopDLine> second,
                       std::vector<PlanePoint>* Points) {
    ChainSet chains;
    chains.AddLoop(first, 0);
    chains.AddLoop(second, 1);
    bool any = false;
    chains.Pairs(true, [&](const Item& a, const Item& b) {
        const LoopDLine& p = a.owner == 0 ? first[a.index] : second[a.index];
        const LoopDLine& q = b.owner == 0 ? first[b.index] : second[b.index];
        if (!p.IntersectWithDline(q, Points)) return false;
        any = true;
        return Points == nullptr;
    });
    return any;
}

}  // namespace tgp
