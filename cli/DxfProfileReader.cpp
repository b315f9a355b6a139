#include "cli/DxfProfileReader.h"
#include "cli/DxfTags.h"

#include <dl_creationadapter.h>
#include <dl_dxf.h>
#include <fmt/format.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <locale>
#include <memory>
#include <optional>

namespace tgp::cli {

namespace {

constexpr int kClosedFlag = 1;
constexpr int kMeshFlags = 16 | 64;  // polygon and polyface meshes are not profiles

// dxflib reads numbers through streams imbued with the global C++ locale: keep it classic while
// reading, and put back whatever the process had.
class ClassicLocaleScope {
public:
    ClassicLocaleScope() : previous_(std::locale::global(std::locale::classic())) {}
    ~ClassicLocaleScope() { std::locale::global(previous_); }
    ClassicLocaleScope(const ClassicLocaleScope&) = delete;
    ClassicLocaleScope& operator=(const ClassicLocaleScope&) = delete;

private:
    std::locale previous_;
};

class ProfileCollector : public DL_CreationAdapter {
public:
    void addBlock(const DL_BlockData&) override {
        Flush();
        inBlock_ = true;
    }
    void endBlock() override { inBlock_ = false; }

    void addPolyline(const DL_PolylineData& data) override {
        Flush();
        if (inBlock_) return;
        pending_ = DrawnProfile{};
        pending_->name = EntityName("POLYLINE");
        pending_->closed = (data.flags & kClosedFlag) != 0;
        mesh_ = (data.flags & kMeshFlags) != 0;
    }
    void addVertex(const DL_VertexData& data) override {
        if (pending_) pending_->Add(data.x, data.y, data.bulge);
    }
    void endSequence() override { Flush(); }

    void addCircle(const DL_CircleData& data) override {
        Flush();
        if (inBlock_) return;
        DrawnProfile circle;
        circle.name = EntityName("CIRCLE");
        circle.Add(data.cx - data.radius, data.cy, 1);
        circle.Add(data.cx + data.radius, data.cy, 1);
        profiles_.push_back(std::move(circle));
    }

    std::vector<DrawnProfile> Result() {
        Flush();
        return std::move(profiles_);
    }

private:
    std::string EntityName(const char* type) {
        const DL_Attributes a = getAttributes();
        std::string name = type;
        if (a.getHandle() >= 0) name += fmt::format(" handle {:X}", a.getHandle());
        if (!a.getLayer().empty()) name += " on layer " + a.getLayer();
        return name;
    }

    // A polyline is complete when the next entity starts or its vertex sequence ends.
    void Flush() {
        if (!pending_) return;
        if (mesh_) {
            pending_->name += " (a mesh, not a profile)";
            pending_->closed = false;
        }
        if (!pending_->closed && pending_->VertexCount() > 2) {
            const auto& xy = pending_->xy;
            pending_->closed = xy[0] == xy[xy.size() - 2] && xy[1] == xy[xy.size() - 1];
        }
        profiles_.push_back(std::move(*pending_));
        pending_.reset();
    }

    bool inBlock_ = false;
    bool mesh_ = false;
    std::optional<DrawnProfile> pending_;
    std::vector<DrawnProfile> profiles_;
};

}  // namespace

std::vector<DrawnProfile> ReadDxfProfiles(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) throw ProfileFileError(path + ": cannot open the file");
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    return ReadDxfText(text, path);
}

std::vector<DrawnProfile> ReadDxfText(std::string_view text, const std::string& source) {
    std::istringstream normalised(WithTrustedCounts(text, source));
    ClassicLocaleScope classic;
    ProfileCollector collector;
    DL_Dxf dxf;
    if (!dxf.in(normalised, &collector)) throw ProfileFileError(source + ": not a readable DXF file");
    return collector.Result();
}

}  // namespace tgp::cli
