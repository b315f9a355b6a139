#pragma once

namespace tgp::automation {

// Routes the library's messages (tgp::ShowMessage) to a modal Windows message box. When the
// environment variable TGP_MESSAGE_NONBLOCKING is set (automated tests), the message is written to
// the debug output and standard error instead, so that nothing waits for a click.
void InstallMessageBoxHandler();

}  // namespace tgp::automation
