#pragma once

#include <string>

#include "tools/learn/record.h"

namespace tarvyle::tools {

// What is wrong with a record that the engine's reader accepts: a text that is no position or not
// in the engine's own form, a key, side or length that does not belong to it, a depth or score that
// no search gives. "" when all is well. Changes the current position.
std::string RecordProblem(const LearnRecord& record);

}  // namespace tarvyle::tools
