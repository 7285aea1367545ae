// SPDX-License-Identifier: Apache-2.0

#include "formats/table_columns.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/text_lines.h"

namespace texturon {
namespace {

using Column = std::vector<double>;

constexpr std::string_view kOfArea =
    "the table is of an area, not of a profile; save one line of it as two columns of X and Z";

bool HasNumbers(const Column& column) {
  return std::any_of(column.begin(), column.end(), [](double value) { return !std::isnan(value); });
}

bool CountsUp(const Column& column) {
  if (column.front() != 0.0 && column.front() != 1.0) return false;
  for (std::size_t i = 1; i < column.size(); ++i) {
    if (column[i] - column[i - 1] != 1.0) return false;
  }
  return true;
}

/// Whether the numbers rise all along, or fall all along.
bool IsMonotone(const Column& column) {
  const bool rises = column.back() > column.front();
  double last = std::nan("");
  for (const double value : column) {
    if (std::isnan(value)) continue;
    if (rises ? value <= last : value >= last) return false;
    last = value;
  }
  return true;
}

/// Range of a column.
double RangeOf(const Column& column) {
  double low = std::nan("");
  double high = std::nan("");
  for (const double value : column) {
    if (std::isnan(value)) continue;
    low = std::isnan(low) ? value : std::min(low, value);
    high = std::isnan(high) ? value : std::max(high, value);
  }
  return std::isnan(low) ? 0.0 : high - low;
}

class Chooser {
public:
  Chooser(const NumberRows& rows, const TableHeading& heading) : rows_(rows), heading_(heading) {
    for (std::size_t i = 0; i < rows.columns.size(); ++i) {
      if (HasNumbers(rows.columns[i])) left_.push_back(i);
    }
    // What is left beside columns without any number need not be the heights.
    const bool isAlone = left_.size() == 1 && rows.columns.size() > 1;
    if (isAlone && QuantityAt(left_.front()) != Quantity::kHeight && QuantityAt(left_.front()) != Quantity::kAcross) {
      lost_ = left_.front() == 0 ? 1 : 0;
    }
  }

  TableColumns Choose() {
    if (heading_.isOfArea) return Refused(std::string(kOfArea));
    if (lost_) return Refused("column " + IntegerText(static_cast<std::int64_t>(*lost_) + 1) + " holds no number");
    DropIndex();
    ChooseX();
    if (IsOfArea()) return Refused(std::string(kOfArea));
    if (chosen_.wrong.empty()) ChooseHeights();
    return std::move(chosen_);
  }

private:
  static TableColumns Refused(std::string reason) { return {.wrong = std::move(reason)}; }

  Quantity QuantityAt(std::size_t column) const { return heading_.columns[column].quantity; }
  bool IsNamed(std::size_t column) const {
    return QuantityAt(column) != Quantity::kUnknown || heading_.columns[column].unitKind != UnitStatement::Kind::kNone;
  }
  std::optional<std::size_t> FirstOf(Quantity quantity) const {
    const auto found =
        std::find_if(left_.begin(), left_.end(), [&](std::size_t column) { return QuantityAt(column) == quantity; });
    return found == left_.end() ? std::nullopt : std::optional(*found);
  }
  void TakeOut(std::size_t column) { std::erase(left_, column); }

  /// Columns called an index go; so does a first one without a name that counts the points, and with two columns it
  /// says that there are no positions.
  void DropIndex() {
    const std::vector<std::size_t> all = left_;
    for (const std::size_t column : all) {
      if (left_.size() > 1 && QuantityAt(column) == Quantity::kIndex) {
        TakeOut(column);
        hadIndex_ = true;
      }
    }
    if (left_.size() > 1 && !IsNamed(left_.front()) && CountsUp(rows_.columns[left_.front()])) {
      left_.erase(left_.begin());
      hadIndex_ = true;
    }
  }

  void ChooseX() {
    if (left_.size() < 2) return;
    auto x = FirstOf(Quantity::kPosition);
    const auto across = FirstOf(Quantity::kAcross);
    if (x && across && RangeOf(rows_.columns[*x]) == 0.0 && FirstOf(Quantity::kHeight)) {
      TakeOut(*x);
      x = across;
    }
    if (!x && FirstOf(Quantity::kHeight) && across) x = across;
    if (!x) {
      // What an index stands before may be several heights.
      const auto unnamed = FirstOf(Quantity::kUnknown);
      const bool mayBe = unnamed && (!hadIndex_ || IsMonotone(rows_.columns[*unnamed]) || IsNamed(*unnamed));
      if (mayBe) x = unnamed;
      if (!x && !unnamed && !hadIndex_ && IsMonotone(rows_.columns[left_.front()]) &&
          QuantityAt(left_.front()) != Quantity::kOther) {
        x = left_.front();
      }
    }
    if (!x && !hadIndex_ && QuantityAt(left_.front()) == Quantity::kOther) {
      chosen_.wrong = WhyNot(left_.front(), "positions");
    }
    if (!x) return;
    chosen_.x = x;
    TakeOut(*x);
  }

  /// X and Y that both move, or rows of a grid without any positions.
  bool IsOfArea() const {
    if (!chosen_.x) return false;
    const Column& x = rows_.columns[*chosen_.x];
    const auto across = FirstOf(Quantity::kAcross);
    if (across && FirstOf(Quantity::kHeight)) {
      constexpr double kSideways = 1e-3;
      return RangeOf(rows_.columns[*across]) > kSideways * RangeOf(x);
    }
    return rows_.columns.size() > 2 && heading_.line == 0 && heading_.unitLine == 0 && !IsMonotone(x);
  }

  void ChooseHeights() {
    std::vector<std::size_t>& heights = chosen_.heights;
    const auto take = [&](Quantity quantity) {
      for (const std::size_t column : left_) {
        const bool isLength = heading_.columns[column].unitKind != UnitStatement::Kind::kOther;
        if (heights.empty() ? QuantityAt(column) == quantity && isLength
                            : isLength && QuantityAt(column) == quantity && QuantityAt(heights.front()) == quantity) {
          heights.push_back(column);
        }
      }
    };
    for (const Quantity quantity : {Quantity::kHeight, Quantity::kAcross, Quantity::kUnknown, Quantity::kPosition}) {
      if (heights.empty()) take(quantity);
    }
    if (heights.empty() && !chosen_.x && left_.size() == 1 && QuantityAt(left_.front()) == Quantity::kIndex) {
      heights = left_;
    }
    // X, Y and Z without a heading: Y is the same all along.
    if (heights.size() == 2 && chosen_.x && !IsNamed(heights[0]) && RangeOf(rows_.columns[heights[0]]) == 0.0 &&
        RangeOf(rows_.columns[heights[1]]) > 0.0) {
      heights.erase(heights.begin());
    }
    if (heights.empty()) chosen_.wrong = NoHeights();
  }

  /// Why a column is not what it would have to be.
  std::string WhyNot(std::size_t column, std::string_view wanted) const {
    const ColumnHeading& named = heading_.columns[column];
    const bool isOther = named.unitKind == UnitStatement::Kind::kOther;
    return AtLine(std::max(heading_.line, heading_.unitLine),
                  "column " + Quoted(named.name) +
                      (isOther ? " is in " + Quoted(named.unit) + ", which is no unit of length"
                               : " does not hold " + std::string(wanted)));
  }

  std::string NoHeights() const {
    for (const std::size_t column : left_) {
      const ColumnHeading& named = heading_.columns[column];
      const bool isOther = named.unitKind == UnitStatement::Kind::kOther || named.quantity == Quantity::kOther;
      if (isOther) return WhyNot(column, "heights");
    }
    return "no column holds heights";
  }

  const NumberRows& rows_;
  const TableHeading& heading_;
  std::vector<std::size_t> left_;  ///< columns that are nothing yet
  bool hadIndex_ = false;
  std::optional<std::size_t> lost_;  ///< a column without a number that may be the heights
  TableColumns chosen_;
};

}  // namespace

TableColumns ChooseTableColumns(const NumberRows& rows, const TableHeading& heading) {
  return Chooser(rows, heading).Choose();
}

}  // namespace texturon
