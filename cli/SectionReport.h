#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "drawings/ProfileOutcome.h"
#include "drawings/SectionAnalysis.h"
#include "units/UnitSetting.h"

namespace tgp::cli {

using drawings::ProfileOutcome;
using drawings::SectionValues;
using drawings::TorsionValues;

// The unit choice of a report and the symbols it prints, from the unit symbol table.
struct ReportUnits {
    std::shared_ptr<UnitSetting> setting;
    std::string length, area, modulus, moment, angle, warping;  // warping: the length unit to the sixth
    int significantDigits = 6;
    bool torsion = false;  // the torsion values are reported too

    static ReportUnits From(std::shared_ptr<UnitSetting> setting, int significantDigits);
};

// Text of a number with a count of significant digits, through the library's number service.
std::string Significant(double value, int digits);

// A readable table per section (errors included), the same as one JSON document, or as CSV: a header
// row with the units, then one row per section with the JSON's fields and a rejected section's
// reason in the last column (RFC 4180, with a UTF-8 byte order mark for spreadsheets).
enum class ReportKind { Table, Json, Csv };
std::string FormatReport(ReportKind kind, const std::vector<ProfileOutcome>& outcomes,
                         const ReportUnits& units);
std::string FormatTable(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units);
std::string FormatJson(const std::vector<ProfileOutcome>& outcomes, const ReportUnits& units);

// The same a section at a time: what comes before the first, each section (`first` for the first
// one), and what comes after the last.
std::string ReportStart(ReportKind kind, const ReportUnits& units);
std::string ReportEntry(ReportKind kind, const ProfileOutcome& outcome, const ReportUnits& units, bool first);
std::string ReportEnd(ReportKind kind);

}  // namespace tgp::cli
