#pragma once

#include <functional>
#include <string>

#include "book/learn.h"

// The engine's learn table as records of a learn file.

namespace tarvyle {

// Hands out every node, bucket by bucket as the engine writes them, until `visit` returns false.
void VisitLearnTable(const std::function<bool(const LearnNode&)>& visit);

// A node's record, byte for byte as the engine writes it.
std::string RecordOf(const LearnNode& node);

}  // namespace tarvyle
