#pragma once

namespace tarvyle {

// Writes the game record to a file, tagged as a saved game, through links to where they lead. False
// when that fails: then there is no half file, and an older game of this name is still whole; but
// only where the folder takes a new file beside it.
bool SaveGame(const char* path);

// Makes a saved game the game. False, with the game untouched, for a short file, a wrong tag, or a
// record that could lead outside a table or to an abort.
bool LoadGame(const char* path);

}  // namespace tarvyle
