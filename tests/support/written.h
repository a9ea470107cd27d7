#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace tarvyle::support {

// What a procedure writes to the stream that it is given.
template <typename Write>
std::string Written(Write write) {
  char* text = nullptr;
  std::size_t size = 0;
  std::FILE* stream = open_memstream(&text, &size);
  write(stream);
  std::fclose(stream);
  std::string result(text, size);
  std::free(text);
  return result;
}

}  // namespace tarvyle::support
