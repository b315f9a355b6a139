#include "profiles/SegmentSweep.h"

#include <algorithm>
#include <cstdint>

#include "core/Constants.h"

namespace tgp {

namespace {

constexpr double kBoxMargin = LoopDLine::kOnLineTolerance;

struct Entry {
    SegmentBox box;
    std::uint32_t index;
    std::uint32_t owner;
};

void AddEntries(std::span<const LoopDLine> segments, std::uint32_t owner, std::vector<Entry>& entries) {
    for (std::size_t i = 0; i < segments.size(); ++i) {
        entries.push_back({segments[i].BoundingBox(), static_cast<std::uint32_t>(i), owner});
    }
}

bool BoxesMeetInY(const SegmentBox& a, const SegmentBox& b) {
    return a.ymin <= b.ymax + kBoxMargin && b.ymin <= a.ymax + kBoxMargin;
}

// Calls test(a, b) for every pair of entries whose boxes overlap, until it returns true.
template <class PairTest>
bool Sweep(std::vector<Entry>& entries, PairTest test) {
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.box.xmin < b.box.xmin; });
    std::vector<const Entry*> active;
    for (const Entry& entry : entries) {
        for (std::size_t i = 0; i < active.size();) {
            if (active[i]->box.xmax + kBoxMargin < entry.box.xmin) {
                active[i] = active.back();
                active.pop_back();
                continue;
            }
            if (BoxesMeetInY(active[i]->box, entry.box) && test(*active[i], entry)) return true;
            ++i;
        }
        active.push_back(&entry);
    }
    return false;
}

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
    std::vector<Entry> entries;
    entries.reserve(segments.size());
    AddEntries(segments, 0, entries);
    std::vector<PlanePoint> found;
    bool any = false;
    Sweep(entries, [&](const Entry& a, const Entry& b) {
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
    std::vector<Entry> entries;
    entries.reserve(first.size() + second.size());
    AddEntries(first, 0, entries);
    AddEntries(second, 1, entries);
    bool any = false;
    Sweep(entries, [&](const Entry& a, const Entry& b) {
        if (a.owner == b.owner) return false;
        const LoopDLine& p = a.owner == 0 ? first[a.index] : second[a.index];
        const LoopDLine& q = b.owner == 0 ? first[b.index] : second[b.index];
        if (!p.IntersectWithDline(q, Points)) return false;
        any = true;
        return Points == nullptr;
    });
    return any;
}

}  // namespace tgp
