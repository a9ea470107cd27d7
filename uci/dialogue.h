#pragma once

namespace tarvyle::uci {

// Speaks the Universal Chess Interface: obeys the lines that come from one file descriptor and
// answers on the other, until "quit" or the end of the input. The engine must have been started.
// Standard output is the engine's again afterwards.
void SpeakUci(int in, int out);

// The same on standard input and output. A GUI that goes away ends the input: that is the end, not
// a signal.
void SpeakUci();

}  // namespace tarvyle::uci
