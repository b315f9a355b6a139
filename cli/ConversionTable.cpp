// Prints one length, one force and one pressure in every unit of their kinds, with the unit symbols.
#include <fmt/core.h>

#include <memory>
#include <string>

#include "core/Error.h"
#include "units/DForce.h"
#include "units/DLength.h"
#include "units/DPressure.h"
#include "units/NumberText.h"
#include "units/UnitCatalogue.h"
#include "units/UnitSymbols.h"

namespace {

constexpr int16_t kDecimals = 6;

void PrintTable(const tgp::Quantity& quantity, const std::string& title) {
    const tgp::DimensionObjectType kind = quantity.DimensionType();
    fmt::print("{} ({})\n", title, tgp::KindName(kind));
    fmt::print("  {:>2}  {:<8}  {:>16}\n", "id", "unit", "value");
    for (int16_t id : tgp::ValidUnitIds(kind))
        fmt::print("  {:>2}  {:<8}  {:>16}\n", id, tgp::GetUnitString(kind, id),
                   tgp::FormatNumber(quantity.Value(id), kDecimals));
    fmt::print("\n");
}

}  // namespace

int main() {
    try {
        tgp::DLength length;
        length.Millimetres(1234.5);
        tgp::DForce force;
        force.KN(12.5);
        tgp::DPressure pressure;
        pressure.N_mm2(2.5);

        fmt::print("Tessary Geometry Pro: unit conversion table\n\n");
        PrintTable(length, "A length of " + length.ValueToString(tgp::mm_UnitID, -2, true));
        PrintTable(force, "A force of " + force.ValueToString(tgp::KN_unitID, -2, true));
        PrintTable(pressure, "A pressure of " + pressure.ValueToString(tgp::N_mm_unitID, -2, true));
        return 0;
    } catch (const tgp::Error& e) {
        fmt::print(stderr, "error {}: {}\n", e.number(), e.description());
        return 1;
    }
}
