#include "drawings/EdgeChains.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <unordered_map>
#include <utility>

#include "profiles/LoopDLine.h"

namespace tgp::drawings {

namespace {

// Points that lie within the gap of one another become one node: each point is compared with the
// nodes in its own and the neighbouring cells of a grid whose cells are one gap wide.
class Nodes {
  public:
    explicit Nodes(double gap) : gap_(gap > 0 ? gap : 1e-300) {}

    int At(const Point3& p) {
        const std::int64_t cx = Cell(p.x), cy = Cell(p.y);
        for (std::int64_t dx = -1; dx <= 1; ++dx) {
            for (std::int64_t dy = -1; dy <= 1; ++dy) {
                const auto found = cells_.find(Key(cx + dx, cy + dy));
                if (found == cells_.end()) continue;
                for (int node : found->second) {
                    const Point3& q = points_[static_cast<std::size_t>(node)];
                    if (std::hypot(q.x - p.x, q.y - p.y) <= gap_) {
                        return node;
                    }
                }
            }
        }
        const int node = static_cast<int>(points_.size());
        points_.push_back(p);
        cells_[Key(cx, cy)].push_back(node);
        return node;
    }
    std::size_t Count() const { return points_.size(); }

  private:
    std::int64_t Cell(double v) const {
        const double c = std::floor(v / gap_);
        return c > 4e18 ? INT64_MAX / 2 : c < -4e18 ? INT64_MIN / 2 : static_cast<std::int64_t>(c);
    }
    static std::uint64_t Key(std::int64_t x, std::int64_t y) {
        return static_cast<std::uint64_t>(x) * 0x9E3779B97F4A7C15ull ^ static_cast<std::uint64_t>(y);
    }

    double gap_;
    std::vector<Point3> points_;
    std::unordered_map<std::uint64_t, std::vector<int>> cells_;
};

using Ends = std::vector<std::pair<int, int>>;
using Incidence = std::vector<std::vector<std::size_t>>;

// The edges that lie on no cycle (whose removal would split their part of the drawing): Tarjan's
// low-link search, iterative, stepping back only over the edge it came by (two arcs between the
// same two points are a cycle).
std::vector<std::size_t> Bridges(const Incidence& at, const Ends& ends) {
    const std::size_t n = at.size();
    std::vector<int> order(n, -1), low(n, 0);
    std::vector<std::size_t> bridges;
    int counter = 0;
    struct Frame {
        std::size_t node, via, next;  // via: the edge it was reached by
    };
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    for (std::size_t root = 0; root < n; ++root) {
        if (order[root] >= 0 || at[root].empty()) continue;
        std::vector<Frame> stack{{root, kNone, 0}};
        order[root] = low[root] = counter++;
        while (!stack.empty()) {
            Frame& f = stack.back();
            if (f.next < at[f.node].size()) {
                const std::size_t e = at[f.node][f.next++];
                if (e == f.via) continue;
                const std::size_t other = static_cast<std::size_t>(
                    ends[e].first == static_cast<int>(f.node) ? ends[e].second : ends[e].first);
                if (order[other] < 0) {
                    order[other] = low[other] = counter++;
                    stack.push_back({other, e, 0});
                } else {
                    low[f.node] = std::min(low[f.node], order[other]);
                }
                continue;
            }
            const Frame done = f;
            stack.pop_back();
            if (stack.empty()) break;
            Frame& parent = stack.back();
            low[parent.node] = std::min(low[parent.node], low[done.node]);
            if (low[done.node] > order[parent.node]) bridges.push_back(done.via);
        }
    }
    return bridges;
}

std::string CountedTypes(const std::vector<DrawnEdge>& edges, const std::vector<std::size_t>& chain) {
    std::map<std::string, std::size_t> counts;
    for (std::size_t e : chain) ++counts[edges[e].type];
    std::string text;
    for (const auto& [type, n] : counts)
        text += (text.empty() ? "" : " and ") + std::to_string(n) + " " + type;
    return text;
}

// The larger of the width and height of all the edges' vertices.
double ExtentOf(const std::vector<DrawnEdge>& edges) {
    SegmentBox box = SegmentBox::Empty();
    for (const DrawnEdge& e : edges) {
        for (const Point3& v : e.vertices) box.Include({v.x, v.y, v.x, v.y});
    }
    return std::max(box.xmax - box.xmin, box.ymax - box.ymin);
}

std::string EntityName(const DrawnEdge& edge) {
    return edge.type + (edge.handle.empty() ? "" : " handle " + edge.handle) +
           (edge.layer.empty() ? "" : " on layer " + edge.layer) +
           (edge.approximate ? " (curves flattened)" : "");
}

// The edges as a graph: each edge's end nodes, the edges still at each node, and the edges used up.
class EdgeGraph {
  public:
    using Unused = std::function<void(const DrawnEdge&, const std::string& why)>;

    EdgeGraph(const std::vector<DrawnEdge>& edges, const Unused& unused)
        : edges_(edges), unused_(unused), ends_(edges.size()), done_(edges.size(), false) {
        Nodes nodes(kChainGap * ExtentOf(edges));
        for (std::size_t i = 0; i < edges.size(); ++i)
            ends_[i] = {nodes.At(edges[i].Start()), nodes.At(edges[i].End())};
        at_.resize(nodes.Count());
        for (std::size_t i = 0; i < edges.size(); ++i) {
            if (ends_[i].first == ends_[i].second) continue;
            at_[static_cast<std::size_t>(ends_[i].first)].push_back(i);
            at_[static_cast<std::size_t>(ends_[i].second)].push_back(i);
        }
    }

    // Lines that end in the open (centre marks, extension lines) are not part of an outline, nor is
    // what only they connect; neither are lines that merely join two outlines (a leader from a hole
    // to a corner). They are the edges on no cycle at all; taking them away breaks no cycle, so
    // every edge left lies on one.
    void TakeAwayOpenEdges() {
        for (std::size_t e : Bridges(at_, ends_)) TakeAway(e);
    }

    // The outlines in the order of their first edge.
    std::vector<DrawnProfile> Outlines() {
        std::vector<DrawnProfile> outlines;
        for (std::size_t first = 0; first < edges_.size(); ++first) {
            if (done_[first]) continue;
            done_[first] = true;
            if (ends_[first].first == ends_[first].second) {
                if (auto outline = OutlineOfItself(edges_[first])) outlines.push_back(std::move(*outline));
                continue;
            }
            const Chain chain = Walk(first);
            if (!chain.closed) {
                for (const auto& [e, forwards] : chain.edges)
                    unused_(edges_[e], "not part of a closed outline");
                continue;
            }
            outlines.push_back(OutlineOf(chain));
        }
        return outlines;
    }

  private:
    struct Chain {
        std::vector<std::pair<std::size_t, bool>> edges;  // edge, travelled forwards
        bool closed = false;
    };

    void TakeAway(std::size_t e) {
        done_[e] = true;
        unused_(edges_[e], "not part of a closed outline");
        for (int end : {ends_[e].first, ends_[e].second}) {
            auto& list = at_[static_cast<std::size_t>(end)];
            list.erase(std::remove(list.begin(), list.end(), e), list.end());
        }
    }

    // An edge that comes back to where it starts (a whole ellipse drawn as an arc) is an outline by
    // itself; a single segment doing so has no length.
    std::optional<DrawnProfile> OutlineOfItself(const DrawnEdge& edge) {
        if (edge.bulges.size() <= 1) {
            unused_(edge, "of no length");
            return std::nullopt;
        }
        DrawnProfile p;
        for (std::size_t k = 0; k < edge.bulges.size(); ++k)
            p.Add(edge.vertices[k].x, edge.vertices[k].y, edge.bulges[k]);
        if (edge.curve) {
            p.curves = {*edge.curve};
            p.curveOf.assign(edge.bulges.size(), 0);
        }
        p.type = edge.type;
        p.handle = edge.handle;
        p.layer = edge.layer;
        p.name = EntityName(edge);
        return p;
    }

    // Walks on from the end of the first edge until the walk comes back to its start, or reaches a
    // node where other than two edges meet.
    Chain Walk(std::size_t first) {
        Chain chain{{{first, true}}};
        const int start = ends_[first].first;
        int node = ends_[first].second;
        std::size_t current = first;
        while (at_[static_cast<std::size_t>(node)].size() == 2) {
            const auto& pair = at_[static_cast<std::size_t>(node)];
            const std::size_t next = pair[0] == current ? pair[1] : pair[0];
            if (node == start) {
                chain.closed = next == first;
                break;
            }
            if (done_[next]) break;
            done_[next] = true;
            const bool forwards = ends_[next].first == node;
            chain.edges.emplace_back(next, forwards);
            node = forwards ? ends_[next].second : ends_[next].first;
            current = next;
        }
        return chain;
    }

    // A closed chain as an outline in the order of travel: an edge travelled backwards has its
    // vertices reversed and its bulges negated. Named after its first edge's entity.
    DrawnProfile OutlineOf(const Chain& chain) const {
        DrawnProfile p;
        std::vector<std::size_t> members;
        bool approximate = false;
        for (const auto& [e, forwards] : chain.edges) {
            const DrawnEdge& edge = edges_[e];
            const std::size_t segments = edge.bulges.size();
            const int curve = edge.curve ? static_cast<int>(p.curves.size()) : -1;
            if (edge.curve) p.curves.push_back(forwards ? *edge.curve : edge.curve->Reversed());
            for (std::size_t k = 0; k < segments; ++k) {  // each segment's start point and bulge
                const std::size_t i = forwards ? k : segments - k;
                p.Add(edge.vertices[i].x, edge.vertices[i].y,
                      forwards ? edge.bulges[k] : -edge.bulges[segments - 1 - k]);
                p.curveOf.push_back(curve);
            }
            members.push_back(e);
            approximate = approximate || edge.approximate;
        }
        if (p.curves.empty()) p.curveOf.clear();
        const DrawnEdge& lead = edges_[chain.edges.front().first];
        p.type = lead.type;
        p.handle = lead.handle;
        p.layer = lead.layer;
        p.name = "outline of " + CountedTypes(edges_, members) +
                 (lead.layer.empty() ? "" : " on layer " + lead.layer) +
                 (lead.handle.empty() ? "" : ", from " + lead.type + " handle " + lead.handle) +
                 (approximate ? " (curves flattened)" : "");
        return p;
    }

    const std::vector<DrawnEdge>& edges_;
    const Unused& unused_;
    Ends ends_;
    Incidence at_;  // the edges at each node
    std::vector<bool> done_;
};

}  // namespace

std::vector<DrawnProfile> ChainEdges(
    const std::vector<DrawnEdge>& edges,
    const std::function<void(const DrawnEdge&, const std::string& why)>& unused) {
    if (edges.empty()) return {};
    EdgeGraph graph(edges, unused);
    graph.TakeAwayOpenEdges();
    return graph.Outlines();
}

}  // namespace tgp::drawings
