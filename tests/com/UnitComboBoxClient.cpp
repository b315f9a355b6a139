// UnitComboBox through the real COM runtime, bound to test-side combo boxes of three kinds of form:
// the box is filled late-bound, its own selection event reaches the binder through the box's event
// source, and Change reaches the caller's sink with both ids by reference.
#include <memory>
#include <utility>

#include "Client.h"
#include "FakeComboBox.h"
#include "ModifiedCounter.h"
#include "StackDispatch.h"
#include "Tessary_Geometry_Pro.h"

using namespace client;

namespace {

constexpr int kLength = 1, kForceMoment = 8;

// A sink for UnitComboBox's Change: records both ids and may rewrite the new one or fail.
class ChangeRecorder final : public StackDispatch {
  public:
    ChangeRecorder() : StackDispatch(DIID___UnitComboBox) {}
    std::vector<std::pair<short, short>> changes;
    short rewrite = -1;  // when not -1, written into newUnitID
    bool fail = false;   // answers as a handler that raised an error

    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*,
                                     EXCEPINFO* info, UINT*) override {
        if (id != 1 || !params || params->cArgs != 2) {
            changes.emplace_back(-100, -100);  // a malformed event
            return S_OK;
        }
        VARIANT& newId = params->rgvarg[0];
        VARIANT& oldId = params->rgvarg[1];
        if (V_VT(&newId) != (VT_BYREF | VT_I2) || V_VT(&oldId) != (VT_BYREF | VT_I2)) {
            changes.emplace_back(-200, -200);  // not by reference
            return S_OK;
        }
        changes.emplace_back(*V_I2REF(&oldId), *V_I2REF(&newId));
        if (rewrite != -1) *V_I2REF(&newId) = rewrite;
        if (fail) {
            info->scode = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, 1004);
            info->bstrDescription = SysAllocString(L"the handler failed");
            return DISP_E_EXCEPTION;
        }
        return S_OK;
    }
};

// A new test box of the given kind, released with the holder.
struct Box {
    FakeComboBox* p;
    explicit Box(FakeComboBox::Kind kind) : p(new FakeComboBox(kind)) {}
    ~Box() { p->Release(); }
    Box(const Box&) = delete;
    Box& operator=(const Box&) = delete;
    FakeComboBox* operator->() const { return p; }
    IDispatch* dispatch() const { return static_cast<IFakeComboBox*>(p); }
};

const char* KindName(FakeComboBox::Kind kind) {
    switch (kind) {
        case FakeComboBox::Kind::UserForm: return "user form's box";
        case FakeComboBox::Kind::VbForm: return "VB6-style form's box";
        case FakeComboBox::Kind::ChangeOnly: return "box reporting only Change";
        default: return "box without events";
    }
}

std::wstring Items(const FakeComboBox& box) {
    std::wstring all;
    for (const auto& item : box.items) all += (all.empty() ? L"" : L",") + item;
    return all;
}

// The runtime's type mismatch: raised by the library (13) or by the runtime's argument conversion,
// which script hosts show as 13 as well.
bool IsTypeMismatch(const Outcome& outcome) {
    return outcome.number == 13 || outcome.hr == DISP_E_TYPEMISMATCH;
}

std::string Changes(const ChangeRecorder& recorder) {
    std::string all;
    for (const auto& [o, n] : recorder.changes) {
        all += '(';
        all += std::to_string(o) + "," + std::to_string(n) + ")";
    }
    return all;
}

bool SameObject(IUnknown* a, IUnknown* b) {
    IUnknown *ua = nullptr, *ub = nullptr;
    if (a) a->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&ua));
    if (b) b->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&ub));
    const bool same = ua && ua == ub;
    if (ua) ua->Release();
    if (ub) ub->Release();
    return same;
}

}  // namespace

// A pick on each kind of form's box: one Change with the old and new id, the id stored and written
// into the bound setting (one Modified); filling raises nothing; typing raises Change only on a
// box whose only notification is Change.
CLIENT_TEST(UnitComboBoxFollowsEachKindOfFormsBox) {
    using Kind = FakeComboBox::Kind;
    for (Kind kind : {Kind::UserForm, Kind::VbForm, Kind::ChangeOnly}) {
        const std::string name = KindName(kind);
        Box box(kind);
        ChangeRecorder recorder;
        ModifiedCounter modified;
        {
            Object binder(L"UnitComboBox");
            Object setting(L"UnitSetting");
            Connection changeConnection(binder, recorder, DIID___UnitComboBox);
            Connection modifiedConnection(setting, modified);
            Check(changeConnection.ok && modifiedConnection.ok, name + ": sinks connect");

            Outcome init = Method(binder, L"Init",
                                  {Var(box.dispatch()), Var(kLength), Var(static_cast<IDispatch*>(setting))});
            Check(init.number == 0, name + ": Init succeeds", Narrow(init.description));
            Check(Items(*box.p) == L"mm,cm,dm,m,in,ft", name + ": the box lists the length units",
                  Narrow(Items(*box.p)));
            Check(box->text == L"mm", name + ": the setting's unit is shown", Narrow(box->text));
            Check(box->Sinks() == 1, name + ": the binder listens to the box");
            Check(recorder.changes.empty() && modified.count == 0,
                  name + ": no Change and no Modified while filling",
                  std::to_string(recorder.changes.size()) + " changes, " + std::to_string(box->clicks) +
                      " clicks and " + std::to_string(box->changes) + " change notices sent");

            box->UserPicks(L"m");
            Check(recorder.changes.size() == 1 && recorder.changes[0] == std::make_pair<short, short>(0, 3),
                  name + ": one pick, one Change(0, 3)",
                  std::to_string(recorder.changes.size()) + " changes");
            Check(Get(binder, L"UnitID").result.AsDouble() == 3, name + ": UnitID follows the pick");
            Check(Get(binder, L"UnitString").result.AsText() == L"m",
                  name + ": UnitString is the box's text");
            Check(Get(setting, L"UnitID", {Var(kLength)}).result.AsDouble() == 3,
                  name + ": the setting receives the pick");
            Check(modified.count == 1, name + ": the setting raises Modified once",
                  std::to_string(modified.count));

            box->UserTypes(L"cm");
            const bool typingReports = kind == Kind::ChangeOnly;
            Check(recorder.changes.size() == (typingReports ? 2u : 1u),
                  name + ": typing reports only where Change is the selection event",
                  std::to_string(recorder.changes.size()));
            if (typingReports && recorder.changes.size() == 2)
                Check(recorder.changes[1] == std::make_pair<short, short>(3, 1),
                      name + ": typed cm is Change(3, 1)");
        }
        Check(box->Sinks() == 0, name + ": releasing the binder disconnects from the box");
        Check(box->References() == 1, name + ": and releases the box", std::to_string(box->References()));
    }
}

CLIENT_TEST(UnitComboBoxWithoutSettingSelectsTheFirstEntry) {
    Box box(FakeComboBox::Kind::UserForm);
    box->items = {L"left over"};
    Object binder(L"UnitComboBox");
    ChangeRecorder recorder;
    Connection connection(binder, recorder, DIID___UnitComboBox);
    Outcome init = Method(binder, L"Init", {Var(box.dispatch()), Var(kForceMoment)});
    Check(init.number == 0, "Init without a setting", Narrow(init.description));
    Check(Items(*box.p) == L"KNmm,KGm,ton.m,lb.in,kip.in,KNm", "a force moment box lists six units",
          Narrow(Items(*box.p)));
    Check(box->index == 0 && Get(binder, L"UnitID").result.AsDouble() == 0, "the first entry, unit id 0");
    Check(recorder.changes.empty(), "Init raises no Change");
    Check(Get(binder, L"DimensionType").result.AsDouble() == kForceMoment, "DimensionType");
    Outcome combo = Get(binder, L"Combo");
    Check(SameObject(combo.result.AsObject(), box.dispatch()), "Combo is the caller's box");
    Outcome setting = Get(binder, L"UnitSetting");
    Check(setting.number == 0 && V_VT(&setting.result.v) == VT_DISPATCH && !setting.result.AsObject(),
          "UnitSetting is Nothing");

    box->UserPicks(L"KNm");
    Check(recorder.changes.size() == 1 && recorder.changes[0] == std::make_pair<short, short>(0, 7),
          "a pick without a setting: KNm is unit id 7", Changes(recorder));
    Check(Get(binder, L"UnitID").result.AsDouble() == 7, "the stored id",
          std::to_string(Get(binder, L"UnitID").result.AsDouble()));
}

CLIENT_TEST(UnitComboBoxHandlerRewritesTheNewUnit) {
    Box box(FakeComboBox::Kind::UserForm);
    Object binder(L"UnitComboBox");
    Object setting(L"UnitSetting");
    ChangeRecorder recorder;
    recorder.rewrite = 1;  // centimetres, whatever the user picks
    Connection connection(binder, recorder, DIID___UnitComboBox);
    Method(binder, L"Init", {Var(box.dispatch()), Var(kLength), Var(static_cast<IDispatch*>(setting))});
    box->UserPicks(L"ft");
    Check(recorder.changes.size() == 1 && recorder.changes[0] == std::make_pair<short, short>(0, 5),
          "the handler saw the pick");
    Check(Get(binder, L"UnitID").result.AsDouble() == 1, "the rewritten id is stored");
    Check(Get(setting, L"UnitID", {Var(kLength)}).result.AsDouble() == 1, "and written into the setting");
    Check(box->text == L"ft", "while the box keeps showing the user's pick", Narrow(box->text));

    recorder.rewrite = -1;
    recorder.fail = true;
    box->UserPicks(L"dm");
    Check(Get(binder, L"UnitID").result.AsDouble() == 2, "a failing handler does not stop the binder");
    Check(Get(setting, L"UnitID", {Var(kLength)}).result.AsDouble() == 2, "nor the setting's update");
}

// UnitSetting set shows the new setting's unit in the box (Nothing: the first entry); the stored id
// follows through the box's own selection event.
CLIENT_TEST(UnitComboBoxUnitSettingSet) {
    Box box(FakeComboBox::Kind::UserForm);
    Object binder(L"UnitComboBox");
    ChangeRecorder recorder;
    Connection connection(binder, recorder, DIID___UnitComboBox);
    Method(binder, L"Init", {Var(box.dispatch()), Var(kLength)});
    Object feet(L"UnitSetting");
    Put(feet, L"UnitID", {Var(kLength), Var(5)});
    Outcome set = Call(binder, L"UnitSetting", DISPATCH_PROPERTYPUTREF, {Var(static_cast<IDispatch*>(feet))});
    Check(set.number == 0, "Set UnitSetting", Narrow(set.description));
    Check(box->text == L"ft", "the box shows the new setting's unit", Narrow(box->text));
    Check(SameObject(Get(binder, L"UnitSetting").result.AsObject(), feet), "UnitSetting is the object set");
    Check(Get(binder, L"UnitID").result.AsDouble() == 5, "the box's selection event updated the id");
    Check(recorder.changes.size() == 1, "and raised Change", std::to_string(recorder.changes.size()));

    Outcome nothing =
        Call(binder, L"UnitSetting", DISPATCH_PROPERTYPUTREF, {Var(static_cast<IDispatch*>(nullptr))});
    Check(nothing.number == 0 && box->index == 0, "Set to Nothing selects the first entry");
    Object length(L"DLength");
    Outcome wrong =
        Call(binder, L"UnitSetting", DISPATCH_PROPERTYPUTREF, {Var(static_cast<IDispatch*>(length))});
    Check(IsTypeMismatch(wrong), "another class is a type mismatch", std::to_string(wrong.number));
}

// What Init refuses, what it accepts without events, and rebinding.
CLIENT_TEST(UnitComboBoxInitArguments) {
    Object binder(L"UnitComboBox");
    Object length(L"DLength");
    Outcome notABox = Method(binder, L"Init", {Var(static_cast<IDispatch*>(length)), Var(kLength)});
    Check(notABox.number == 13 && notABox.description == L"Type mismatch",
          "an object without the four members",
          std::to_string(notABox.number) + " " + Narrow(notABox.description));
    Outcome nothing = Method(binder, L"Init", {Var(static_cast<IDispatch*>(nullptr)), Var(kLength)});
    Check(nothing.number == 13, "Nothing", std::to_string(nothing.number));
    Outcome number = Method(binder, L"Init", {Var(3.0), Var(kLength)});
    Check(IsTypeMismatch(number), "a number", std::to_string(number.number));

    Box silent(FakeComboBox::Kind::NoEvents);
    Outcome quiet = Method(binder, L"Init", {Var(silent.dispatch()), Var(kLength)});
    Check(quiet.number == 0 && silent->items.size() == 6, "a box without events is still filled",
          Narrow(quiet.description));

    Box first(FakeComboBox::Kind::UserForm), second(FakeComboBox::Kind::VbForm);
    Method(binder, L"Init", {Var(first.dispatch()), Var(kLength)});
    Check(first->Sinks() == 1, "bound to the first box");
    Method(binder, L"Init", {Var(second.dispatch()), Var(kForceMoment)});
    Check(first->Sinks() == 0 && first->References() == 1, "a new Init lets the first box go");
    Check(second->Sinks() == 1 && second->items.size() == 6, "and binds the second");
}
