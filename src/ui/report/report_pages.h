// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QPagedPaintDevice>
#include <string_view>

#include "ui/report/report.h"

namespace texturon {

/// Lays the blocks out page by page and paints the pages. The document has the results that the blocks read.
int PrintReportPages(QPagedPaintDevice& device, const Document& document, std::string_view time,
                     const ReportChoice& choice);

}  // namespace texturon
