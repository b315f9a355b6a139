#include "profiles/Loop7s.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "core/Error.h"
#include "profiles/LoopArrangement.h"

namespace tgp {

namespace {

// "loop 2" or "loop 2 (handle 2F)", as an error names it.
std::string LoopName(const Loop7& loop, std::size_t position) {
    std::string name = "loop " + std::to_string(position + 1);
    if (!loop.Handle().empty()) name += " (handle " + loop.Handle() + ")";
    return name;
}

}  // namespace

void Loop7s::Add(std::shared_ptr<Loop7> Loop) {
    if (!Loop) throw Error::ObjectRequired();
    loops_.push_back(std::move(Loop));
    Changed();
}

std::size_t Loop7s::Position(std::size_t Index) const {
    if (Index < 1 || Index > loops_.size()) throw Error::SubscriptOutOfRange();
    return Index - 1;
}

const std::shared_ptr<Loop7>& Loop7s::Item(std::size_t Index) const {
    return loops_[Position(Index)];
}

void Loop7s::Remove(std::size_t Index) {
    loops_.erase(loops_.begin() + static_cast<std::ptrdiff_t>(Position(Index)));
    Changed();
}

void Loop7s::Clear() {
    loops_.clear();
    Changed();
}

bool Loop7s::ArrangementValid() const {
    if (!arrangement_) return false;
    const std::uint64_t now = Loop7::AnyRevision();
    if (arrangement_->anyRevision == now) return true;
    for (std::size_t i = 0; i < loops_.size(); ++i) {
        if (arrangement_->revisions[i] != loops_[i]->Revision()) return false;
    }
    arrangement_->anyRevision = now;  // other loops changed, not these
    return true;
}

// A loop's parent is the smallest of the loops it lies inside, and its depth the length of its
// chain of parents; only loops whose boxes meet are placed against each other.
std::optional<std::pair<std::size_t, std::size_t>> Loop7s::TryArrange() {
    if (ArrangementValid()) return std::nullopt;
    const std::size_t n = loops_.size();
    std::vector<double> size(n);
    for (std::size_t i = 0; i < n; ++i)
        size[i] = loops_[i]->AreaAbs();  // raises 5 for a loop that cuts itself
    const LoopArrangement placed(loops_);
    if (!placed.Overlaps().empty()) return placed.Overlaps().front();
    auto arranged = std::make_unique<Arrangement>();
    arranged->parent = placed.Parents(size);
    arranged->depth = LoopArrangement::Depths(arranged->parent);
    for (std::size_t i = 0; i < n; ++i) loops_[i]->IsVoid(arranged->depth[i] % 2 == 1);
    for (const auto& loop : loops_) arranged->revisions.push_back(loop->Revision());
    arranged->anyRevision = Loop7::AnyRevision();
    arrangement_ = std::move(arranged);
    return std::nullopt;
}

const Loop7s::Arrangement& Loop7s::Arranged() {
    if (const auto overlap = TryArrange()) {
        const auto [i, j] = *overlap;
        ThrowLibraryError(
            "Loop7s: " + LoopName(*loops_[i], i) + " and " + LoopName(*loops_[j], j) +
            " overlap (their interiors cross); draw touching parts side by side, or a hole inside its "
            "boundary");
    }
    return *arrangement_;
}

std::optional<std::pair<std::size_t, std::size_t>> Loop7s::FirstOverlap() {
    const auto overlap = TryArrange();
    if (!overlap) return std::nullopt;
    return std::pair{overlap->first + 1, overlap->second + 1};
}

std::shared_ptr<Loop7> Loop7s::Parent(std::size_t Index) {
    const std::size_t i = Position(Index);
    const std::int64_t parent = Arranged().parent[i];
    return parent < 0 ? nullptr : loops_[static_cast<std::size_t>(parent)];
}

int Loop7s::Depth(std::size_t Index) {
    const std::size_t i = Position(Index);
    return Arranged().depth[i];
}

bool Loop7s::IsHole(std::size_t Index) {
    return Depth(Index) % 2 == 1;
}

// Each loop's block counts positive for a boundary and negative for a hole, whichever way the loop
// runs; the blocks are joined in collection order.
std::shared_ptr<InertiaBlock> Loop7s::InertiaBlock() {
    if (loops_.empty()) ThrowLibraryError("Loop7s: the collection is empty, so it has no section properties");
    Arranged();
    if (!arrangement_->composite) {
        std::shared_ptr<tgp::InertiaBlock> composite;
        for (std::size_t i = 0; i < loops_.size(); ++i) {
            auto block = loops_[i]->InertiaBlock()->Copy();
            const bool hole = arrangement_->depth[i] % 2 == 1;
            if ((block->Area()->Millimetres() < 0) != hole) block->Inverse();
            if (composite)
                composite->Join(*block);
            else
                composite = std::move(block);
        }
        arrangement_->composite = std::move(composite);
    }
    return arrangement_->composite->Copy();
}

double Loop7s::Area() {
    return InertiaBlock()->Area()->Millimetres();
}
double Loop7s::Length() {
    return InertiaBlock()->Perimeter()->Millimetres();
}
Point Loop7s::Centroid() {
    return InertiaBlock()->Centroid();
}
double Loop7s::MomentOfInertiaX() {
    return InertiaBlock()->MomentOfInertiaX()->Millimetres();
}
double Loop7s::MomentOfInertiaY() {
    return InertiaBlock()->MomentOfInertiaY()->Millimetres();
}
double Loop7s::ProductOfInertiaXY() {
    return InertiaBlock()->ProductOfInertiaXY()->Millimetres();
}

std::vector<std::shared_ptr<Loop7s>> Loop7s::Split() {
    const Arrangement& arranged = Arranged();
    const auto roots = LoopArrangement::Roots(arranged.parent, arranged.depth);
    std::vector<std::shared_ptr<Loop7s>> parts;
    std::vector<std::int64_t> partOf(loops_.size(), -1);
    for (std::size_t i = 0; i < loops_.size(); ++i) {
        std::int64_t& part = partOf[roots[i]];
        if (part < 0) {
            part = static_cast<std::int64_t>(parts.size());
            parts.push_back(Create());
        }
        parts[static_cast<std::size_t>(part)]->loops_.push_back(loops_[i]);
    }
    return parts;
}

void Loop7s::Sort(Loop7sSortKey Key, bool Descending) {
    if (Key < SortByArea || Key > SortByDepth) throw Error::InvalidProcedureCall();
    std::vector<double> keys(loops_.size());
    for (std::size_t i = 0; i < loops_.size(); ++i) {
        switch (Key) {
            case SortByArea: keys[i] = loops_[i]->AreaAbs(); break;
            case SortByCentroidX: keys[i] = loops_[i]->Centroid()[0]; break;
            case SortByCentroidY: keys[i] = loops_[i]->Centroid()[1]; break;
            case SortByDepth: keys[i] = Arranged().depth[i]; break;
        }
    }
    std::vector<std::size_t> order(loops_.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return Descending ? keys[a] > keys[b] : keys[a] < keys[b];
    });
    std::vector<std::shared_ptr<Loop7>> sorted;
    sorted.reserve(loops_.size());
    for (std::size_t i : order) sorted.push_back(loops_[i]);
    loops_ = std::move(sorted);
    Changed();
}

}  // namespace tgp
