#pragma once

namespace tarvyle {

// Looks through the system's process list for this program. Returns 0 when it runs once, 1 when the
// list cannot be read, 2 when another instance runs.
unsigned prog_is_run();

// Builds the attack tables, keys and transposition tables, and evaluation tables, in this order.
// Called once, before the first position is set up. Ends the process when the tables cannot be had.
void InitAllVar();

// Takes over what the configuration says of the randomised search, the time for a move and the play
// style, as far as it is valid; says so on standard output.
void ApplySettings();

// Makes the whole process, but for its tables, what it is before it reads its files: an empty
// configuration, default settings, no mode, no learned position, the start position. For tests and
// tools.
void ResetProcess();

// Everything before the first command: banner, configuration, tables, start position, learn table
// or book, settings. Ends the process with status 1 when something needed is missing.
void StartUp();

}  // namespace tarvyle
