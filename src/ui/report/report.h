// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QPagedPaintDevice>
#include <string_view>

#include "analysis/document.h"

namespace texturon {

/// Dots an inch that a report is laid out in, on whatever device.
inline constexpr int kReportResolution = 144;

/// Draws the report of an analysed document on a printer or into a file: what was measured and how, profiles and
/// curves as the views draw them, the parameters with their verdicts. The device's resolution must be
/// kReportResolution; of its page ranges, where it has any, only those pages. Returns the number of pages, 0 when the
/// device cannot be written.
int PrintReport(QPagedPaintDevice& device, const Document& document, std::string_view time);

/// Writes the report as a PDF file, all of it or nothing; false with a sentence in `reason`.
bool WriteReport(const QString& file, const Document& document, std::string_view time, QString& reason);

}  // namespace texturon
