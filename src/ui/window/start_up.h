// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringList>

namespace texturon {

/// The window's run: its options, the settings it starts from, the profile that it shows first, what it keeps when it
/// is closed. A start with another one running hands its file to that one. Returns the exit status.
int RunWindow(const QStringList& arguments);

}  // namespace texturon
