// Gives a fuzz target a fixed number of inputs, the same in every run: its seeds, cut and changed, and noise.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr int kInputs = 20000;

std::vector<std::string> ReadSeeds() {
  std::vector<std::filesystem::path> names;
  for (const auto& entry : std::filesystem::directory_iterator(KOVA_FUZZ_CORPUS))
    names.push_back(entry.path());
  std::sort(names.begin(), names.end());
  std::vector<std::string> seeds;
  for (const auto& name : names) {
    std::ifstream file(name, std::ios::binary);
    seeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return seeds;
}

class Mutator {
 public:
  explicit Mutator(std::vector<std::string> seeds) : seeds_(std::move(seeds)) {}

  std::string Next() {
    std::string input = seeds_.empty() || Below(10) == 0 ? Noise() : seeds_[Below(seeds_.size())];
    for (std::size_t n = Below(6); n > 0; --n) Change(input);
    return input;
  }

 private:
  std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : generator_() % limit; }
  char Byte() {
    static constexpr char kTelling[] = "\0\r\n\t []=;\"'\\\x1A\x7F\x80\x81\x95\xA0\xEF\xFC\xFE\xFF";
    return Below(2) == 0 ? kTelling[Below(sizeof kTelling - 1)] : static_cast<char>(generator_());
  }
  std::string Noise() {
    std::string noise(Below(200), '\0');
    for (char& c : noise) c = Byte();
    return noise;
  }
  void Change(std::string& input) {
    const std::size_t at = Below(input.size() + 1);
    switch (Below(5)) {
      case 0:
        input.insert(at, 1, Byte());
        break;
      case 1:
        if (at < input.size()) input[at] = Byte();
        break;
      case 2:
        input.erase(at, Below(8));
        break;
      case 3:
        input.resize(at);
        break;
      default:
        input.insert(at, input.substr(Below(input.size() + 1), Below(40)));
    }
  }

  std::vector<std::string> seeds_;
  std::mt19937 generator_{20240401};
};

TEST(FixedInputs, Hold) {
  const std::vector<std::string> seeds = ReadSeeds();
  EXPECT_FALSE(seeds.empty()) << "no seeds in " << KOVA_FUZZ_CORPUS;
  Mutator mutator(seeds);
  const auto run = [](const std::string& input) {
    // A copy of exactly its size, so that a read past the end is seen.
    const std::vector<std::uint8_t> bytes(input.begin(), input.end());
    ASSERT_EQ(LLVMFuzzerTestOneInput(bytes.data(), bytes.size()), 0);
  };
  for (const std::string& seed : seeds) run(seed);
  for (int i = 0; i < kInputs; ++i) run(mutator.Next());
}

}  // namespace
