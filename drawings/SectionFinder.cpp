#include "drawings/SectionFinder.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/Error.h"
#include "profiles/Loop7s.h"
#include "profiles/LoopArrangement.h"
#include "profiles/LoopGroups.h"
#include "profiles/SegmentSweep.h"
#include "units/NumberText.h"

namespace tgp::drawings {

namespace {

// An outline's loop, or why it cannot be one.
struct BuiltLoop {
    std::shared_ptr<Loop7> loop;
    std::string error;
};

std::string PointText(const Point3& p) {
    return " at (" + FormatNumber(p[0]) + ", " + FormatNumber(p[1]) + ")";
}

BuiltLoop BuildLoop(const DrawnProfile& profile) {
    if (!profile.problem.empty()) return {nullptr, profile.problem};
    if (!profile.closed) return {nullptr, "is open: its last vertex does not meet the first"};
    // Fourth powers of the coordinates must stay finite for the moments.
    const auto usable = [](double v) { return std::fabs(v) <= 1e60; };
    const auto usablePoint = [&](const Point3& p) { return usable(p.x) && usable(p.y); };
    if (!std::all_of(profile.vertices.begin(), profile.vertices.end(), usablePoint) ||
        !std::all_of(profile.bulges.begin(), profile.bulges.end(), usable)) {
        return {nullptr, "has a coordinate or bulge out of range (not finite or beyond 1E+60)"};
    }
    auto loop = Loop7::Create();
    try {
        loop->InitFromVertices(profile.vertices, profile.bulges);
    } catch (const Error&) {
        // Only an overflow can stop the building here: an arc so flat (a bulge within about 1E-300
        // of 0) that its radius passes the number range.
        return {
            nullptr,
            "has an arc too flat to compute (its radius passes the number range; a bulge that small is 0)"};
    }
    // The properties check the loop for crossings themselves (error 5); only a loop that fails
    // that check is swept a second time, to name where it cuts itself.
    try {
        loop->InertiaBlock();
        return {loop, ""};
    } catch (const Error& e) {
        if (e.number() != 5 || loop->Count() == 0) return {nullptr, "encloses no area"};
        if (const auto crossing = FirstSelfIntersection(loop->Segments(), loop->IsClosed())) {
            return {nullptr, "cuts itself" + PointText(*crossing)};
        }
        return {nullptr, e.description()};
    }
}

// The box an outline's loop can reach, from its vertices and bulges alone: an arc lies within its
// chord's box grown by its rise (a bulge of at most 1) or by its circle's diameter; the margin
// covers the tolerance within which loops meet and the vertices that building a loop drops. None
// for an outline that building will reject.
std::optional<SegmentBox> ReachOf(const DrawnProfile& p) {
    const std::size_t n = p.VertexCount();
    if (!p.problem.empty() || !p.closed || n == 0 || p.vertices.size() != n) return std::nullopt;
    SegmentBox box = SegmentBox::Empty();
    double magnitude = 0, steepest = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const std::size_t next = (k + 1) % n;
        const double x0 = p.vertices[k].x, y0 = p.vertices[k].y, x1 = p.vertices[next].x,
                     y1 = p.vertices[next].y;
        const double b = std::fabs(p.bulges[k]);
        if (!(std::fabs(x0) <= 1e60 && std::fabs(y0) <= 1e60 && b <= 1e60)) return std::nullopt;
        const double chord = std::hypot(x1 - x0, y1 - y0);
        const double reach = b <= 1 ? b * chord / 2 : chord * (1 + b * b) / (2 * b);
        box.Include({std::min(x0, x1) - reach, std::min(y0, y1) - reach, std::max(x0, x1) + reach,
                     std::max(y0, y1) + reach});
        magnitude = std::max({magnitude, std::fabs(x0), std::fabs(y0)});
        steepest = std::max(steepest, b);
    }
    const double margin =
        4 * LoopDLine::kOnLineTolerance + 1e-4 * (1 + std::min(steepest, 1e6)) + 1e-9 * magnitude;
    return SegmentBox{box.xmin - margin, box.ymin - margin, box.xmax + margin, box.ymax + margin};
}

std::string Plural(std::size_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

// The depth of each loop of a section (loops around it), or why they are not one section.
std::string DepthsOf(const FoundSection& s, std::vector<int>& depths) {
    auto section = Loop7s::Create();
    for (const auto& loop : s.loops) section->Add(loop);
    if (const auto overlap = section->FirstOverlap()) {
        return "cannot be one section: " + s.outlines[overlap->first - 1]->name + " and " +
               s.outlines[overlap->second - 1]->name + " overlap (their interiors cross)";
    }
    for (std::size_t i = 1; i <= section->Count(); ++i) depths.push_back(section->Depth(i));
    return "";
}

// Names the section after its first outer outline and marks its holes, from the loops' depths.
void Describe(FoundSection& s, const std::vector<int>& depths) {
    std::size_t parts = 0;
    s.holes.resize(s.loops.size());
    for (std::size_t i = 0; i < s.loops.size(); ++i) {
        if (depths[i] == 0 && parts++ == 0) s.outer = s.outlines[i];
        s.holes[i] = depths[i] % 2 == 1;
        s.holeCount += s.holes[i];
    }
    s.name = s.outer->name;
    if (parts > 1) s.name += " and " + Plural(parts - 1, "more part", "more parts");
    if (s.holeCount > 0) s.name += " with " + Plural(s.holeCount, "hole", "holes");
}

}  // namespace

SectionFinder::SectionFinder(const std::vector<DrawnProfile>& profiles, bool eachOutline, SkipList* skipped)
    : profiles_(profiles), loops_(profiles.size()) {
    std::vector<std::size_t> free;
    std::map<int, std::vector<std::size_t>> groups;
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        if (eachOutline)
            items_.push_back({i, Item::Alone, i});
        else if (profiles[i].group >= 0)
            groups[profiles[i].group].push_back(i);
        else
            free.push_back(i);
    }
    for (auto& [group, members] : groups) {
        items_.push_back({members.front(), Item::Group, groups_.size()});
        groups_.push_back(std::move(members));
    }
    ArrangeFree(free, skipped);
    std::sort(items_.begin(), items_.end(), [](const Item& a, const Item& b) { return a.key < b.key; });
}

void SectionFinder::Emit(const std::function<void(FoundSection&&)>& emit) {
    for (std::size_t k = 0; k < items_.size(); ++k) {
        Produce(items_[k]);
        // An item's sections lie at or after its first outline: those before the next item's go.
        const std::size_t next = k + 1 < items_.size() ? items_[k + 1].key : profiles_.size();
        while (!pending_.empty() && pending_.begin()->first < next) {
            emit(std::move(pending_.begin()->second));
            pending_.erase(pending_.begin());
        }
    }
}

// Free outlines whose reaches meet are built now and grouped; the others wait for their turn.
void SectionFinder::ArrangeFree(const std::vector<std::size_t>& free, SkipList* skipped) {
    const std::vector<bool> partnered = Partnered(free);
    std::vector<std::size_t> built;
    std::vector<std::shared_ptr<Loop7>> loops;
    for (std::size_t k = 0; k < free.size(); ++k) {
        const std::size_t i = free[k];
        if (!partnered[k]) {
            items_.push_back({i, Item::Alone, i});
            continue;
        }
        BuiltLoop b = BuildLoop(profiles_[i]);
        if (!b.loop) {
            items_.push_back({i, Item::Rejected, errors_.size()});
            errors_.push_back(std::move(b.error));
            continue;
        }
        built.push_back(i);
        loops.push_back(std::move(b.loop));
    }
    for (std::size_t k = 0; k < built.size(); ++k) loops_[built[k]] = loops[k];
    const LoopGroups groups = GroupByContainment(loops);
    for (const auto& members : groups.sections) {
        Section section;
        for (std::size_t m : members) {
            section.positions.push_back(built[m]);
            section.depths.push_back(groups.depths[m]);
        }
        items_.push_back({section.positions.front(), Item::Section, sections_.size()});
        sections_.push_back(std::move(section));
    }
    for (std::size_t r : groups.repeats) {
        const DrawnProfile& p = profiles_[built[r]];
        loops_[built[r]].reset();
        if (skipped)
            Count(*skipped,
                  p.type.empty() ? "outline that repeats another" : p.type + " that repeats an outline");
    }
    for (const auto& [a, b] : groups.overlaps) {
        items_.push_back({built[a], Item::Overlap, built[b]});
        items_.push_back({built[b], Item::Overlap, built[a]});
        loops_[built[a]].reset();
        loops_[built[b]].reset();
    }
}

// Which of the outlines reach another one's box (an R-tree of their reaches).
std::vector<bool> SectionFinder::Partnered(const std::vector<std::size_t>& free) const {
    std::vector<SegmentBox> reaches;
    std::vector<bool> partnered(free.size(), false);
    reaches.reserve(free.size());
    for (std::size_t i : free) reaches.push_back(ReachOf(profiles_[i]).value_or(SegmentBox::Empty()));
    for (const auto& [a, b] : BoxesThatMeet(reaches)) partnered[a] = partnered[b] = true;
    return partnered;
}

void SectionFinder::Produce(const Item& item) {
    switch (item.kind) {
        case Item::Alone: return ProduceGroup({item.index});
        case Item::Group: return ProduceGroup(groups_[item.index]);
        case Item::Section:
            return ProduceSection(sections_[item.index].positions, &sections_[item.index].depths);
        case Item::Overlap:
            return Reject(item.key, "overlaps " + profiles_[item.index].name + " (their interiors cross)");
        case Item::Rejected: return Reject(item.key, errors_[item.index]);
    }
}

void SectionFinder::Reject(std::size_t position, std::string reason) {
    FoundSection rejected;
    rejected.outer = &profiles_[position];
    rejected.name = rejected.outer->name;
    rejected.outlines = {rejected.outer};
    rejected.error = std::move(reason);
    pending_.emplace(position, std::move(rejected));
}

// Outlines that form one section whatever their arrangement, built now: each that cannot be built
// is rejected at its own position, the rest are the section.
void SectionFinder::ProduceGroup(const std::vector<std::size_t>& members) {
    std::vector<std::size_t> built;
    for (std::size_t i : members) {
        BuiltLoop b = BuildLoop(profiles_[i]);
        if (!b.loop) {
            Reject(i, std::move(b.error));
            continue;
        }
        loops_[i] = std::move(b.loop);
        built.push_back(i);
    }
    if (!built.empty()) ProduceSection(built);
}

// A section of built loops, which the finder lets go once it is handed on. `knownDepths`, when
// given, tells how the loops lie (they do not overlap); otherwise they are arranged here.
void SectionFinder::ProduceSection(const std::vector<std::size_t>& positions,
                                   const std::vector<int>* knownDepths) {
    FoundSection s;
    for (std::size_t i : positions) {
        s.outlines.push_back(&profiles_[i]);
        s.loops.push_back(std::move(loops_[i]));
    }
    s.outer = s.outlines.front();
    s.name = s.outer->name;
    try {
        std::vector<int> depths;
        s.error = knownDepths ? "" : DepthsOf(s, depths);
        if (s.error.empty()) Describe(s, knownDepths ? *knownDepths : depths);
    } catch (const Error& e) {
        s.error = e.description();
    }
    pending_.emplace(positions.front(), std::move(s));
}

}  // namespace tgp::drawings
