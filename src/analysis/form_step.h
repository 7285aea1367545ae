// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "analysis/compute_range.h"
#include "analysis/document.h"
#include "platform/prompts.h"

namespace texturon {

/// Takes the form out of `profiles.raw` as FormRemovalType says and writes `form`, `formSuppressed`, the spacing of the
/// residual and the geometry. A fit that fails is replaced by mean removal, without a message but
/// the fit's own.
void RemoveForm(Document& document, const ComputeRange& compute, Prompts& prompts);

}  // namespace texturon
