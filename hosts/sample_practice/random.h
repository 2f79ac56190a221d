#pragma once

#include <cstdint>
#include <random>
#include <span>

namespace kova::sample {

/// Random numbers that are the same in every build: the generator is the standard's, the distributions are
/// our own because the standard leaves theirs to the library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  /// 0 to limit - 1; `limit` is above 0. The remainder's tiny bias does not matter here.
  std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>((engine_() >> 16) % limit); }
  /// Both ends included.
  int Between(int least, int most) {
    return least + static_cast<int>(Below(static_cast<std::uint32_t>(most - least + 1)));
  }
  bool Chance(int percent) { return Between(1, 100) <= percent; }
  template <typename T>
  const T& Pick(std::span<const T> items) {
    return items[Below(static_cast<std::uint32_t>(items.size()))];
  }
  /// The same, the first items more often than the last.
  template <typename T>
  const T& PickCommon(std::span<const T> items) {
    const auto size = static_cast<std::uint32_t>(items.size());
    return items[Below(Below(size) + 1)];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace kova::sample
