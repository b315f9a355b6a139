#pragma once

// Outlines and reference data shared by the profile and command-line suites.

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "core/Error.h"

namespace tgp::testing {

// A profile as x, y pairs and one bulge per vertex.
struct Outline {
    std::vector<double> xy;
    std::vector<double> bulges;

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
            const std::size_t i = (n - k) % n;             // vertex
            const std::size_t before = (i + n - 1) % n;    // the segment that ended at it
            r.Add(xy[2 * i], xy[2 * i + 1], -bulges[before]);
        }
        return r;
    }
};

template <class F>
void ExpectError(F&& f, int number, const std::string& description) {
    try {
        f();
        ADD_FAILURE() << "expected error " << number << " " << description;
    } catch (const tgp::Error& e) {
        EXPECT_EQ(e.number(), number);
        EXPECT_EQ(e.description(), description);
    }
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

// The rows of european_i_sections.csv, or nothing when the shared data folder is absent.
inline std::optional<std::vector<SectionRow>> ReadSectionTable() {
    std::ifstream in(std::string(TGP_SHARED_DATA_DIR) + "/european_i_sections.csv");
    if (!in) return std::nullopt;
    std::vector<SectionRow> rows;
    std::string line;
    bool header = true;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        if (header) {  // section,series,h,b,tw,tf,r,A,Iy,Wel_y,iy,Iz,Wel_z,iz
            header = false;
            continue;
        }
        std::vector<std::string> f;
        std::stringstream fields(line);
        for (std::string cell; std::getline(fields, cell, ',');) f.push_back(cell);
        if (f.size() < 14) {
            ADD_FAILURE() << "short row: " << line;
            continue;
        }
        rows.push_back({f[0], ParseNumber(f[2]), ParseNumber(f[3]), ParseNumber(f[4]), ParseNumber(f[5]),
                        ParseNumber(f[6]), ParseNumber(f[7]), ParseNumber(f[8]), ParseNumber(f[10]),
                        ParseNumber(f[11]), ParseNumber(f[13])});
    }
    return rows;
}

}  // namespace tgp::testing
