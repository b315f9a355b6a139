// HostBridge against a fake CAD host: one application shared by every bridge, the host's and its
// active drawing's events relayed to the bridges' sinks, drawings changing and the host quitting,
// and ShowModal over a real host window.
#include <string>
#include <vector>

#include "Client.h"
#include "FakeHost.h"
#include "ModifiedCounter.h"
#include "StackDispatch.h"
#include "Tessary_Geometry_Pro.h"

using namespace client;

namespace {

// A sink for a bridge's events: the ids in order, with the one argument each carried (if any).
class BridgeEvents final : public StackDispatch {
  public:
    BridgeEvents() : StackDispatch(DIID___HostBridge) {}
    struct Event {
        DISPID id;
        IDispatch* object;  // borrowed, for comparison only
        long number;
    };
    std::vector<Event> events;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        Event event{id, nullptr, -1};
        if (params && params->cArgs == 1) {
            VARIANT& argument = params->rgvarg[0];
            if (V_VT(&argument) == VT_DISPATCH)
                event.object = V_DISPATCH(&argument);
            else if (V_VT(&argument) == VT_I4)
                event.number = V_I4(&argument);
        }
        events.push_back(event);
        return S_OK;
    }
};

constexpr DISPID kWindowChanged = 1, kEnterModal = 2, kLeaveModal = 3, kDrawingActivated = 4,
                 kDrawingClosing = 5, kObjectModified = 6, kHostClosing = 7;

// An object with no members of its own (every call fails as a script's would).
class Memberless final : public StackDispatch {
  public:
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return DISP_E_MEMBERNOTFOUND;
    }
};

bool SetApplication(IDispatch* bridge, IDispatch* application) {
    return Call(bridge, L"Application", DISPATCH_PROPERTYPUTREF, {Var(application)}).number == 0;
}

IDispatch* ApplicationOf(IDispatch* bridge) {
    return Get(bridge, L"Application").result.AsObject();
}

}  // namespace

CLIENT_TEST(HostBridgeSharesTheApplicationAndRelaysEvents) {
    TestHost host;
    TestDrawing first(L"first.dwg"), second(L"second.dwg");
    host.active = &first;
    {
        Object one(L"HostBridge"), two(L"HostBridge");
        Check(ApplicationOf(two) == nullptr, "no application before one is set");
        Check(SetApplication(one, &host), "Set Application");
        Check(ApplicationOf(two) == static_cast<IDispatch*>(&host),
              "the other bridge has the same application");
        Check(host.Sinks() == 1 && first.Sinks() == 1,
              "one connection to the host and to its drawing, however many bridges");

        BridgeEvents seenByOne, seenByTwo;
        Connection c1(one, seenByOne, DIID___HostBridge), c2(two, seenByTwo, DIID___HostBridge);
        Check(c1.ok && c2.ok, "sinks connect to both bridges");

        host.Fire(TestHost::kBeginModal);
        host.Fire(TestHost::kEndModal);
        host.Fire(TestHost::kWindowChanged, {Var(3)});
        host.Fire(TestHost::kSysVarChanged, {Var(L"OSMODE"), Var(1)});  // not relayed
        Object modified(L"Vector");  // any object stands for the drawing's object
        first.Fire(TestDrawing::kObjectModified, {Var(static_cast<IDispatch*>(modified))});
        Check(seenByOne.events.size() == 4 && seenByTwo.events.size() == 4,
              "both bridges relay the four events",
              std::to_string(seenByOne.events.size()) + " and " + std::to_string(seenByTwo.events.size()));
        if (seenByOne.events.size() == 4) {
            Check(seenByOne.events[0].id == kEnterModal && seenByOne.events[1].id == kLeaveModal,
                  "modal state");
            Check(seenByOne.events[2].id == kWindowChanged && seenByOne.events[2].number == 3,
                  "WindowChanged with its state");
            Check(seenByOne.events[3].id == kObjectModified && seenByOne.events[3].object == modified.p,
                  "ObjectModified with the object");
        }

        // Another drawing opens and becomes the active one: the bridge follows it.
        host.active = &second;
        host.Fire(TestHost::kEndOpen, {Var(L"second.dwg")});
        Check(first.Sinks() == 0 && second.Sinks() == 1, "the connection moves to the new active drawing");
        Check(!seenByOne.events.empty() && seenByOne.events.back().id == kDrawingActivated &&
                  seenByOne.events.back().object == static_cast<IDispatch*>(&second),
              "DrawingActivated with the new drawing");
        first.Fire(TestDrawing::kObjectModified, {Var(static_cast<IDispatch*>(modified))});
        Check(seenByOne.events.back().id == kDrawingActivated, "the old drawing's events no longer arrive");
        second.Fire(TestDrawing::kBeginClose);
        Check(seenByOne.events.back().id == kDrawingClosing &&
                  seenByOne.events.back().object == static_cast<IDispatch*>(&second),
              "DrawingClosing with the drawing");

        // The host quits: the bridges say so and let it go.
        Var cancel(false);
        host.Fire(TestHost::kBeginQuit, {cancel});
        Check(seenByTwo.events.back().id == kHostClosing, "HostClosing relayed");
        Check(host.Sinks() == 0 && second.Sinks() == 0, "the host's connections are dropped when it quits");
        Check(ApplicationOf(one) == nullptr, "no application after the host quit");
    }
    Check(host.References() == 1 && first.References() == 1 && second.References() == 1,
          "no reference to the host is kept", std::to_string(host.References()));
}

CLIENT_TEST(HostBridgeLetsTheHostGoWithItsLastBridge) {
    TestHost host;
    TestDrawing drawing(L"only.dwg");
    host.active = &drawing;
    {
        Object bridge(L"HostBridge");
        SetApplication(bridge, &host);
        {
            Object other(L"HostBridge");
            Check(ApplicationOf(other) == static_cast<IDispatch*>(&host),
                  "a bridge made later finds the application");
        }
        Check(host.Sinks() == 1, "one bridge still lives: the connection stays");
        Check(SetApplication(bridge, nullptr), "Set Application = Nothing");
        Check(host.Sinks() == 0 && drawing.Sinks() == 0 && host.References() == 1,
              "Nothing drops the connection");
        SetApplication(bridge, &host);
        Check(SetApplication(bridge, &host), "setting the same application again");
        Check(host.Sinks() == 1, "... connects once");
    }
    Check(host.Sinks() == 0 && drawing.Sinks() == 0, "the last bridge gone, the host's events are let go");
    Check(host.References() == 1 && drawing.References() == 1, "and the host itself");

    // A host without events or drawings still serves as the shared application.
    Object bridge(L"HostBridge");
    Memberless plain;
    Check(SetApplication(bridge, &plain) && ApplicationOf(bridge) == static_cast<IDispatch*>(&plain),
          "an application without events is shared all the same");
    SetApplication(bridge, nullptr);
}

namespace {

// A form object of the caller's: Show (modal) and hWnd, as a VB form answers them.
class ShowableForm final : public StackDispatch {
  public:
    HWND owner = nullptr;
    int shows = 0;
    short modal = -1;
    bool ownerWasEnabled = true;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        if (_wcsicmp(names[0], L"Show") != 0) return DISP_E_UNKNOWNNAME;
        ids[0] = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        if (id != 1) return DISP_E_MEMBERNOTFOUND;
        ++shows;
        if (params && params->cArgs == 1 && V_VT(&params->rgvarg[0]) == VT_I2)
            modal = V_I2(&params->rgvarg[0]);
        ownerWasEnabled = IsWindowEnabled(owner) != FALSE;
        return S_OK;
    }
};

HWND TopWindow(const wchar_t* title, DWORD style = WS_OVERLAPPEDWINDOW) {
    return CreateWindowExW(0, L"STATIC", title, style, 100, 100, 400, 300, nullptr, nullptr,
                           GetModuleHandleW(nullptr), nullptr);
}

bool ownerDisabledWhileShown = false;
HWND modalOwner = nullptr;

}  // namespace

CLIENT_TEST(HostBridgeShowsFormsModallyOverTheHost) {
    TestHost host;
    host.window = TopWindow(L"Host main window");
    ShowWindow(host.window, SW_SHOWMAXIMIZED);
    Object bridge(L"HostBridge");
    SetApplication(bridge, &host);

    // A window handle: owned by the host, shown, the host disabled until the form closes.
    HWND form = TopWindow(L"Form", WS_POPUP | WS_CAPTION);
    modalOwner = host.window;
    SetTimer(form, 1, 200, [](HWND window, UINT, UINT_PTR, DWORD) {
        ownerDisabledWhileShown = !IsWindowEnabled(modalOwner);
        KillTimer(window, 1);
        DestroyWindow(window);
    });
    const Outcome shown =
        Method(bridge, L"ShowModal", {Var(static_cast<int>(reinterpret_cast<intptr_t>(form)))});
    Check(shown.number == 0, "ShowModal of a window handle", Narrow(shown.description));
    Check(!IsWindow(form), "ShowModal returned when the form closed");
    Check(ownerDisabledWhileShown, "the host window was disabled while the form showed");
    Check(IsWindowEnabled(host.window) != FALSE, "the host window is enabled again");
    Check(IsZoomed(host.window) != FALSE, "the host window is maximised again, as it was");

    // A form object: asked to Show itself modally, with the host disabled meanwhile.
    ShowableForm object;
    object.owner = host.window;
    Check(Method(bridge, L"ShowModal", {Var(static_cast<IDispatch*>(&object))}).number == 0,
          "ShowModal of a form object");
    Check(object.shows == 1 && object.modal == 1, "the form was shown once, modally (Show 1)");
    Check(!object.ownerWasEnabled, "the host window was disabled during Show");
    Check(IsWindowEnabled(host.window) != FALSE, "and enabled afterwards");

    Memberless noShow;
    Check(Method(bridge, L"ShowModal", {Var(static_cast<IDispatch*>(&noShow))}).number == 438,
          "an object without Show: 438");
    Check(Method(bridge, L"ShowModal", {Var(12345)}).number == 5, "a number that is no window: 5");
    Check(IsWindowEnabled(host.window) != FALSE, "the host window stays enabled after failures");

    SetApplication(bridge, nullptr);
    DestroyWindow(host.window);
}
