// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace texturon {

/// Text as screens and papers show it: signs as minus signs (none before zeros), powers of ten and of units raised
/// ("1.5e-002 µm2" becomes "1.5·10⁻² µm²"), "um" as µm and "#/cm" as 1/cm. Nothing within words changes. UTF-8.
std::string ReadableText(std::string_view utf8);

}  // namespace texturon
