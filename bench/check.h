#pragma once

#include <cstdio>
#include <cstdlib>

namespace kova::bench {

inline void Check(bool ok, const char* what) {
  if (ok) return;
  std::fprintf(stderr, "bench: %s failed\n", what);
  std::exit(1);
}

}  // namespace kova::bench
