#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "units/UnitIdSource.h"
#include "units/UnitIds.h"

namespace tgp {

// One chosen unit id per quantity kind, shared by scripts, dialogs and quantities (as the unit
// argument of Value). Raises Modified when a choice changes; changes can be batched by freezing
// events. Ids are stored as given, without checking them against the kind's units.
class UnitSetting : public UnitIdSource, public std::enable_shared_from_this<UnitSetting> {
  public:
    using ModifiedHandler = std::function<void()>;
    using ConnectionId = std::size_t;

    UnitSetting();  // defaults: unit id 0, except pressure 6 (N/mm²) and the per-metre kinds 7

    // True stops Modified; False resumes it and raises Modified at once, changed or not.
    void FreezeEvents(bool flag);
    bool EventsFrozen() const { return frozen_; }

    // A new setting with the same ids (set through UnitID let; the new object has no listeners).
    std::shared_ptr<UnitSetting> Copy() const;

    // The eleven ids in storage order: Angle, Length, Area, Volume, MomentOfInertia, Force,
    // Pressure, ForceMoment, ForcePerLine, ForcePerArea, ForceDensity. The let raises no event;
    // fewer than eleven elements fail with 9 "Subscript out of range" after storing those given.
    std::vector<int16_t> UnitIDs() const;
    void UnitIDs(std::span<const int32_t> ids);
    // One element of the UnitIDs let: the id at `position` (0 to 10) of the storage order, stored
    // without a test and without an event, as the let stores each element it reads.
    void StoreUnitID(std::size_t position, int32_t id);

    // Sets every id of the target through its UnitID let inside one freeze, so it raises Modified once.
    void CopyTo(UnitSetting& exUS) const;

    // The id of a kind (0 for an unknown kind). Fails with 6 "Overflow" if a stored id does not fit
    // in 16 bits (possible only after UnitIDs let).
    int16_t UnitID(DimensionObjectType DimensionType) const override;
    // Stores the id of a known kind and raises Modified when it changed and events are live; an
    // unknown kind is ignored.
    void UnitID(DimensionObjectType DimensionType, int16_t value);

    // The symbol of the kind's chosen unit; fails with 2411 "GetUnitString no found" if it has none.
    std::string UnitString(DimensionObjectType DimensionType) const;

    // The Modified event: handlers run in connection order on the caller's thread. A handler may
    // disconnect (itself or others) while the event runs.
    ConnectionId onModified(ModifiedHandler handler);
    void disconnectModified(ConnectionId id);

  private:
    void RaiseModified();

    std::array<int32_t, kKindCount> ids_{};  // by DimensionObjectType value
    bool frozen_ = false;
    std::vector<std::pair<ConnectionId, ModifiedHandler>> handlers_;
    ConnectionId nextConnection_ = 1;
};

}  // namespace tgp
