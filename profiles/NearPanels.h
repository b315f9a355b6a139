#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "core/Point3.h"
#include "profiles/BoundaryPanels.h"

namespace tgp {

// The panels of a boundary near a point (BoundaryPanel::Near: closer than 1.5 panel lengths to the
// panel's middle), found through an R-tree of their discs of nearness: what the quadrature of a
// boundary of many panels asks at every node, in logarithmic time instead of a pass over them all.
class NearPanels {
  public:
    explicit NearPanels(const std::vector<BoundaryPanel>& panels);
    NearPanels(NearPanels&&) noexcept;
    ~NearPanels();

    std::vector<std::size_t> Of(const Point3& target) const;

  private:
    struct Index;

    const std::vector<BoundaryPanel>& panels_;
    std::unique_ptr<Index> index_;
};

}  // namespace tgp
