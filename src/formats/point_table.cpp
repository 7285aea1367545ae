// SPDX-License-Identifier: Apache-2.0

#include "formats/point_table.h"

#include <optional>

#include "base/text.h"
#include "formats/text_lines.h"

namespace texturon {
namespace {

std::optional<FreeFormPoint> PointOf(std::string_view line, std::string_view separators, bool decimalComma) {
  const std::vector<std::string_view> fields = SplitAtAny(line, separators);
  // A comma behind a whole number separates; it is no decimal sign.
  if (fields.size() < 2 || (decimalComma && (fields[0].ends_with(',') || fields[1].ends_with(',')))) {
    return std::nullopt;
  }
  const auto x = NumberField(fields[0], decimalComma);
  const auto z = NumberField(fields[1], decimalComma);
  if (!x || !z) return std::nullopt;
  return FreeFormPoint{*x, *z};
}

struct Layout {
  std::string_view separators;
  bool decimalComma = false;
};

/// The first layout that reads a line. Commas separate only where nothing else does.
std::optional<Layout> LayoutOf(std::string_view line) {
  for (const Layout& layout : {Layout{"\t;", false}, Layout{"\t;", true}, Layout{" \t;", false}, Layout{" \t;", true},
                               Layout{", \t;", false}}) {
    if (PointOf(line, layout.separators, layout.decimalComma)) return layout;
  }
  return std::nullopt;
}

}  // namespace

PointTable ReadPointTable(std::string_view text) {
  constexpr std::size_t kMostHeading = 100;
  PointTable table;
  LineCursor lines(text);
  std::optional<Layout> layout;
  while (const auto line = lines.Next()) {
    if (TrimBlanks(*line).empty()) continue;
    if (!layout) layout = LayoutOf(*line);
    if (!layout && lines.LineNumber() > kMostHeading) break;
    if (!layout) continue;
    auto point = PointOf(*line, layout->separators, layout->decimalComma);
    // A whole number before the first decimal comma does not show it.
    if (!point && !layout->decimalComma && layout->separators.front() != ',') {
      point = PointOf(*line, layout->separators, true);
      layout->decimalComma = point.has_value();
    }
    if (!point) return {{}, AtLine(lines.LineNumber(), "not two numbers")};
    if (table.points.size() == kMostFreeFormPoints) return {{}, "there are more than 750 000 points"};
    table.points.push_back(*point);
  }
  if (table.points.empty()) table.reason = "there is no line with two numbers";
  return table;
}

}  // namespace texturon
