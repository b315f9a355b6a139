#pragma once

#include <vector>

#include "profiles/Loop7s.h"

namespace tgp {

// The solids of a section as torsion sees them, each a list of loops travelled with the material on
// the left (an outer boundary counter-clockwise, its holes clockwise). A solid is an outer loop with
// the holes directly inside it (an island is a solid of its own); solids whose straight edges run
// along each other (plates welded along an edge) are one solid, their union: the shared parts of
// those edges are no boundary, and what is left is chained into loops again. Solids that touch only
// at points stay apart.
using SolidLoops = std::vector<std::vector<LoopDLine>>;
std::vector<SolidLoops> TorsionSolids(Loop7s& section);

}  // namespace tgp
