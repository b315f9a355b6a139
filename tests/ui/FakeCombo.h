#pragma once
// A combo box that behaves like a form's drop-down list: setting ListIndex, or a Text that is one of
// its items, selects that item and reports the selection, as the host's Click does.
#include <string>
#include <vector>

#include "ui/ComboControl.h"

namespace tgp::ui::test {

class FakeCombo final : public ComboControl {
  public:
    void Clear() override {
        items.clear();
        index = -1;
        ++clears;
    }
    void AddItem(const std::string& item) override { items.push_back(item); }
    void ListIndex(int i) override {
        index = i >= 0 && i < static_cast<int>(items.size()) ? i : -1;
        Report();
    }
    std::string Text() const override {
        return index >= 0 ? items[static_cast<std::size_t>(index)] : std::string();
    }
    void Text(const std::string& text) override {
        index = -1;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (items[i] == text) index = static_cast<int>(i);
        }
        Report();
    }
    void OnSelection(SelectionHandler h) override { handler = std::move(h); }

    // The user picks an entry.
    void Pick(const std::string& text) { Text(text); }

    std::vector<std::string> items;
    int index = -1;
    int clears = 0;
    SelectionHandler handler;

  private:
    void Report() {
        if (handler) handler();
    }
};

}  // namespace tgp::ui::test
