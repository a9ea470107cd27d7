#include "base/property.h"

#include <cstdio>
#include <string_view>

#include "base/token.h"

namespace tarvyle {

Property* dict = nullptr;

namespace {

constexpr int kLineSize = 256;  // 255 characters and the zero; the rest is a line of its own

void AddLine(std::string_view line) {
  if (line.starts_with('#')) return;
  const std::string name(NextToken(line, "=\""));
  const std::string value(NextToken(line, "=\""));
  if (!name.empty() && !value.empty()) property_add(name.c_str(), value.c_str());
}

}  // namespace

bool property_load(const char* path) {
  std::FILE* file = std::fopen(path, "r");
  if (file == nullptr) return false;
  char line[kLineSize];
  while (std::fgets(line, sizeof line, file) != nullptr) AddLine(line);
  std::fclose(file);
  return true;
}

void property_add(const char* name, const char* value) { dict = new Property{name, value, dict}; }

const char* property_get(const char* needle) {
  for (const Property* entry = dict; entry != nullptr; entry = entry->next) {
    if (entry->name.find(needle) != std::string::npos) return entry->value.c_str();
  }
  return "";
}

void property_clear() {
  while (dict != nullptr) {
    Property* entry = dict;
    dict = entry->next;
    delete entry;
  }
}

}  // namespace tarvyle
