#pragma once

// Outlines and reference data shared by the profile and command-line suites.

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <fstream>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "core/Error.h"
#include "profiles/Loop7.h"
#include "profiles/Loop7s.h"
#include "support/Expectations.h"

namespace tgp::test {

// A profile as x, y pairs and one bulge per vertex.
struct Outline {
    std::vector<double> xy;
    std::vector<double> bulges;

    // Straight sides through x, y pairs.
    static Outline Polygon(std::initializer_list<double> xy) {
        Outline o;
        for (auto p = xy.begin(); p + 1 < xy.end(); p += 2) o.Add(p[0], p[1]);
        return o;
    }
    void Add(double x, double y, double bulge = 0) {
        xy.push_back(x);
        xy.push_back(y);
        bulges.push_back(bulge);
    }
    // The same outline traversed the other way: vertices reversed, each bulge moved to the segment
    // that now starts at the other end and negated.
    Outline Reversed() const {
        Outline r;
        const std::size_t n = bulges.size();
        for (std::size_t k = 0; k < n; ++k) {
            const std::size_t i = (n - k) % n;           // vertex
            const std::size_t before = (i + n - 1) % n;  // the segment that ended at it
            r.Add(xy[2 * i], xy[2 * i + 1], -bulges[before]);
        }
        return r;
    }
};

// An L of legs a (along x) and b (along y), t thick, its corner at the origin.
inline Outline Angle(double a, double b, double t) {
    return Outline::Polygon({0, 0, a, 0, a, t, t, t, t, b, 0, b});
}

inline std::shared_ptr<Loop7> LoopOf(const Outline& o) {
    auto loop = Loop7::Create();
    loop->InitFromCoordinates(o.xy, o.bulges);
    return loop;
}

// The outlines' loops as one collection.
inline std::shared_ptr<Loop7s> SectionOf(std::span<const Outline> outlines) {
    auto section = Loop7s::Create();
    for (const Outline& o : outlines) section->Add(LoopOf(o));
    return section;
}
inline std::shared_ptr<Loop7s> SectionOf(std::initializer_list<Outline> outlines) {
    return SectionOf(std::span<const Outline>(outlines.begin(), outlines.size()));
}

// A circle of radius r about (cx, cy), clockwise: two bulge -1 halves.
inline Outline Circle(double cx, double cy, double r) {
    Outline o;
    o.Add(cx - r, cy, -1);
    o.Add(cx + r, cy, -1);
    return o;
}

// A w x h rectangle from its lower left corner, clockwise.
inline Outline Rectangle(double x0, double y0, double w, double h) {
    return Outline::Polygon({x0, y0, x0, y0 + h, x0 + w, y0 + h, x0 + w, y0});
}

// A b x h rectangle centred on (cx, cy) whose corners are quarter circles of radius r tangent to
// both sides (r = 0: sharp corners), clockwise.
inline Outline RoundedRectangle(double cx, double cy, double b, double h, double r) {
    if (r == 0) return Rectangle(cx - b / 2, cy - h / 2, b, h);
    const double B = b / 2, H = h / 2, quarter = -std::tan(M_PI / 8);
    Outline o;
    o.Add(cx - B, cy - H + r);
    o.Add(cx - B, cy + H - r, quarter);
    o.Add(cx - B + r, cy + H);
    o.Add(cx + B - r, cy + H, quarter);
    o.Add(cx + B, cy + H - r);
    o.Add(cx + B, cy - H + r, quarter);
    o.Add(cx + B - r, cy - H);
    o.Add(cx - B + r, cy - H, quarter);
    return o;
}

inline double RelativeGap(double actual, double expected) {
    return std::fabs(actual - expected) / std::fabs(expected);
}

// A rolled I-section centred on the origin, traversed counter-clockwise: two flanges b x tf, a web
// tw thick, and four concave quarter-circle root fillets of radius r (clockwise arcs in this
// traversal, bulge -tan 22.5°).
inline Outline IpeOutline(double h, double b, double tw, double tf, double r) {
    const double B = b / 2, H = h / 2, t = tw / 2, fillet = -std::tan(M_PI / 8);
    Outline o;
    o.Add(-B, -H);
    o.Add(B, -H);
    o.Add(B, -H + tf);
    o.Add(t + r, -H + tf, fillet);
    o.Add(t, -H + tf + r);
    o.Add(t, H - tf - r, fillet);
    o.Add(t + r, H - tf);
    o.Add(B, H - tf);
    o.Add(B, H);
    o.Add(-B, H);
    o.Add(-B, H - tf);
    o.Add(-t - r, H - tf, fillet);
    o.Add(-t, H - tf - r);
    o.Add(-t, -H + tf + r, fillet);
    o.Add(-t - r, -H + tf);
    o.Add(-B, -H + tf);
    return o;
}

// One row of the published European I-section table (lengths mm, A cm², I cm⁴, i cm).
struct SectionRow {
    std::string name;
    double h, b, tw, tf, r, A, Iy, iy, Iz, iz;
};

inline double ParseNumber(const std::string& text) {
    double value = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size()) ADD_FAILURE() << "not a number: " << text;
    return value;
}

// The number after "key": in one line of tgp-section's JSON output (NaN when the key is not there).
inline double JsonNumber(const std::string& line, const std::string& key) {
    const auto at = line.find("\"" + key + "\": ");
    if (at == std::string::npos) return NAN;
    return ParseNumber(line.substr(at + key.size() + 4, line.find_first_of(",}", at) - at - key.size() - 4));
}

// The data rows of a published table in tests/data (comment lines and the header left out), as
// cells; nothing when the file is missing. A row of fewer than `cells` cells fails the test.
inline std::optional<std::vector<std::vector<std::string>>> ReadTableRows(const std::string& file,
                                                                          std::size_t cells) {
    std::ifstream in(std::string(TGP_SHARED_DATA_DIR) + "/" + file);
    if (!in) return std::nullopt;
    std::vector<std::vector<std::string>> rows;
    bool header = true;
    for (std::string line; std::getline(in, line);) {
        if (line.empty() || line[0] == '#') continue;
        if (std::exchange(header, false)) continue;
        std::vector<std::string> f;
        std::stringstream fields(line);
        for (std::string cell; std::getline(fields, cell, ',');) f.push_back(cell);
        if (f.size() < cells) {
            ADD_FAILURE() << "short row: " << line;
            continue;
        }
        rows.push_back(std::move(f));
    }
    return rows;
}

// The rows of european_i_sections.csv (section,series,h,b,tw,tf,r,A,Iy,Wel_y,iy,Iz,Wel_z,iz).
inline std::optional<std::vector<SectionRow>> ReadSectionTable() {
    const auto cells = ReadTableRows("european_i_sections.csv", 14);
    if (!cells) return std::nullopt;
    std::vector<SectionRow> rows;
    for (const auto& f : *cells) {
        rows.push_back({f[0], ParseNumber(f[2]), ParseNumber(f[3]), ParseNumber(f[4]), ParseNumber(f[5]),
                        ParseNumber(f[6]), ParseNumber(f[7]), ParseNumber(f[8]), ParseNumber(f[10]),
                        ParseNumber(f[11]), ParseNumber(f[13])});
    }
    return rows;
}

// One row of the published hollow-section table (lengths mm, A cm², I cm⁴, W cm³).
struct HollowRow {
    std::string name, kind;
    double B = 0, H = 0, t = 0, ro = 0, ri = 0, A = 0, Ix = 0, Iy = 0, Welx = 0, Wely = 0, Wplx = 0, Wply = 0;
    bool Circular() const { return kind == "CHS"; }
};

// The rows of hollow_sections.csv (designation,kind,B,H,t,ro,ri,A,Ix,Iy,Welx,Wely,Wplx,Wply).
inline std::optional<std::vector<HollowRow>> ReadHollowTable() {
    const auto cells = ReadTableRows("hollow_sections.csv", 14);
    if (!cells) return std::nullopt;
    std::vector<HollowRow> rows;
    for (const auto& f : *cells) {
        HollowRow r;
        r.name = f[0];
        r.kind = f[1];
        double* numbers[] = {&r.B,  &r.H,  &r.t,    &r.ro,   &r.ri,   &r.A,
                             &r.Ix, &r.Iy, &r.Welx, &r.Wely, &r.Wplx, &r.Wply};
        for (std::size_t i = 0; i < 12; ++i) *numbers[i] = ParseNumber(f[i + 2]);
        rows.push_back(r);
    }
    return rows;
}

// A hollow section's two loops (outer, inner), centred on the origin, both clockwise.
inline std::pair<Outline, Outline> HollowOutlines(const HollowRow& r) {
    if (r.Circular()) return {Circle(0, 0, r.B / 2), Circle(0, 0, r.B / 2 - r.t)};
    return {RoundedRectangle(0, 0, r.B, r.H, r.ro),
            RoundedRectangle(0, 0, r.B - 2 * r.t, r.H - 2 * r.t, r.ri)};
}

}  // namespace tgp::test
