// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>

#include "app/provenance_output.h"
#include "app/run_options.h"
#include "app/uncertainty_output.h"
#include "base/json_value.h"

namespace texturon {

/// What a result object says of how it was made.
struct ResultRequest {
  RunSetup setup;
  RunRequest request;
  std::optional<UncertaintyRequest> uncertainty;
  std::string reason;  ///< why it cannot be had again: a sentence without full stop, UTF-8; empty: it can
};

/// Reads "settings", "request" and "uncertainty_budget" of an object of analyze --json.
ResultRequest RequestOfObject(const JsonValue& object);

}  // namespace texturon
