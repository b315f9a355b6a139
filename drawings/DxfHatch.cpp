#include "drawings/DxfHatch.h"

#include <cmath>
#include <numbers>

namespace tgp::drawings {

namespace {

constexpr double kDegree = std::numbers::pi / 180;

// The counter-clockwise turn from one angle to another (degrees), in (0, 360]; 360 when equal.
double Sweep(double from, double to) {
    double sweep = std::fmod(to - from, 360.0);
    if (sweep <= 0) sweep += 360;
    return sweep;
}

// The parameter of an ellipse point at the given polar angle (in the ellipse's own axes).
double ParameterAt(double ratio, double degrees) {
    return std::atan2(std::sin(degrees * kDegree) / ratio, std::cos(degrees * kDegree));
}

}  // namespace

void HatchReader::Group(const DxfTag& tag) {
    switch (phase_) {
        case Phase::Header:
            if (tag.code == 91) phase_ = Phase::Paths;
            return;
        case Phase::Paths:
            if (tag.code == 92) {
                EndPath();
                inPath_ = true;
                polylinePath_ = (static_cast<int>(number_(tag)) & 2) != 0;
                return;
            }
            // The hatch style and pattern groups follow the last path.
            if (tag.code == 75 || tag.code == 76 || tag.code == 98) {
                EndPath();
                phase_ = Phase::Rest;
                return;
            }
            if (inPath_) PathGroup(tag);
            return;
        case Phase::Rest: return;
    }
}

void HatchReader::PathGroup(const DxfTag& tag) {
    if (polylinePath_) {
        switch (tag.code) {
            case 10:
            case 20:
            case 42: path_.VertexGroup(tag.code, number_(tag)); break;
            default: break;
        }
        return;
    }
    if (tag.code == 72) {
        edges_.emplace_back();
        edges_.back().type = static_cast<int>(number_(tag));
        return;
    }
    if (!edges_.empty()) EdgeGroup(tag, edges_.back());
}

void HatchReader::EdgeGroup(const DxfTag& tag, Edge& e) {
    if (e.type == 4) {  // spline: control points (10/20), knots (40), weights (42), fit points (11/21)
        SplineData& s = e.spline;
        switch (tag.code) {
            case 94: s.degree = static_cast<int>(number_(tag)); break;
            case 40: s.knots.push_back(number_(tag)); break;
            case 42: s.weights.push_back(number_(tag)); break;
            case 10: s.control.push_back({number_(tag), 0}); break;
            case 20:
                if (!s.control.empty()) s.control.back()[1] = number_(tag);
                break;
            case 11: s.fit.push_back({number_(tag), 0}); break;
            case 21:
                if (!s.fit.empty()) s.fit.back()[1] = number_(tag);
                break;
            default: break;
        }
        return;
    }
    switch (tag.code) {
        case 10: e.x = number_(tag); break;
        case 20: e.y = number_(tag); break;
        case 11: e.x1 = number_(tag); break;
        case 21: e.y1 = number_(tag); break;
        case 40: e.radius = number_(tag); break;
        case 50: e.start = number_(tag); break;
        case 51: e.end = number_(tag); break;
        case 73: e.counterClockwise = number_(tag) != 0; break;
        default: break;
    }
}

// A clockwise arc or elliptic arc is stored as the counter-clockwise one from 360 - end to
// 360 - start; it is travelled from its end back to its start.
DxfShape HatchReader::PieceOf(const Edge& e) {
    DxfShape piece;
    piece.edge = true;
    switch (e.type) {
        case 1:
            piece.vertices = {{e.x, e.y, 0}, {e.x1, e.y1, 0}};
            piece.bulges = {0, 0};
            return piece;
        case 2: {
            if (!(e.radius > 0)) {
                piece.problem = "has an arc edge of radius 0 or less";
                return piece;
            }
            const double from = e.counterClockwise ? e.start : 360 - e.end,
                         to = e.counterClockwise ? e.end : 360 - e.start;
            const double sweep = Sweep(from, to);
            const double a0 = from * kDegree, a1 = (from + sweep) * kDegree;
            EllipticArc arc{e.x, e.y, e.radius, 0, 0, e.radius, a0, a1};
            if (!e.counterClockwise) arc = arc.Reversed();
            piece.ellipse = std::make_shared<const EllipticArc>(arc);
            const Point3 p = arc.At(arc.t0), q = arc.At(arc.t1);
            piece.vertices = {{p.x, p.y, 0}, {q.x, q.y, 0}};
            piece.bulges = {(e.counterClockwise ? 1 : -1) * std::tan(sweep * kDegree / 4), 0};
            piece.closed = sweep >= 360;
            return piece;
        }
        case 3: {
            const double ratio = e.radius;
            if (!(ratio > 0 && ratio <= 1) || !(std::hypot(e.x1, e.y1) > 0)) {
                piece.problem =
                    "has an elliptic edge with an axis of length 0 or an axis ratio outside (0, 1]";
                return piece;
            }
            const double from = e.counterClockwise ? e.start : 360 - e.end,
                         to = e.counterClockwise ? e.end : 360 - e.start;
            const double sweep = Sweep(from, to);
            double t0 = ParameterAt(ratio, from), t1 = ParameterAt(ratio, to);
            if (sweep >= 360) t1 = t0 + 2 * std::numbers::pi;
            while (t1 <= t0) t1 += 2 * std::numbers::pi;
            EllipticArc arc{e.x, e.y, e.x1, e.y1, -ratio * e.y1, ratio * e.x1, t0, t1};
            piece.ellipse = std::make_shared<const EllipticArc>(e.counterClockwise ? arc : arc.Reversed());
            piece.followsEllipse = true;
            piece.closed = sweep >= 360;
            return piece;
        }
        case 4: {
            piece.approximate = true;
            for (const auto& p : FlattenSpline(e.spline)) {
                piece.vertices.push_back({p.x, p.y, 0});
                piece.bulges.push_back(0);
            }
            if (piece.vertices.size() < 2) piece.problem = "has a spline edge with too few points to draw";
            return piece;
        }
        default: piece.problem = "has an edge of unknown type " + std::to_string(e.type); return piece;
    }
}

void HatchReader::EndPath() {
    if (!inPath_) return;
    inPath_ = false;
    DxfShape path;
    if (polylinePath_) {
        path = std::move(path_);
        path.closed = true;  // a boundary is closed whatever its flag says
        if (path.vertices.size() < 2) path.problem = "has a boundary of fewer than two vertices";
    } else if (edges_.size() == 1 && PieceOf(edges_.front()).closed) {
        path = PieceOf(edges_.front());  // a whole circle or ellipse
        path.edge = false;
        if (path.ellipse && !path.followsEllipse) {  // the circle as two half arcs, as CIRCLE gives it
            const EllipticArc c = *path.ellipse;
            path.vertices = {{c.cx - c.ux, c.cy, 0}, {c.cx + c.ux, c.cy, 0}};
            path.bulges = {1, 1};
            path.ellipse = std::make_shared<const EllipticArc>(
                EllipticArc{c.cx, c.cy, c.ux, 0, 0, c.ux, std::numbers::pi, 3 * std::numbers::pi});
        }
    } else {
        for (const Edge& e : edges_) path.pieces.push_back(PieceOf(e));
        if (path.pieces.empty()) path.problem = "has a boundary without edges";
    }
    path_ = DxfShape{};
    edges_.clear();
    paths_.push_back(std::move(path));
}

std::vector<DxfShape> HatchReader::Paths(const DxfShape& hatch) {
    EndPath();
    std::vector<DxfShape> paths = std::move(paths_);
    paths_.clear();
    for (std::size_t i = 0; i < paths.size(); ++i) {
        DxfShape& p = paths[i];
        p.type = hatch.type;
        p.handle = hatch.handle;
        p.layer = hatch.layer;
        p.paperSpace = hatch.paperSpace;
        p.extrusion = hatch.extrusion;
        p.boundary = static_cast<int>(i + 1);
        p.closed = p.closed || p.pieces.empty();
    }
    return paths;
}

}  // namespace tgp::drawings
