#pragma once

namespace tarvyle::tools {

// Speaks the Universal Chess Interface: obeys the lines that come from one file descriptor and
// answers on the other, until "quit" or the end of the input. The engine must have been started.
// Standard output is the engine's again afterwards.
void SpeakUci(int in, int out);

}  // namespace tarvyle::tools
