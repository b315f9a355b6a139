#include "profiles/NearPanels.h"

#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>

namespace tgp {

namespace {

namespace bg = boost::geometry;
namespace bgi = boost::geometry::index;
using IndexPoint = bg::model::point<double, 2, bg::cs::cartesian>;
using IndexBox = bg::model::box<IndexPoint>;
using IndexEntry = std::pair<IndexBox, std::size_t>;

std::vector<IndexEntry> NearnessBoxes(const std::vector<BoundaryPanel>& panels) {
    std::vector<IndexEntry> entries;
    for (std::size_t p = 0; p < panels.size(); ++p) {
        const double r = 1.5 * panels[p].length;
        const Point3& m = panels[p].middle;
        entries.emplace_back(IndexBox{{m.x - r, m.y - r}, {m.x + r, m.y + r}}, p);
    }
    return entries;
}

}  // namespace

struct NearPanels::Index {
    bgi::rtree<IndexEntry, bgi::rstar<16>> tree;
};

NearPanels::NearPanels(const std::vector<BoundaryPanel>& panels) : panels_(panels) {
    const auto entries = NearnessBoxes(panels);
    index_ = std::make_unique<Index>(Index{{entries.begin(), entries.end()}});
}

NearPanels::NearPanels(NearPanels&&) noexcept = default;
NearPanels::~NearPanels() = default;

std::vector<std::size_t> NearPanels::Of(const Point3& target) const {
    std::vector<std::size_t> near;
    index_->tree.query(bgi::intersects(IndexPoint{target.x, target.y}),
                       boost::make_function_output_iterator([&](const IndexEntry& e) {
                           if (panels_[e.second].Near(target)) near.push_back(e.second);
                       }));
    return near;
}

}  // namespace tgp
