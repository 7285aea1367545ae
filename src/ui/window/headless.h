// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringList>
#include <string>
#include <vector>

namespace texturon {

/// Whether these arguments of the program (its name first) ask for something that needs no screen and ends by itself:
/// --report, --screenshot, --verify, --help or --version.
bool IsHeadless(const std::vector<std::string>& arguments);

/// Does what they ask for. Returns the exit status; a refusal is one sentence on standard error and 1.
int RunHeadless(const QStringList& arguments);

}  // namespace texturon
