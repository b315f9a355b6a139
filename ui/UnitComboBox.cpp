#include "ui/UnitComboBox.h"

#include <optional>

#include "core/Error.h"
#include "units/UnitSymbols.h"

namespace tgp::ui {

namespace {

// The catalogue rows a kind's units can occupy.
constexpr int16_t kLastUnitRow = 13;

// The symbol of a unit of the kind, or nothing for an empty cell (the lookup's error suppressed).
std::optional<std::string> SymbolOf(DimensionObjectType kind, int16_t id) {
    try {
        return GetUnitString(kind, id);
    } catch (const Error&) {
        return std::nullopt;
    }
}

// Clears a flag when the scope ends, however it ends.
class FlagScope {
  public:
    explicit FlagScope(bool& flag) : flag_(flag) { flag_ = true; }
    ~FlagScope() { flag_ = false; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

  private:
    bool& flag_;
};

}  // namespace

UnitComboBox::~UnitComboBox() {
    Release();
}

void UnitComboBox::Release() {
    if (combo_) combo_->OnSelection(nullptr);
    combo_.reset();
}

void UnitComboBox::Init(std::shared_ptr<ComboControl> Combo, DimensionObjectType DType,
                        std::shared_ptr<tgp::UnitSetting> UnitS) {
    if (!Combo) throw Error::TypeMismatch();
    setting_ = std::move(UnitS);
    Release();
    combo_ = std::move(Combo);
    combo_->OnSelection([this] { SelectionChanged(); });
    kind_ = DType;
    FlagScope filling(filling_);
    combo_->Clear();
    for (int16_t id = 0; id <= kLastUnitRow; ++id) {
        if (auto symbol = SymbolOf(kind_, id)) combo_->AddItem(*symbol);
    }
    if (setting_)
        combo_->Text(setting_->UnitString(kind_));
    else
        combo_->ListIndex(0);
    unitID_ = UnitIdFromBox();
}

void UnitComboBox::UnitSetting(std::shared_ptr<tgp::UnitSetting> UnitS) {
    setting_ = std::move(UnitS);
    if (!combo_) return;
    if (setting_)
        combo_->Text(setting_->UnitString(kind_));
    else
        combo_->ListIndex(0);
}

std::string UnitComboBox::UnitString() const {
    return combo_ ? combo_->Text() : std::string();
}

int16_t UnitComboBox::UnitIdFromBox() const {
    const std::string text = combo_ ? combo_->Text() : std::string();
    for (int16_t id = 0; id <= kLastUnitRow; ++id) {
        if (SymbolOf(kind_, id) == text) return id;
    }
    return 0;
}

void UnitComboBox::SelectionChanged() {
    if (filling_ || !combo_) return;
    int16_t newID = UnitIdFromBox();
    int16_t oldID = unitID_;
    // A copy: a handler may connect or disconnect while the event runs.
    const auto handlers = handlers_;
    for (const auto& [id, handler] : handlers) handler(oldID, newID);
    unitID_ = newID;
    if (setting_) setting_->UnitID(kind_, newID);
}

UnitComboBox::ConnectionId UnitComboBox::onChange(ChangeHandler handler) {
    handlers_.emplace_back(nextConnection_, std::move(handler));
    return nextConnection_++;
}

void UnitComboBox::disconnectChange(ConnectionId id) {
    std::erase_if(handlers_, [id](const auto& entry) { return entry.first == id; });
}

}  // namespace tgp::ui
