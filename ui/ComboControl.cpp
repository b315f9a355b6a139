#include "ui/ComboControl.h"

namespace tgp::ui {

ComboControl::~ComboControl() = default;

}  // namespace tgp::ui
