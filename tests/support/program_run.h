// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "app/command_line.h"

namespace texturon {

struct Outcome {
  int status;
  std::string out;
  std::string error;
};

/// Runs the console program in this process.
inline Outcome Texturon(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "texturon");
  std::ostringstream out;
  std::ostringstream error;
  std::streambuf* const formerOut = std::cout.rdbuf(out.rdbuf());
  std::streambuf* const formerError = std::cerr.rdbuf(error.rdbuf());
  const int status = RunProgram(arguments);
  std::cout.rdbuf(formerOut);
  std::cerr.rdbuf(formerError);
  std::cout.clear();
  return {status, out.str(), error.str()};
}

inline std::string Sample(const char* name) {
  std::string path = TEXTURON_SOURCE_DIR "/samples/";
  return path += name;
}

}  // namespace texturon
