#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

// What the fuzzers share. A fuzzer is given bytes, does with them what the program would, and checks what must hold
// whatever they are.

/// Called by the fuzzing engine for each input; 0 is the only answer it knows.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tarnby::fuzz {

/// Ends the run when a promise is broken: the engine keeps the input.
inline void check(bool holds, const char* promise) {
  if (holds) return;
  (void)std::fprintf(stderr, "Broken: %s\n", promise);
  std::abort();
}

inline std::string_view text_of(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Takes what stands before the next NUL off the front; all of it when there is none.
inline std::string_view next_word(std::string_view& rest) {
  const std::string_view word = rest.substr(0, rest.find('\0'));
  rest.remove_prefix(word.size() < rest.size() ? word.size() + 1 : word.size());
  return word;
}

/// A folder of this process's own, gone at its end.
class Scratch {
 public:
  Scratch() : folder_((std::filesystem::temp_directory_path() / "tarnby-fuzz-XXXXXX").string()) {
    check(mkdtemp(folder_.data()) != nullptr, "there is a folder for temporary files");
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string path(std::string_view name) const { return folder_ + "/" + std::string(name); }

  void write(std::string_view name, std::string_view bytes) const {
    std::ofstream(path(name), std::ios::binary) << bytes;
  }
  std::string read(std::string_view name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::string folder_;
};

}  // namespace tarnby::fuzz
