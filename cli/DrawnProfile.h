#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace tgp::cli {

// One profile as read from a drawing or a text file: the vertices (x, y pairs), one bulge per
// vertex, whether the source marks it closed, and a name that tells the user which entity it is.
struct DrawnProfile {
    std::string name;
    std::vector<double> xy;
    std::vector<double> bulges;
    bool closed = true;

    void Add(double x, double y, double bulge) {
        xy.push_back(x);
        xy.push_back(y);
        bulges.push_back(bulge);
    }
    std::size_t VertexCount() const { return bulges.size(); }
};

// A file that cannot be read as profiles at all (missing, unreadable, malformed line).
class ProfileFileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace tgp::cli
