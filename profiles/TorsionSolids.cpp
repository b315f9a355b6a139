#include "profiles/TorsionSolids.h"

#include <algorithm>
#include <cmath>

#include "profiles/UnionFind.h"

namespace tgp {

namespace {

// The loop's segments, reversed when needed. A loop's area is ∫ y dx: negative counter-clockwise.
std::vector<LoopDLine> WithMaterialOnTheLeft(Loop7& loop, bool hole) {
    std::vector<LoopDLine> segments(loop.Segments().begin(), loop.Segments().end());
    if ((loop.Area() < 0) == hole) {
        std::reverse(segments.begin(), segments.end());
        for (LoopDLine& s : segments) s.Inverse();
    }
    return segments;
}

// The stretch [from, to] of segment s's length that straight segment t covers running the other way
// along the same line (within `gap`), if any.
bool Opposite(const LoopDLine& s, const LoopDLine& t, double gap, double& from, double& to) {
    if (s.IsArc() || t.IsArc()) return false;
    const Point3 a = s.StartPoint(), d = s.EndPoint() - a, e = t.EndPoint() - t.StartPoint();
    const double length = std::hypot(d.x, d.y);
    if (length == 0 || std::hypot(e.x, e.y) == 0) return false;
    const Point3 u = d * (1 / length);
    if (u.x * e.x + u.y * e.y >= 0) return false;  // not the other way
    auto across = [&](const Point3& p) { return std::fabs(u.x * (p.y - a.y) - u.y * (p.x - a.x)); };
    if (across(t.StartPoint()) > gap || across(t.EndPoint()) > gap) return false;
    auto along = [&](const Point3& p) { return u.x * (p.x - a.x) + u.y * (p.y - a.y); };
    from = std::max(0.0, along(t.EndPoint()));
    to = std::min(length, along(t.StartPoint()));
    return to - from > gap;
}

// The parts of a union's edges that no other edge of it runs along the other way.
std::vector<LoopDLine> OuterParts(const std::vector<LoopDLine>& edges, double gap) {
    std::vector<LoopDLine> parts;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        std::vector<std::pair<double, double>> covered;
        for (std::size_t j = 0; j < edges.size(); ++j) {
            double from, to;
            if (j != i && Opposite(edges[i], edges[j], gap, from, to)) covered.emplace_back(from, to);
        }
        if (covered.empty()) {
            parts.push_back(edges[i]);
            continue;
        }
        std::sort(covered.begin(), covered.end());
        const Point3 a = edges[i].StartPoint(), d = edges[i].EndPoint() - a;
        const double length = std::hypot(d.x, d.y);
        auto at = [&](double s) {
            return s <= 0 ? a : s >= length ? edges[i].EndPoint() : a + d * (s / length);
        };
        double start = 0;
        for (const auto& [from, to] : covered) {
            if (from - start > gap) parts.emplace_back().Init(at(start), at(from), 0);
            start = std::max(start, to);
        }
        if (length - start > gap) parts.emplace_back().Init(at(start), at(length), 0);
    }
    return parts;
}

// Chains edges into loops: each edge is followed by the unused one that starts where it ends.
SolidLoops Chained(std::vector<LoopDLine> edges, double gap) {
    SolidLoops loops;
    std::vector<bool> used(edges.size(), false);
    for (std::size_t first = 0; first < edges.size(); ++first) {
        if (used[first]) continue;
        std::vector<LoopDLine> loop;
        for (std::size_t k = first; k < edges.size() && !used[k];) {
            used[k] = true;
            loop.push_back(edges[k]);
            const Point3 end = edges[k].EndPoint();
            std::size_t next = edges.size();
            for (std::size_t j = 0; j < edges.size() && next == edges.size(); ++j) {
                const Point3 start = edges[j].StartPoint();
                if (!used[j] && std::hypot(start.x - end.x, start.y - end.y) <= gap) next = j;
            }
            k = next;
        }
        loops.push_back(std::move(loop));
    }
    return loops;
}

// Whether two solids' outer loops have straight edges along each other.
bool ShareAnEdge(const SolidLoops& a, const SolidLoops& b, double gap) {
    for (const LoopDLine& s : a.front())
        for (const LoopDLine& t : b.front()) {
            double from, to;
            if (Opposite(s, t, gap, from, to)) return true;
        }
    return false;
}

}  // namespace

std::vector<SolidLoops> TorsionSolids(Loop7s& section) {
    std::vector<SolidLoops> solids;
    SegmentBox box = SegmentBox::Empty();
    for (std::size_t i = 1; i <= section.Count(); ++i) {
        if (section.Depth(i) % 2 != 0) continue;
        SolidLoops solid{WithMaterialOnTheLeft(*section.Item(i), false)};
        for (std::size_t k = 1; k <= section.Count(); ++k)
            if (section.Parent(k) == section.Item(i))
                solid.push_back(WithMaterialOnTheLeft(*section.Item(k), true));
        for (const LoopDLine& s : solid.front()) box.Include(s.BoundingBox());
        solids.push_back(std::move(solid));
    }
    const double gap = 1e-9 * std::hypot(box.xmax - box.xmin, box.ymax - box.ymin);
    UnionFind groups(solids.size());
    for (std::size_t i = 0; i < solids.size(); ++i)
        for (std::size_t j = i + 1; j < solids.size(); ++j)
            if (groups.Find(i) != groups.Find(j) && ShareAnEdge(solids[i], solids[j], gap)) groups.Join(i, j);
    std::vector<SolidLoops> joined;
    for (std::size_t i = 0; i < solids.size(); ++i) {
        if (groups.Find(i) != i) continue;
        std::vector<std::size_t> members;
        for (std::size_t j = 0; j < solids.size(); ++j)
            if (groups.Find(j) == i) members.push_back(j);
        if (members.size() == 1) {
            joined.push_back(std::move(solids[i]));
            continue;
        }
        std::vector<LoopDLine> edges;
        for (std::size_t m : members)
            for (const auto& loop : solids[m]) edges.insert(edges.end(), loop.begin(), loop.end());
        joined.push_back(Chained(OuterParts(edges, gap), gap));
    }
    return joined;
}

}  // namespace tgp
