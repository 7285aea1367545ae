// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

namespace texturon {

/// An empty folder of a test's own, gone with everything in it when the test ends.
class ScratchFolder {
public:
  ScratchFolder()
      : path_(std::filesystem::path(::testing::TempDir()) /
              ("texturon-test-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

  std::filesystem::path Write(std::string_view name, std::string_view bytes) const {
    std::ofstream(path_ / name, std::ios::binary) << bytes;
    return path_ / name;
  }
  std::string Read(std::string_view name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::size_t FileCount() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_), {}));
  }

private:
  std::filesystem::path path_;
};

}  // namespace texturon
