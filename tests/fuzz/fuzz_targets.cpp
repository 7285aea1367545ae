// SPDX-License-Identifier: Apache-2.0

// One program for every target: TEXTURON_FUZZ_TARGET names the one to run. With TEXTURON_FUZZ_LIST set the program
// prints the names instead; with TEXTURON_FUZZ_SEEDS it writes the target's seeds into that folder first. Built without
// a fuzzer it feeds every target with its seeds and with nothing, once.

#include "fuzz/fuzz_targets.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

namespace texturon {

const std::filesystem::path& FuzzFolder() {
  static const std::filesystem::path folder = [] {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("texturon-fuzz-" + std::to_string(std::random_device()()));
    std::filesystem::create_directories(path);
    std::atexit([] {
      std::error_code ignored;
      std::filesystem::current_path("/", ignored);
      std::filesystem::remove_all(FuzzFolder(), ignored);
    });
    return path;
  }();
  return folder;
}

namespace {

std::vector<FuzzTarget> Targets() {
  std::vector<FuzzTarget> targets;
  AddReaderTargets(targets);
  AddTextTargets(targets);
  return targets;
}

}  // namespace
}  // namespace texturon

#ifdef TEXTURON_FUZZ

namespace {

const texturon::FuzzTarget& Chosen() {
  static const texturon::FuzzTarget target = [] {
    const char* const name = std::getenv("TEXTURON_FUZZ_TARGET");
    for (const texturon::FuzzTarget& candidate : texturon::Targets()) {
      if (name != nullptr && candidate.name == name) return candidate;
    }
    std::cerr << "TEXTURON_FUZZ_TARGET names no target\n";
    std::exit(2);
  }();
  return target;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  if (std::getenv("TEXTURON_FUZZ_LIST") != nullptr) {
    for (const texturon::FuzzTarget& target : texturon::Targets()) std::cout << target.name << "\n";
    std::exit(0);
  }
  if (const char* const folder = std::getenv("TEXTURON_FUZZ_SEEDS")) Chosen().writeSeeds(folder);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Chosen().run({reinterpret_cast<const char*>(data), size});
  return 0;
}

#else

int main() {
  for (const texturon::FuzzTarget& target : texturon::Targets()) {
    const std::filesystem::path seeds = texturon::FuzzFolder() / ("seeds-" + target.name);
    std::filesystem::create_directories(seeds);
    target.writeSeeds(seeds);
    target.run({});
    for (const auto& seed : std::filesystem::directory_iterator(seeds)) {
      std::ifstream file(seed.path(), std::ios::binary);
      target.run(std::string(std::istreambuf_iterator<char>(file), {}));
    }
  }
  return 0;
}

#endif
