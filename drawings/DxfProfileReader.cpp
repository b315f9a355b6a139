#include "drawings/DxfProfileReader.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "drawings/DxfDrawing.h"
#include "drawings/EdgeChains.h"
#include "drawings/MappedFile.h"

namespace tgp::drawings {

namespace {

// A plane map x' = a x + b y + e, y' = c x + d y + f.
struct Affine {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    Affine Then(const Affine& outer) const {  // outer after this
        return {outer.a * a + outer.b * c,           outer.a * b + outer.b * d,
                outer.c * a + outer.d * c,           outer.c * b + outer.d * d,
                outer.a * e + outer.b * f + outer.e, outer.c * e + outer.d * f + outer.f};
    }
    double Determinant() const { return a * d - b * c; }
    // Circles stay circles: the columns are perpendicular and of equal length.
    bool KeepsCircles() const {
        const double p = a * a + c * c, q = b * b + d * d;
        return std::fabs(p - q) <= 1e-9 * (p + q) && std::fabs(a * b + c * d) <= 1e-9 * (p + q);
    }
};

Affine Translation(double x, double y) {
    return {1, 0, 0, 1, x, y};
}
Affine Scaling(double sx, double sy) {
    return {sx, 0, 0, sy, 0, 0};
}
Affine Rotation(double degrees) {
    const double t = degrees * (3.14159265358979323846 / 180);
    return {std::cos(t), -std::sin(t), std::sin(t), std::cos(t), 0, 0};
}

// The plane map from an entity's own coordinate system into world x and y, by the arbitrary-axis
// rule of the DXF format; nothing for a plane that is not parallel to world XY.
std::optional<Affine> FromOcs(const Point3& n) {
    const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (!(length > 0) || std::hypot(n[0], n[1]) > 1e-10 * length) return std::nullopt;
    // Ax = Wy x N for a normal along z; Ay = N x Ax: a normal of (0, 0, -1) mirrors x.
    return Affine{n[2] > 0 ? 1.0 : -1.0, 0, 0, 1, 0, 0};
}

struct Context {
    Affine toWorld;
    std::string layer;                // the layer entities on layer 0 take (inside blocks)
    std::string suffix;               // " in block B (INSERT handle H)" ...
    std::vector<std::string> blocks;  // the chain of block names, outermost first
};

class Resolver {
  public:
    // The drawing is the resolver's: the shapes of the space read at the top (model space, or a
    // layout) are used once, and their vertex lists move into the outlines instead of being copied.
    Resolver(DxfDrawing drawing, const DxfReadOptions& options, double scale, DxfSkips* skipped,
             std::vector<DrawnProfile>* skippedShapes)
        : drawing_(std::move(drawing)),
          options_(options),
          scale_(scale),
          skipped_(skipped),
          skippedShapes_(skippedShapes) {}

    // The space to read: model space, or a layout's (the active one's entities are in the ENTITIES
    // section marked as paper space, the others' in blocks of their own).
    std::vector<DrawnProfile> Run(const std::string& source) {
        const Context world{Scaling(scale_, scale_), "", "", {}};
        if (!options_.layout || UpperCase(*options_.layout) == "MODEL") {
            Space(drawing_.model, world);
        } else {
            DxfBlock* block = LayoutBlock(source);
            if (!block || UpperCase(block->name) == "*PAPER_SPACE") {
                paper_ = Paper::Only;
                Space(drawing_.model, world);
            }
            if (block) {
                paper_ = Paper::Any;
                Space(block->contents, world);
            }
        }
        std::vector<DrawnProfile> chains =
            ChainEdges(edges_, [this](const DrawnEdge& edge, const std::string& why) {
                if (skippedShapes_) {
                    DrawnProfile open;
                    open.type = edge.type;
                    open.layer = edge.layer;
                    open.vertices = edge.vertices;
                    open.bulges = edge.bulges;
                    open.bulges.resize(open.vertices.size(), 0);
                    open.closed = false;
                    skippedShapes_->push_back(std::move(open));
                }
                if (IsPolyline(edge.type)) return Skip(OpenShape(edge.type, edge.layer));
                Skip(edge.type + (edge.layer.empty() ? "" : " on layer " + edge.layer) + " " + why);
            });
        for (DrawnProfile& chain : chains) profiles_.push_back(std::move(chain));
        return std::move(profiles_);
    }

  private:
    // The block that holds the entities of the named layout; nothing for the active paper space of a
    // drawing that lists no layouts (release 12) when it has paper-space entities.
    DxfBlock* LayoutBlock(const std::string& source) {
        std::string names = "Model";
        for (const DxfLayout& layout : drawing_.layouts) {
            if (UpperCase(layout.name) != UpperCase(*options_.layout)) {
                if (UpperCase(layout.name) != "MODEL") names += ", " + layout.name;
                continue;
            }
            for (auto& [key, block] : drawing_.blocks) {
                if (!layout.blockRecord.empty() && block.blockRecord == layout.blockRecord) return &block;
            }
            return nullptr;
        }
        throw DrawingFileError(source + ": there is no layout '" + *options_.layout +
                               "' (the layouts: " + names + ")");
    }

    void Space(DxfSpace& space, const Context& context) {
        // Outside blocks (which may be inserted again) each shape is read once: it is taken out of
        // the drawing as it is read, so that the drawing shrinks while the outlines grow.
        if (context.blocks.empty()) {
            profiles_.reserve(profiles_.size() + space.shapes.size());
            while (!space.shapes.empty()) {
                DxfShape shape = std::move(space.shapes.front());
                space.shapes.pop_front();
                Shape(shape, context, true);
            }
        }
        for (DxfShape& shape : space.shapes) Shape(shape, context, false);
        for (const DxfInsert& insert : space.inserts) Insert(insert, context);
        for (const auto& [other, count] : space.others) {
            const std::string layer = LayerOf(other.layer, context);
            Skip(Excluded(other.paperSpace) ? other.type + ExcludedSpace()
                 : !Wanted(layer)           ? other.type + " on other layers"
                                            : other.type,
                 count);
        }
    }

    static bool IsPolyline(const std::string& type) { return type == "LWPOLYLINE" || type == "POLYLINE"; }
    static std::string OpenShape(const std::string& type, const std::string& layer) {
        return "open " + type + (layer.empty() ? "" : " on layer " + layer);
    }

    void Skip(const std::string& what, std::size_t count = 1) {
        if (skipped_) Count(*skipped_, what, count);
    }

    std::string LayerOf(const std::string& own, const Context& context) const {
        return (own == "0" && !context.blocks.empty()) ? context.layer : own;
    }

    bool Wanted(const std::string& layer) const {
        return !options_.layer || UpperCase(layer) == UpperCase(*options_.layer);
    }

    static std::string NameOf(const std::string& type, const std::string& handle, const std::string& layer) {
        std::string name = type;
        if (!handle.empty()) name += " handle " + handle;
        if (!layer.empty()) name += " on layer " + layer;
        return name;
    }

    bool Excluded(bool paperSpace) {
        if (paper_ == Paper::Any) return false;
        return paperSpace != (paper_ == Paper::Only);
    }
    std::string ExcludedSpace() const {
        return paper_ == Paper::Only ? " in model space" : " in paper space";
    }

    // With `last`, the shape is not read again and gives its vertex lists up.
    void Shape(DxfShape& shape, const Context& context, bool last) {
        if (Excluded(shape.paperSpace)) return Skip(shape.type + ExcludedSpace());
        const std::string layer = LayerOf(shape.layer, context);
        if (!Wanted(layer)) {
            if (skippedShapes_ && shape.pieces.empty()) {
                DrawnProfile p = Placed(shape, shape.extrusion, context, layer, last);
                if (p.problem.empty()) skippedShapes_->push_back(std::move(p));
            }
            return Skip(shape.type + " on other layers");
        }
        if (!shape.pieces.empty()) return Boundary(shape, context, layer);
        DrawnProfile p = Placed(shape, shape.extrusion, context, layer, last);
        // An open polyline is chained with lines, arcs and open splines like one of them (a CAD
        // export often draws an outer boundary as several); on its own it is a line of the drawing
        // (a dimension, an axis), not an outline, and is counted as open when nothing closes it.
        if ((shape.edge || !p.closed) && p.problem.empty()) {
            if (std::optional<DrawnEdge> edge = EdgeOf(shape, layer, p)) {
                edges_.push_back(std::move(*edge));
                return;
            }
        }
        if (!p.closed && p.problem.empty()) {
            Skip(OpenShape(shape.type, layer));
            if (skippedShapes_) skippedShapes_->push_back(std::move(p));
            return;
        }
        profiles_.push_back(std::move(p));
    }

    // A shape in world coordinates through its plane's coordinate system and the block references
    // around it, named after its entity.
    DrawnProfile Placed(DxfShape& shape, const Point3& extrusion, const Context& context,
                        const std::string& layer, bool last = false) {
        DrawnProfile p;
        p.type = shape.type;
        p.handle = shape.handle;
        p.layer = layer;
        p.name = NameOf(shape.type, shape.handle, layer) +
                 (shape.boundary > 0 ? ", boundary " + std::to_string(shape.boundary) : "") + context.suffix +
                 (shape.approximate ? " (flattened within 1E-5 of its size)" : "");
        p.closed = shape.closed;
        p.problem = shape.problem;
        const std::optional<Affine> ocs = FromOcs(extrusion);
        if (!ocs && p.problem.empty()) p.problem = "lies in a plane that is not parallel to XY";
        const Affine map = ocs ? ocs->Then(context.toWorld) : context.toWorld;
        const bool curved =
            std::any_of(shape.bulges.begin(), shape.bulges.end(), [](double b) { return b != 0; });
        // A circle or arc scaled unequally is an ellipse; a polyline's arcs cannot become one.
        const bool stretched = curved && !map.KeepsCircles();
        const EllipticArc* curve =
            shape.ellipse && (shape.followsEllipse || stretched) ? shape.ellipse.get() : nullptr;
        if (stretched && !curve && p.problem.empty()) {
            p.problem =
                "has arcs that its block reference scales unequally in x and y (they would be ellipses)";
        }
        if (curve && p.problem.empty()) {
            FollowCurve(curve->Mapped(map.a, map.b, map.c, map.d, map.e, map.f), shape.edge, p);
        } else {
            Place(shape, map, p, last);
        }
        if (!p.closed && p.VertexCount() > 2) {
            const Point3 &first = p.vertices.front(), &last = p.vertices.back();
            p.closed = first.x == last.x && first.y == last.y;
        }
        return p;
    }

    // A placed piece as an edge to chain, or nothing (with the problem set) when a coordinate is
    // not finite.
    static std::optional<DrawnEdge> EdgeOf(const DxfShape& shape, const std::string& layer, DrawnProfile& p) {
        const auto finite = [](double v) { return std::isfinite(v); };
        const bool finiteVertices = std::all_of(p.vertices.begin(), p.vertices.end(),
                                                [&](const Point3& v) { return finite(v.x) && finite(v.y); });
        if (p.vertices.size() < 2 || !finiteVertices ||
            !std::all_of(p.bulges.begin(), p.bulges.end(), finite)) {
            p.problem = "has a coordinate that is not a finite number";
            return std::nullopt;
        }
        p.bulges.pop_back();  // an edge has one bulge per segment
        return DrawnEdge{shape.type,
                         shape.handle,
                         layer,
                         std::move(p.vertices),
                         std::move(p.bulges),
                         shape.approximate,
                         p.curves.empty() ? std::nullopt : std::optional<EllipticArc>(p.curves.front())};
    }

    // A hatch boundary of edges: the edges placed, then chained into the boundary's outline.
    void Boundary(DxfShape& path, const Context& context, const std::string& layer) {
        std::vector<DrawnEdge> pieces;
        DxfShape name;
        name.type = path.type;
        name.handle = path.handle;
        name.boundary = path.boundary;
        DrawnProfile named = Placed(name, path.extrusion, context, layer);
        for (DxfShape& piece : path.pieces) {
            DrawnProfile p = Placed(piece, path.extrusion, context, layer);
            std::optional<DrawnEdge> edge = p.problem.empty() ? EdgeOf(piece, layer, p) : std::nullopt;
            if (!edge) {
                named.problem = p.problem;
                named.vertices.clear();
                profiles_.push_back(std::move(named));
                return;
            }
            pieces.push_back(std::move(*edge));
        }
        bool open = false;
        std::vector<DrawnProfile> outlines =
            ChainEdges(pieces, [&open](const DrawnEdge&, const std::string&) { open = true; });
        if (open || outlines.empty())
            return Skip(path.type + (layer.empty() ? "" : " on layer " + layer) +
                        " boundary that does not close");
        for (DrawnProfile& outline : outlines) {
            const bool flattened = outline.name.ends_with(" (curves flattened)");
            outline.name = named.name + (flattened ? " (curves flattened)" : "");
            outline.type = named.type;
            outline.handle = named.handle;
            outline.layer = named.layer;
            profiles_.push_back(std::move(outline));
        }
    }

    // The vertices and bulges in world coordinates; a mirror reverses every arc's sense. With
    // `last` the shape's own lists are mapped in place and handed over.
    static void Place(DxfShape& shape, const Affine& map, DrawnProfile& p, bool last) {
        const double flip = map.Determinant() < 0 ? -1 : 1;
        p.vertices = last ? std::move(shape.vertices) : shape.vertices;
        p.bulges = last ? std::move(shape.bulges) : shape.bulges;
        for (Point3& v : p.vertices)
            v = {map.a * v.x + map.b * v.y + map.e, map.c * v.x + map.d * v.y + map.f, 0};
        for (double& bulge : p.bulges) bulge *= flip;
    }

    // An elliptic shape in world coordinates: arcs through the ellipse's points (a piece for
    // chaining also gets its end point), with the ellipse kept for the exact properties.
    static void FollowCurve(const EllipticArc& curve, bool piece, DrawnProfile& p) {
        const std::vector<double> arcs = ArcsAlong(curve, ArcPieces(curve));
        for (std::size_t i = 0; i + 2 < arcs.size(); i += 3) p.Add(arcs[i], arcs[i + 1], arcs[i + 2]);
        if (piece) {
            const Point3 end = curve.At(curve.t1);
            p.Add(end[0], end[1], 0);
        }
        p.curves = {curve};
        p.curveOf.assign(p.bulges.size(), 0);
    }

    void Insert(const DxfInsert& insert, const Context& context) {
        if (Excluded(insert.paperSpace)) return Skip("INSERT" + ExcludedSpace());
        const std::string layer = LayerOf(insert.layer, context);
        const std::string reference = " in block " + insert.block + " (INSERT" +
                                      (insert.handle.empty() ? "" : " handle " + insert.handle) + ")";
        auto refuse = [&](const std::string& why) {
            if (!Wanted(layer)) return;
            DrawnProfile p;
            p.type = "INSERT";
            p.handle = insert.handle;
            p.layer = layer;
            p.name = NameOf("INSERT", insert.handle, layer) + context.suffix;
            p.problem = why;
            profiles_.push_back(std::move(p));
        };
        const auto found = drawing_.blocks.find(UpperCase(insert.block));
        if (found == drawing_.blocks.end())
            return refuse("refers to block " + insert.block + ", which the drawing does not define");
        const std::string key = UpperCase(insert.block);
        if (std::find(context.blocks.begin(), context.blocks.end(), key) != context.blocks.end()) {
            return refuse("inserts block " + insert.block + " inside itself");
        }
        if (context.blocks.size() >= kDeepestNesting)
            return refuse("nests block references more than 32 deep");
        const std::optional<Affine> ocs = FromOcs(insert.extrusion);
        if (!ocs) return refuse("lies in a plane that is not parallel to XY");
        DxfBlock& block = found->second;
        const int columns = std::max(insert.columns, 1), rows = std::max(insert.rows, 1);
        const long long copies = static_cast<long long>(columns) * rows;
        if (copies > kMostCopies) return refuse("asks for more than 100000 copies of its block");
        // Copies of copies multiply: the drawing as a whole may place at most so many block copies.
        if ((placed_ += copies) > kMostPlacedCopies)
            return refuse("would place more than 1000000 block copies in the drawing");
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                const Affine placement =
                    Translation(-block.baseX, -block.baseY)
                        .Then(Scaling(insert.sx, insert.sy))
                        .Then(Translation(column * insert.columnSpacing, row * insert.rowSpacing))
                        .Then(Rotation(insert.angle))
                        .Then(Translation(insert.x, insert.y))
                        .Then(*ocs);
                Context inner{placement.Then(context.toWorld), layer, reference + context.suffix,
                              context.blocks};
                inner.blocks.push_back(key);
                Space(block.contents, inner);
            }
        }
    }

    static constexpr std::size_t kDeepestNesting = 32;
    static constexpr long long kMostCopies = 100000;
    static constexpr long long kMostPlacedCopies = 1000000;

    DxfDrawing drawing_;
    const DxfReadOptions& options_;
    double scale_;
    DxfSkips* skipped_;
    std::vector<DrawnProfile>* skippedShapes_;
    long long placed_ = 0;                                      // block copies placed so far
    enum class Paper { None, Only, Any } paper_ = Paper::None;  // which space's entities are read
    std::vector<DrawnProfile> profiles_;
    std::vector<DrawnEdge> edges_;  // lines and arcs, chained into outlines at the end
};

}  // namespace

double MillimetresPerInsUnit(int code) {
    switch (code) {
        case 1: return 25.4;                  // inches
        case 2: return 304.8;                 // feet
        case 3: return 1609344;               // miles
        case 4: return 1;                     // millimetres
        case 5: return 10;                    // centimetres
        case 6: return 1000;                  // metres
        case 7: return 1e6;                   // kilometres
        case 8: return 25.4e-6;               // microinches
        case 9: return 0.0254;                // mils
        case 10: return 914.4;                // yards
        case 11: return 1e-7;                 // angstroms
        case 12: return 1e-6;                 // nanometres
        case 13: return 1e-3;                 // micrometres
        case 14: return 100;                  // decimetres
        case 15: return 1e4;                  // decametres
        case 16: return 1e5;                  // hectometres
        case 17: return 1e12;                 // gigametres
        case 21: return 1200000.0 / 3937;     // US survey feet
        case 22: return 100000.0 / 3937;      // US survey inches
        case 23: return 3600000.0 / 3937;     // US survey yards
        case 24: return 6336000000.0 / 3937;  // US survey miles
        default: return 0;                    // unitless, or an astronomical unit
    }
}

void Count(SkipList& list, const std::string& what, std::size_t count) {
    for (auto& [description, n] : list) {
        if (description == what) {
            n += count;
            return;
        }
    }
    list.emplace_back(what, count);
}

std::string SkipSummary(const DxfSkips& skipped) {
    DxfSkips sorted = skipped;  // most first, then by description
    std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    std::string summary;
    for (const auto& [description, count] : sorted) {
        if (!summary.empty()) summary += ", ";
        summary += std::to_string(count) + " " + description;
    }
    return summary;
}

namespace {

std::vector<DrawnProfile> Resolve(DxfDrawing drawing, const std::string& source,
                                  const DxfReadOptions& options, DxfSkips* skipped,
                                  std::vector<DrawnProfile>* skippedShapes) {
    double scale = options.millimetresPerUnit.value_or(MillimetresPerInsUnit(drawing.insunits));
    if (!(scale > 0)) scale = 1;  // a unitless drawing is taken in millimetres
    return Resolver(std::move(drawing), options, scale, skipped, skippedShapes).Run(source);
}

}  // namespace

// The file is let go once parsed: its pages would otherwise stay with the outlines made from them.
std::vector<DrawnProfile> ReadDxfProfiles(const std::string& path, const DxfReadOptions& options,
                                          DxfSkips* skipped, std::vector<DrawnProfile>* skippedShapes) {
    DxfDrawing drawing = [&] {
        const MappedFile file(path);
        return ParseDxf(file.Text(), path);
    }();
    return Resolve(std::move(drawing), path, options, skipped, skippedShapes);
}

std::vector<DrawnProfile> ReadDxfText(std::string_view contents, const std::string& source,
                                      const DxfReadOptions& options, DxfSkips* skipped,
                                      std::vector<DrawnProfile>* skippedShapes) {
    return Resolve(ParseDxf(contents, source), source, options, skipped, skippedShapes);
}

}  // namespace tgp::drawings
