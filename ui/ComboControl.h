#pragma once

#include <functional>
#include <string>

namespace tgp::ui {

// A combo box on some form, as the binder and the dialogs drive it: the four members every host's
// combo box answers, and its selection notification. Implemented over a Win32 combo box, over a
// caller's control reached late-bound, and by the tests' fake.
class ComboControl {
  public:
    using SelectionHandler = std::function<void()>;

    virtual ~ComboControl();
    virtual void Clear() = 0;
    virtual void AddItem(const std::string& item) = 0;
    virtual void ListIndex(int index) = 0;
    virtual std::string Text() const = 0;
    virtual void Text(const std::string& text) = 0;

    // The handler runs whenever the box reports a selection (a host may report its own changes made
    // through ListIndex and Text too). One handler at a time; an empty one stops the reports.
    virtual void OnSelection(SelectionHandler handler) = 0;
};

}  // namespace tgp::ui
