#include "core/Message.h"

#include <cstdio>
#include <utility>

namespace tgp {

namespace {

void WriteToStandardError(std::string_view text, std::string_view title) {
    std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(title.size()), title.data(),
                 static_cast<int>(text.size()), text.data());
}

MessageHandler& CurrentHandler() {
    static MessageHandler handler = WriteToStandardError;
    return handler;
}

}  // namespace

void ShowMessage(std::string_view text, std::string_view title) {
    CurrentHandler()(text, title);
}

MessageHandler SetMessageHandler(MessageHandler handler) {
    MessageHandler previous = std::move(CurrentHandler());
    CurrentHandler() = handler ? std::move(handler) : MessageHandler(WriteToStandardError);
    return previous;
}

}  // namespace tgp
