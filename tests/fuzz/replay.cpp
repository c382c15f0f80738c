// Feeds a fuzz target the files and folders named as arguments, without a fuzzer.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzzing.h"

namespace {

std::vector<std::filesystem::path> InputsOf(const std::filesystem::path& place) {
  if (!std::filesystem::is_directory(place)) return {place};
  std::vector<std::filesystem::path> inputs;
  for (const auto& entry : std::filesystem::directory_iterator(place)) {
    if (entry.is_regular_file()) inputs.push_back(entry.path());
  }
  std::sort(inputs.begin(), inputs.end());
  return inputs;
}

/// The name comes first: a finding may end the process.
void Replay(const std::filesystem::path& input) {
  std::printf("%s\n", input.c_str());
  std::fflush(stdout);
  std::ifstream file(input, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + input.string());
  const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  Fuzzing::goesAllWays = true;
  std::size_t count = 0;
  try {
    for (int i = 1; i < argc; ++i) {
      for (const auto& input : InputsOf(argv[i])) {
        Replay(input);
        ++count;
      }
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "FINDING: this left the target: %s\n", failure.what());
    return 1;
  }
  std::printf("%zu inputs\n", count);
  return count == 0 ? 1 : 0;
}
