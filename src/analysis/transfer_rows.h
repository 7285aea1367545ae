// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <ctime>
#include <vector>

#include "analysis/document.h"
#include "export/transfer_file.h"

namespace texturon {

/// The selected rows of a document that have a limit, the configurable ones behind the others, in metric units.
std::vector<TransferCharacteristic> TransferCharacteristics(const Document& document);

/// Their values in the same order, none where a row was not computed.
TransferRecord TransferRecordOf(const Document& document, const std::tm& time);

}  // namespace texturon
