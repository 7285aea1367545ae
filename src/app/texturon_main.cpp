#include <iostream>

#include "app/command_line.h"

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  return texturon::RunProgram(argc, argv);
}
