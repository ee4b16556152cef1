// Runs a fuzzer's checks on the files of folders, once each and in order: what the corpora are as tests, built without
// a fuzzer's run-time.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Fuzz.h"

namespace {

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int count, char** arguments) {
  std::size_t inputs = 0;
  for (int i = 1; i < count; ++i) {
    for (const std::filesystem::path& file : filesOf(arguments[i])) {
      // Before it runs, since a check that fails ends the program.
      std::printf("%s\n", file.c_str());
      std::fflush(stdout);
      std::ifstream stream(file, std::ios::binary);
      if (!stream) return EXIT_FAILURE;
      const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++inputs;
    }
  }
  return inputs > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
