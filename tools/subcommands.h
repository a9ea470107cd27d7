#pragma once

#include "tools/commandline.h"

// The commands of `tarv`: each of these adds one, or a group of them, to the program.

namespace tarvyle::tools {

// positions, movelists, perft, search, bench, tables: the engine's parts one by one.
void AddEngineParts(const Command& program);

// learn: what learn files hold, and bringing several together.
void AddLearn(const Command& program);

// book: checking, measuring and making book files.
void AddBook(const Command& program);

// game: saved games for people and for other programs.
void AddGame(const Command& program);

// suite: how many positions of a test suite the engine solves.
void AddSuite(const Command& program);

// uci: the engine behind another protocol.
void AddUci(const Command& program);

}  // namespace tarvyle::tools
