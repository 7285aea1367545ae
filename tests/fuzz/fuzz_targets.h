// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// What is fed with bytes from outside: it may refuse, but neither fall over nor break its own promises.
struct FuzzTarget {
  std::string name;
  std::function<void(std::string_view bytes)> run;
  std::function<void(const std::filesystem::path& folder)> writeSeeds;  ///< inputs to start from, one a file
};

/// Every reader of the extension table, those without a routine as one; then plans, settings, journals, command lines.
void AddReaderTargets(std::vector<FuzzTarget>& targets);
void AddTextTargets(std::vector<FuzzTarget>& targets);

/// A folder of this process, removed at its end, for what a target reads or writes.
const std::filesystem::path& FuzzFolder();

/// Ends the program where a promise is broken.
inline void Expect(bool isTrue) {
  if (!isTrue) __builtin_trap();
}

}  // namespace texturon
