// Runs a fuzzer's checks without a fuzzer's run-time: on the files of folders, once each and in order, and then on
// thousands of inputs that are put together from pieces of these, the same ones each time.

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "Fuzz.h"

namespace {

constexpr int rounds = 20000;
constexpr std::size_t longest = 4000;

std::string current;

// A check that fails ends the program, which tells of what.
void check(std::string input) {
  current = std::move(input);
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(current.data()), current.size());
}

extern "C" void showCurrent(int) {
  std::fputs("with these bytes:", stderr);
  for (const char byte : current)
    std::fprintf(stderr, " %02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
  std::fputs("\n", stderr);
}

// Pieces of the seeds one behind the other, some of them many times, and now and then another byte.
std::string mixture(const std::vector<std::string>& seeds, std::mt19937& random) {
  const auto below = [&random](std::size_t limit) { return limit == 0 ? 0 : random() % limit; };
  std::string input;
  for (std::size_t pieces = 1 + below(8); pieces > 0; --pieces) {
    const std::string& seed = seeds[below(seeds.size())];
    const std::size_t start = below(4) == 0 ? below(seed.size()) : 0;
    const std::string piece = seed.substr(start, below(2) == 0 ? below(seed.size() + 1) : seed.size());
    for (std::size_t times = below(8) == 0 ? 1 + below(40) : 1; times > 0 && input.size() < longest; --times)
      input += piece;
  }
  for (std::size_t changes = below(4); changes > 0 && !input.empty(); --changes)
    input[below(input.size())] = static_cast<char>(below(2) == 0 ? random() : input[below(input.size())]);
  return input;
}

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int count, char** arguments) {
  std::signal(SIGABRT, showCurrent);
  std::vector<std::string> seeds;
  for (int i = 1; i < count; ++i) {
    for (const std::filesystem::path& file : filesOf(arguments[i])) {
      std::printf("%s\n", file.c_str());
      std::fflush(stdout);
      std::ifstream stream(file, std::ios::binary);
      if (!stream) return EXIT_FAILURE;
      check(seeds.emplace_back(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()));
    }
  }
  if (seeds.empty()) return EXIT_FAILURE;
  std::mt19937 random(1);
  for (int round = 0; round < rounds; ++round) check(mixture(seeds, random));
  return EXIT_SUCCESS;
}
