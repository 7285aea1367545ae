#include "formats/extension_table.h"

#include <algorithm>

#include "core/platform.h"
#include "core/text.h"
#include "formats/mod_format.h"
#include "formats/native_format.h"
#include "formats/pr_format.h"
#include "formats/prf_format.h"
#include "formats/sdf_format.h"

namespace texturon {
namespace {

constexpr ProfileReader kNative{"native format", "text with the magic word Lumetrace_Data 1.0", ReadNativeProfile};
constexpr ProfileReader kNativeWithTable{"native header with table",
                                         "the native header; heights in the tab-separated table .LMTd beside it",
                                         ReadNativeHeaderWithTable};

constexpr ProfileReader kPrf{"Taylor Hobson PRF",
                             "text form, versions 1 to 3; the binary form is recognised and refused", ReadPrfProfile};
constexpr ProfileReader kMod{"Taylor Hobson MOD", "form data as text: positions, then heights", ReadModProfile};
constexpr ProfileReader kPr{"PTB PR", "old and new header line, heights in um", ReadPrProfile};
constexpr ProfileReader kSdf{"Standard Data Format", "text and binary, one profile or several", ReadSdfProfile};

constexpr const ProfileReader* kPrfChain[] = {&kPrf};
constexpr const ProfileReader* kModChain[] = {&kMod};
constexpr const ProfileReader* kPrChain[] = {&kPr};
constexpr const ProfileReader* kSdfChain[] = {&kSdf};
constexpr const ProfileReader* kLmtChain[] = {&kNative};
constexpr const ProfileReader* kLmthChain[] = {&kNativeWithTable};

constexpr ExtensionEntry kExtensions[] = {
    {".PRF", kPrfChain}, {".MOD", kModChain}, {".PR", kPrChain},
    {".SDF", kSdfChain}, {".lmt", kLmtChain}, {".LMTH", kLmthChain},
};

constexpr WriterEntry kWriters[] = {
    {".lmt", "native format", WriteNativeProfile},
    {".sdf", "Standard Data Format", WriteSdfProfile},
    {".prf", "Taylor Hobson PRF", WritePrfProfile},
    {".pr", "PTB PR", WritePrProfile},
};

}  // namespace

std::span<const ExtensionEntry> ExtensionTable() {
  return kExtensions;
}

std::span<const WriterEntry> WriterTable() {
  return kWriters;
}

const WriterEntry& WriterFor(const std::filesystem::path& path) {
  const std::string extension = TextFromPath(path.extension());
  const auto* const found =
      std::find_if(std::begin(kWriters), std::end(kWriters),
                   [&extension](const WriterEntry& entry) { return EqualIgnoringCase(entry.extension, extension); });
  return found != std::end(kWriters) ? *found : kWriters[0];
}

}  // namespace texturon
