#pragma once

#include <memory>

#include "EventConnection.h"
#include "OleBase.h"
#include "ui/ComboControl.h"

namespace tgp::automation {

// A combo box on the caller's form (a user form's, a VB6-style form's, or any object that answers
// the same members), driven late-bound through "Clear", "AddItem", "ListIndex" and "Text"; its
// selection reaches the handler through the control's own event source.
class LateBoundCombo final : public ui::ComboControl {
  public:
    // Raises 13 "Type mismatch" for Nothing or an object without the four members.
    explicit LateBoundCombo(IDispatch* control);
    ~LateBoundCombo() override;
    LateBoundCombo(const LateBoundCombo&) = delete;
    LateBoundCombo& operator=(const LateBoundCombo&) = delete;

    void Clear() override;
    void AddItem(const std::string& item) override;
    void ListIndex(int index) override;
    std::string Text() const override;
    void Text(const std::string& text) override;
    void OnSelection(SelectionHandler handler) override;

    // The caller's control itself (not AddRef'd).
    IDispatch* Object() const { return control_; }
    // Whether the control's selection notification is connected.
    bool Reports() const { return events_ != nullptr; }

  private:
    IDispatch* control_;
    std::unique_ptr<EventConnection> events_;
};

}  // namespace tgp::automation
