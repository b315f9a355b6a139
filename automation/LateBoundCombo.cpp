#include "LateBoundCombo.h"

#include "LateBound.h"
#include "Strings.h"
#include "Variants.h"
#include "core/Error.h"

namespace tgp::automation {

namespace {

constexpr const wchar_t* kComboMembers[] = {L"Clear", L"AddItem", L"ListIndex", L"Text"};

// A text argument: a VARIANT whose string the holder frees.
class TextArgument {
  public:
    explicit TextArgument(const std::string& text) {
        VariantInit(&value_);
        V_VT(&value_) = VT_BSTR;
        V_BSTR(&value_) = ToBstr(text);
    }
    ~TextArgument() { VariantClear(&value_); }
    TextArgument(const TextArgument&) = delete;
    TextArgument& operator=(const TextArgument&) = delete;
    const VARIANT& get() const { return value_; }

  private:
    VARIANT value_;
};

}  // namespace

LateBoundCombo::LateBoundCombo(IDispatch* control) : control_(control) {
    if (!control_) throw Error::TypeMismatch();
    for (const wchar_t* member : kComboMembers) {
        if (!HasMember(control_, member)) throw Error::TypeMismatch();
    }
    control_->AddRef();
}

LateBoundCombo::~LateBoundCombo() {
    events_.reset();
    control_->Release();
}

void LateBoundCombo::Clear() {
    CallByName(control_, L"Clear", DISPATCH_METHOD, {}, nullptr);
}

void LateBoundCombo::AddItem(const std::string& item) {
    TextArgument text(item);
    CallByName(control_, L"AddItem", DISPATCH_METHOD, {text.get()}, nullptr);
}

void LateBoundCombo::ListIndex(int index) {
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = VT_I4;
    V_I4(&value) = index;
    CallByName(control_, L"ListIndex", DISPATCH_PROPERTYPUT, {value}, nullptr);
}

std::string LateBoundCombo::Text() const {
    ScopedVariant text;
    CallByName(control_, L"Text", DISPATCH_PROPERTYGET, {}, &text);
    return ToText(text.get());
}

void LateBoundCombo::Text(const std::string& text) {
    TextArgument value(text);
    CallByName(control_, L"Text", DISPATCH_PROPERTYPUT, {value.get()}, nullptr);
}

void LateBoundCombo::OnSelection(SelectionHandler handler) {
    events_.reset();
    if (!handler) return;
    // Click is preferred to Change: a form's combo box also reports Change for each edit of its text,
    // and one pick must be one notification.
    events_ = EventConnection::Connect(control_, [&](const std::map<std::wstring, DISPID>& members) {
        std::map<DISPID, EventConnection::Handler> chosen;
        auto click = members.find(L"CLICK");
        if (click == members.end()) click = members.find(L"CHANGE");
        if (click != members.end()) chosen.emplace(click->second, [handler](DISPPARAMS&) { handler(); });
        return chosen;
    });
}

}  // namespace tgp::automation
