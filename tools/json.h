#pragma once

#include <string>
#include <string_view>

namespace tarvyle::tools {

// A text as a JSON string, in quotation marks; also safe inside an HTML script element.
std::string JsonText(std::string_view text);

}  // namespace tarvyle::tools
