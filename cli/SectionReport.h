#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/ProfileOutcome.h"
#include "cli/SectionAnalysis.h"
#include "units/UnitSetting.h"

namespace tgp::cli {

// The unit choice of a report and the symbols it prints, from the unit symbol table.
struct ReportUnits {
    std::shared_ptr<UnitSetting> setting;
    std::string length, area, modulus, moment, angle;
    int significantDigits = 6;

    static ReportUnits From(std::shared_ptr<UnitSetting> setting, int significantDigits);
};

// A readable table per section (errors included), and the same as one JSON document.
std::string FormatTable(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units);
std::string FormatJson(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units);

}  // namespace tgp::cli
