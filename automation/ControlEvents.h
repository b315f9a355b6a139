#pragma once

#include <functional>
#include <memory>

#include "OleBase.h"

namespace tgp::automation {

class SelectionSink;

// The selection notification of a control on a caller's form, received through the control's own
// event source. The control's outgoing interfaces are found from its class information (or, for a
// control without it, from the connection points it lists and its type library), default interface
// first; the first one with a "Click" member is connected for that member, else the first one with a
// "Change" member. Click is preferred because a form's combo box also reports Change for each edit
// of its text, and one pick must be one notification.
class ControlEvents {
public:
    // Connects `handler`; nullptr when the control has no event source with either member (it can
    // still be driven, it just reports nothing).
    static std::unique_ptr<ControlEvents> Connect(IDispatch* control, std::function<void()> handler);
    ~ControlEvents();  // disconnects; a notification already on its way is dropped
    ControlEvents(const ControlEvents&) = delete;
    ControlEvents& operator=(const ControlEvents&) = delete;

private:
    ControlEvents(IConnectionPoint* point, SelectionSink* sink, DWORD cookie);

    IConnectionPoint* point_;
    SelectionSink* sink_;
    DWORD cookie_;
};

}  // namespace tgp::automation
