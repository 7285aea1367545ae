// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace texturon {

enum class PackedAs { kRaw, kZlib };  ///< a deflate stream alone, or with the header and check sum of zlib

/// Whether so many bytes can unpack to so many: no deflate stream grows more than 1032 times.
constexpr bool CanUnpackTo(std::size_t packed, std::size_t unpacked) {
  constexpr std::size_t kMostGrowth = 1032;
  return unpacked / kMostGrowth <= packed;
}

/// Unpacks a deflate stream to exactly `size` bytes. Nothing where it is damaged, or holds more or fewer. Refused
/// before anything is allocated: a size that the packed bytes cannot hold.
std::optional<std::string> Inflate(std::string_view packed, std::size_t size, PackedAs packedAs);

/// The first `size` bytes of what a stream of zlib unpacks to, fewer where it ends before; nothing where it is damaged.
std::optional<std::string> InflateBegin(std::string_view packed, std::size_t size);

/// The check sum of a ZIP's entries.
unsigned long Crc32Of(std::string_view bytes);

}  // namespace texturon
