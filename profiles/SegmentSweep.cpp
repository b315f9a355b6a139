#include "profiles/SegmentSweep.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/Constants.h"
#include "profiles/OrderedSweep.h"

namespace tgp {

namespace {

constexpr double kBoxMargin = LoopDLine::kOnLineTolerance;

struct Item {
    std::uint32_t index;
    std::uint32_t owner;
};

// Segments of a chain are grouped in blocks of this many (by index), each with its box, so that a
// walk of two long chains skips the blocks that do not come near each other.
constexpr std::uint32_t kBlock = 32;

// An outline that turns back in x at most of its first this many vertices (a star, a comb) is left
// to the ordered sweep at once: its chains are single segments, which the box sweep would sort and
// keep for nothing.
constexpr std::uint32_t kShortChainsProbe = 4096;

// A run of consecutive segments of one loop that all advance strictly in x the same way (arcs
// only when they have no x extreme inside). Two segments of one chain can meet only where they
// join, so only pairs from different chains need testing, and two chains are compared by walking
// both in ascending x, block by block and, where two blocks' boxes meet, segment by segment.
// Chains keep only their range, their box and their blocks' boxes: a walk computes the segment
// boxes it visits, so no per-segment table is built.
struct Chain {
    SegmentBox box;
    const LoopDLine* segments;  // the loop's first segment
    std::uint32_t begin, end;   // segment range
    std::int32_t direction;     // +1 ascending x, -1 descending, 0 a single segment
    std::uint32_t owner;
    const SegmentBox* blocks;  // the boxes of segments [begin + j kBlock, ...), j = 0, 1, ...

    std::uint32_t Size() const { return end - begin; }
    // The k-th segment in ascending x.
    std::uint32_t IndexAt(std::uint32_t k) const { return direction < 0 ? end - 1 - k : begin + k; }
    SegmentBox BoxAt(std::uint32_t k) const { return segments[IndexAt(k)].BoundingBox(); }

    std::uint32_t Blocks() const { return (Size() + kBlock - 1) / kBlock; }
    // The q-th block in ascending x, and the positions (in ascending x) of its segments.
    const SegmentBox& BlockBoxAt(std::uint32_t q) const {
        return blocks[direction < 0 ? Blocks() - 1 - q : q];
    }
    void BlockPositions(std::uint32_t q, std::uint32_t& from, std::uint32_t& to) const {
        const std::uint32_t j = direction < 0 ? Blocks() - 1 - q : q;
        const std::uint32_t first = j * kBlock, last = std::min(first + kBlock, Size());
        from = direction < 0 ? Size() - last : first;
        to = direction < 0 ? Size() - first : last;
    }
};

bool BoxesMeet(const SegmentBox& a, const SegmentBox& b) {
    return a.Meets(b, kBoxMargin);
}

SegmentBox Union(const SegmentBox& a, const SegmentBox& b) {
    return {std::min(a.xmin, b.xmin), std::min(a.ymin, b.ymin), std::max(a.xmax, b.xmax),
            std::max(a.ymax, b.ymax)};
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
    // Adds the loop's chains; with shortChainsStop, stops (and returns the number of segments read)
    // once it has read kShortChainsProbe segments and made more than one chain of every two.
    std::uint32_t AddLoop(std::span<const LoopDLine> segments, std::uint32_t owner,
                          const std::function<void(const LoopDLine&)>& visit = {},
                          bool shortChainsStop = false) {
        const auto n = static_cast<std::uint32_t>(segments.size());
        blocks_.reserve(blocks_.size() + n / kBlock + 1);
        Chain chain{};
        std::size_t firstBlock = 0;
        for (std::uint32_t i = 0; i < n; ++i) {
            if (shortChainsStop && i == kShortChainsProbe && 2 * chains_.size() > i) return i;
            if (visit) visit(segments[i]);
            const SegmentBox box = segments[i].BoundingBox();
            const int direction = XDirection(segments[i], box);
            if (i > 0 && direction != 0 && direction == chain.direction) {
                chain.box = Union(chain.box, box);
                chain.end = i + 1;
                if ((i - chain.begin) % kBlock == 0)
                    blocks_.push_back(box);
                else
                    blocks_.back() = Union(blocks_.back(), box);
                continue;
            }
            if (i > 0) Finish(chain, firstBlock);
            chain = {box, segments.data(), i, i + 1, direction, owner, nullptr};
            firstBlock = blocks_.size();
            blocks_.push_back(box);
        }
        if (n > 0) Finish(chain, firstBlock);
        return n;
    }

    // Calls test(a, b) for pairs of segments from different chains whose boxes meet (and, with
    // ownersDiffer, from different loops), until it returns true (Stopped). With a budget, gives up
    // (OverBudget) once it has stepped over that many boxes: chains that each reach far in x (the
    // teeth of a star) would make it compare every pair.
    enum class Outcome { Done, Stopped, OverBudget };
    template <class PairTest>
    Outcome Pairs(bool ownersDiffer, PairTest test, std::size_t budget = SIZE_MAX) {
        budget_ = budget;
        work_ = 0;
        for (std::size_t c = 0; c < chains_.size(); ++c) chains_[c].blocks = blocks_.data() + chainBlocks_[c];
        // A NaN coordinate must not break the ordering the sort relies on: it sorts last.
        const auto key = [](const Chain& c) { return std::isnan(c.box.xmin) ? HUGE_VAL : c.box.xmin; };
        std::sort(chains_.begin(), chains_.end(),
                  [&](const Chain& a, const Chain& b) { return key(a) < key(b); });
        std::vector<const Chain*> active;
        for (const Chain& chain : chains_) {
            for (std::size_t i = 0; i < active.size();) {
                if (Spent()) return Outcome::OverBudget;
                if (active[i]->box.xmax + kBoxMargin < chain.box.xmin) {
                    active[i] = active.back();
                    active.pop_back();
                    continue;
                }
                const bool wanted = !ownersDiffer || active[i]->owner != chain.owner;
                if (wanted && BoxesMeet(active[i]->box, chain.box) && Walk(*active[i], chain, test)) {
                    return work_ > budget_ ? Outcome::OverBudget : Outcome::Stopped;
                }
                ++i;
            }
            active.push_back(&chain);
        }
        return Outcome::Done;
    }

  private:
    // Chains point at their blocks only once every block is stored (the vector may move before).
    void Finish(Chain chain, std::size_t firstBlock) {
        chain.blocks = nullptr;
        chains_.push_back(chain);
        chainBlocks_.push_back(firstBlock);
    }

    // The first position in [lo, hi) whose box reaches x (right edges ascend along a chain).
    template <class BoxOf>
    static std::uint32_t FirstReaching(std::uint32_t lo, std::uint32_t hi, double x, BoxOf boxOf) {
        while (lo < hi) {
            const std::uint32_t mid = lo + (hi - lo) / 2;
            if (boxOf(mid).xmax + kBoxMargin < x)
                lo = mid + 1;
            else
                hi = mid;
        }
        return lo;
    }

    // Both sequences ascend in x with intervals that only touch: starting where the x ranges begin
    // to overlap and advancing whichever item ends first meets every overlapping pair once.
    // Positions [a0, a1) of one against [b0, b1) of the other; meet(i, j) handles a pair of items
    // whose boxes meet and returns true to stop.
    template <class BoxA, class BoxB, class Meet>
    bool TwoPointer(std::uint32_t a0, std::uint32_t a1, BoxA boxA, std::uint32_t b0, std::uint32_t b1,
                    BoxB boxB, double from, double to, Meet meet) {
        std::uint32_t i = FirstReaching(a0, a1, from, boxA), j = FirstReaching(b0, b1, from, boxB);
        if (i >= a1 || j >= b1) return false;
        SegmentBox p = boxA(i), q = boxB(j);
        while (p.xmin <= to && q.xmin <= to) {
            if (Spent()) return true;
            bool advanceA;
            if (p.xmax + kBoxMargin < q.xmin)
                advanceA = true;
            else if (q.xmax + kBoxMargin < p.xmin)
                advanceA = false;
            else {
                if (BoxesMeet(p, q) && meet(i, j, p, q)) return true;
                advanceA = p.xmax < q.xmax;
            }
            if (advanceA) {
                if (++i == a1) break;
                p = boxA(i);
            } else {
                if (++j == b1) break;
                q = boxB(j);
            }
        }
        return false;
    }

    // Two chains, block against block, then segment against segment where two blocks meet.
    template <class PairTest>
    bool Walk(const Chain& a, const Chain& b, PairTest& test) {
        const double from = std::max(a.box.xmin, b.box.xmin),
                     to = std::min(a.box.xmax, b.box.xmax) + kBoxMargin;
        const auto blockA = [&](std::uint32_t q) { return a.BlockBoxAt(q); };
        const auto blockB = [&](std::uint32_t q) { return b.BlockBoxAt(q); };
        const auto boxA = [&](std::uint32_t k) { return a.BoxAt(k); };
        const auto boxB = [&](std::uint32_t k) { return b.BoxAt(k); };
        return TwoPointer(
            0, a.Blocks(), blockA, 0, b.Blocks(), blockB, from, to,
            [&](std::uint32_t qa, std::uint32_t qb, const SegmentBox& p, const SegmentBox& q) {
                std::uint32_t a0, a1, b0, b1;
                a.BlockPositions(qa, a0, a1);
                b.BlockPositions(qb, b0, b1);
                const double lo = std::max(p.xmin, q.xmin), hi = std::min(p.xmax, q.xmax) + kBoxMargin;
                return TwoPointer(
                    a0, a1, boxA, b0, b1, boxB, lo, hi,
                    [&](std::uint32_t i, std::uint32_t j, const SegmentBox&, const SegmentBox&) {
                        return test(Item{a.IndexAt(i), a.owner}, Item{b.IndexAt(j), b.owner});
                    });
            });
    }

    bool Spent() { return ++work_ > budget_; }

    std::vector<Chain> chains_;
    std::size_t work_ = 0, budget_ = SIZE_MAX;
    std::vector<std::size_t> chainBlocks_;  // per chain, its first block in blocks_
    std::vector<SegmentBox> blocks_;
};

// The end point two neighbouring segments share, if they are neighbours.
int SharedJoints(std::size_t i, std::size_t j, std::size_t count, bool closed,
                 std::span<const LoopDLine> segments, Point3 joints[2]) {
    const std::size_t lo = std::min(i, j), hi = std::max(i, j);
    int n = 0;
    if (hi == lo + 1) joints[n++] = segments[lo].EndPoint();
    if (closed && lo == 0 && hi == count - 1) joints[n++] = segments[hi].EndPoint();
    return n;
}

bool NearAny(const Point3& p, const Point3* joints, int count, double tolerance) {
    for (int k = 0; k < count; ++k) {
        if (Distance2(p, joints[k]) <= tolerance) return true;
    }
    return false;
}

}  // namespace

namespace {

// The box sweep's allowance before the ordered sweep takes over: a few box steps a segment cover
// the outlines of real drawings (the 10^6-vertex wavy circle of the benchmarks takes 0.1 a segment).
std::size_t BoxBudget(std::size_t segments) {
    return 8 * segments + 4096;
}

// Where segments i and j of a loop cross: their common points but the joint of neighbours.
// Appends them to Points (the first only, with firstOnly) and tells whether there is any.
class CrossingTest {
  public:
    CrossingTest(std::span<const LoopDLine> segments, bool closed) : segments_(segments), closed_(closed) {}

    bool operator()(std::uint32_t i, std::uint32_t j, std::vector<Point3>* Points, bool firstOnly) {
        const LoopDLine& p = segments_[i];
        const LoopDLine& q = segments_[j];
        Point3 joints[2];
        const int shared = SharedJoints(i, j, segments_.size(), closed_, segments_, joints);
        found_.clear();
        if (!p.IntersectWithDline(q, &found_)) return false;
        // Neighbours meet at their joint; a gap left by a dropped zero-length segment counts as one.
        const double jointTolerance = kZeroLengthTolerance + 1e-6 * std::max(p.Length(), q.Length());
        bool any = false;
        for (const Point3& x : found_) {
            if (NearAny(x, joints, shared, jointTolerance)) continue;
            any = true;
            if (!Points) return true;
            Points->push_back(x);
            if (firstOnly) return true;
        }
        return any;
    }

  private:
    std::span<const LoopDLine> segments_;
    bool closed_;
    std::vector<Point3> found_;
};

// The box sweep over one loop, stopping at the first crossing unless every point is wanted. With a
// budget it leaves the loop to the ordered sweep (OverBudget) when its chains are short or it has
// spent the budget; `visit` has then seen every segment all the same.
ChainSet::Outcome SweepBoxes(std::span<const LoopDLine> segments, CrossingTest& crossing,
                             std::vector<Point3>* Points, bool firstOnly, std::size_t budget,
                             const std::function<void(const LoopDLine&)>& visit = {}) {
    ChainSet chains;
    const bool budgeted = budget != SIZE_MAX;
    const std::uint32_t read = chains.AddLoop(segments, 0, visit, budgeted);
    if (read < segments.size()) {
        if (visit) std::for_each(segments.begin() + read, segments.end(), visit);
        return ChainSet::Outcome::OverBudget;
    }
    bool any = false;
    const auto outcome = chains.Pairs(
        false,
        [&](const Item& a, const Item& b) {
            if (!crossing(a.index, b.index, Points, firstOnly)) return false;
            any = true;
            return !Points || firstOnly;
        },
        budget);
    if (outcome == ChainSet::Outcome::Done && any) return ChainSet::Outcome::Stopped;
    return outcome;
}

bool SweepOrdered(std::span<const LoopDLine> segments, CrossingTest& crossing, std::vector<Point3>* first) {
    return SweepNeighbours(segments,
                           [&](std::uint32_t i, std::uint32_t j) { return crossing(i, j, first, true); });
}

// Up to this many segments the pairs are fewer than the sweep's setting up costs.
constexpr std::size_t kFewSegments = 8;

// A loop of a few segments: the pairs the box sweep would test (boxes that meet, from different
// chains), without building the chains.
bool FewSegmentsCross(std::span<const LoopDLine> segments, CrossingTest& crossing,
                      const std::function<void(const LoopDLine&)>& visit) {
    SegmentBox boxes[kFewSegments];
    int chain[kFewSegments];
    int direction = 0;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (visit) visit(segments[i]);
        boxes[i] = segments[i].BoundingBox();
        const int d = XDirection(segments[i], boxes[i]);
        chain[i] = i > 0 && d != 0 && d == direction ? chain[i - 1] : static_cast<int>(i);
        direction = d;
    }
    bool any = false;
    for (std::uint32_t i = 0; i < segments.size() && !any; ++i) {
        for (std::uint32_t j = i + 1; j < segments.size() && !any; ++j) {
            any = chain[i] != chain[j] && BoxesMeet(boxes[i], boxes[j]) && crossing(i, j, nullptr, true);
        }
    }
    return any;
}

}  // namespace

bool FindSelfIntersections(std::span<const LoopDLine> segments, bool closed, std::vector<Point3>* Points,
                           const std::function<void(const LoopDLine&)>& visit) {
    CrossingTest crossing(segments, closed);
    if (!Points && segments.size() <= kFewSegments) return FewSegmentsCross(segments, crossing, visit);
    const std::size_t before = Points ? Points->size() : 0;
    const auto outcome = SweepBoxes(segments, crossing, Points, false, BoxBudget(segments.size()), visit);
    if (outcome != ChainSet::Outcome::OverBudget) return outcome == ChainSet::Outcome::Stopped;
    std::vector<Point3> first;
    if (!SweepOrdered(segments, crossing, Points ? &first : nullptr)) return false;
    if (!Points) return true;
    // Every crossing of such an outline: the box sweep again, to the end (only an outline that does
    // cut itself pays for it).
    Points->resize(before);
    SweepBoxes(segments, crossing, Points, false, SIZE_MAX);
    return true;
}

std::optional<Point3> FirstSelfIntersection(std::span<const LoopDLine> segments, bool closed) {
    CrossingTest crossing(segments, closed);
    std::vector<Point3> first;
    const auto outcome = SweepBoxes(segments, crossing, &first, true, BoxBudget(segments.size()));
    if (outcome == ChainSet::Outcome::OverBudget) {
        first.clear();
        SweepOrdered(segments, crossing, &first);
    }
    if (first.empty()) return std::nullopt;
    return first.front();
}

bool FindIntersections(std::span<const LoopDLine> first, std::span<const LoopDLine> second,
                       std::vector<Point3>* Points) {
    if (!Points && first.size() <= kFewSegments && second.size() <= kFewSegments)
        return CommonPoints(first, second, nullptr);
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

bool CommonPoints(std::span<const LoopDLine> first, std::span<const LoopDLine> second,
                  std::vector<Point3>* Points) {
    if (first.size() > kFewSegments || second.size() > kFewSegments)
        return FindIntersections(first, second, Points);
    SegmentBox boxes[kFewSegments];
    for (std::size_t j = 0; j < second.size(); ++j) boxes[j] = second[j].BoundingBox();
    bool any = false;
    for (const LoopDLine& p : first) {
        const SegmentBox box = p.BoundingBox();
        for (std::size_t j = 0; j < second.size(); ++j) {
            if (!BoxesMeet(box, boxes[j]) || !p.IntersectWithDline(second[j], Points)) continue;
            any = true;
            if (!Points) return true;
        }
    }
    return any;
}

}  // namespace tgp
