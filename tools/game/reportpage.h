#pragma once

#include <string_view>

namespace tarvyle::tools {

// The files of tools/game/page/, byte for byte; the build puts them into the program. The page
// lacks the game: "@TITLE@" and "@GAME@" (a JSON object) stand where it goes, and two lines that
// name the other files where these go.
extern const std::string_view kReportHtml;
extern const std::string_view kReportCss;
extern const std::string_view kReportJs;

}  // namespace tarvyle::tools
