#pragma once

#include <cstdint>

namespace tarvyle {

// A quick "surely not in the learn table" for the search, which asks at nearly every node: a few
// bits a key, in a field that grows with the table. Never says no for a key that was noted.
bool MayBeLearned(std::uint32_t key_lo, std::uint32_t key_hi);

// Fetches what MayBeLearned will look at into the cache.
void PrefetchLearned(std::uint32_t key_lo, std::uint32_t key_hi);

// Notes a key that comes into the table.
void NoteLearned(std::uint32_t key_lo, std::uint32_t key_hi);

// Whether the field holds as many keys as it should: with more it says "may be" more often.
bool LearnFilterIsFull();

// Takes a wider field, without any key: all are to be noted anew. False without memory: the field
// stays as it is, with its keys.
bool WidenLearnFilter();

// Forgets all keys.
void ClearLearnFilter();

}  // namespace tarvyle
