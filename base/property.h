#pragma once

#include <string>

// The configuration: name="value" lines, read at start-up and looked up by key.

namespace tarvyle {

// One configuration entry; name and value stand exactly as in the file, untrimmed.
struct Property {
  std::string name;
  std::string value;
  Property* next;  // the entry added before this one, or null
};

// Newest entry first. Entries stay until property_clear.
extern Property* dict;

// Adds the pair of every valid line of the file to `dict`. Returns false only when the file cannot
// be opened. A line whose first character is '#' is a comment; any other is split at runs of '='
// and '"' into name and value, and ignored when it has fewer than two parts. Nothing is trimmed, so
// an unquoted value keeps its line end: values that are compared whole must be quoted.
bool property_load(const char* path);

// Puts an entry with copies of both texts at the head of `dict`.
void property_add(const char* name, const char* value);

// Value of the newest entry whose name contains `needle`, or "" (never null). The match is by
// substring: a longer name that contains the needle answers too.
const char* property_get(const char* needle);

// Forgets every entry.
void property_clear();

}  // namespace tarvyle
