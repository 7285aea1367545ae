#include "formats/extension_table.h"

#include "formats/native_format.h"

namespace texturon {
namespace {

constexpr ProfileReader kNative{"native format", "text with the magic word Lumetrace_Data 1.0", ReadNativeProfile};
constexpr ProfileReader kNativeWithTable{"native header with table",
                                         "the native header; heights in the tab-separated table .LMTd beside it",
                                         ReadNativeHeaderWithTable};

constexpr const ProfileReader* kLmtChain[] = {&kNative};
constexpr const ProfileReader* kLmthChain[] = {&kNativeWithTable};

constexpr ExtensionEntry kExtensions[] = {
    {".lmt", kLmtChain},
    {".LMTH", kLmthChain},
};

constexpr WriterEntry kWriters[] = {
    {".lmt", "native format"},
};

}  // namespace

std::span<const ExtensionEntry> ExtensionTable() {
  return kExtensions;
}

std::span<const WriterEntry> WriterTable() {
  return kWriters;
}

}  // namespace texturon
