// SPDX-License-Identifier: Apache-2.0

#include "formats/opdx_items.h"

#include "base/charset.h"
#include "formats/little_endian.h"

namespace texturon {
namespace {

constexpr std::size_t kStart = 12;   // behind the mark and four bytes
constexpr std::size_t kClosing = 2;  // bytes that close a container

/// How the content of an item is stored.
enum class Shape { kPlain, kBlock, kNamedBlock, kMatrix, kContainer, kEnd };

struct ItemType {
  unsigned char type;
  Shape shape;
  std::size_t size = 0;  // of a plain one
};

constexpr ItemType kTypes[] = {
    {0x00, Shape::kMatrix},     {0x01, Shape::kPlain, 1},  {0x04, Shape::kPlain, 2},   {0x05, Shape::kPlain, 2},
    {0x06, Shape::kPlain, 4},   {0x07, Shape::kPlain, 4},  {0x0A, Shape::kPlain, 8},   {0x0B, Shape::kPlain, 8},
    {0x0C, Shape::kPlain, 4},   {0x0D, Shape::kPlain, 8},  {0x0E, Shape::kNamedBlock}, {0x12, Shape::kBlock},
    {0x13, Shape::kBlock},      {0x15, Shape::kPlain, 9},  {0x18, Shape::kBlock},      {0x40, Shape::kNamedBlock},
    {0x42, Shape::kNamedBlock}, {0x46, Shape::kContainer}, {0x47, Shape::kContainer},  {0x7C, Shape::kNamedBlock},
    {0x7D, Shape::kContainer},  {0x7F, Shape::kEnd}};

constexpr unsigned char kText = 0x12;
constexpr unsigned char kQuantity = 0x13;

/// Takes parts off the front of bytes; nothing where they are not there.
class Bytes {
public:
  explicit Bytes(std::string_view bytes) : rest_(bytes) {}

  bool AtEnd() const { return rest_.empty(); }
  std::optional<std::string_view> Take(std::size_t size) {
    if (size > rest_.size()) return std::nullopt;
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
  }
  /// A length of four bytes, then so many.
  std::optional<std::string_view> TakeName() {
    const auto length = Take(4);
    return length ? Take(LittleEndian<std::uint32_t>(*length, 0)) : std::nullopt;
  }
  /// The size of a length, the length, then so many bytes.
  std::optional<std::string_view> TakeBlock() {
    const auto size = Take(1);
    const std::size_t count = size ? static_cast<unsigned char>((*size)[0]) : 0;
    if (count != 1 && count != 2 && count != 4) return std::nullopt;
    const auto bytes = Take(count);
    if (!bytes) return std::nullopt;
    std::size_t length = 0;
    for (std::size_t i = count; i-- > 0;) length = length << 8 | static_cast<unsigned char>((*bytes)[i]);
    return Take(length);
  }

private:
  std::string_view rest_;
};

struct NamedItem {
  std::string_view name;
  OpdxItem item;
  Shape shape = Shape::kEnd;
};

/// The next item of a container; nothing at its end, and where it is not understood.
std::optional<NamedItem> NextItem(Bytes& bytes) {
  const auto name = bytes.TakeName();
  const auto type = name ? bytes.Take(1) : std::nullopt;
  if (!type) return std::nullopt;
  for (const ItemType& known : kTypes) {
    if (known.type != static_cast<unsigned char>((*type)[0])) continue;
    if (known.shape == Shape::kEnd) return std::nullopt;
    const bool isNamed = known.shape == Shape::kNamedBlock || known.shape == Shape::kMatrix;
    if (isNamed && !bytes.TakeName()) return std::nullopt;
    if (known.shape == Shape::kMatrix && (!bytes.Take(4) || !bytes.TakeName())) return std::nullopt;
    const auto content = known.shape == Shape::kPlain ? bytes.Take(known.size) : bytes.TakeBlock();
    if (!content) return std::nullopt;
    return NamedItem{*name, {known.type, *content}, known.shape};
  }
  return std::nullopt;
}

/// The bytes of the items inside a container.
std::string_view Inside(std::string_view content) {
  return content.substr(0, content.size() - std::min(content.size(), kClosing));
}

}  // namespace

std::optional<OpdxItem> FindOpdxItem(std::string_view file, std::string_view path) {
  std::string_view level = file.substr(std::min(file.size(), kStart));
  for (;;) {
    const std::string_view name = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(path.size(), name.size() + 1));
    Bytes bytes(level);
    auto item = NextItem(bytes);
    while (item && item->name != name) item = NextItem(bytes);
    if (!item) return std::nullopt;
    if (path.empty()) return item->item;
    if (item->shape != Shape::kContainer) return std::nullopt;
    level = Inside(item->item.content);
  }
}

void ForEachOpdxName(std::string_view file, std::string_view path, const std::function<bool(std::string_view)>& use) {
  const auto container = FindOpdxItem(file, path);
  if (!container) return;
  Bytes bytes(Inside(container->content));
  for (auto item = NextItem(bytes); item; item = NextItem(bytes)) {
    if (!use(item->name)) return;
  }
}

std::string OpdxText(const std::optional<OpdxItem>& item) {
  return item && item->type == kText ? TextOfFile(item->content, true) : std::string();
}

std::optional<OpdxQuantity> OpdxQuantityOf(const std::optional<OpdxItem>& item) {
  if (!item || item->type != kQuantity) return std::nullopt;
  Bytes bytes(item->content);
  const auto value = bytes.Take(sizeof(double));
  const auto unit = value ? bytes.TakeName() : std::nullopt;
  const auto symbol = unit ? bytes.TakeName() : std::nullopt;
  if (!symbol) return std::nullopt;
  return OpdxQuantity{LittleEndian<double>(*value, 0), TextOfFile(*unit, true), TextOfFile(*symbol, true)};
}

double OpdxCount(const std::optional<OpdxItem>& item) {
  if (!item) return 0.0;
  switch (item->type) {
    case 0x06:
      return LittleEndian<std::int32_t>(item->content, 0);
    case 0x07:
      return LittleEndian<std::uint32_t>(item->content, 0);
    case 0x0A:
    case 0x0B:
      return static_cast<double>(LittleEndian<std::int64_t>(item->content, 0));
    default:
      return 0.0;
  }
}

}  // namespace texturon
