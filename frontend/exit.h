#pragma once

namespace tarvyle {

// Writes the learn table at the end of the run: to a temporary file that is then renamed over the
// learn file, so that a complete one is on disk at every moment. Does nothing when another instance
// was seen or the configuration forbids it, keeps the old file when the new one is smaller, and
// leaves alone what is no file.
void WriteLearnFile();

}  // namespace tarvyle
