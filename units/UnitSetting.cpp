#include "units/UnitSetting.h"

#include <algorithm>

#include "core/Error.h"
#include "units/RuntimeInteger.h"
#include "units/UnitSymbols.h"

namespace tgp {

namespace {

// The order of UnitIDs, the system's storage order.
constexpr std::array<DimensionObjectType, kKindCount> kStorageOrder = {
    DAngleObject,           DLengthObject,       DAreaObject,         DVolumeObject,
    DMomentOfInertiaObject, DForceObject,        DPressureObject,     DForceMomentObject,
    DForcePerLineObject,    DForcePerareaObject, DForceDensityObject,
};

// The order in which Copy and CopyTo set the ids of the target.
constexpr std::array<DimensionObjectType, kKindCount> kCopyOrder = {
    DAngleObject,           DLengthObject,       DAreaObject,         DVolumeObject,
    DMomentOfInertiaObject, DPressureObject,     DForceObject,        DForceDensityObject,
    DForceMomentObject,     DForcePerareaObject, DForcePerLineObject,
};

std::size_t Slot(DimensionObjectType kind) {
    return static_cast<std::size_t>(kind);
}

}  // namespace

UnitSetting::UnitSetting() {
    ids_[Slot(DPressureObject)] = N_mm_unitID;
    ids_[Slot(DForcePerareaObject)] = KN_m_unitID;
    ids_[Slot(DForceMomentObject)] = KN_m_unitID;
    ids_[Slot(DForcePerLineObject)] = KN_m_unitID;
    ids_[Slot(DForceDensityObject)] = KN_m_unitID;
}

void UnitSetting::FreezeEvents(bool flag) {
    frozen_ = flag;
    if (!flag) RaiseModified();
}

std::shared_ptr<UnitSetting> UnitSetting::Copy() const {
    auto copy = std::make_shared<UnitSetting>();
    for (DimensionObjectType kind : kCopyOrder) copy->UnitID(kind, UnitID(kind));
    return copy;
}

std::vector<int16_t> UnitSetting::UnitIDs() const {
    std::vector<int16_t> ids;
    ids.reserve(kStorageOrder.size());
    for (DimensionObjectType kind : kStorageOrder) ids.push_back(UnitID(kind));
    return ids;
}

void UnitSetting::UnitIDs(std::span<const int32_t> ids) {
    for (std::size_t i = 0; i < kStorageOrder.size(); ++i) {
        if (i >= ids.size()) throw Error::SubscriptOutOfRange();
        StoreUnitID(i, ids[i]);
    }
}

void UnitSetting::StoreUnitID(std::size_t position, int32_t id) {
    if (position >= kStorageOrder.size()) throw Error::SubscriptOutOfRange();
    ids_[Slot(kStorageOrder[position])] = id;
}

void UnitSetting::CopyTo(UnitSetting& exUS) const {
    exUS.FreezeEvents(true);
    for (DimensionObjectType kind : kCopyOrder) exUS.UnitID(kind, UnitID(kind));
    exUS.FreezeEvents(false);
}

int16_t UnitSetting::UnitID(DimensionObjectType DimensionType) const {
    if (!IsKnownKind(DimensionType)) return 0;
    return ToInteger16(ids_[Slot(DimensionType)]);
}

void UnitSetting::UnitID(DimensionObjectType DimensionType, int16_t value) {
    if (!IsKnownKind(DimensionType)) return;
    int32_t& stored = ids_[Slot(DimensionType)];
    const bool changed = stored != value;
    stored = value;
    if (changed && !frozen_) RaiseModified();
}

std::string UnitSetting::UnitString(DimensionObjectType DimensionType) const {
    return GetUnitString(DimensionType, UnitID(DimensionType));
}

UnitSetting::ConnectionId UnitSetting::onModified(ModifiedHandler handler) {
    const ConnectionId id = nextConnection_++;
    handlers_.emplace_back(id, std::move(handler));
    return id;
}

void UnitSetting::disconnectModified(ConnectionId id) {
    std::erase_if(handlers_, [id](const auto& entry) { return entry.first == id; });
}

void UnitSetting::RaiseModified() {
    // A snapshot, so handlers may connect or disconnect while the event runs.
    const auto handlers = handlers_;
    for (const auto& [id, handler] : handlers)
        if (handler) handler();
}

}  // namespace tgp
