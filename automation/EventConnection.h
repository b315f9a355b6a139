#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "OleBase.h"

namespace tgp::automation {

class EventSink;

// A connection to the events of another party's object (a control on a caller's form, a CAD host),
// received late-bound: no type library of theirs is compiled in. The object's outgoing interfaces
// are found from its class information (or, for an object without it, from the connection points
// it lists and its type library), default interface first; the first one for which the chooser
// picks any members is connected.
class EventConnection {
  public:
    // A handler receives the event's arguments as automation passes them (last first).
    using Handler = std::function<void(DISPPARAMS& arguments)>;
    // Given the members of an outgoing interface by name (upper case) and id, the handlers to run.
    using Chooser = std::function<std::map<DISPID, Handler>(const std::map<std::wstring, DISPID>& members)>;

    // nullptr when the object has no event source the chooser wants (it still works, it just
    // reports nothing).
    static std::unique_ptr<EventConnection> Connect(IDispatch* source, const Chooser& choose);
    ~EventConnection();  // disconnects; an event already on its way is dropped
    EventConnection(const EventConnection&) = delete;
    EventConnection& operator=(const EventConnection&) = delete;

  private:
    EventConnection(IConnectionPoint* point, EventSink* sink, DWORD cookie);

    IConnectionPoint* point_;
    EventSink* sink_;
    DWORD cookie_;
};

}  // namespace tgp::automation
