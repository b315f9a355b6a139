#include "drawings/SectionAnalysis.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <numbers>
#include <numeric>
#include <optional>

#include "core/Error.h"
#include "profiles/Loop7.h"
#include "profiles/Loop7s.h"
#include "profiles/LoopArrangement.h"
#include "profiles/SectionModuli.h"
#include "profiles/SegmentSweep.h"
#include "units/DVolume.h"
#include "units/NumberText.h"

namespace tgp::drawings {

namespace {

using Units = std::shared_ptr<UnitSetting>;

template <class Q>
double In(const std::shared_ptr<Q>& quantity, const Units& units) {
    return quantity->Value(units);
}

double LengthIn(double millimetres, const Units& units) {
    auto length = std::make_shared<DLength>();
    length->Millimetres(millimetres);
    return In(length, units);
}

std::string PointText(const std::vector<Point>& points) {
    if (points.empty()) return "";
    return " at (" + FormatNumber(points[0][0]) + ", " + FormatNumber(points[0][1]) + ")";
}

// Rounding noise (a centroid 1E-15 off the axis, a product of 1E-55) would print as digits and
// turn the principal axes of a symmetric figure at random: values below 1E-12 of their scale are 0.
// I1 is the larger principal moment and the angle turns x onto its axis, in (-90°, 90°]; with
// principal moments that agree that closely every axis is principal and the angle is 0.
void DropRoundingNoiseAndFindPrincipalAxes(SectionValues& v, const Units& units) {
    constexpr double kNoise = 1e-12;
    auto snap = [](double& value, double scale) {
        if (std::fabs(value) <= kNoise * scale) value = 0;
    };
    snap(v.xc, v.perimeter);
    snap(v.yc, v.perimeter);
    const double momentScale = std::max(std::fabs(v.ix), std::fabs(v.iy));
    snap(v.ixy, momentScale);
    const PrincipalMoments p = MajorAndMinor(v.ix, v.iy, v.ixy);
    v.i1 = p.Major;
    v.i2 = p.Minor;
    double angle = p.Angle;
    if (v.ixy == 0) {  // the x and y axes are principal: report their own moments exactly
        v.i1 = std::max(v.ix, v.iy);
        v.i2 = std::min(v.ix, v.iy);
    }
    if (std::fabs(v.i1 - v.i2) <= kNoise * momentScale) angle = 0;
    // The tool's own angle, converted with the full-precision pi (the quantity classes keep the
    // library's shortened one): a quarter turn reads exactly 90 degrees.
    v.angle = units->UnitID(DAngleObject) == Degree_UnitID ? angle * (180 / std::numbers::pi) : angle;
}

double ModulusIn(double cubicMillimetres, const Units& units) {
    auto modulus = std::make_shared<DVolume>();
    modulus->Millimetres(cubicMillimetres);
    return In(modulus, units);
}

// Segment k of an outline, from vertex k to the next (the last back to the first).
LoopDLine SegmentOf(const DrawnProfile& p, std::size_t k) {
    const std::size_t next = (k + 1) % p.VertexCount();
    LoopDLine segment;
    segment.Init({p.xy[2 * k], p.xy[2 * k + 1], 0}, {p.xy[2 * next], p.xy[2 * next + 1], 0}, p.bulges[k]);
    return segment;
}

// The block of an outline that follows elliptic arcs: the arcs' exact integrals in place of those
// of the circular arcs that stand for them, about the outline's mean vertex as a loop takes them.
std::shared_ptr<InertiaBlock> ExactBlock(const DrawnProfile& p) {
    const std::size_t n = p.VertexCount();
    PlanePoint O{0, 0, 0};
    for (std::size_t k = 0; k < n; ++k) O = Plus(O, {p.xy[2 * k], p.xy[2 * k + 1], 0});
    O = Scaled(O, 1.0 / static_cast<double>(n));
    SegmentIntegrals sum;
    double perimeter = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const int curve = k < p.curveOf.size() ? p.curveOf[k] : -1;
        if (curve >= 0) {
            if (k > 0 && p.curveOf[k - 1] == curve) continue;  // the curve was taken whole
            const EllipticArc& arc = p.curves[static_cast<std::size_t>(curve)];
            sum += IntegralsAbout(arc, O);
            perimeter += Length(arc);
            continue;
        }
        const LoopDLine segment = SegmentOf(p, k);
        sum += segment.IntegralsAbout(O);
        perimeter += segment.Length();
    }
    return BlockFromIntegrals(sum, O, perimeter);
}

// The section's composite block: its loops' blocks (or their exact ones), material positive and
// holes negative, joined in order.
std::shared_ptr<InertiaBlock> CompositeOf(const std::vector<std::shared_ptr<Loop7>>& loops,
                                          const std::vector<bool>& holes,
                                          const std::vector<std::shared_ptr<InertiaBlock>>& exact) {
    std::shared_ptr<InertiaBlock> composite;
    for (std::size_t i = 0; i < loops.size(); ++i) {
        const auto& own = exact[i];
        auto block = (own ? own : loops[i]->InertiaBlock())->Copy();
        if ((block->Area()->Millimetres() < 0) != holes[i]) block->Inverse();
        if (composite)
            composite->Join(*block);
        else
            composite = std::move(block);
    }
    return composite;
}

// The box around outlines that follow elliptic arcs: the arcs' own extremes, not their stand-ins'.
SegmentBox BoxOf(const std::vector<const DrawnProfile*>& members,
                 const std::vector<std::shared_ptr<Loop7>>& loops) {
    SegmentBox box = SegmentBox::Empty();
    for (std::size_t i = 0; i < members.size(); ++i) {
        const DrawnProfile& p = *members[i];
        if (p.curves.empty()) {
            for (const LoopDLine& segment : loops[i]->Segments()) box.Include(segment.BoundingBox());
            continue;
        }
        for (const EllipticArc& arc : p.curves) box.Include(BoundingBox(arc));
        for (std::size_t k = 0; k < p.VertexCount(); ++k) {
            if (p.curveOf[k] < 0) box.Include(SegmentOf(p, k).BoundingBox());
        }
    }
    return box;
}

SectionValues ValuesOf(const std::vector<std::shared_ptr<Loop7>>& loops, const std::vector<bool>& holes,
                       const std::vector<const DrawnProfile*>& members,
                       const std::vector<std::shared_ptr<InertiaBlock>>& exact, const Units& units) {
    auto block = CompositeOf(loops, holes, exact);
    const Point c = block->Centroid();
    SectionValues v{};
    v.area = In(block->Area(), units);
    v.perimeter = In(block->Perimeter(), units);
    v.xc = LengthIn(c[0], units);
    v.yc = LengthIn(c[1], units);
    v.ix = In(block->MomentOfInertiaX(), units);
    v.iy = In(block->MomentOfInertiaY(), units);
    v.ixy = In(block->ProductOfInertiaXY(), units);
    v.rx = In(block->RadiusOfGyrationX(), units);
    v.ry = In(block->RadiusOfGyrationY(), units);
    DropRoundingNoiseAndFindPrincipalAxes(v, units);
    const bool curved =
        std::any_of(members.begin(), members.end(), [](const DrawnProfile* p) { return !p->curves.empty(); });
    const SegmentBox box = curved ? BoxOf(members, loops) : SegmentBox{};
    const SectionModuli m = ComputeModuli(loops, holes, *block, curved ? &box : nullptr);
    v.top = LengthIn(m.top, units);
    v.bottom = LengthIn(m.bottom, units);
    v.left = LengthIn(m.left, units);
    v.right = LengthIn(m.right, units);
    v.welxTop = ModulusIn(m.wxTop, units);
    v.welxBottom = ModulusIn(m.wxBottom, units);
    v.welyLeft = ModulusIn(m.wyLeft, units);
    v.welyRight = ModulusIn(m.wyRight, units);
    v.wplx = ModulusIn(m.zx, units);
    v.wply = ModulusIn(m.zy, units);
    v.plasticY = LengthIn(m.plasticAxisY, units);
    v.plasticX = LengthIn(m.plasticAxisX, units);
    for (double* axis : {&v.plasticY, &v.plasticX}) {
        if (std::fabs(*axis) <= 1e-12 * v.perimeter) *axis = 0;
    }
    return v;
}

// An outline's loop, or why it cannot be one.
struct BuiltLoop {
    std::shared_ptr<Loop7> loop;
    std::string error;
};

BuiltLoop BuildLoop(const DrawnProfile& profile) {
    if (!profile.problem.empty()) return {nullptr, profile.problem};
    if (!profile.closed) return {nullptr, "is open: its last vertex does not meet the first"};
    // Fourth powers of the coordinates must stay finite for the moments.
    const auto usable = [](double v) { return std::fabs(v) <= 1e60; };
    if (!std::all_of(profile.xy.begin(), profile.xy.end(), usable) ||
        !std::all_of(profile.bulges.begin(), profile.bulges.end(), usable)) {
        return {nullptr, "has a coordinate or bulge out of range (not finite or beyond 1E+60)"};
    }
    auto loop = Loop7::Create();
    try {
        loop->InitFromCoordinates(profile.xy, profile.bulges);
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
            return {nullptr, "cuts itself" + PointText({ToPoint(*crossing)})};
        }
        return {nullptr, e.description()};
    }
}

std::string Plural(std::size_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

// The depth of each loop of a section (loops around it), or the first two (from 1) that overlap.
std::optional<std::pair<std::size_t, std::size_t>> DepthsOf(const std::vector<std::shared_ptr<Loop7>>& loops,
                                                            std::vector<int>& depths) {
    auto section = Loop7s::Create();
    for (const auto& loop : loops) section->Add(loop);
    if (const auto overlap = section->FirstOverlap()) return overlap;
    for (std::size_t i = 1; i <= section->Count(); ++i) depths.push_back(section->Depth(i));
    return std::nullopt;
}

// One section of loops, named after its first outer outline; `members` are the outlines in file
// order, with each loop at the same position. `knownDepths`, when given, tells how the loops lie
// (they do not overlap); otherwise they are arranged here.
ProfileOutcome AnalyseSection(const std::vector<const DrawnProfile*>& members,
                              const std::vector<std::shared_ptr<Loop7>>& loops, const Units& units,
                              const std::vector<int>* knownDepths = nullptr) {
    ProfileOutcome outcome;
    const DrawnProfile* outer = members.front();
    std::size_t parts = 0, holes = 0;
    try {
        std::vector<int> depths;
        const auto overlap = knownDepths ? std::nullopt : DepthsOf(loops, depths);
        if (overlap) {
            outcome.error = "cannot be one section: " + members[overlap->first - 1]->name + " and " +
                            members[overlap->second - 1]->name + " overlap (their interiors cross)";
        } else {
            if (knownDepths) depths = *knownDepths;
            std::vector<bool> hole(loops.size());
            for (std::size_t i = 0; i < loops.size(); ++i) {
                if (depths[i] == 0 && parts++ == 0) outer = members[i];
                hole[i] = depths[i] % 2 == 1;
                holes += hole[i];
            }
            std::vector<std::shared_ptr<InertiaBlock>> exact;
            for (const DrawnProfile* member : members)
                exact.push_back(member->curves.empty() ? nullptr : ExactBlock(*member));
            outcome.values = ValuesOf(loops, hole, members, exact, units);
        }
    } catch (const Error& e) {
        outcome.error = e.description();
        outcome.values.reset();
    }
    outcome.name = outer->name;
    if (parts > 1) outcome.name += " and " + Plural(parts - 1, "more part", "more parts");
    if (holes > 0) outcome.name += " with " + Plural(holes, "hole", "holes");
    outcome.type = outer->type;
    outcome.handle = outer->handle;
    outcome.layer = outer->layer;
    outcome.loops = static_cast<int>(loops.size());
    outcome.holes = static_cast<int>(holes);
    return outcome;
}

// Two loops that cover the same region (the same outline drawn twice, a hatch on its outline).
bool SameRegion(Loop7& a, Loop7& b) {
    const double area = a.AreaAbs();
    auto near = [](double x, double y, double scale) {
        return std::fabs(std::fabs(x) - std::fabs(y)) <= 1e-9 * scale;
    };
    const Point ca = a.Centroid(), cb = b.Centroid();
    const double moments = std::fabs(a.MomentOfInertiaX()) + std::fabs(a.MomentOfInertiaY());
    return near(area, b.AreaAbs(), area) &&
           std::hypot(ca[0] - cb[0], ca[1] - cb[1]) <= 1e-9 * std::sqrt(area) &&
           near(a.MomentOfInertiaX(), b.MomentOfInertiaX(), moments) &&
           near(a.MomentOfInertiaY(), b.MomentOfInertiaY(), moments);
}

// Groups loops that belong to no explicit group by containment and touch: each outermost loop with
// everything inside it, and outermost loops that touch one another together. A pair that overlaps
// is left out (both reported) until none does.
std::vector<std::vector<std::size_t>> GroupByContainment(
    const std::vector<std::shared_ptr<Loop7>>& loops,
    std::vector<std::pair<std::size_t, std::size_t>>& overlaps, std::vector<std::size_t>& repeats,
    std::vector<int>& depths) {
    const LoopArrangement placed(loops);
    // Overlapping pairs in order, each while both loops are still in play: a repeat loses its
    // later copy, any other pair both loops.
    std::vector<bool> kept(loops.size(), true);
    for (const auto& [first, second] : placed.Overlaps()) {
        if (!kept[first] || !kept[second]) continue;
        kept[second] = false;
        if (SameRegion(*loops[first], *loops[second])) {
            repeats.push_back(second);
            continue;
        }
        kept[first] = false;
        overlaps.emplace_back(first, second);
    }
    // The outermost loop of each kept loop, then outermost loops that touch share one group.
    std::vector<double> size(loops.size());
    for (std::size_t i = 0; i < loops.size(); ++i) size[i] = loops[i]->AreaAbs();
    const auto parents = placed.Parents(size, kept);
    depths = LoopArrangement::Depths(parents);
    const auto roots = LoopArrangement::Roots(parents, depths);
    std::vector<std::size_t> group(loops.size());
    std::iota(group.begin(), group.end(), 0);
    auto find = [&](std::size_t i) {
        while (group[i] != i) i = group[i] = group[group[i]];
        return i;
    };
    for (const auto& [i, j] : placed.Meetings()) {
        if (kept[i] && kept[j] && roots[i] == i && roots[j] == j) group[find(j)] = find(i);
    }
    std::vector<std::vector<std::size_t>> sections;
    std::vector<std::int64_t> sectionOf(loops.size(), -1);
    for (std::size_t i = 0; i < loops.size(); ++i) {
        if (!kept[i]) continue;
        const std::size_t g = find(roots[i]);
        if (sectionOf[g] < 0) {
            sectionOf[g] = static_cast<std::int64_t>(sections.size());
            sections.emplace_back();
        }
        sections[static_cast<std::size_t>(sectionOf[g])].push_back(i);
    }
    return sections;
}

ProfileOutcome Rejection(const DrawnProfile& p, std::string error) {
    ProfileOutcome rejected;
    rejected.name = p.name;
    rejected.type = p.type;
    rejected.handle = p.handle;
    rejected.layer = p.layer;
    rejected.error = std::move(error);
    return rejected;
}

// The box an outline's loop can reach, from its vertices and bulges alone: an arc lies within its
// chord's box grown by its rise (a bulge of at most 1) or by its circle's diameter; the margin
// covers the tolerance within which loops meet and the vertices that building a loop drops. None
// for an outline that building will reject.
std::optional<SegmentBox> ReachOf(const DrawnProfile& p) {
    const std::size_t n = p.VertexCount();
    if (!p.problem.empty() || !p.closed || n == 0 || p.xy.size() != 2 * n) return std::nullopt;
    SegmentBox box = SegmentBox::Empty();
    double magnitude = 0, steepest = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const std::size_t next = (k + 1) % n;
        const double x0 = p.xy[2 * k], y0 = p.xy[2 * k + 1], x1 = p.xy[2 * next], y1 = p.xy[2 * next + 1];
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

// The sections of a file's outlines handed on one at a time in file order (each filed under the
// position of its first outline), computed when their turn comes: an outline whose reach meets no
// other outline's is built, analysed and let go on its own, so that a drawing of many separate
// parts never holds all their loops at once. Outlines whose reaches meet are built together and
// grouped by containment and touch; the loops of an explicit group (a text profile) form one section.
class InFileOrder {
  public:
    InFileOrder(const std::vector<DrawnProfile>& profiles, const Units& units, bool eachLoop,
                SkipList* skipped)
        : profiles_(profiles), units_(units), loops_(profiles.size()) {
        std::vector<std::size_t> free;
        std::map<int, std::vector<std::size_t>> groups;
        for (std::size_t i = 0; i < profiles.size(); ++i) {
            if (eachLoop)
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

    void Emit(const std::function<void(ProfileOutcome&&)>& emit) {
        for (std::size_t k = 0; k < items_.size(); ++k) {
            Produce(items_[k]);
            // An item's outcomes lie at or after its first outline: those before the next item's go.
            const std::size_t next = k + 1 < items_.size() ? items_[k + 1].key : profiles_.size();
            while (!pending_.empty() && pending_.begin()->first < next) {
                emit(std::move(pending_.begin()->second));
                pending_.erase(pending_.begin());
            }
        }
    }

  private:
    struct Item {
        std::size_t key;  // the position of its first outline
        enum Kind { Alone, Group, Section, Overlap, Rejected } kind;
        std::size_t
            index;  // Alone, Overlap, Rejected: the other outline or the outline; Group, Section: which
    };

    // Free outlines whose reaches meet are built now and grouped; the others wait for their turn.
    void ArrangeFree(const std::vector<std::size_t>& free, SkipList* skipped) {
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
        std::vector<std::pair<std::size_t, std::size_t>> overlaps;
        std::vector<std::size_t> repeats;
        std::vector<int> depths;
        for (const auto& members : GroupByContainment(loops, overlaps, repeats, depths)) {
            Section section;
            for (std::size_t m : members) {
                section.positions.push_back(built[m]);
                section.depths.push_back(depths[m]);
            }
            items_.push_back({section.positions.front(), Item::Section, sections_.size()});
            sections_.push_back(std::move(section));
        }
        for (std::size_t r : repeats) {
            const DrawnProfile& p = profiles_[built[r]];
            loops_[built[r]].reset();
            if (skipped)
                Count(*skipped,
                      p.type.empty() ? "outline that repeats another" : p.type + " that repeats an outline");
        }
        for (const auto& [a, b] : overlaps) {
            items_.push_back({built[a], Item::Overlap, built[b]});
            items_.push_back({built[b], Item::Overlap, built[a]});
            loops_[built[a]].reset();
            loops_[built[b]].reset();
        }
    }

    // Which of the outlines reach another one's box (an R-tree of their reaches).
    std::vector<bool> Partnered(const std::vector<std::size_t>& free) const {
        std::vector<SegmentBox> reaches;
        std::vector<bool> partnered(free.size(), false);
        reaches.reserve(free.size());
        for (std::size_t i : free) reaches.push_back(ReachOf(profiles_[i]).value_or(SegmentBox::Empty()));
        for (const auto& [a, b] : BoxesThatMeet(reaches)) partnered[a] = partnered[b] = true;
        return partnered;
    }

    void Produce(const Item& item) {
        switch (item.kind) {
            case Item::Alone: return ProduceGroup({item.index});
            case Item::Group: return ProduceGroup(groups_[item.index]);
            case Item::Section:
                return ProduceSection(sections_[item.index].positions, &sections_[item.index].depths);
            case Item::Overlap:
                pending_.emplace(item.key,
                                 Rejection(profiles_[item.key], "overlaps " + profiles_[item.index].name +
                                                                    " (their interiors cross)"));
                return;
            case Item::Rejected:
                pending_.emplace(item.key, Rejection(profiles_[item.key], errors_[item.index]));
                return;
        }
    }

    // Outlines that form one section whatever their arrangement, built now: each that cannot be
    // built is rejected at its own position, the rest are the section.
    void ProduceGroup(const std::vector<std::size_t>& members) {
        std::vector<std::size_t> built;
        for (std::size_t i : members) {
            BuiltLoop b = BuildLoop(profiles_[i]);
            if (!b.loop) {
                pending_.emplace(i, Rejection(profiles_[i], std::move(b.error)));
                continue;
            }
            loops_[i] = std::move(b.loop);
            built.push_back(i);
        }
        if (!built.empty()) ProduceSection(built);
    }

    // A section of built loops, which are let go once it is analysed.
    void ProduceSection(const std::vector<std::size_t>& positions, const std::vector<int>* depths = nullptr) {
        std::vector<const DrawnProfile*> outlines;
        std::vector<std::shared_ptr<Loop7>> loops;
        for (std::size_t i : positions) {
            outlines.push_back(&profiles_[i]);
            loops.push_back(std::move(loops_[i]));
        }
        pending_.emplace(positions.front(), AnalyseSection(outlines, loops, units_, depths));
    }

    const std::vector<DrawnProfile>& profiles_;
    const Units& units_;
    std::vector<std::shared_ptr<Loop7>> loops_;  // built and waiting, by position
    std::vector<Item> items_;
    struct Section {
        std::vector<std::size_t> positions;
        std::vector<int> depths;  // of each loop, from the grouping
    };
    std::vector<std::vector<std::size_t>> groups_;
    std::vector<Section> sections_;
    std::vector<std::string> errors_;
    std::map<std::size_t, ProfileOutcome> pending_;
};

}  // namespace

void AnalyseProfiles(const std::vector<DrawnProfile>& profiles, const std::shared_ptr<UnitSetting>& units,
                     bool eachLoop, SkipList* skipped, const std::function<void(ProfileOutcome&&)>& emit) {
    InFileOrder(profiles, units, eachLoop, skipped).Emit(emit);
}

std::vector<ProfileOutcome> AnalyseProfiles(const std::vector<DrawnProfile>& profiles,
                                            const std::shared_ptr<UnitSetting>& units, bool eachLoop,
                                            SkipList* skipped) {
    std::vector<ProfileOutcome> outcomes;
    AnalyseProfiles(profiles, units, eachLoop, skipped,
                    [&](ProfileOutcome&& o) { outcomes.push_back(std::move(o)); });
    return outcomes;
}

ProfileOutcome AnalyseProfile(const DrawnProfile& profile, const std::shared_ptr<UnitSetting>& units) {
    return AnalyseProfiles({profile}, units, true).front();
}

}  // namespace tgp::drawings
