// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include "presentation/report_template.h"
#include "presentation/report_texts.h"

namespace texturon {

/// A curve as it goes into the file.
struct ReportPicture {
  ReportBlockKind kind;
  std::string title;  ///< UTF-8
  std::string svg;    ///< an <svg> element, UTF-8
};

/// What a report is made from besides its texts.
struct ReportParts {
  std::vector<ReportPicture> pictures;  ///< one of a kind; a block without one is left out
  SeveralReport several;
  std::string logo;  ///< address of a picture, "data:..."; empty: none
  bool metric = true;
};

/// The report as one HTML file, UTF-8, which loads nothing from elsewhere and prints on A4.
std::string ReportHtml(const ReportTemplate& layout, const ReportTexts& texts, const ReportParts& parts);

}  // namespace texturon
