// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// An XML file, by its root: data of a surface metrology algorithm test, the container of a stylus profiler, the
/// description of a surface exchange file with its data beside it. Every other root is of a wrong version.
ReadResult ReadXmlProfile(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
