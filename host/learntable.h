#pragma once

#include <functional>

#include "book/learn.h"

// The engine's learn table from outside.

namespace tarvyle {

// Hands out every node, bucket by bucket as the engine writes them, until `visit` returns false.
void VisitLearnTable(const std::function<bool(const LearnNode&)>& visit);

}  // namespace tarvyle
