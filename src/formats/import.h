// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "formats/extension_table.h"
#include "formats/profile_reader.h"
#include "platform/prompts.h"
#include "record/profile_set.h"

namespace texturon {

/// One reader's answer in a chain.
struct ReadAttempt {
  std::string reader;
  ReadResult result;
  bool hasRoutine = true;  ///< false: a layout that is recognised only
};

struct ImportOutcome {
  bool loaded = false;
  ImportedProfile profile;
  std::vector<ReadAttempt> attempts;
  std::string reason;  ///< why nothing was loaded; goes on where the file's name stops
};

/// Tries the readers of one extension in turn. A chain ends with the first that reads; one that recognises and refuses
/// does not end it. Where none reads, the reason is that of the reader that came nearest; a layout that is recognised
/// only and nearest says so in a message box.
ImportOutcome ReadThroughChain(const ExtensionEntry& entry, const ReaderInput& input);

/// Reads a profile file with the reader, or the chain of readers, that its extension stands for. Commas of
/// identification and date become semicolons. A file of another extension is tried by its content, unless the options
/// forbid it. A spacing that is not above 0 refuses the file. A large file shows
/// "Loading (name)..." meanwhile.
ImportOutcome LoadProfileFile(const std::filesystem::path& path, const ImportOptions& options, Prompts& prompts);

/// The same for the content of a file that need not lie anywhere; `path` gives name and extension.
ImportOutcome LoadProfileBytes(const std::filesystem::path& path, std::string_view bytes, const ImportOptions& options,
                               Prompts& prompts);

/// The measured record of a loaded file. `sourcePath` is the text that outputs show.
ProfileSet MakeProfileSet(ImportedProfile&& profile, std::string sourcePath);

}  // namespace texturon
