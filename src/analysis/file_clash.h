// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "analysis/analysis_run.h"

namespace texturon {

/// Why a run over these files would destroy one of them, a sentence that names both, Windows-1252: a file that it
/// writes is one that it reads, or another one that it writes. Empty: it would not. Looks at the files' identity and
/// touches none; empty paths stand for none. To be asked before a run reads or writes anything.
std::string FileClash(const RunFiles& files);

}  // namespace texturon
