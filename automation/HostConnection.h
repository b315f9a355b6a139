#pragma once
// The one CAD-host connection of the process, shared by every HostBridge: cooperating components
// hand the host's application object to each other through it. While an application is set, its
// events and those of its active drawing are received late-bound and relayed to every bridge.
#include <memory>
#include <vector>

#include "EventConnection.h"
#include "OleBase.h"

namespace tgp::automation {

// The events a bridge raises (the ids of its outgoing interface).
enum HostEvent : DISPID {
    kWindowChanged = 1,     // (WindowState): the host's main window was resized, minimised, ...
    kEnterModal = 2,        // the host entered a modal state (a dialog of its own)
    kLeaveModal = 3,        // ... and left it
    kDrawingActivated = 4,  // (Drawing): another drawing became the active one
    kDrawingClosing = 5,    // (Drawing): the active drawing is about to close
    kObjectModified = 6,    // (Object): an object of the active drawing was changed
    kHostClosing = 7,       // the host is quitting; the connection is dropped after this event
};

class HostListener {
  public:
    virtual ~HostListener() = default;
    // `arguments` as automation passes them (last first).
    virtual void OnHostEvent(HostEvent event, DISPPARAMS& arguments) = 0;
};

class HostConnection {
  public:
    static HostConnection& Shared();

    // The application, with a reference for the caller; nullptr when none is set.
    IDispatch* Application() const;
    // Sets (or with nullptr drops) the application and connects to its events and to those of its
    // active drawing. Setting the one already set changes nothing.
    void SetApplication(IDispatch* application);
    // The host's main window (its HWND property); nullptr without a host or when it has none.
    HWND MainWindow() const;

    // Bridges register while they live; when the last one goes, the connection is dropped, so the
    // library never keeps a host alive that nobody uses.
    void AddListener(HostListener* listener);
    void RemoveListener(HostListener* listener);

  private:
    HostConnection() = default;
    void Drop();
    void ConnectDocument(IDispatch* document);
    void CheckActiveDocument();
    void Relay(HostEvent event, DISPPARAMS& arguments);
    void Relay(HostEvent event);
    void RelayWithObject(HostEvent event, IDispatch* object);

    IDispatch* application_ = nullptr;
    IDispatch* document_ = nullptr;
    std::unique_ptr<EventConnection> applicationEvents_;
    std::unique_ptr<EventConnection> documentEvents_;
    std::vector<HostListener*> listeners_;
};

}  // namespace tgp::automation
