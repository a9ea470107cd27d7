#pragma once

namespace tarvyle {

// Raised by one just before the process aborts on a broken invariant.
extern int __foo;  // NOLINT(bugprone-reserved-identifier): the name is part of the interface

// Raises the counter and aborts: what a broken invariant comes to.
[[noreturn]] void AbortOnBrokenInvariant();

// Aborts the process without a message when `condition` is false. A desynchronised board is a
// programming error and is never repaired. (The brackets keep a macro of this name away.)
void(assert)(bool condition);

}  // namespace tarvyle
