// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>

#include "parameters/edition2021/edition_change.h"

namespace texturon {

/// What the list of parameters could not take along to the edition in force, as one sentence; empty where nothing is
/// lost or moved.
QString EditionNotice(const EditionChange& change, const AnalysisSettings& settings);

/// Which limits count for the row of 1997 alone, because that of 2021 has another unit; empty where there are none.
QString TwoUnitsNotice(const AnalysisSettings& settings);

}  // namespace texturon
