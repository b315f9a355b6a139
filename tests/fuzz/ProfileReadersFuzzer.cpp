// The text and DXF profile readers followed by the section computation and both report forms, as
// tgp-section runs them: a malformed file may be refused, nothing else may happen.
#include <string>

#include "cli/SectionReport.h"
#include "core/Error.h"
#include "drawings/DxfProfileReader.h"
#include "drawings/TextProfileReader.h"
#include "units/UnitSetting.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size < 1) return 0;
    const std::string text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    std::vector<tgp::drawings::DrawnProfile> profiles;
    try {
        if (bytes[0] & 1) {
            profiles = tgp::drawings::ReadDxfText(text, "fuzz.dxf");
        } else {
            // Read in one to four pieces, so that the splits see every kind of line too.
            profiles = tgp::drawings::ReadTextProfiles(text, "fuzz.txt", 1 + bytes[0] % 4);
        }
    } catch (const tgp::drawings::DrawingFileError&) {
        return 0;
    }
    auto units = std::make_shared<tgp::UnitSetting>();
    units->UnitID(tgp::DLengthObject, static_cast<int16_t>(bytes[0] >> 1) % 6);
    const tgp::cli::ReportUnits report = tgp::cli::ReportUnits::From(units, 1 + bytes[0] % 15);
    const auto outcomes = tgp::drawings::AnalyseProfiles(profiles, units, (bytes[0] & 2) != 0);
    (void)tgp::cli::FormatTable(outcomes, report);
    (void)tgp::cli::FormatJson(outcomes, report);
    return 0;
}
