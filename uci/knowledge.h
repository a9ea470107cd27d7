#pragma once

#include <string>

// Book and learn table: where their files are, when they are read, what is put down.

namespace tarvyle::uci {

// The file of this name beside the program or, if there is none, in the user's data folder; "" when
// it is in neither.
std::string DefaultFile(const std::string& name);

// Lets the next FreshenKnowledge read the files anew.
void KnowledgeIsStale();

// Reads learn file and book that the settings name into the empty learn table, unless that has been
// done; reports what cannot be read. The book is left out when it is not to be used, or when the
// learn file holds one. The position on the board must be set up again afterwards when this returns
// true.
bool FreshenKnowledge();

// Appends the learn table's record of the position on the board to the file that the settings name,
// if they do. A file that cannot be written is reported.
void PutDownResult();

}  // namespace tarvyle::uci
