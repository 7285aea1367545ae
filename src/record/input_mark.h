// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>

namespace texturon {

/// What a record was read from, so that it can be told again. Empty digests where nobody wanted them.
struct InputMark {
  std::string sha256;  ///< of the file's bytes, 64 hexadecimal digits
  std::uint64_t bytes = 0;
  std::string companionSha256;  ///< of the second file that was read; empty: none
  std::string reader;           ///< name of the reader
};

}  // namespace texturon
