// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "formats/extension_table.h"

namespace texturon {

/// Runs the reader's routine, or recognises the file by its markers. Spacing or heights that are not finite are
/// refused.
ReadResult RunReader(const ProfileReader& reader, const ReaderInput& input, ImportedProfile& profile);

/// What the reader takes, for a list; how it recognises what it does not read.
std::string WhatItTakes(const ProfileReader& reader);

}  // namespace texturon
