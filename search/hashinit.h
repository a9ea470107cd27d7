#pragma once

// The configured size of the transposition tables.

namespace tarvyle {

// Sizes and allocates the tables by the configured "hash size" (twice the base-two logarithm of the
// entries per table) and fills the position keys. Called once at start-up, before any position is
// set up. Tells what it does; on a size below 65536 entries, or without memory, it prints an error
// and ends the process with status 1.
void HashInit();

}  // namespace tarvyle
