#include "Strings.h"

namespace tgp::automation {

std::string ToUtf8(const wchar_t* text, int length) {
    if (!text || length == 0) return {};
    int bytes = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes > 0 ? bytes : 0), '\0');
    if (bytes > 0) WideCharToMultiByte(CP_UTF8, 0, text, length, result.data(), bytes, nullptr, nullptr);
    if (length < 0 && !result.empty()) result.pop_back();  // the terminator was counted
    return result;
}

std::string ToUtf8(BSTR text) {
    return ToUtf8(text, text ? static_cast<int>(SysStringLen(text)) : 0);
}

std::wstring ToWide(std::string_view text) {
    if (text.empty()) return {};
    int size = static_cast<int>(text.size());
    int chars = MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(chars > 0 ? chars : 0), L'\0');
    if (chars > 0) MultiByteToWideChar(CP_UTF8, 0, text.data(), size, result.data(), chars);
    return result;
}

BSTR ToBstr(std::string_view text) {
    std::wstring wide = ToWide(text);
    return SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
}

}  // namespace tgp::automation
