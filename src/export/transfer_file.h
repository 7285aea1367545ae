// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

// The ASCII transfer format of statistics programs (Q-DAS, ".dfq"): K fields that describe characteristics, then a line
// of values a measurement. Texts are Windows-1252.

/// A parameter with limits.
struct TransferCharacteristic {
  std::string name;
  std::string unit;
  int decimals = 3;
  std::optional<double> lower;  ///< a limit that is not set is left out
  std::optional<double> upper;
};

/// One measurement: a value a characteristic, none where it could not be computed.
struct TransferRecord {
  std::string identification;
  std::vector<std::optional<double>> values;
  std::tm time{};
};

/// The whole file. Values stand in the order of the characteristics; one that is missing or not finite is left out and
/// has state 255, for 0 would be a measured one. Texts are cut to the lengths that the format allows and keep no byte
/// that separates.
std::string TransferText(const std::vector<TransferCharacteristic>& characteristics,
                         const std::vector<TransferRecord>& records);

}  // namespace texturon
