// Runs a fuzz target over files, without a fuzzer: usage: PROGRAM FILE-OR-FOLDER...
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

bool replayFile(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  const std::vector<char> content{std::istreambuf_iterator<char>(stream), {}};
  if (!stream) return false;
  const std::vector<std::uint8_t> input(content.begin(), content.end());  // of the exact size
  std::printf("%s: %zu bytes\n", path.c_str(), input.size());
  std::fflush(stdout);  // the last line tells which input ended the program
  LLVMFuzzerTestOneInput(input.data(), input.size());
  return true;
}

int replay(const fs::path& path) {
  if (!fs::is_directory(path)) return replayFile(path) ? 1 : 0;
  int count = 0;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    if (entry.is_regular_file() && replayFile(entry.path())) ++count;
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) {
    const int replayed = replay(argv[i]);
    if (replayed == 0) std::fprintf(stderr, "nothing to replay in %s\n", argv[i]);
    if (replayed == 0) return 1;
    count += replayed;
  }
  std::printf("%d inputs replayed\n", count);
  return count > 0 ? 0 : 1;
}
