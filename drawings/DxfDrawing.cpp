#include "drawings/DxfDrawing.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <memory>
#include <numbers>
#include <optional>

#include "drawings/DrawnProfile.h"
#include "drawings/DxfHatch.h"
#include "drawings/DxfTags.h"
#include "geometry/Spline.h"

namespace tgp::drawings {

namespace {

constexpr int kClosedFlag = 1;
constexpr int k3dPolylineFlag = 8;
constexpr int kMeshFlags = 16 | 64;
constexpr int kFrameControlPointFlag = 16;  // a spline-fit polyline's control points lie off the curve

enum class Section { None, Header, Blocks, Entities, Objects, Other };

// Entities whose groups a profile is made from; everything else is counted as skipped.
enum class Kind {
    LwPolyline,
    Polyline,
    Vertex,
    SequenceEnd,
    Circle,
    Arc,
    Line,
    Spline,
    Ellipse,
    Hatch,
    Insert,
    Attribute,
    Other
};

Kind KindOf(std::string_view type) {
    if (type == "LWPOLYLINE") return Kind::LwPolyline;
    if (type == "POLYLINE") return Kind::Polyline;
    if (type == "VERTEX") return Kind::Vertex;
    if (type == "SEQEND") return Kind::SequenceEnd;
    if (type == "CIRCLE") return Kind::Circle;
    if (type == "ARC") return Kind::Arc;
    if (type == "LINE") return Kind::Line;
    if (type == "SPLINE") return Kind::Spline;
    if (type == "ELLIPSE") return Kind::Ellipse;
    if (type == "HATCH") return Kind::Hatch;
    if (type == "INSERT") return Kind::Insert;
    if (type == "ATTRIB") return Kind::Attribute;
    return Kind::Other;
}

class Parser {
    // The entity being read. Polylines, circles and vertices keep their numbers in cx, cy, radius
    // (a vertex's bulge) and flags.
    struct Entity {
        Kind kind = Kind::Other;
        std::string type;
        std::size_t line = 0;
        DxfShape shape{};
        DxfInsert insert{};
        double cx = 0, cy = 0, radius = 0;
        double x1 = 0, y1 = 0, startAngle = 0, endAngle = 360;
        int flags = 0;
        SplineData spline{};
        double zmin = HUGE_VAL, zmax = -HUGE_VAL;  // of a spline's control points
        std::shared_ptr<HatchReader> hatch;
    };

  public:
    Parser(std::string_view contents, const std::string& source)
        : tags_(OpenDxfTags(contents, source)), source_(source) {}

    DxfDrawing Run() {
        DxfTag tag;
        bool ended = false;
        while (tags_->Next(tag)) {
            if (tag.code == 0) {
                if ((ended = Structure(tag))) break;
                continue;
            }
            Group(tag);
        }
        if (!ended) {
            if (section_ != Section::None) {
                throw DrawingFileError(
                    source_ + ": section " + sectionName_ +
                    " is not closed: the file ends without ENDSEC and EOF (it is cut short?)");
            }
            throw DrawingFileError(source_ + ": the file ends without EOF (it is cut short?)");
        }
        EndEntity();
        EndPolyline();
        return std::move(drawing_);
    }

  private:
    // A 0 group: a section, block or entity starts or ends. True at the end of the file.
    bool Structure(const DxfTag& tag) {
        const std::string_view value = tag.value;
        EndEntity();
        if (value == "EOF") return true;
        if (value == "SECTION") {
            if (section_ != Section::None) {
                throw DrawingFileError(tags_->Where(tag) + ": a section starts inside section " +
                                       sectionName_ + " (its ENDSEC is missing)");
            }
            section_ = Section::Other;
            sectionName_ = "(unnamed)";
            expectSectionName_ = true;
            return false;
        }
        if (value == "ENDSEC") {
            EndPolyline();
            section_ = Section::None;
            return false;
        }
        if (section_ == Section::Blocks && value == "BLOCK") {
            EndPolyline();
            block_ = DxfBlock{};
            inBlockHeader_ = true;
            return false;
        }
        if (section_ == Section::Blocks && value == "ENDBLK") {
            EndPolyline();
            if (block_) drawing_.blocks[UpperCase(block_->name)] = std::move(*block_);
            block_.reset();
            inBlockHeader_ = false;
            return false;
        }
        if (section_ == Section::Objects) {
            layout_ = value == "LAYOUT";
            if (layout_) drawing_.layouts.emplace_back();
            layoutData_ = false;
            return false;
        }
        if (section_ == Section::Entities || (section_ == Section::Blocks && block_))
            BeginEntity(value, tag.position);
        return false;
    }

    // A LAYOUT object: its name, and after its AcDbLayout marker the block record of its space.
    void LayoutGroup(const DxfTag& tag) {
        DxfLayout& layout = drawing_.layouts.back();
        if (tag.code == 1) layout.name = std::string(tag.value);
        if (tag.code == 100) layoutData_ = tag.value == "AcDbLayout";
        if (tag.code == 330 && layoutData_) layout.blockRecord = std::string(tag.value);
    }

    void Group(const DxfTag& tag) {
        if (expectSectionName_ && tag.code == 2) {
            expectSectionName_ = false;
            sectionName_ = std::string(tag.value);
            section_ = tag.value == "HEADER"     ? Section::Header
                       : tag.value == "BLOCKS"   ? Section::Blocks
                       : tag.value == "ENTITIES" ? Section::Entities
                       : tag.value == "OBJECTS"  ? Section::Objects
                                                 : Section::Other;
            return;
        }
        if (section_ == Section::Header) return HeaderGroup(tag);
        if (section_ == Section::Objects) {
            if (layout_) LayoutGroup(tag);
            return;
        }
        if (inBlockHeader_ && block_) return BlockHeaderGroup(tag);
        if (entity_) EntityGroup(tag);
    }

    void HeaderGroup(const DxfTag& tag) {
        if (tag.code == 9)
            variable_ = std::string(tag.value);
        else if (variable_ == "$INSUNITS" && tag.code == 70)
            drawing_.insunits = Integer(tag);
    }

    void BlockHeaderGroup(const DxfTag& tag) {
        switch (tag.code) {
            case 2: block_->name = std::string(tag.value); break;
            case 330: block_->blockRecord = std::string(tag.value); break;
            case 10: block_->baseX = Number(tag); break;
            case 20: block_->baseY = Number(tag); break;
            default: break;
        }
    }

    DxfSpace& Space() { return block_ ? block_->contents : drawing_.model; }

    void BeginEntity(std::string_view type, std::size_t line) {
        if (type.empty()) return;
        inBlockHeader_ = false;
        const Kind kind = KindOf(type);
        // A polyline's vertices run until SEQEND; anything else ends it too (a cut-off sequence).
        if (kind != Kind::Vertex && kind != Kind::SequenceEnd) EndPolyline();
        if (kind == Kind::SequenceEnd) {
            EndPolyline();
            return;
        }
        if (kind == Kind::Vertex && !polyline_) return;  // a stray vertex (or an attribute's)
        entity_ = Entity{};
        entity_->kind = kind;
        entity_->type = std::string(type);
        entity_->line = line;
        if (kind == Kind::Hatch)
            entity_->hatch = std::make_shared<HatchReader>([this](const DxfTag& t) { return Number(t); });
        entity_->shape.type = std::string(type);
        entity_->insert.line = line;
    }

    // The common groups go to whichever record the entity fills.
    void EntityGroup(const DxfTag& tag) {
        Entity& e = *entity_;
        if (e.kind == Kind::Attribute) return;
        if (e.kind == Kind::Other) {
            if (tag.code == 8) e.shape.layer = std::string(tag.value);
            if (tag.code == 67) e.shape.paperSpace = Integer(tag) == 1;
            return;
        }
        if (e.kind == Kind::Vertex) return VertexGroup(tag);
        if (e.kind == Kind::Insert) return InsertGroup(tag);
        DxfShape& s = e.shape;
        switch (tag.code) {
            case 5: s.handle = std::string(tag.value); return;
            case 8: s.layer = std::string(tag.value); return;
            case 67: s.paperSpace = Integer(tag) == 1; return;
            case 210: s.extrusion[0] = Number(tag); return;
            case 220: s.extrusion[1] = Number(tag); return;
            case 230: s.extrusion[2] = Number(tag); return;
            default: break;
        }
        if (e.kind == Kind::LwPolyline) return LwPolylineGroup(tag, s);
        if (e.kind == Kind::Polyline && tag.code == 70) e.flags = Integer(tag);
        if (e.kind == Kind::Circle || e.kind == Kind::Arc || e.kind == Kind::Line || e.kind == Kind::Ellipse)
            CircleGroup(tag, e);
        if (e.kind == Kind::Spline) SplineGroup(tag, e);
        if (e.kind == Kind::Hatch) e.hatch->Group(tag);
    }

    void SplineGroup(const DxfTag& tag, Entity& e) {
        SplineData& s = e.spline;
        switch (tag.code) {
            case 70: e.flags = Integer(tag); break;
            case 71: s.degree = Integer(tag); break;
            case 40: s.knots.push_back(Number(tag)); break;
            case 41: s.weights.push_back(Number(tag)); break;
            case 10: s.control.push_back({Number(tag), 0}); break;
            case 20:
                if (!s.control.empty()) s.control.back()[1] = Number(tag);
                break;
            case 30:
                e.zmin = std::min(e.zmin, Number(tag));
                e.zmax = std::max(e.zmax, Number(tag));
                break;
            case 11: s.fit.push_back({Number(tag), 0}); break;
            case 21:
                if (!s.fit.empty()) s.fit.back()[1] = Number(tag);
                break;
            default: break;
        }
    }

    void LwPolylineGroup(const DxfTag& tag, DxfShape& s) {
        switch (tag.code) {
            case 70: s.closed = (Integer(tag) & kClosedFlag) != 0; break;
            case 10:
            case 20:
            case 42: s.VertexGroup(tag.code, Number(tag)); break;
            default: break;
        }
    }

    // Circles and arcs: centre, radius and (arcs) start and end angles; lines: both end points.
    void CircleGroup(const DxfTag& tag, Entity& e) {
        switch (tag.code) {
            case 10: e.cx = Number(tag); break;
            case 20: e.cy = Number(tag); break;
            case 11: e.x1 = Number(tag); break;
            case 21: e.y1 = Number(tag); break;
            case 40: e.radius = Number(tag); break;  // an ellipse's axis ratio
            case 50: e.startAngle = Number(tag); break;
            case 51: e.endAngle = Number(tag); break;
            case 41: e.startAngle = Number(tag); break;  // an ellipse's parameters
            case 42: e.endAngle = Number(tag); break;
            default: break;
        }
    }

    void VertexGroup(const DxfTag& tag) {
        Entity& e = *entity_;
        switch (tag.code) {
            case 10: e.cx = Number(tag); break;
            case 20: e.cy = Number(tag); break;
            case 42: e.radius = Number(tag); break;  // the vertex's bulge
            case 70: e.flags = Integer(tag); break;
            default: break;
        }
    }

    void InsertGroup(const DxfTag& tag) {
        DxfInsert& i = entity_->insert;
        switch (tag.code) {
            case 2: i.block = std::string(tag.value); break;
            case 5: i.handle = std::string(tag.value); break;
            case 8: i.layer = std::string(tag.value); break;
            case 67: i.paperSpace = Integer(tag) == 1; break;
            case 10: i.x = Number(tag); break;
            case 20: i.y = Number(tag); break;
            case 30: i.z = Number(tag); break;
            case 41: i.sx = Number(tag); break;
            case 42: i.sy = Number(tag); break;
            case 43: i.sz = Number(tag); break;
            case 50: i.angle = Number(tag); break;
            case 70: i.columns = Integer(tag); break;
            case 71: i.rows = Integer(tag); break;
            case 44: i.columnSpacing = Number(tag); break;
            case 45: i.rowSpacing = Number(tag); break;
            case 210: i.extrusion[0] = Number(tag); break;
            case 220: i.extrusion[1] = Number(tag); break;
            case 230: i.extrusion[2] = Number(tag); break;
            default: break;
        }
    }

    // An entity is complete when the next 0 group comes.
    void EndEntity() {
        if (!entity_) return;
        Entity e = std::move(*entity_);
        entity_.reset();
        switch (e.kind) {
            case Kind::LwPolyline:
                if (e.shape.vertices.empty()) e.shape.problem = "has no vertices";
                Space().shapes.push_back(std::move(e.shape));
                break;
            case Kind::Circle: Space().shapes.push_back(CircleShape(std::move(e))); break;
            case Kind::Arc: Space().shapes.push_back(ArcShape(std::move(e))); break;
            case Kind::Line: Space().shapes.push_back(LineShape(std::move(e))); break;
            case Kind::Spline: Space().shapes.push_back(SplineShape(std::move(e))); break;
            case Kind::Ellipse: Space().shapes.push_back(EllipseShape(std::move(e))); break;
            case Kind::Hatch:
                for (DxfShape& path : e.hatch->Paths(e.shape)) Space().shapes.push_back(std::move(path));
                break;
            case Kind::Insert: Space().inserts.push_back(std::move(e.insert)); break;
            case Kind::Other: ++Space().others[DxfOther{e.type, e.shape.layer, e.shape.paperSpace}]; break;
            case Kind::Polyline:
                polyline_ = std::move(e.shape);
                polylineFlags_ = e.flags;
                break;
            case Kind::Vertex:
                if (polyline_ && !(e.flags & kFrameControlPointFlag)) {
                    polyline_->vertices.push_back({e.cx, e.cy, 0});
                    polyline_->bulges.push_back(e.radius);
                }
                break;
            default: break;
        }
    }

    static DxfShape CircleShape(Entity e) {
        DxfShape s = std::move(e.shape);
        if (!(e.radius > 0)) {
            s.problem = "has a radius of " + Shown(e.radius) + " (a circle needs a radius above 0)";
            return s;
        }
        s.vertices = {{e.cx - e.radius, e.cy, 0}, {e.cx + e.radius, e.cy, 0}};
        s.bulges = {1, 1};
        s.closed = true;
        s.ellipse = std::make_shared<const EllipticArc>(
            EllipticArc{e.cx, e.cy, e.radius, 0, 0, e.radius, std::numbers::pi, 3 * std::numbers::pi});
        return s;
    }

    // An arc runs counter-clockwise (in its own coordinate system) from the start to the end angle;
    // one that comes back to its start is a whole circle.
    static DxfShape ArcShape(Entity e) {
        const double sweep = SweepDegrees(e.startAngle, e.endAngle);
        if (!(e.radius > 0) || sweep >= 360) return CircleShape(std::move(e));
        DxfShape s = std::move(e.shape);
        const double degree = std::numbers::pi / 180;
        s.vertices = {{e.cx + e.radius * std::cos(e.startAngle * degree),
                       e.cy + e.radius * std::sin(e.startAngle * degree), 0},
                      {e.cx + e.radius * std::cos(e.endAngle * degree),
                       e.cy + e.radius * std::sin(e.endAngle * degree), 0}};
        s.bulges = {std::tan(sweep * degree / 4), 0};
        s.edge = true;
        s.ellipse = std::make_shared<const EllipticArc>(EllipticArc{e.cx, e.cy, e.radius, 0, 0, e.radius,
                                                                    e.startAngle * degree,
                                                                    e.startAngle * degree + sweep * degree});
        return s;
    }

    // The counter-clockwise turn from one angle to another, in (0, 360]; 360 when they are equal.
    static double SweepDegrees(double from, double to) {
        double sweep = std::fmod(to - from, 360.0);
        if (sweep <= 0) sweep += 360;
        return sweep;
    }

    // A line's end points are world coordinates (its extrusion only gives its thickness a direction).
    static DxfShape LineShape(Entity e) {
        DxfShape s = std::move(e.shape);
        s.extrusion = {0, 0, 1};
        s.vertices = {{e.cx, e.cy, 0}, {e.x1, e.y1, 0}};
        s.bulges = {0, 0};
        s.edge = true;
        return s;
    }

    // An ellipse lies in world coordinates: its centre, the end of its major axis (relative), its
    // axis ratio and parameters, running counter-clockwise about its extrusion direction. The whole
    // ellipse is an outline; an arc of it a piece for chaining.
    static DxfShape EllipseShape(Entity e) {
        DxfShape s = std::move(e.shape);
        const Point3 n = s.extrusion;
        s.extrusion = {0, 0, 1};
        const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
        if (!(length > 0) || std::hypot(n[0], n[1]) > 1e-10 * length) {
            s.problem = "lies in a plane that is not parallel to XY";
            return s;
        }
        const double turn = n[2] > 0 ? 1 : -1, ratio = e.radius;
        // The format asks for a ratio of at most 1; drawings with more (the "minor" axis the longer
        // one) still describe an ellipse.
        if (!(ratio > 0) || !std::isfinite(ratio) || !(std::hypot(e.x1, e.y1) > 0)) {
            s.problem = "has an axis of length 0";
            return s;
        }
        double t0 = e.startAngle, t1 = e.endAngle == 360 ? 2 * std::numbers::pi : e.endAngle;
        // Parameters written with six decimals (6.283185) still mean the whole ellipse.
        const bool whole = std::fabs(t1 - t0) >= 2 * std::numbers::pi - 1e-5 || t1 == t0;
        if (whole) t1 = t0 + 2 * std::numbers::pi;
        while (t1 < t0) t1 += 2 * std::numbers::pi;
        // The minor semi-axis: ratio times the normal crossed with the major one.
        const EllipticArc arc{e.cx, e.cy, e.x1, e.y1, -turn * ratio * e.y1, turn * ratio * e.x1, t0, t1};
        s.ellipse = std::make_shared<const EllipticArc>(arc);
        s.followsEllipse = true;
        s.closed = whole;
        s.edge = !whole;
        return s;
    }

    // A spline's points are world coordinates; it is flattened, closed when its flag says so or its
    // ends meet, else a piece for chaining.
    static DxfShape SplineShape(Entity e) {
        DxfShape s = std::move(e.shape);
        s.extrusion = {0, 0, 1};
        s.approximate = true;
        if (e.zmax > e.zmin) {
            s.problem = "does not lie flat in a plane parallel to XY";
            return s;
        }
        const std::vector<Point3> points = FlattenSpline(e.spline);
        if (points.size() < 2) {
            s.problem = "has too few control points to draw";
            return s;
        }
        const auto& first = points.front();
        const auto& last = points.back();
        s.closed = (e.flags & kClosedFlag) != 0 || (first[0] == last[0] && first[1] == last[1]);
        const std::size_t count = points.size() - (s.closed && first == last ? 1 : 0);
        s.vertices.assign(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(count));
        s.bulges.assign(count, 0.0);
        s.edge = !s.closed;
        return s;
    }

    void EndPolyline() {
        if (!polyline_) return;
        DxfShape s = std::move(*polyline_);
        polyline_.reset();
        s.closed = (polylineFlags_ & kClosedFlag) != 0;
        if (polylineFlags_ & kMeshFlags)
            s.problem = "is a mesh, not a profile";
        else if (s.vertices.empty())
            s.problem = "has no vertices";
        else if (polylineFlags_ & k3dPolylineFlag)
            s.problem = "is a 3D polyline, not a plane profile";
        Space().shapes.push_back(std::move(s));
    }

    double Number(const DxfTag& tag) const {
        if (tag.isNumber) return tag.number;
        double value = 0;
        const char* end = tag.value.data() + tag.value.size();
        const auto result = std::from_chars(tag.value.data(), end, value);
        if (tag.value.empty() || result.ec != std::errc() || result.ptr != end) {
            throw DrawingFileError(tags_->WhereValue(tag) + ": '" + Clipped(tag.value) +
                                   "' is not a number (group " + std::to_string(tag.code) + ")");
        }
        return value;
    }

    int Integer(const DxfTag& tag) const {
        const double value = Number(tag);
        return std::fabs(value) < 2147483647.0 ? static_cast<int>(value) : 0;
    }

    static std::string Clipped(std::string_view text) {
        std::string shown;
        for (char ch : text.substr(0, 40)) shown += std::isprint(static_cast<unsigned char>(ch)) ? ch : '?';
        return text.size() > 40 ? shown + "..." : shown;
    }

    static std::string Shown(double value) {
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
        return std::string(buffer, result.ptr);
    }

    std::unique_ptr<DxfTagSource> tags_;
    std::string source_;
    DxfDrawing drawing_;
    Section section_ = Section::None;
    std::string sectionName_;
    bool expectSectionName_ = false;
    std::string variable_;
    std::optional<DxfBlock> block_;
    bool layout_ = false, layoutData_ = false;
    bool inBlockHeader_ = false;
    std::optional<Entity> entity_;
    std::optional<DxfShape> polyline_;
    int polylineFlags_ = 0;
};

}  // namespace

std::string UpperCase(std::string_view name) {
    std::string upper(name);
    for (char& ch : upper) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    return upper;
}

DxfDrawing ParseDxf(std::string_view contents, const std::string& source) {
    return Parser(contents, source).Run();
}

}  // namespace tgp::drawings
