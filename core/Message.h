#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tgp {

// The library's one way of telling the user something outside a return value (the placeholder
// members use it). The automation layer installs a handler that shows a modal message box; natively
// the default handler writes "title: text" to standard error.
using MessageHandler = std::function<void(std::string_view text, std::string_view title)>;

void ShowMessage(std::string_view text, std::string_view title);

// Installs a handler and returns the previous one; an empty handler restores the default.
MessageHandler SetMessageHandler(MessageHandler handler);

}  // namespace tgp
