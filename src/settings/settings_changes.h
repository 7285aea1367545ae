// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "settings/settings.h"

namespace texturon {

/// Makes the changes from `before` to `after` in `target` too, key by key; what did not change keeps the target's own
/// value. A list whose length has changed is taken whole.
void RepeatChanges(const Settings& before, const Settings& after, Settings& target);

}  // namespace texturon
