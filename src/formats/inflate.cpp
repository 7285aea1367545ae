// SPDX-License-Identifier: Apache-2.0

#include "formats/inflate.h"

#include <limits>
#include <zlib.h>

namespace texturon {
namespace {

/// One stream of zlib's, released at its end.
class Stream {
public:
  explicit Stream(std::string_view packed, PackedAs packedAs) {
    // zlib takes the input as it is, but not as const everywhere.
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream_.avail_in = static_cast<uInt>(packed.size());
    isOpen_ = packed.size() <= std::numeric_limits<uInt>::max() &&
              inflateInit2(&stream_, packedAs == PackedAs::kRaw ? -MAX_WBITS : MAX_WBITS) == Z_OK;
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;
  ~Stream() {
    if (isOpen_) inflateEnd(&stream_);
  }

  bool isOpen() const { return isOpen_; }
  /// Fills `out` as far as it goes; how zlib ended, and how many bytes came.
  int Fill(std::string& out, std::size_t& came) {
    stream_.next_out = reinterpret_cast<Bytef*>(out.data());
    stream_.avail_out = static_cast<uInt>(out.size());
    const int end = ::inflate(&stream_, Z_SYNC_FLUSH);
    came = out.size() - stream_.avail_out;
    return end;
  }

private:
  z_stream stream_{};
  bool isOpen_ = false;
};

}  // namespace

std::optional<std::string> Inflate(std::string_view packed, std::size_t size, PackedAs packedAs) {
  if (!CanUnpackTo(packed.size(), size)) return std::nullopt;
  Stream stream(packed, packedAs);
  if (!stream.isOpen()) return std::nullopt;
  // One byte more, which shows a stream that goes on.
  std::string out(size + 1, '\0');
  std::size_t came = 0;
  const int end = stream.Fill(out, came);
  if (end != Z_STREAM_END || came != size) return std::nullopt;
  out.resize(size);
  return out;
}

std::optional<std::string> InflateBegin(std::string_view packed, std::size_t size) {
  if (!CanUnpackTo(packed.size(), size)) return std::nullopt;
  Stream stream(packed, PackedAs::kZlib);
  if (!stream.isOpen()) return std::nullopt;
  std::string out(size, '\0');
  std::size_t came = 0;
  const int end = stream.Fill(out, came);
  if (end != Z_OK && end != Z_STREAM_END && end != Z_BUF_ERROR) return std::nullopt;
  out.resize(came);
  return out;
}

unsigned long Crc32Of(std::string_view bytes) {
  return ::crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
}

}  // namespace texturon
