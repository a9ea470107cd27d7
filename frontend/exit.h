#pragma once

namespace tarvyle {

// Writes the learn table at the end of the run: to a temporary file that is then renamed over the
// learn file, so that a complete one is on disk at every moment. Does nothing when another instance
// was seen or the configuration forbids it, and leaves alone what is no file. When the new file is
// smaller, the old one is kept, and the new one under its temporary name.
void WriteLearnFile();

}  // namespace tarvyle
