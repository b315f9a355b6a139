#include "ui/frmEditQuantity.h"

#include <cctype>
#include <cmath>
#include <optional>

#include "core/Error.h"
#include "units/NumberText.h"
#include "units/UnitCatalogue.h"

namespace tgp::ui {

namespace {

constexpr int kEnterKey = 13;
constexpr int kSpaceKey = 32;

// The kind a quantity type name names ("DLength"), if it is one of the eleven.
std::optional<DimensionObjectType> KindOfTypeName(const std::string& typeName) {
    for (int k = 0; k < kKindCount; ++k) {
        const auto kind = static_cast<DimensionObjectType>(k);
        if (typeName.size() > 1 && typeName[0] == 'D' &&
            std::string_view(typeName).substr(1) == KindName(kind))
            return kind;
    }
    return std::nullopt;
}

// The value as the list compares it with its pieces.
std::string TextOf(const EditedValue::Content& content) {
    if (const auto* text = std::get_if<std::string>(&content)) return *text;
    if (const auto* integer = std::get_if<int16_t>(&content)) return std::to_string(*integer);
    if (const auto* number = std::get_if<double>(&content)) return FormatNumber(*number);
    if (const auto* flag = std::get_if<bool>(&content)) return *flag ? "True" : "False";
    return {};
}

// A number typed for an Integer, as the runtime stores it (rounded half to even, 6 beyond range).
int16_t IntegerFrom(double number) {
    const double rounded = std::nearbyint(number);
    if (!(rounded >= -32768 && rounded <= 32767)) throw Error::Overflow();
    return static_cast<int16_t>(rounded);
}

}  // namespace

std::string DisplayTypeName(DimensionObjectType kind) {
    const std::string name(KindName(kind));
    std::string shown;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        if (i > 0 && std::isupper(static_cast<unsigned char>(c))) {
            shown += ' ';
            shown += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        } else {
            shown += c;
        }
    }
    return shown;
}

frmEditQuantity::frmEditQuantity(EditQuantityView& view) : view_(view) {
    units_.onChange(
        [this](int16_t& oldUnitID, int16_t& newUnitID) { ConvertShownNumber(oldUnitID, newUnitID); });
}

Quantity& frmEditQuantity::EditedQuantity() const {
    return *std::get<std::shared_ptr<Quantity>>(value_.content);
}

void RequireEditableQuantity(const EditedValue& value) {
    const bool quantity = KindOfTypeName(value.typeName) &&
                          std::holds_alternative<std::shared_ptr<Quantity>>(value.content) &&
                          std::get<std::shared_ptr<Quantity>>(value.content);
    const bool plain = value.typeName == "String" || value.typeName == "Integer" ||
                       value.typeName == "Double" || value.typeName == "Boolean";
    if (!quantity && !plain) ThrowLibraryError("Invalid datatype");
}

void frmEditQuantity::EditQuantity(EditedValue value, const UnitArg& unit, const std::string& title,
                                   const std::string& description) {
    RequireEditableQuantity(value);
    const auto kind = KindOfTypeName(value.typeName);
    const bool quantity = std::holds_alternative<std::shared_ptr<Quantity>>(value.content);
    value_ = std::move(value);
    confirmed_ = false;
    view_.Caption(title.empty() ? "Edit Value as " + value_.typeName : title);
    view_.Description(description);
    if (value_.typeName == "Boolean") {
        mode_ = Mode::List;
        ShowChoices("True,False", TextOf(value_.content));
        if (!description.empty()) view_.Description(description);
        return;
    }
    if (quantity) {
        mode_ = Mode::Quantity;
        auto setting = std::make_shared<tgp::UnitSetting>();
        setting->UnitID(*kind, unit.Resolve(*kind));
        view_.ShowText(true);
        units_.Init(view_.UnitCombo(), *kind, setting);
        if (title.empty()) view_.Caption("Edit Value as " + DisplayTypeName(*kind));
        originalAmount_ = EditedQuantity().Value(0);
        view_.Text(FormatNumber(EditedQuantity().Value(units_.UnitID())));
        return;
    }
    mode_ = Mode::Text;
    view_.ShowText(false);
    view_.Text(TextOf(value_.content));
}

void frmEditQuantity::EditEnum(EditedValue value, const std::string& list, const std::string& title,
                               const std::string& description) {
    value_ = std::move(value);
    confirmed_ = false;
    mode_ = Mode::List;
    view_.Caption(title.empty() ? "Edit Value" : title);
    ShowChoices(list, TextOf(value_.content));
    if (!description.empty()) view_.Description(description);
}

void frmEditQuantity::ShowChoices(const std::string& list, const std::string& current) {
    view_.ShowList();
    const auto combo = view_.ListCombo();
    combo->Clear();
    int chosen = -1, index = 0;
    std::size_t start = 0;
    for (;;) {
        const std::size_t comma = list.find(',', start);
        const std::string piece =
            list.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        combo->AddItem(piece);
        if (piece == current && chosen < 0) chosen = index;
        ++index;
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    combo->ListIndex(chosen < 0 ? 0 : chosen);
    view_.Description("Select Value from the List");
}

void frmEditQuantity::ConvertShownNumber(int16_t oldUnitID, int16_t newUnitID) {
    if (mode_ != Mode::Quantity) return;
    Quantity& quantity = EditedQuantity();
    quantity.Value(oldUnitID, ReadNumber(view_.Text()));
    view_.Text(FormatNumber(quantity.Value(newUnitID)));
}

void frmEditQuantity::OK() {
    switch (mode_) {
        case Mode::List: {
            const std::string chosen = view_.ListCombo()->Text();
            if (value_.typeName == "Boolean")
                value_.content = chosen == "True";
            else
                value_.content = chosen;
            break;
        }
        case Mode::Quantity: EditedQuantity().Value(units_.UnitID(), ReadNumber(view_.Text())); break;
        case Mode::Text:
            if (value_.typeName == "String")
                value_.content = view_.Text();
            else if (value_.typeName == "Double")
                value_.content = ReadNumber(view_.Text());
            else
                value_.content = IntegerFrom(ReadNumber(view_.Text()));
            break;
    }
    confirmed_ = true;
    view_.Close();
}

void frmEditQuantity::Cancel() {
    // Unit changes wrote the shown number into the object; a cancelled edit leaves it as it was.
    if (mode_ == Mode::Quantity) EditedQuantity().Value(0, originalAmount_);
    confirmed_ = false;
    view_.Close();
}

bool frmEditQuantity::KeyPress(int keyAscii) {
    if (keyAscii == kEnterKey) {
        OK();
        return false;
    }
    if (keyAscii == kSpaceKey && value_.typeName != "String") return false;
    return true;
}

}  // namespace tgp::ui
