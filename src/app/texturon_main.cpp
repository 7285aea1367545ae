// SPDX-License-Identifier: Apache-2.0

#include <iostream>

#include "app/command_line.h"
#include "platform/platform.h"

int main(int argc, char** argv) {
  texturon::PreferLargePages();
  std::ios::sync_with_stdio(false);
  const texturon::CommandWords words(argc, argv);
  return texturon::RunProgram(words.Texts());
}
