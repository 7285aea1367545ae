// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace texturon {

// The description of a surface exchange file (ISO 25178-72), its "main.xml". Every length in it is in metres.

/// One axis: positions or heights are whole numbers times `increment` plus `offset`, or numbers of metres already.
struct ExchangeAxis {
  bool isAbsolute = false;  ///< its values stand in the data
  char dataType = '\0';     ///< I int16, L int32, F float, D double; NUL: not stated
  std::optional<double> increment;
  double offset = 0.0;

  bool hasIntegers() const { return dataType == 'I' || dataType == 'L'; }
  /// Bytes of a value in the data file.
  std::size_t size() const { return dataType == 'I' ? 2 : dataType == 'D' ? 8 : 4; }
  /// A stored number in metres.
  double Metres(double stored) const { return hasIntegers() ? stored * increment.value_or(1.0) + offset : stored; }
};

/// A link and the digest of what it leads to, which may be missing.
struct ExchangeLink {
  std::string name;
  std::string md5;
};

struct ExchangeHeader {
  std::string featureType;  ///< PRF, SUR, PCL
  ExchangeAxis x, y, z;
  std::int64_t sizes[3] = {0, 1, 1};  ///< points of a profile, lines, profiles
  ExchangeLink points, valid;         ///< without a name: a list; every point is valid
  std::string checksumFile;
  std::string date;
  std::string comment;

  std::int64_t pointsOfAll() const { return sizes[0] * sizes[2]; }
};

/// Reads it; what is wrong with it, or nothing. The sizes are then of one profile or several that can be taken.
std::string ReadExchangeHeader(std::string_view xml, ExchangeHeader& header);

}  // namespace texturon
