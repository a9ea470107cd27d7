#pragma once

namespace tarvyle {

// Starts up, obeys standard input line by line until "quit" or its end, and writes the learn file.
void PlayWinBoard();

// Obeys one line. False when it was "quit".
bool ObeyLine(const char* line);

}  // namespace tarvyle
