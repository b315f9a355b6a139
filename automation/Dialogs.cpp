#include "Dialogs.h"

#include <memory>
#include <set>

#include "ErrorInfo.h"
#include "LateBound.h"
#include "NativeObject.h"
#include "Strings.h"
#include "UnitSettingAdapter.h"
#include "Variants.h"
#include "core/Error.h"
#include "ui/win32/EditQuantityDialog.h"
#include "ui/win32/UnitSettingDialog.h"
#include "units/UnitCatalogue.h"

namespace tgp::automation {

namespace {

using ui::EditedValue;

// The runtime's type name of a value (what TypeName shows), for the editor's choice of display.
std::string TypeNameOf(const VARIANT& value) {
    switch (V_VT(&value)) {
        case VT_EMPTY: return "Empty";
        case VT_NULL: return "Null";
        case VT_I2: return "Integer";
        case VT_I4: return "Long";
        case VT_R4: return "Single";
        case VT_R8: return "Double";
        case VT_CY: return "Currency";
        case VT_DATE: return "Date";
        case VT_BSTR: return "String";
        case VT_BOOL: return "Boolean";
        case VT_UI1: return "Byte";
        case VT_DISPATCH: {
            const auto quantity = QuantityOf(V_DISPATCH(&value));
            if (!quantity) return "Object";
            std::string name = "D";
            name += KindName(quantity->DimensionType());
            return name;
        }
        default: return (V_VT(&value) & VT_ARRAY) ? "Array" : "Variant";
    }
}

EditedValue ValueOf(const VARIANT& value) {
    EditedValue edited{TypeNameOf(value), {}};
    switch (V_VT(&value)) {
        case VT_BSTR: edited.content = ToUtf8(V_BSTR(&value)); break;
        case VT_I2: edited.content = static_cast<int16_t>(V_I2(&value)); break;
        case VT_R8: edited.content = V_R8(&value); break;
        case VT_BOOL: edited.content = V_BOOL(&value) != VARIANT_FALSE; break;
        case VT_DISPATCH: edited.content = QuantityOf(V_DISPATCH(&value)); break;
        default: break;
    }
    return edited;
}

// A value's text as the list compares it: anything the runtime can show as text (Null and Empty
// as no text). An array, or an object without a text, cannot be chosen from a list: 2411.
EditedValue TextValueOf(const VARIANT& value) {
    EditedValue edited = ValueOf(value);
    if (V_VT(&value) == VT_EMPTY || V_VT(&value) == VT_NULL) {
        edited.content = std::string();
    } else if (std::holds_alternative<std::monostate>(edited.content) ||
               std::holds_alternative<std::shared_ptr<Quantity>>(edited.content)) {
        try {
            edited.content = ToText(value);
        } catch (const Error&) {
            ThrowLibraryError("Invalid datatype");
        }
    }
    return edited;
}

// The confirmed value back into the caller's variable; a quantity was edited in place.
void WriteEditedBack(VARIANT* target, const EditedValue& edited) {
    VARIANT v;
    VariantInit(&v);
    if (const auto* text = std::get_if<std::string>(&edited.content)) {
        V_VT(&v) = VT_BSTR;
        V_BSTR(&v) = ToBstr(*text);
    } else if (const auto* integer = std::get_if<int16_t>(&edited.content)) {
        V_VT(&v) = VT_I2;
        V_I2(&v) = *integer;
    } else if (const auto* number = std::get_if<double>(&edited.content)) {
        V_VT(&v) = VT_R8;
        V_R8(&v) = *number;
    } else if (const auto* flag = std::get_if<bool>(&edited.content)) {
        V_VT(&v) = VT_BOOL;
        V_BOOL(&v) = *flag ? VARIANT_TRUE : VARIANT_FALSE;
    } else {
        return;
    }
    WriteBack(target, v);
    VariantClear(&v);
}

// Modeless unit-setting dialogs live until they are hidden; the host's message loop serves them.
std::set<std::unique_ptr<ui::win32::UnitSettingDialog>>& OpenModelessDialogs() {
    static std::set<std::unique_ptr<ui::win32::UnitSettingDialog>> open;
    return open;
}

}  // namespace

bool RunEditEnum(VARIANT* Value, BSTR EnumString, BSTR Title, BSTR Desc) {
    if (!Value) throw Error::ObjectRequired();
    EditedValue value = TextValueOf(Deref(*Value));  // refused before a window is made
    ui::win32::EditQuantityDialog dialog;
    dialog.Form().EditEnum(std::move(value), ToUtf8(EnumString), ToUtf8(Title), ToUtf8(Desc));
    if (!dialog.Run(nullptr)) return false;
    WriteEditedBack(Value, dialog.Form().Value());
    return true;
}

bool RunEditQuantity(VARIANT* Value, const VARIANT& UnitID, BSTR Title, BSTR Desc, short* ReturnUnitID,
                     IDispatch* OwnerForm) {
    if (!Value) throw Error::ObjectRequired();
    const UnitArg unit = IsMissing(UnitID) ? UnitArg() : ToUnitArg(UnitID);
    EditedValue value = ValueOf(Deref(*Value));
    ui::RequireEditableQuantity(value);  // before a window is made: a process may have no display
    ui::win32::EditQuantityDialog dialog;
    dialog.Form().EditQuantity(std::move(value), unit, ToUtf8(Title), ToUtf8(Desc));
    // A VB6-style owner form answers hWnd; anything else (a VBA user form has no such member)
    // leaves the choice of owner to the active window.
    const bool confirmed = dialog.Run(WindowProperty(OwnerForm, L"hWnd"));
    if (!confirmed) return false;
    WriteEditedBack(Value, dialog.Form().Value());
    if (ReturnUnitID) *ReturnUnitID = dialog.Form().UnitID();
    return true;
}

bool RunEditUnitSetting(::_UnitSetting** US, bool ShowModal, bool ShowCenterScreen) {
    std::shared_ptr<UnitSetting> callers = US && *US ? RequiredNative<UnitSetting>(*US) : nullptr;
    auto dialog = std::make_unique<ui::win32::UnitSettingDialog>();
    dialog->Form().UnitSetting(callers);
    if (!ShowModal) {
        // Shown and left to the host's message loop: the call returns at once (nothing confirmed
        // yet); OK writes into the caller's setting when the user presses it.
        auto& open = OpenModelessDialogs();
        std::erase_if(open, [](const auto& d) { return !d->Form().Visible(); });
        dialog->Show(nullptr, ShowCenterScreen);
        open.insert(std::move(dialog));
        return false;
    }
    const bool confirmed = dialog->Run(nullptr, ShowCenterScreen);
    if (confirmed && US && !*US) Check(Wrap(dialog->Form().UnitSetting(), US));
    return confirmed;
}

}  // namespace tgp::automation
