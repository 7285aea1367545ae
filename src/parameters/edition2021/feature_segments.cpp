// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/feature_segments.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <queue>
#include <utility>

#include "base/elementary.h"
#include "base/units.h"

namespace texturon {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// Dales that can be taken out one by one, smallest attribute first.
class PruningList {
public:
  PruningList(std::vector<Dale>& dales, const DaleMeasure& measure, FeatureAttribute attribute, double threshold)
      : dales_(dales), measure_(measure), attribute_(attribute), threshold_(threshold), links_(dales.size()) {
    std::vector<Entry> entries;
    for (std::size_t i = 0; i < dales.size(); ++i) {
      links_[i] = {i == 0 ? kNone : i - 1, i + 1 < dales.size() ? i + 1 : kNone, measure.Of(dales[i], attribute)};
      if (links_[i].value < threshold) entries.push_back({links_[i].value, i});
    }
    heap_ = Heap(std::greater<>(), std::move(entries));
  }

  /// The dale that would go next.
  std::optional<std::size_t> Smallest() {
    while (!heap_.empty()) {
      const Entry entry = heap_.top();
      const Link& link = links_[entry.index];
      if (!link.isGone && link.value == entry.value) return entry.index;
      heap_.pop();
    }
    return std::nullopt;
  }

  /// The dale beyond the lower peak of one.
  std::optional<std::size_t> Beyond(std::size_t index) const {
    const std::size_t beyond = dales_[index].lowerIsLeft ? links_[index].before : links_[index].next;
    return beyond != kNone ? std::optional(beyond) : std::nullopt;
  }

  /// Takes out the smallest.
  void Remove(std::size_t index) {
    heap_.pop();
    const auto beyond = Beyond(index);
    Link& link = links_[index];
    const Dale& gone = dales_[index];
    link.isGone = true;
    if (link.before != kNone) links_[link.before].next = link.next;
    if (link.next != kNone) links_[link.next].before = link.before;
    if (!beyond) return;
    Dale& merged = dales_[*beyond];
    if (gone.lowerIsLeft) {
      merged.right = gone.right;
      merged.lowerIsLeft = merged.left.height <= merged.right.height;
    } else {
      merged.left = gone.left;
      merged.lowerIsLeft = !(merged.right.height <= merged.left.height);
    }
    double& value = links_[*beyond].value;
    value = measure_.Of(merged, attribute_);
    if (value < threshold_) heap_.push({value, *beyond});
  }

  bool IsGone(std::size_t index) const { return links_[index].isGone; }
  double Value(std::size_t index) const { return links_[index].value; }

private:
  struct Link {
    std::size_t before = kNone;
    std::size_t next = kNone;
    double value = 0.0;
    bool isGone = false;
  };
  struct Entry {
    double value = 0.0;
    std::size_t index = 0;

    bool operator>(const Entry& other) const {
      return value != other.value ? value > other.value : index > other.index;
    }
  };
  using Heap = std::priority_queue<Entry, std::vector<Entry>, std::greater<>>;

  std::vector<Dale>& dales_;
  const DaleMeasure& measure_;
  FeatureAttribute attribute_;
  double threshold_;
  std::vector<Link> links_;
  Heap heap_;
};

/// Mean over standard deviation of the attributes that are left, kept up as they change.
class EvenRatio {
public:
  explicit EvenRatio(const PruningList& list, std::size_t size) : list_(list), size_(size) { Renew(); }

  std::size_t Count() const { return count_; }
  void Replace(double former, double value) {
    Add(former, -1.0);
    Add(value, 1.0);
  }
  void Drop(double value) {
    Add(value, -1.0);
    --count_;
    // Sums that lost most of what was in them are taken anew.
    if (2 * count_ <= renewedAt_ || count_ <= kFew) Renew();
  }
  double Of() const {
    const auto n = static_cast<double>(count_);
    const double mean = sum_ / n;
    const double variance = std::max(0.0, (squares_ - sum_ * mean) / (n - 1.0));
    return (origin_ + mean) / std::sqrt(variance);
  }

private:
  static constexpr std::size_t kFew = 64;

  void Add(double value, double sign) {
    const double rest = value - origin_;
    sum_ += sign * rest;
    squares_ += sign * rest * rest;
  }
  void Renew() {
    count_ = 0;
    origin_ = 0.0;
    for (std::size_t i = 0; i < size_; ++i) {
      if (list_.IsGone(i)) continue;
      origin_ += list_.Value(i);
      ++count_;
    }
    if (count_ > 0) origin_ /= static_cast<double>(count_);
    sum_ = squares_ = 0.0;
    for (std::size_t i = 0; i < size_; ++i) {
      if (!list_.IsGone(i)) Add(list_.Value(i), 1.0);
    }
    renewedAt_ = count_;
  }

  const PruningList& list_;
  std::size_t size_;
  std::size_t count_ = 0;
  std::size_t renewedAt_ = 0;
  double origin_ = 0.0;
  double sum_ = 0.0;
  double squares_ = 0.0;
};

/// First and second derivative, per point and per point squared.
struct Derivatives {
  double first = 0.0;
  double second = 0.0;
};

/// Of the polynomial through seven points at the one that stands `offset` behind their middle (-3 .. 3). The rows are
/// the derivatives of the Lagrange polynomials.
Derivatives DerivativesAt(std::span<const double> seven, int offset) {
  Derivatives at;
  for (int j = -3; j <= 3; ++j) {
    double denominator = 1.0;
    for (int m = -3; m <= 3; ++m) {
      if (m != j) denominator *= j - m;
    }
    double first = 0.0;
    double second = 0.0;
    for (int a = -3; a <= 3; ++a) {
      if (a == j) continue;
      double product = 1.0;
      for (int m = -3; m <= 3; ++m) {
        if (m != j && m != a) product *= offset - m;
      }
      first += product;
      for (int b = -3; b <= 3; ++b) {
        if (b == j || b == a) continue;
        double rest = 1.0;
        for (int m = -3; m <= 3; ++m) {
          if (m != j && m != a && m != b) rest *= offset - m;
        }
        second += rest;
      }
    }
    const double height = seven[static_cast<std::size_t>(j + 3)];
    at.first += first / denominator * height;
    at.second += second / denominator * height;
  }
  return at;
}

}  // namespace

std::vector<Dale> FindDales(std::span<const double> z) {
  std::vector<Dale> dales;
  if (z.empty()) return dales;
  std::optional<TurningPoint> peak;
  std::optional<TurningPoint> pit;
  TurningPoint run{0, 0, z[0]};
  int cameFrom = 0;  // +1: the run was reached from below
  for (std::size_t i = 1; i < z.size(); ++i) {
    if (z[i] == run.height) {
      run.last = i;
      continue;
    }
    const bool rises = z[i] > run.height;
    if (cameFrom < 0 && rises) pit = run;
    if (cameFrom > 0 && !rises) {
      if (peak && pit) {
        dales.push_back({.pit = *pit, .left = *peak, .right = run, .lowerIsLeft = peak->height <= run.height});
      }
      peak = run;
      pit.reset();
    }
    cameFrom = rises ? 1 : -1;
    run = {i, i, z[i]};
  }
  return dales;
}

/// The profile between the place a and the farthest crossing of its level.
struct DaleMeasure::Section {
  double a = 0.0;         ///< in points
  std::size_t edge = 0;   ///< of a's run, on the side of the dale
  std::size_t inner = 0;  ///< the last point before the crossing, seen from a
  double crossing = 0.0;
  bool goesRight = true;
};

DaleMeasure::Section DaleMeasure::FarSection(const Dale& dale) const {
  const TurningPoint& lower = dale.Lower();
  Section section{.a = lower.Place(), .goesRight = dale.lowerIsLeft};
  section.edge = section.goesRight ? lower.last : lower.first;
  const double level = lower.height;
  std::size_t outer = section.goesRight ? dale.right.first : dale.left.last;
  const auto inwards = [&section](std::size_t i) { return section.goesRight ? i - 1 : i + 1; };
  while (z_[inwards(outer)] >= level) outer = inwards(outer);
  section.inner = inwards(outer);
  const double part = (level - z_[section.inner]) / (z_[outer] - z_[section.inner]);
  section.crossing = static_cast<double>(section.inner) + (section.goesRight ? part : -part);
  return section;
}

double DaleMeasure::Of(const Dale& dale, FeatureAttribute attribute) const {
  switch (attribute) {
    case FeatureAttribute::kCount:
      return 1.0;
    case FeatureAttribute::kHeight:
      return -dale.pit.height;
    case FeatureAttribute::kLocalDepth:
      return dale.Depth();
    case FeatureAttribute::kCurvature: {
      const std::size_t both = dale.pit.first + dale.pit.last;
      return 0.5 * (Curvature(both / 2) + Curvature((both + 1) / 2));
    }
    case FeatureAttribute::kWidth:
    case FeatureAttribute::kVolume:
    case FeatureAttribute::kLineLength:
      break;
  }
  const Section section = FarSection(dale);
  const double spacingMM = spacingUM_ * kMillimetresPerMicrometre;
  if (attribute == FeatureAttribute::kWidth) return std::abs(section.crossing - section.a) * spacingMM;

  const double level = dale.Lower().height;
  double area = 0.0;  // below the level, in um and points
  double line = std::abs(static_cast<double>(section.edge) - section.a) * spacingUM_;
  const auto addPiece = [&](double depth, double nextDepth, double width) {
    line += Hypot(width * spacingUM_, nextDepth - depth);
    if (depth >= 0.0 && nextDepth >= 0.0) {
      area += 0.5 * (depth + nextDepth) * width;
    } else if (depth > 0.0 || nextDepth > 0.0) {
      const double below = std::max(depth, nextDepth);
      area += 0.5 * below * width * below / (below - std::min(depth, nextDepth));
    }
  };
  std::size_t i = section.edge;
  while (i != section.inner) {
    const std::size_t next = section.goesRight ? i + 1 : i - 1;
    addPiece(level - z_[i], level - z_[next], 1.0);
    i = next;
  }
  addPiece(level - z_[i], 0.0, std::abs(section.crossing - static_cast<double>(i)));
  if (attribute == FeatureAttribute::kVolume) return area / static_cast<double>(z_.size());
  return line * kMillimetresPerMicrometre;
}

double DaleMeasure::Curvature(std::size_t i) const {
  constexpr std::size_t kPoints = 7;
  if (z_.size() < kPoints) return std::nan("");
  const std::size_t middle = std::clamp(i, kPoints / 2, z_.size() - 1 - kPoints / 2);
  const int offset = static_cast<int>(i) - static_cast<int>(middle);
  const Derivatives at = DerivativesAt(z_.subspan(middle - kPoints / 2, kPoints), offset);
  const double slope = at.first / spacingUM_;
  const double steepness = 1.0 + slope * slope;
  return at.second / (spacingUM_ * spacingUM_) / (steepness * std::sqrt(steepness));
}

void PruneDales(std::vector<Dale>& dales, const DaleMeasure& measure, FeatureAttribute attribute, double threshold) {
  PruningList list(dales, measure, attribute, threshold);
  bool isAnyGone = false;
  while (const auto smallest = list.Smallest()) {
    list.Remove(*smallest);
    isAnyGone = true;
  }
  if (!isAnyGone) return;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < dales.size(); ++i) {
    if (!list.IsGone(i)) dales[kept++] = dales[i];
  }
  dales.resize(kept);
}

double EvenestThreshold(std::span<const Dale> dales, const DaleMeasure& measure, FeatureAttribute attribute) {
  constexpr std::size_t kFewest = 3;
  constexpr double kLeastRatio = 3.0;
  constexpr double kNothingEven = 100.0;
  std::vector<Dale> rest(dales.begin(), dales.end());
  PruningList list(rest, measure, attribute, INFINITY);
  EvenRatio ratio(list, rest.size());
  double best = kLeastRatio;
  double threshold = kNothingEven;
  while (ratio.Count() > kFewest) {
    const auto smallest = list.Smallest();
    if (!smallest) break;
    if (const double stage = ratio.Of(); stage > best) {
      best = stage;
      threshold = list.Value(*smallest);
    }
    const double value = list.Value(*smallest);
    const auto beyondBefore = list.Beyond(*smallest);
    const double former = beyondBefore ? list.Value(*beyondBefore) : 0.0;
    list.Remove(*smallest);
    if (beyondBefore) ratio.Replace(former, list.Value(*beyondBefore));
    ratio.Drop(value);
  }
  return threshold;
}

}  // namespace texturon
