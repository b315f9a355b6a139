#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "drawings/DrawnProfile.h"
#include "drawings/ProfileOutcome.h"
#include "units/UnitSetting.h"

namespace tgp::drawings {

// The sections of one file's outlines: grouped by containment and touch (or one per outline with
// eachLoop), in file order. Outlines that are open, cut themselves, enclose nothing or carry a
// problem are reported by name and left out; two whose interiors overlap are both reported and
// left out of the grouping. An outline that repeats another one (a hatch drawn on its own outline)
// is left out and counted in `skipped` when given.
// With `torsion` wanted, each section's torsion and shear values too.
std::vector<ProfileOutcome> AnalyseProfiles(const std::vector<DrawnProfile>& profiles,
                                            const std::shared_ptr<UnitSetting>& units, bool eachLoop = false,
                                            SkipList* skipped = nullptr, TorsionRequest torsion = {});
// The same handed to `emit` one section at a time, in file order, each computed when its turn
// comes: a file of many separate outlines never holds all their loops or outcomes at once.
void AnalyseProfiles(const std::vector<DrawnProfile>& profiles, const std::shared_ptr<UnitSetting>& units,
                     bool eachLoop, SkipList* skipped, const std::function<void(ProfileOutcome&&)>& emit,
                     TorsionRequest torsion = {});
// One outline as a section of its own.
ProfileOutcome AnalyseProfile(const DrawnProfile& profile, const std::shared_ptr<UnitSetting>& units);

}  // namespace tgp::drawings
