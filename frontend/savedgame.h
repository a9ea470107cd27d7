#pragma once

namespace tarvyle {

// Tags the game record as a saved game and writes it, by the rules of WriteNamedFile (namedfile.h).
// False when that fails.
bool SaveGame(const char* path);

// Makes a saved game the game. False, with the game untouched, for a short file, a wrong tag, or a
// record that could lead outside a table or to an abort.
bool LoadGame(const char* path);

}  // namespace tarvyle
