#pragma once

// Programs beside this one, for what several workstations do at once, and what the servers they use take of the machine.
// Only the parent's copy of a child's results counts, so these live in memory that both see.

#include <dirent.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "bench/check.h"

namespace kova::bench {

/// `count` zeroed objects in memory that child processes share; theirs until the program ends.
template <typename T>
T* Shared(std::size_t count) {
  void* memory = mmap(nullptr, count * sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  Check(memory != MAP_FAILED, "shared memory");
  return static_cast<T*>(memory);
}

/// Runs `work` in a process of its own, which ends with this one.
template <typename Work>
pid_t StartProcess(Work work) {
  std::fflush(nullptr);
  const pid_t process = fork();
  Check(process >= 0, "fork");
  if (process > 0) return process;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  work();
  std::fflush(nullptr);
  _exit(0);
}

inline void AwaitProcess(pid_t process) {
  int status = 0;
  Check(waitpid(process, &status, 0) == process && status == 0, "a process");
}

/// What a group of processes takes: of the processors since they began, of the memory now (shared pages by their share).
struct Use {
  double seconds = 0;
  double megabytes = 0;
};

/// The processes of these numbers and their children.
inline Use UseOf(const std::string& numbers) {
  std::vector<std::string> parents, all;
  std::istringstream words(numbers);
  for (std::string word; words >> word;) parents.push_back(word);
  all = parents;
  for (const std::string& parent : parents) {
    std::ifstream children("/proc/" + parent + "/task/" + parent + "/children");
    for (std::string child; children >> child;) all.push_back(child);
  }
  Use use;
  for (const std::string& process : all) {
    std::ifstream stat("/proc/" + process + "/stat"), memory("/proc/" + process + "/smaps_rollup");
    std::string line;
    std::getline(stat, line);
    std::istringstream fields(line.substr(std::min(line.size(), line.rfind(')') + 1)));
    std::string skipped;
    double user = 0, system = 0;
    for (int i = 0; i < 11; ++i) fields >> skipped;
    if (fields >> user >> system) use.seconds += (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
    double kilobytes = 0;
    while (std::getline(memory, line)) {
      if (std::sscanf(line.c_str(), "Pss: %lf", &kilobytes) == 1) use.megabytes += kilobytes / 1024;
    }
  }
  return use;
}

}  // namespace kova::bench
