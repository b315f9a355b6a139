#pragma once
// Shows a caller's form modally over a host's main window and gives the window back as it was.
#include "OleBase.h"

namespace tgp::automation {

// `form` is a window handle (a number) or an object with a Show member (a VBA or VB form). The
// owner (may be null: no host) is disabled while the form shows and afterwards gets back its
// enabled state, its placement (normal, minimised or maximised, and where) and the foreground.
//  - A window handle is made owned by the owner and shown; messages are pumped until the window is
//    destroyed or hidden. A handle that is no window raises 5 "Invalid procedure call or argument".
//  - An object is asked to Show itself modally (Show 1); when it returns while its window (an hWnd
//    member, if it has one) is still visible, messages are pumped until that window closes too.
//    An object without Show raises 438; an error of Show reaches the caller after the owner is
//    restored.
void ShowModalOver(HWND owner, const VARIANT& form);

}  // namespace tgp::automation
