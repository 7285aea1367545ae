#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/profile_set.h"
#include "core/prompts.h"
#include "formats/profile_reader.h"

namespace texturon {

/// One reader's answer in a chain.
struct ReadAttempt {
  std::string reader;
  ReadResult result;
};

struct ImportOutcome {
  bool loaded = false;
  ImportedProfile profile;
  std::vector<ReadAttempt> attempts;
  std::string reason;  ///< why nothing was loaded; goes on where the file's name stops
};

/// Reads a profile file with the reader, or the chain of readers, that its extension stands for. A chain ends with the
/// first that reads; one that recognises and refuses does not end it. Commas of identification and date become
/// semicolons. A spacing that is not above 0 refuses the file.
ImportOutcome LoadProfileFile(const std::filesystem::path& path, const ImportOptions& options, Prompts& prompts);

/// The measured record of a loaded file. `sourcePath` is the text that outputs show.
ProfileSet MakeProfileSet(ImportedProfile&& profile, std::string sourcePath);

}  // namespace texturon
