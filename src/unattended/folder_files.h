// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace texturon {

/// Whether a file name matches a mask: '*' stands for any characters, '?' for one; case is ignored, and "*.*" matches
/// every name, with or without a dot.
bool MatchesMask(std::string_view name, std::string_view mask);

struct FolderFiles {
  std::vector<std::filesystem::path> files;  ///< with the folder before the name, in the order of their names
  std::string reason;                        ///< why the folder cannot be read; goes on where its name stops
};

/// The regular files of a folder that match a mask. Names that begin with a dot belong to other programs and to our own
/// book-keeping and are left out.
FolderFiles ListFolder(const std::filesystem::path& folder, std::string_view mask);

/// What a run over a folder takes: the files that match the mask or, without one, those whose extension has a reader;
/// without the run's own outputs and those of former batches.
FolderFiles FilesToAnalyse(const std::filesystem::path& folder, std::string_view mask,
                           std::span<const std::filesystem::path> outputs);

}  // namespace texturon
