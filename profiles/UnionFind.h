#pragma once

#include <cstddef>
#include <numeric>
#include <vector>

namespace tgp {

// Disjoint sets of 0 .. n-1 (path halving): items joined directly or through others share a root.
class UnionFind {
  public:
    explicit UnionFind(std::size_t n) : parent_(n) { std::iota(parent_.begin(), parent_.end(), 0); }
    std::size_t Find(std::size_t i) {
        while (parent_[i] != i) i = parent_[i] = parent_[parent_[i]];
        return i;
    }
    // j's set joins i's; i's root stays the root.
    void Join(std::size_t i, std::size_t j) { parent_[Find(j)] = Find(i); }

  private:
    std::vector<std::size_t> parent_;
};

}  // namespace tgp
