#include "MessageBoxHandler.h"

#include <cstdio>
#include <string>

#include "OleBase.h"
#include "Strings.h"
#include "core/Message.h"

namespace tgp::automation {

void InstallMessageBoxHandler() {
    wchar_t flag[8] = {};
    bool nonBlocking = GetEnvironmentVariableW(L"TGP_MESSAGE_NONBLOCKING", flag, 8) > 0;
    SetMessageHandler([nonBlocking](std::string_view text, std::string_view title) {
        std::wstring wideText = ToWide(text);
        std::wstring wideTitle = ToWide(title);
        if (nonBlocking) {
            std::wstring line = wideTitle + L": " + wideText + L"\n";
            OutputDebugStringW(line.c_str());
            std::fprintf(stderr, "%.*s: %.*s\n", static_cast<int>(title.size()), title.data(),
                         static_cast<int>(text.size()), text.data());
            return;
        }
        MessageBoxW(GetActiveWindow(), wideText.c_str(), wideTitle.c_str(), MB_OK | MB_TASKMODAL);
    });
}

}  // namespace tgp::automation
