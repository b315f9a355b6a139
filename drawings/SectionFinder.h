#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "drawings/DrawnProfile.h"
#include "profiles/Loop7.h"

namespace tgp::drawings {

// One section of a file's outlines, or one outline that makes none. A section is one outline, or an
// outer boundary with its holes (and islands inside them), or outlines that touch (plates drawn side
// by side), or the loops of one text profile.
struct FoundSection {
    // The outer outline's name, with "and 2 more parts", "with 1 hole"; the outer outline names the
    // entity.
    std::string name;
    const DrawnProfile* outer = nullptr;
    std::vector<const DrawnProfile*> outlines;  // in file order
    std::vector<std::shared_ptr<Loop7>> loops;  // one per outline, in millimetres
    std::vector<bool> holes;                    // per loop: inside an odd number of others
    std::size_t holeCount = 0;
    std::string error;  // why there is no section (an open outline, outlines that overlap)
};

// The sections of a file's outlines, handed on one at a time in file order (each filed under the
// position of its first outline) and computed when their turn comes: an outline whose reach meets no
// other outline's is built and handed on alone, so that a drawing of many separate parts never holds
// all their loops at once. Outlines whose reaches meet are built together and grouped by containment
// and touch; the loops of an explicit group (a text profile) form one section; with `eachOutline`
// every outline is a section. Outlines that are open, cut themselves, enclose nothing or carry a
// problem are handed on with the reason; two whose interiors overlap both are. An outline that
// repeats another is left out and counted in `skipped` when given.
class SectionFinder {
  public:
    SectionFinder(const std::vector<DrawnProfile>& profiles, bool eachOutline, SkipList* skipped);
    void Emit(const std::function<void(FoundSection&&)>& emit);

  private:
    struct Item {
        std::size_t key;  // the position of its first outline
        enum Kind { Alone, Group, Section, Overlap, Rejected } kind;
        // Alone: the outline; Group, Section: which; Overlap: the other outline; Rejected: the reason.
        std::size_t index;
    };
    struct Section {
        std::vector<std::size_t> positions;
        std::vector<int> depths;  // of each loop, from the grouping
    };

    void ArrangeFree(const std::vector<std::size_t>& free, SkipList* skipped);
    std::vector<bool> Partnered(const std::vector<std::size_t>& free) const;
    void Produce(const Item& item);
    void ProduceGroup(const std::vector<std::size_t>& members);
    void ProduceSection(const std::vector<std::size_t>& positions, const std::vector<int>* depths = nullptr);
    void Reject(std::size_t position, std::string reason);

    const std::vector<DrawnProfile>& profiles_;
    std::vector<std::shared_ptr<Loop7>> loops_;  // built and waiting, by position
    std::vector<Item> items_;
    std::vector<std::vector<std::size_t>> groups_;
    std::vector<Section> sections_;
    std::vector<std::string> errors_;
    std::map<std::size_t, FoundSection> pending_;
};

}  // namespace tgp::drawings
