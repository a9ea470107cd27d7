#pragma once

namespace tarvyle {

// Starts up, obeys standard input line by line until "quit" or its end, and writes the learn file.
void PlayWinBoard();

// Bytes of the line buffer: 1023 characters and the zero. The rest of a longer line is a line of
// its own.
inline constexpr int kInputLineSize = 1024;

// Obeys one line. False when it was "quit".
bool ObeyLine(const char* line);

}  // namespace tarvyle
