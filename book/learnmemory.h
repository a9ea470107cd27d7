#pragma once

#include <cstddef>

namespace tarvyle {

// Memory for learn nodes, aligned for one, zeroed; null when there is none. It is only given back
// as a whole.
void* LearnAllocate(std::size_t bytes);

// Gives back all of it. For tests and tools only: the table must be cleared first.
void LearnRelease();

}  // namespace tarvyle
