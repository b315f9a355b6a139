#pragma once

#include <string>
#include <string_view>

namespace tgp {

// Text as XML character data or attribute value: &, <, > and " escaped.
std::string XmlEscaped(std::string_view text);

}  // namespace tgp
