// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string_view>

namespace texturon {

/// A file of share/ that the program carries with it.
struct EmbeddedFile {
  std::string_view name;  ///< without folder and extension
  std::string_view text;
};

}  // namespace texturon
