#include "drawings/SectionAnalysis.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/Error.h"
#include "drawings/SectionFinder.h"
#include "profiles/FlexuralShear.h"
#include "profiles/Loop7.h"
#include "profiles/Loop7s.h"
#include "profiles/SaintVenantTorsion.h"
#include "profiles/SectionModuli.h"
#include "units/DArea.h"
#include "units/DMomentOfInertia.h"
#include "units/DVolume.h"

namespace tgp::drawings {

namespace {

using Units = std::shared_ptr<UnitSetting>;

template <class Q>
double In(const std::shared_ptr<Q>& quantity, const Units& units) {
    return quantity->Value(units);
}

// A value in millimetres (to the quantity's power) in the report's unit of the quantity.
template <class Q>
double ValueIn(double millimetres, const Units& units) {
    return In(FromMillimetres<Q>(millimetres), units);
}

double LengthIn(double millimetres, const Units& units) {
    return ValueIn<DLength>(millimetres, units);
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
    return ValueIn<DVolume>(cubicMillimetres, units);
}

// Segment k of an outline, from vertex k to the next (the last back to the first).
LoopDLine SegmentOf(const DrawnProfile& p, std::size_t k) {
    const std::size_t next = (k + 1) % p.VertexCount();
    LoopDLine segment;
    segment.Init(p.vertices[k], p.vertices[next], p.bulges[k]);
    return segment;
}

// The block of an outline that follows elliptic arcs: the arcs' exact integrals in place of those
// of the circular arcs that stand for them, about the outline's mean vertex as a loop takes them.
std::shared_ptr<InertiaBlock> ExactBlock(const DrawnProfile& p) {
    const std::size_t n = p.VertexCount();
    Point3 O{0, 0, 0};
    for (std::size_t k = 0; k < n; ++k) O = Plus(O, p.vertices[k]);
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

// The rounding of a solution (1E-14 of the size) would print as digits where symmetry makes a value 0.
Point3 Tidied(Point3 p, double size) {
    for (double* v : {&p.x, &p.y})
        if (std::fabs(*v) <= 1e-9 * size) *v = 0;
    return p;
}

// Torsion and shear in the report's units: J a second moment, Wt a modulus, Iw the length unit to
// the sixth.
TorsionValues TorsionOf(const std::vector<std::shared_ptr<Loop7>>& loops, const Units& units,
                        double poisson) {
    auto section = Loop7s::Create();
    for (const auto& loop : loops) section->Add(loop);
    const SaintVenantTorsion torsion(*section);
    const FlexuralShear shear(torsion, poisson);
    const double perMillimetre = LengthIn(1, units), size = std::sqrt(section->Area());
    const Point3 stress = torsion.MaximumShearStressAt();
    const Point3 centre = Tidied(torsion.ShearCentre(), size), elastic = Tidied(shear.ShearCentre(), size);
    const SaintVenantTorsion::Monosymmetry beta = torsion.MonosymmetryConstants();
    const Point3 betas = Tidied({beta.major, beta.minor, 0}, size);  // as a pair
    return {ValueIn<DMomentOfInertia>(torsion.TorsionConstant(), units),
            torsion.WarpingConstant() * std::pow(perMillimetre, 6),
            LengthIn(centre.x, units),
            LengthIn(centre.y, units),
            ModulusIn(torsion.TorsionalModulus(), units),
            LengthIn(stress.x, units),
            LengthIn(stress.y, units),
            torsion.ErrorEstimate(),
            LengthIn(betas.x, units),
            LengthIn(betas.y, units),
            poisson,
            LengthIn(elastic.x, units),
            LengthIn(elastic.y, units),
            ValueIn<DArea>(shear.ShearAreaX(), units),
            ValueIn<DArea>(shear.ShearAreaY(), units),
            ValueIn<DArea>(shear.ShearArea1(), units),
            ValueIn<DArea>(shear.ShearArea2(), units)};
}

// The torsion values, or why there are none (the section's other values stand).
void TryTorsion(ProfileOutcome& outcome, const std::vector<std::shared_ptr<Loop7>>& loops, const Units& units,
                double poisson) {
    try {
        outcome.torsion = TorsionOf(loops, units, poisson);
    } catch (const Error& e) {
        outcome.torsionError = e.description();
    }
}

// The section's values, or why it has none; named after its outer outline's entity.
ProfileOutcome Analyse(FoundSection&& s, const Units& units, TorsionRequest torsion) {
    ProfileOutcome outcome;
    outcome.name = std::move(s.name);
    outcome.type = s.outer->type;
    outcome.handle = s.outer->handle;
    outcome.layer = s.outer->layer;
    outcome.loops = static_cast<int>(std::max<std::size_t>(1, s.loops.size()));
    outcome.holes = static_cast<int>(s.holeCount);
    outcome.error = std::move(s.error);
    if (!outcome.error.empty()) return outcome;
    try {
        std::vector<std::shared_ptr<InertiaBlock>> exact;
        for (const DrawnProfile* outline : s.outlines)
            exact.push_back(outline->curves.empty() ? nullptr : ExactBlock(*outline));
        outcome.values = ValuesOf(s.loops, s.holes, s.outlines, exact, units);
        if (torsion.wanted) TryTorsion(outcome, s.loops, units, torsion.poisson);
    } catch (const Error& e) {
        outcome.error = e.description();
    }
    return outcome;
}

}  // namespace

void AnalyseProfiles(const std::vector<DrawnProfile>& profiles, const std::shared_ptr<UnitSetting>& units,
                     bool eachLoop, SkipList* skipped, const std::function<void(ProfileOutcome&&)>& emit,
                     TorsionRequest torsion) {
    SectionFinder(profiles, eachLoop, skipped).Emit([&](FoundSection&& s) {
        std::vector<std::size_t> outlines;
        for (const DrawnProfile* outline : s.outlines)
            outlines.push_back(static_cast<std::size_t>(outline - profiles.data()));
        if (outlines.empty()) outlines.push_back(static_cast<std::size_t>(s.outer - profiles.data()));
        std::vector<bool> holes = s.holes;
        holes.resize(outlines.size(), false);
        ProfileOutcome outcome = Analyse(std::move(s), units, torsion);
        outcome.outlines = std::move(outlines);
        outcome.isHole = std::move(holes);
        emit(std::move(outcome));
    });
}

std::vector<ProfileOutcome> AnalyseProfiles(const std::vector<DrawnProfile>& profiles,
                                            const std::shared_ptr<UnitSetting>& units, bool eachLoop,
                                            SkipList* skipped, TorsionRequest torsion) {
    std::vector<ProfileOutcome> outcomes;
    AnalyseProfiles(
        profiles, units, eachLoop, skipped, [&](ProfileOutcome&& o) { outcomes.push_back(std::move(o)); },
        torsion);
    return outcomes;
}

ProfileOutcome AnalyseProfile(const DrawnProfile& profile, const std::shared_ptr<UnitSetting>& units) {
    return AnalyseProfiles({profile}, units, true).front();
}

}  // namespace tgp::drawings
