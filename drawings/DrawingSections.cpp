#include "drawings/DrawingSections.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "drawings/MappedFile.h"
#include "drawings/SectionFinder.h"
#include "drawings/TextProfileReader.h"

namespace tgp::drawings {

namespace {

bool IsDxf(const std::string& path, DrawingFormat format) {
    if (format != DrawingFormat::ByExtension) return format == DrawingFormat::Dxf;
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".dxf";
}
}  // namespace

std::string DrawingSections::SkipSummary() const {
    return drawings::SkipSummary(skipped);
}

std::vector<DrawnProfile> ReadOutlines(const std::string& path, const DrawingOptions& options,
                                       SkipList* skipped, std::vector<DrawnProfile>* skippedShapes) {
    if (IsDxf(path, options.format)) return ReadDxfProfiles(path, options, skipped, skippedShapes);
    const MappedFile file(path);
    std::vector<DrawnProfile> profiles = ReadTextProfiles(file.Text(), path);
    const double scale = options.millimetresPerUnit.value_or(1);
    if (scale != 1) {
        for (DrawnProfile& p : profiles) {
            for (Point3& v : p.vertices) v = v * scale;
        }
    }
    return profiles;
}

DrawingSections ReadDrawingSections(const std::string& path, const DrawingOptions& options) {
    DrawingSections result;
    const std::vector<DrawnProfile> outlines = ReadOutlines(path, options, &result.skipped);
    SectionFinder(outlines, options.eachOutline, &result.skipped).Emit([&](FoundSection&& s) {
        const DrawnProfile& outer = *s.outer;
        if (!s.error.empty()) {
            result.rejected.push_back(
                {std::move(s.name), outer.type, outer.handle, outer.layer, std::move(s.error)});
            return;
        }
        auto loops = Loop7s::Create();
        for (auto& loop : s.loops) loops->Add(std::move(loop));
        result.sections.push_back(
            {std::move(s.name), outer.type, outer.handle, outer.layer, std::move(loops)});
    });
    return result;
}

}  // namespace tgp::drawings
