#include "units/UnitCatalogue.h"

#include <array>
#include <cmath>
#include <string>

#include "core/Constants.h"
#include "core/Error.h"

namespace tgp {

namespace {

// One multiplication or division of a conversion; the catalogue's results depend on doing exactly
// these operations in exactly this order, so conversions are data, not folded factors.
struct Step {
    char op = 0;  // '*' or '/'; 0 ends a sequence
    double by = 0;
};
using Sequence = std::array<Step, 4>;

constexpr Step Mul(double by) {
    return {'*', by};
}
constexpr Step Div(double by) {
    return {'/', by};
}

double Apply(const Sequence& steps, double x) {
    for (const Step& step : steps) {
        if (step.op == 0) break;
        x = step.op == '*' ? x * step.by : x / step.by;
    }
    return x;
}

constexpr int kNoVia = -1;

// How one unit of a kind converts.
//   One-number kinds: read = `read` applied to the stored amount; write stores `write` applied to v.
//   Raw-and-factor kinds: read = (`read` applied to the factor) × raw; write stores raw = `write`
//   applied to v and factor = `pairFactor`.
//   With `via`, the unit goes through another unit's property: read = `read` applied to that unit's
//   reading; write = that unit's write of `write` applied to v.
struct UnitRule {
    bool valid = false;
    Sequence read{};
    Sequence write{};
    int via = kNoVia;
    double pairFactor = 0;
};

UnitRule Unit(Sequence read, Sequence write) {
    return {true, read, write, kNoVia, 0};
}
UnitRule Via(int via, Sequence read, Sequence write) {
    return {true, read, write, via, 0};
}
UnitRule Pair(double factor, Sequence readFactor, Sequence writeRaw = {}) {
    return {true, readFactor, writeRaw, kNoVia, factor};
}

using KindRules = std::array<UnitRule, kUnitIdCount>;

struct KindEntry {
    std::string_view name;
    bool rawAndFactor;
    KindRules rules;
};

constexpr double kInch = 25.4;
constexpr double kFoot = 304.8;
constexpr double kGravity = 9.81;
constexpr double kPoundForce = 4.44974115;  // newtons per pound, kilonewtons per kip
constexpr double kPsi = 6.897112576;        // KN/m² per psi
constexpr double kPci = 271.5398652;        // KN/m³ per pound per cubic inch

// Degrees use the library's shortened pi literal, dividing first in both directions.
KindRules AngleRules() {
    return {Unit({}, {}), Unit({Div(kPi), Mul(180)}, {Div(180), Mul(kPi)})};
}

KindRules LengthRules() {
    return {Unit({}, {}),
            Unit({Div(10)}, {Mul(10)}),
            Unit({Div(100)}, {Mul(100)}),
            Unit({Div(1000)}, {Mul(1000)}),
            Unit({Div(kInch)}, {Mul(kInch)}),
            Unit({Div(kFoot)}, {Mul(kFoot)})};
}

KindRules AreaRules() {
    return {Unit({}, {}),
            Unit({Div(100)}, {Mul(100)}),
            Unit({Div(10000)}, {Mul(10000)}),
            Unit({Div(1000000)}, {Mul(1000000)}),
            Unit({Div(kInch), Div(kInch)}, {Mul(kInch), Mul(kInch)}),
            Unit({Div(kFoot), Div(kFoot)}, {Mul(kFoot), Mul(kFoot)})};
}

KindRules VolumeRules() {
    return {Pair(1, {}),
            Pair(1000, {Div(1000)}),
            Pair(1000000, {Div(1000000)}),
            Pair(1000000000, {Div(1000000000)}),
            Pair(16387.064, {Div(kInch), Div(kInch), Div(kInch)}),
            Pair(kFoot * kFoot * kFoot, {Div(kFoot), Div(kFoot), Div(kFoot)})};
}

// Decimetres go through centimetres; metres put 10⁶ into both raw and factor (the pair differs from
// the other units' pairs, the amount does not); the powers use the floating power function.
KindRules MomentOfInertiaRules() {
    return {Pair(1, {}),
            Pair(10000, {Div(10000)}),
            Via(cm_UnitID, {Div(10000)}, {Mul(10000)}),
            Pair(std::pow(1000.0, 2), {Div(std::pow(1000.0, 4))}, {Mul(1000000)}),
            Pair(kInch * kInch * kInch * kInch, {Div(kInch), Div(kInch), Div(kInch), Div(kInch)}),
            Pair(std::pow(kFoot, 4), {Div(std::pow(kFoot, 4))})};
}

KindRules ForceRules() {
    return {Unit({}, {}),
            Unit({Mul(100)}, {Div(100)}),
            Unit({Mul(1000 / kGravity)}, {Mul(kGravity), Div(1000)}),
            Via(KG_unitID, {Div(1000)}, {Mul(1000)}),
            Unit({Mul(1000), Div(kPoundForce)}, {Mul(kPoundForce), Div(1000)}),
            Unit({Div(kPoundForce)}, {Mul(kPoundForce)}),
            Unit({Mul(1000)}, {Div(1000)})};
}

// Moments, line loads and densities share the id layout 0, 2, 3, 4, 5, 7: ton and kip go through
// kG and pound with a factor 1000.
KindRules ForceLengthRules(Sequence base, Sequence baseInverse, double kgFactor, double poundFactor,
                           UnitRule perMetre) {
    KindRules rules{};
    rules[KN_mm_unitID] = Unit(base, baseInverse);
    rules[KG_m_unitID] = Unit({Div(kgFactor)}, {Mul(kgFactor)});
    rules[ton_m_unitID] = Via(KG_m_unitID, {Div(1000)}, {Mul(1000)});
    rules[lb_in_unitID] = Unit({Div(poundFactor)}, {Mul(poundFactor)});
    rules[kip_in_unitID] = Via(lb_in_unitID, {Div(1000)}, {Mul(1000)});
    rules[KN_m_unitID] = perMetre;
    return rules;
}

KindRules ForceMomentRules() {
    return ForceLengthRules({}, {}, kGravity, 0.113023425, Unit({Div(1000)}, {Mul(1000)}));
}

KindRules ForcePerLineRules() {
    return ForceLengthRules({}, {}, 9.81e-06, 0.000175187, Unit({Mul(1000)}, {Div(1000)}));
}

KindRules ForceDensityRules() {
    return ForceLengthRules({Div(1000000000)}, {Mul(1000000000)}, 0.00981, kPci, Unit({}, {}));
}

// Pressure and force per area: storage KN/m².
KindRules PressureRules() {
    const UnitRule kgPerCm2 = Unit({Div(98.1)}, {Mul(98.1)});
    return {Unit({Div(1000000)}, {Mul(1000000)}),
            Unit({Div(100)}, {Mul(100)}),
            Unit({Div(0.00981)}, {Mul(0.00981)}),
            Via(KG_m_unitID, {Div(1000)}, {Mul(1000)}),
            Unit({Div(kPsi)}, {Mul(kPsi)}),
            Via(lb_in_unitID, {Div(1000)}, {Mul(1000)}),
            Unit({Div(1000)}, {Mul(1000)}),
            Unit({}, {}),
            Unit({Div(10000)}, {Mul(10000)}),
            kgPerCm2,
            kgPerCm2,  // the technical atmosphere: one kilogram-force per square centimetre
            Unit({Mul(1000)}, {Div(1000)}),
            Via(Pa_unitID, {Div(1000)}, {Mul(1000)}),
            Via(Pa_unitID, {Div(1000000)}, {Mul(1000000)})};
}

// Built on first use (two factors come from the power function), kept for the process.
const std::array<KindEntry, kKindCount>& Catalogue() {
    static const std::array<KindEntry, kKindCount> catalogue{{
        {"Angle", false, AngleRules()},
        {"Length", false, LengthRules()},
        {"Area", false, AreaRules()},
        {"Volume", true, VolumeRules()},
        {"MomentOfInertia", true, MomentOfInertiaRules()},
        {"Force", false, ForceRules()},
        {"Pressure", false, PressureRules()},
        {"ForcePerArea", false, PressureRules()},
        {"ForceMoment", false, ForceMomentRules()},
        {"ForcePerLine", false, ForcePerLineRules()},
        {"ForceDensity", false, ForceDensityRules()},
    }};
    return catalogue;
}

// The kind's rule for the id, or null when the id is not a unit of the kind.
const UnitRule* FindRule(const KindEntry& entry, int id) {
    if (id < 0 || id >= kUnitIdCount) return nullptr;
    const UnitRule& rule = entry.rules[static_cast<std::size_t>(id)];
    return rule.valid ? &rule : nullptr;
}

const UnitRule& RuleOf(const KindEntry& entry, DimensionObjectType kind, int id) {
    const UnitRule* rule = FindRule(entry, id);
    if (!rule)
        throw Error(Error::kInvalidUnit,
                    std::to_string(id) + " is an invalid UnitID for " + std::string(KindName(kind)));
    return *rule;
}

const KindEntry& EntryOf(DimensionObjectType kind) {
    if (!IsKnownKind(kind)) throw Error::InvalidProcedureCall();
    return Catalogue()[static_cast<std::size_t>(kind)];
}

// Floating overflow in a conversion is the runtime's overflow error.
double Checked(double result) {
    if (!std::isfinite(result)) throw Error::Overflow();
    return result;
}

double Read(const KindEntry& entry, DimensionObjectType kind, int id, const StoredAmount& amount) {
    const UnitRule& rule = RuleOf(entry, kind, id);
    if (rule.via != kNoVia) return Apply(rule.read, Read(entry, kind, rule.via, amount));
    if (entry.rawAndFactor) return Apply(rule.read, amount.factor) * amount.raw;
    return Apply(rule.read, amount.raw);
}

StoredAmount Write(const KindEntry& entry, DimensionObjectType kind, int id, double value) {
    const UnitRule& rule = RuleOf(entry, kind, id);
    const double converted = Apply(rule.write, value);
    if (rule.via != kNoVia) return Write(entry, kind, rule.via, converted);
    if (entry.rawAndFactor) return {converted, rule.pairFactor};
    return {converted, 0};
}

}  // namespace

std::string_view KindName(DimensionObjectType kind) {
    return IsKnownKind(kind) ? Catalogue()[static_cast<std::size_t>(kind)].name : std::string_view();
}

bool IsValidUnit(DimensionObjectType kind, int id) {
    return IsKnownKind(kind) && FindRule(EntryOf(kind), id) != nullptr;
}

std::vector<int16_t> ValidUnitIds(DimensionObjectType kind) {
    std::vector<int16_t> ids;
    for (int id = 0; id < kUnitIdCount; ++id)
        if (IsValidUnit(kind, id)) ids.push_back(static_cast<int16_t>(id));
    return ids;
}

double ReadAmount(DimensionObjectType kind, int id, const StoredAmount& amount) {
    return Checked(Read(EntryOf(kind), kind, id, amount));
}

StoredAmount WriteAmount(DimensionObjectType kind, int id, double value) {
    StoredAmount amount = Write(EntryOf(kind), kind, id, value);
    Checked(amount.raw);
    return amount;
}

void RequireValidUnit(DimensionObjectType kind, int id) {
    RuleOf(EntryOf(kind), kind, id);
}

}  // namespace tgp
