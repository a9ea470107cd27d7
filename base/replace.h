#pragma once

#include <cstdio>
#include <string>

// Putting a file in the place of another: it is written beside it under a name of its own, brought
// to the disk itself and renamed over it, so that the old content or the new one is there at every
// moment. Whatever fails leaves its reason in `errno`.

namespace tarvyle {

// The folder of `path` with the slash at its end, or "" (current directory).
std::string FolderOf(const std::string& path);

// The file that `path` names, behind all links. Where nothing stands yet, or a link to nowhere, its
// folder behind all links and its name; `path` as it was given where not even the folder is there:
// ".." and links on the way to it are the system's matter.
std::string BehindLinks(const std::string& path);

// Whether a file may be renamed over what stands at `path`. There is a rule for each of three kinds
// of files, since they are named by others and mean other things to who named them. A link is the
// case in point: nobody asked for the one at the engine's own name, and what it leads to is not the
// engine's to write; who gives a link in a command means what it leads to.

// The engine's own file, in its own folder and under a name that nobody chose. It must be replaced
// as long as that loses no file: a link to a file gives way itself, and so does a write-protected
// file. True for a folder, too, over which the renaming fails and says so. False for a device, a
// pipe, and a link to anything but a file.
bool TakesOwnFile(const std::string& path);

// A file that somebody named in a command of the engine; `path` is behind the links. True where
// nothing stands, or a plain file that could be written. False for whatever is to be written into
// directly, as if there were no renaming: a device, a pipe, a link to nowhere; and for a
// write-protected file, where that fails.
bool TakesNamedFile(const std::string& path);

// An output of the workbench; `path` is behind the links. True where nothing stands, or a plain
// file that could be written: only whole files are written, and never into anything else. False
// with `errno` 0 for what is no plain file.
bool TakesOutput(const std::string& path);

// Makes a file to be written, of a name that nothing has; null when that fails.
std::FILE* CreateNewFile(const std::string& path);

// Gives a file that is being written the mode of the one whose place it will take, if there is one:
// what its user kept from others stays so.
bool CopyMode(const std::string& from, std::FILE* to);

// Ends a file of which all is `written`, or not: has it on the disk itself if so, and closes it.
// Whether all of that, and the writing, succeeded.
bool FinishFile(std::FILE* file, bool written);

// The same for a temporary file: when it cannot be finished, it is removed.
bool FinishOrRemove(std::FILE* file, bool written, const std::string& temporary);

// Lets a finished file take its place. When that fails, the file is removed.
bool MoveIntoPlace(const std::string& temporary, const std::string& place);

// Brings the names in the folder of `path` to the disk, if that can be done: a new name then lasts
// as its file does.
void SyncFolderOf(const std::string& path);

}  // namespace tarvyle
