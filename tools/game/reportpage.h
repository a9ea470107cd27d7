#pragma once

namespace tarvyle::tools {

// The web page of a game without the game; "@TITLE@" and "@GAME@" (a JSON object) stand where it
// goes.
extern const char* const kReportPage;

}  // namespace tarvyle::tools
