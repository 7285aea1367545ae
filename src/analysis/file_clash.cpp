// SPDX-License-Identifier: Apache-2.0

#include "analysis/file_clash.h"

#include <map>

#include "platform/file_identity.h"
#include "platform/platform.h"

namespace texturon {
namespace {

struct Use {
  std::filesystem::path path;
  bool isWritten = false;
};

std::string Told(const Use& use) {
  return TextFromPath(use.path) + (use.isWritten ? ", which is written," : ", which is read,");
}

}  // namespace

std::string FileClash(const RunFiles& files) {
  std::map<FileIdentity, Use> uses;
  for (const std::filesystem::path& path : files.writes) {
    const auto identity = IdentityOf(path);
    if (!identity) continue;
    const auto [former, isNew] = uses.try_emplace(*identity, Use{path, true});
    if (isNew) continue;
    return TextFromPath(former->second.path) + " and " + TextFromPath(path) + ", which are both written, are one file.";
  }
  if (uses.empty()) return {};
  for (const std::filesystem::path& path : files.reads) {
    const auto identity = IdentityOf(path);
    const auto written = identity ? uses.find(*identity) : uses.end();
    if (written == uses.end()) continue;
    return Told({path, false}) + " and " + Told(written->second) + " are one file.";
  }
  return {};
}

}  // namespace texturon
