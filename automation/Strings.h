#pragma once

#include <string>
#include <string_view>

#include "OleBase.h"

namespace tgp::automation {

// The core speaks UTF-8; automation strings are UTF-16 BSTRs.
std::string ToUtf8(const wchar_t* text, int length = -1);
std::string ToUtf8(BSTR text);
std::wstring ToWide(std::string_view text);
// A new BSTR the caller owns.
BSTR ToBstr(std::string_view text);

}  // namespace tgp::automation
