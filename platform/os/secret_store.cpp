#include "platform/os/secret_store.h"

#include <cstdint>
#include <cstdio>

namespace kova::os {

std::string SecretFileName(std::string_view name) {
  std::uint64_t hash = 14695981039346656037u;  // FNV-1a; do not change, files have these names
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
  char text[24];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
  return text;
}

}  // namespace kova::os
