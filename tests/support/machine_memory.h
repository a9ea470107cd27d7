#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>

// The machine's memory, and how a child process gets less of it.

namespace tarvyle::support {

inline double MachineBytes() {
  return static_cast<double>(sysconf(_SC_PHYS_PAGES)) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// For a child process: as much address space as given, all that it has included.
inline void LimitMemory(rlim_t megabytes) {
  rlimit limit{};
  limit.rlim_cur = megabytes << 20;
  limit.rlim_max = limit.rlim_cur;
  if (setrlimit(RLIMIT_AS, &limit) != 0) std::exit(3);
}

}  // namespace tarvyle::support
