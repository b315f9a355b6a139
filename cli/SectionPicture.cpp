#include "cli/SectionPicture.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>

#include "core/XmlText.h"
#include "units/DLength.h"
#include "units/LengthUnitsOf.h"

namespace tgp::cli {

namespace {

using drawings::DrawnProfile;

constexpr const char* kFill = "#a9c4e0";
constexpr const char* kOutline = "#1f3a5f";
constexpr const char* kWarning = "#d9480f";
constexpr const char* kAxes = "#2b8a3e";
constexpr const char* kPlastic = "#862e9c";
constexpr const char* kFibres = "#868e96";
constexpr const char* kShearCentre = "#c92a2a";

// A coordinate in the picture: the report's unit, y down as SVG has it. Shortest text that reads
// back to the same double, so that the path is the section's geometry exactly.
std::string X(double x) {
    return fmt::format("{}", x);
}
std::string Y(double y) {
    return fmt::format("{}", y == 0 ? 0.0 : -y);
}

struct Box {
    double xmin = INFINITY, ymin = INFINITY, xmax = -INFINITY, ymax = -INFINITY;
    void Add(double x, double y) {
        xmin = std::min(xmin, x);
        xmax = std::max(xmax, x);
        ymin = std::min(ymin, y);
        ymax = std::max(ymax, y);
    }
    bool Empty() const { return !(xmin <= xmax); }
};

// One segment of an outline in the picture's unit: from a to b, its bulge (tan of a quarter of the
// included angle, counter-clockwise positive).
struct Segment {
    double ax, ay, bx, by, bulge;
};

// An open outline (a line of the drawing) has a segment fewer.
std::vector<Segment> SegmentsOf(const DrawnProfile& profile, double scale, bool reversed) {
    std::vector<Segment> segments;
    const std::size_t n = std::min(profile.VertexCount(), profile.vertices.size());
    for (std::size_t k = 0; k + (profile.closed ? 0 : 1) < n; ++k) {
        const Point3 &a = profile.vertices[k], &b = profile.vertices[(k + 1) % n];
        segments.push_back({a.x * scale, a.y * scale, b.x * scale, b.y * scale, profile.bulges[k]});
    }
    if (!reversed) return segments;
    std::reverse(segments.begin(), segments.end());
    for (Segment& s : segments) s = {s.bx, s.by, s.ax, s.ay, -s.bulge};
    return segments;
}

// Twice the signed area: the chords' shoelace and each arc's segment, r² (θ - sin θ).
double TwiceSignedArea(const std::vector<Segment>& segments) {
    double area = 0;
    for (const Segment& s : segments) {
        area += s.ax * s.by - s.bx * s.ay;
        if (s.bulge == 0) continue;
        const double theta = 4 * std::atan(s.bulge), chord = std::hypot(s.bx - s.ax, s.by - s.ay);
        const double r = chord / (2 * std::sin(std::fabs(theta) / 2));
        area += r * r * (theta - std::sin(theta));
    }
    return area;
}

// The path of one outline: lines, and arcs as SVG arcs (in the flipped picture an arc that turns
// counter-clockwise has sweep flag 0); closed unless it is a line of the drawing.
std::string PathOf(const std::vector<Segment>& segments, Box& box, bool closed = true) {
    std::string d;
    if (segments.empty()) return d;
    d += fmt::format("M{} {}", X(segments[0].ax), Y(segments[0].ay));
    for (const Segment& s : segments) {
        box.Add(s.ax, s.ay);
        if (s.bulge == 0) {
            d += fmt::format(" L{} {}", X(s.bx), Y(s.by));
            continue;
        }
        const double theta = 4 * std::atan(s.bulge), chord = std::hypot(s.bx - s.ax, s.by - s.ay);
        const double r = chord / (2 * std::sin(std::fabs(theta) / 2));
        // The arc's points at every eighth of its angle keep it inside the box.
        const double mx = (s.ax + s.bx) / 2, my = (s.ay + s.by) / 2, sagitta = s.bulge * chord / 2;
        // A counter-clockwise arc has its centre on the chord's left.
        const double side = (r - std::fabs(sagitta)) * (s.bulge > 0 ? 1 : -1) / chord;
        const double cx = mx - (s.by - s.ay) * side, cy = my + (s.bx - s.ax) * side;
        const double start = std::atan2(s.ay - cy, s.ax - cx);
        for (int k = 1; k < 8; ++k)
            box.Add(cx + r * std::cos(start + theta * k / 8), cy + r * std::sin(start + theta * k / 8));
        d += fmt::format(" A{} {} 0 {} {} {} {}", r, r, std::fabs(s.bulge) > 1 ? 1 : 0, s.bulge > 0 ? 0 : 1,
                         X(s.bx), Y(s.by));
    }
    if (!closed) {
        box.Add(segments.back().bx, segments.back().by);
        return d;
    }
    return d + " Z";
}

// The outlines of a section as one path, outer ones counter-clockwise and holes clockwise, so that
// even-odd and non-zero fill agree.
std::string SectionPath(const std::vector<std::size_t>& outlines, const std::vector<bool>& isHole,
                        const std::vector<DrawnProfile>& profiles, double scale, bool orient, Box& box) {
    std::string paths;
    for (std::size_t k = 0; k < outlines.size(); ++k) {
        const DrawnProfile& profile = profiles.at(outlines[k]);
        const bool hole = k < isHole.size() && isHole[k];
        const bool clockwise = TwiceSignedArea(SegmentsOf(profile, scale, false)) < 0;
        paths += PathOf(SegmentsOf(profile, scale, orient && clockwise != hole), box) + " ";
    }
    return paths;
}

// Sizes from the picture: a stroke of 1/400 of its larger side, text of 1/28.
struct Sizes {
    double size, stroke, font;
    explicit Sizes(const Box& box)
        : size(std::max({box.xmax - box.xmin, box.ymax - box.ymin, 1e-300})),
          stroke(size / 400),
          font(size / 28) {}
};

std::string SvgStart(double left, double top, double width, double height, const std::string& title) {
    return fmt::format(
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1200\" height=\"{:.0f}\" viewBox=\"{} {} "
               "{} {}\" "
               "font-family=\"DejaVu Sans, Arial, sans-serif\">\n",
               1200 * height / width, left, top, width, height) +
           fmt::format("<title>{}</title>\n", XmlEscaped(title)) +
           fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"white\"/>\n", left, top,
                       width, height);
}

// Characters a text shows: its markup and UTF-8 continuation bytes left out, an entity one.
std::size_t VisibleLength(const std::string& line) {
    std::size_t count = 0;
    bool inTag = false, inEntity = false;
    for (char ch : line) {
        const auto c = static_cast<unsigned char>(ch);
        if (ch == '<') inTag = true;
        if (!inTag && !inEntity && (c & 0xC0) != 0x80) ++count;
        if (ch == '&') inEntity = true;
        if (ch == ';') inEntity = false;
        if (ch == '>') inTag = false;
    }
    return count;
}

// A round length for the scale bar near a fifth of the picture's size: 1, 2 or 5 times a power of 10.
double ScaleLength(double size) {
    const double target = size / 5, power = std::pow(10.0, std::floor(std::log10(target)));
    for (double step : {5.0, 2.0, 1.0})
        if (step * power <= target) return step * power;
    return power;
}

// Text at (x, y) of the picture (y already down), `size` high: drawn at 16 units and scaled, since
// renderers hint glyphs of a size below a unit badly (a part of 2 mm has text of 0.07).
std::string Text(double x, double y, double size, const std::string& content,
                 const std::string& attributes = "") {
    return fmt::format("<text transform=\"translate({} {}) scale({})\" font-size=\"16\"{}>{}</text>\n", x, y,
                       size / 16, attributes, content);
}

std::string ScaleBar(double x, double y, const Sizes& sizes, const std::string& unit) {
    const double length = ScaleLength(sizes.size), tick = sizes.font / 3;
    return fmt::format(
               "<g id=\"scale-bar\" stroke=\"black\" stroke-width=\"{}\"><line x1=\"{}\" y1=\"{}\" x2=\"{}\" "
               "y2=\"{}\"/>"
               "<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"/><line x1=\"{}\" y1=\"{}\" x2=\"{}\" "
               "y2=\"{}\"/></g>\n",
               sizes.stroke, x, y, x + length, y, x, y - tick, x, y + tick, x + length, y - tick, x + length,
               y + tick) +
           Text(x + length + sizes.font / 2, y + sizes.font / 3, sizes.font,
                XmlEscaped(fmt::format("{:g} {}", length, unit)));
}

// The drawing's box with a margin, the legend to its right (wide enough for its longest line: 0.6 of
// the font size a character) and a scale bar below.
std::string Framed(const Box& box, const Sizes& sizes, const std::string& title, const std::string& body,
                   const std::vector<std::string>& legend, const std::string& unit) {
    std::size_t longest = 0;
    for (const std::string& line : legend) longest = std::max(longest, VisibleLength(line));
    const double margin = 0.08 * sizes.size, font = sizes.font;
    const double legendWidth = 0.6 * font * static_cast<double>(longest) + margin + font;
    const double legendHeight = (static_cast<double>(legend.size()) + 1) * 1.35 * font;
    const double left = box.xmin - margin, top = -box.ymax - margin;
    const double width = box.xmax - box.xmin + 2 * margin + legendWidth;
    const double height = std::max(box.ymax - box.ymin + 2 * margin + 2 * font, legendHeight + 2 * margin);
    std::string svg = SvgStart(left, top, width, height, title) + body;
    svg += ScaleBar(box.xmin, -box.ymin + margin / 2 + font, sizes, unit);
    double y = -box.ymax + font;
    svg += "<g id=\"legend\">\n";
    for (const std::string& line : legend) {
        svg += Text(box.xmax + margin + font, y, font, line);
        y += 1.35 * font;
    }
    return svg + "</g>\n</svg>\n";
}

double LengthPerMillimetre(const ReportUnits& units) {
    return FromMillimetres<DLength>(1.0)->Value(units.setting);
}

class Picture {
  public:
    Picture(const ProfileOutcome& outcome, const std::vector<DrawnProfile>& profiles,
            const ReportUnits& units)
        : outcome_(outcome),
          units_(units),
          paths_(SectionPath(outcome.outlines, outcome.isHole, profiles, LengthPerMillimetre(units),
                             outcome.values.has_value(), box_)),
          sizes_(box_.Empty() ? Box{0, 0, 0, 0} : box_) {
        if (box_.Empty()) box_.Add(0, 0);
    }

    std::string Svg() const {
        std::string body;
        if (outcome_.values) {
            body += fmt::format(
                "<path class=\"section\" d=\"{}\" fill=\"{}\" fill-rule=\"evenodd\" stroke=\"{}\" "
                "stroke-width=\"{}\" stroke-linejoin=\"round\"/>\n",
                paths_, kFill, kOutline, sizes_.stroke);
            body += Marks(*outcome_.values);
        } else {
            body += fmt::format(
                "<path class=\"rejected\" d=\"{}\" fill=\"none\" stroke=\"{}\" stroke-width=\"{}\" "
                "stroke-linejoin=\"round\"/>\n",
                paths_, kWarning, 2 * sizes_.stroke);
        }
        return Framed(box_, sizes_, outcome_.name, body, LegendLines(), units_.length);
    }

  private:
    std::string Value(double value, const std::string& unit) const {
        return XmlEscaped(Significant(value, std::min(units_.significantDigits, 6)) + " " + unit);
    }

    std::vector<std::string> LegendLines() const {
        // The drawing's file name, then the section's own name (the report's name starts with the path).
        std::string name = outcome_.name;
        if (!outcome_.file.empty() && name.rfind(outcome_.file + ": ", 0) == 0)
            name.erase(0, outcome_.file.size() + 2);
        std::vector<std::string> lines{
            "<tspan font-weight=\"bold\">" +
                XmlEscaped(std::filesystem::path(outcome_.file).filename().string()) + "</tspan>",
            XmlEscaped(name), "lengths in " + XmlEscaped(units_.length)};
        if (!outcome_.values) {
            lines.push_back(fmt::format("<tspan fill=\"{}\">not a section: {}</tspan>", kWarning,
                                        XmlEscaped(outcome_.error)));
            return lines;
        }
        const SectionValues& v = *outcome_.values;
        lines.push_back("A = " + Value(v.area, units_.area));
        lines.push_back("Ix = " + Value(v.ix, units_.moment) + ", Iy = " + Value(v.iy, units_.moment));
        lines.push_back(fmt::format("<tspan fill=\"{}\">1: I1 = {}, at {}</tspan>", kAxes,
                                    Value(v.i1, units_.moment), Value(v.angle, units_.angle)));
        lines.push_back(
            fmt::format("<tspan fill=\"{}\">2: I2 = {}</tspan>", kAxes, Value(v.i2, units_.moment)));
        lines.push_back("Wel,x = " + Value(v.welxTop, units_.modulus) + " (top), " +
                        Value(v.welxBottom, units_.modulus));
        lines.push_back("Wel,y = " + Value(v.welyLeft, units_.modulus) + " (left), " +
                        Value(v.welyRight, units_.modulus));
        lines.push_back("Wpl,x = " + Value(v.wplx, units_.modulus) +
                        ", Wpl,y = " + Value(v.wply, units_.modulus));
        if (outcome_.torsion) {
            lines.push_back("J = " + Value(outcome_.torsion->j, units_.moment));
            lines.push_back("Iw = " + Value(outcome_.torsion->iw, units_.warping));
        }
        lines.push_back(fmt::format(
            "<tspan fill=\"{}\">+ centroid</tspan>, <tspan fill=\"{}\">principal axes 1, 2</tspan>", kOutline,
            kAxes));
        lines.push_back(fmt::format(
            "<tspan fill=\"{}\">- - plastic axes</tspan>, <tspan fill=\"{}\">extreme fibres</tspan>",
            kPlastic, kFibres));
        if (outcome_.torsion)
            lines.push_back(fmt::format("<tspan fill=\"{}\">o shear centre</tspan>", kShearCentre));
        return lines;
    }

    std::string Line(const char* id, double x1, double y1, double x2, double y2, const char* colour,
                     const std::string& extra = "") const {
        return fmt::format(
            "<line id=\"{}\" x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" stroke=\"{}\" stroke-width=\"{}\"{}/>\n",
            id, x1, -y1, x2, -y2, colour, sizes_.stroke, extra);
    }

    // A principal axis through the centroid along (dx, dy), across the outlines' box and a little
    // beyond, its name at its positive end.
    std::string Axis(const char* id, const char* name, double x, double y, double dx, double dy) const {
        const double grow = 0.04 * sizes_.size;
        double from = -INFINITY, to = INFINITY;
        const double low[2] = {box_.xmin - grow, box_.ymin - grow},
                     high[2] = {box_.xmax + grow, box_.ymax + grow}, at[2] = {x, y}, along[2] = {dx, dy};
        for (int k = 0; k < 2; ++k) {
            if (std::fabs(along[k]) < 1e-12) continue;
            const double t1 = (low[k] - at[k]) / along[k], t2 = (high[k] - at[k]) / along[k];
            from = std::max(from, std::min(t1, t2));
            to = std::min(to, std::max(t1, t2));
        }
        return Line(id, x + from * dx, y + from * dy, x + to * dx, y + to * dy, kAxes) +
               Text(x + to * dx + sizes_.font / 4, -(y + to * dy) - sizes_.font / 4, sizes_.font, name,
                    fmt::format(" fill=\"{}\"", kAxes));
    }

    std::string Marks(const SectionValues& v) const {
        std::string svg;
        const double mark = sizes_.size / 60;
        const double dash = sizes_.size / 80;
        svg += fmt::format(
            "<rect id=\"fibres\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" fill=\"none\" stroke=\"{}\" "
            "stroke-width=\"{}\" stroke-dasharray=\"{} {}\"/>\n",
            v.xc - v.left, -(v.yc + v.top), v.left + v.right, v.top + v.bottom, kFibres, sizes_.stroke,
            sizes_.stroke * 2, dash / 2);
        const double radians = units_.angle == "rad" ? v.angle : v.angle * std::numbers::pi / 180;
        const double c = std::cos(radians), s = std::sin(radians);
        svg += Axis("axis-1", "1", v.xc, v.yc, c, s);
        svg += Axis("axis-2", "2", v.xc, v.yc, -s, c);
        // Dashed over the axes they often lie on.
        const std::string dashed = fmt::format(" stroke-dasharray=\"{} {}\"", dash, dash / 2);
        const double grow = 0.04 * sizes_.size;
        svg += Line("plastic-horizontal", box_.xmin - grow, v.plasticY, box_.xmax + grow, v.plasticY,
                    kPlastic, dashed);
        svg += Line("plastic-vertical", v.plasticX, box_.ymin - grow, v.plasticX, box_.ymax + grow, kPlastic,
                    dashed);
        svg += fmt::format(
            "<g id=\"centroid\" stroke=\"{}\" stroke-width=\"{}\"><circle cx=\"{}\" cy=\"{}\" r=\"{}\" "
            "fill=\"none\"/>"
            "<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\"/><line x1=\"{}\" y1=\"{}\" x2=\"{}\" "
            "y2=\"{}\"/></g>\n",
            kOutline, sizes_.stroke, v.xc, -v.yc, mark, v.xc - 1.5 * mark, -v.yc, v.xc + 1.5 * mark, -v.yc,
            v.xc, -v.yc - 1.5 * mark, v.xc, -v.yc + 1.5 * mark);
        if (outcome_.torsion) {
            const TorsionValues& t = *outcome_.torsion;
            svg += fmt::format(
                "<g id=\"shear-centre\" stroke=\"{}\" stroke-width=\"{}\"><circle cx=\"{}\" cy=\"{}\" "
                "r=\"{}\" "
                "fill=\"none\"/><circle cx=\"{}\" cy=\"{}\" r=\"{}\" fill=\"{}\"/></g>\n",
                kShearCentre, sizes_.stroke, t.shearX, -t.shearY, mark, t.shearX, -t.shearY, mark / 4,
                kShearCentre);
        }
        return svg;
    }

    const ProfileOutcome& outcome_;
    const ReportUnits& units_;
    Box box_;
    std::string paths_;
    Sizes sizes_;
};

}  // namespace

std::string SectionSvg(const ProfileOutcome& outcome, const std::vector<DrawnProfile>& profiles,
                       const ReportUnits& units) {
    return Picture(outcome, profiles, units).Svg();
}

std::string DrawingSvg(const std::string& file, const std::vector<DrawnSection>& sections,
                       const std::vector<DrawnProfile>& profiles,
                       const std::vector<DrawnProfile>& skippedShapes, const std::string& skipSummary,
                       const ReportUnits& units) {
    constexpr std::size_t kMostReasons = 12;
    const double scale = LengthPerMillimetre(units);
    Box box;
    std::string filled, rejected, skipped;
    std::vector<std::string> reasons;
    std::size_t valid = 0;
    for (const DrawnSection& section : sections) {
        const std::string path =
            SectionPath(section.outlines, section.isHole, profiles, scale, section.valid, box);
        (section.valid ? filled : rejected) += path;
        if (section.valid) {
            ++valid;
        } else if (reasons.size() < kMostReasons) {
            reasons.push_back(fmt::format("<tspan fill=\"{}\">{}: {}</tspan>", kWarning,
                                          XmlEscaped(section.name), XmlEscaped(section.error)));
        }
    }
    for (const DrawnProfile& shape : skippedShapes)
        skipped += PathOf(SegmentsOf(shape, scale, false), box, false) + " ";
    if (box.Empty()) box.Add(0, 0);
    const Sizes sizes(box);
    std::string body;
    auto layer = [&](const char* kind, const std::string& d, const char* fill, const char* stroke,
                     double width) {
        if (!d.empty())  // each path ends in a space
            body += fmt::format(
                "<path class=\"{}\" d=\"{}\" fill=\"{}\" fill-rule=\"evenodd\" stroke=\"{}\" "
                "stroke-width=\"{}\" "
                "stroke-linejoin=\"round\"/>\n",
                kind, d.substr(0, d.size() - 1), fill, stroke, width);
    };
    layer("skipped", skipped, "none", kFibres, 1.5 * sizes.stroke);
    layer("section", filled, kFill, kOutline, sizes.stroke);
    layer("rejected", rejected, "none", kWarning, 2 * sizes.stroke);
    const std::size_t rejectedCount = sections.size() - valid;
    std::vector<std::string> legend{
        "<tspan font-weight=\"bold\">" + XmlEscaped(std::filesystem::path(file).filename().string()) +
            "</tspan>",
        "lengths in " + XmlEscaped(units.length),
        fmt::format("<tspan fill=\"{}\">{} section{}</tspan>", kOutline, valid, valid == 1 ? "" : "s")};
    if (rejectedCount > 0)
        legend.push_back(fmt::format("<tspan fill=\"{}\">{} outline{} that made no section:</tspan>",
                                     kWarning, rejectedCount, rejectedCount == 1 ? "" : "s"));
    legend.insert(legend.end(), reasons.begin(), reasons.end());
    if (rejectedCount > reasons.size())
        legend.push_back(
            fmt::format("<tspan fill=\"{}\">and {} more</tspan>", kWarning, rejectedCount - reasons.size()));
    if (!skipSummary.empty()) {  // a kind a line: "12 TEXT, 3 open LWPOLYLINE on layer DIM"
        legend.push_back(fmt::format("<tspan fill=\"{}\">skipped (open lines in grey):</tspan>", kFibres));
        std::size_t from = 0, kinds = 0;
        while (from < skipSummary.size() && kinds++ < kMostReasons) {
            const std::size_t comma = std::min(skipSummary.find(", ", from), skipSummary.size());
            legend.push_back(fmt::format("<tspan fill=\"{}\">{}</tspan>", kFibres,
                                         XmlEscaped(skipSummary.substr(from, comma - from))));
            from = comma + 2;
        }
    }
    return Framed(box, sizes, file, body, legend, units.length);
}

namespace {

std::string FileNamePart(std::string name) {
    for (char& c : name)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_') c = '_';
    return name;
}

}  // namespace

std::string PictureName(const std::string& file, const ProfileOutcome& outcome, std::size_t ordinal) {
    return FileNamePart(std::filesystem::path(file).stem().string() + "-" +
                        (outcome.handle.empty() ? std::to_string(ordinal) : outcome.handle)) +
           ".svg";
}

std::string OverviewName(const std::string& file) {
    return FileNamePart(std::filesystem::path(file).stem().string() + "-all") + ".svg";
}

}  // namespace tgp::cli
