// SPDX-License-Identifier: Apache-2.0

#include "parameters/motif_finder.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <queue>

#include "parameters/peak_to_valley.h"
#include "parameters/sampling_lengths.h"

namespace texturon {
namespace {

constexpr double kLeastShareOfSegments = 0.05;
constexpr double kRelativeDepth = 0.6;

/// Least height of a turning point; 0 where there is none.
double Discrimination(std::span<const double> z, double spacing, const MotifLimits& limits) {
  const auto lengths =
      DivideIntoSamplingLengths(z.size(), spacing, 0.5 * limits.greatestLengthUM, ShortProfile::kIsOneSamplingLength);
  if (!lengths) return 0.0;
  return kLeastShareOfSegments * MeanPeakToValley(ExtremesPerSamplingLength(z, *lengths)).value_or(0.0);
}

Motif MakeMotif(std::span<const double> z, std::int32_t firstPeak, std::int32_t dale, std::int32_t lastPeak) {
  const auto at = [z](std::int32_t i) { return z[static_cast<std::size_t>(i)]; };
  return {firstPeak, dale, lastPeak, at(firstPeak) - at(dale), at(lastPeak) - at(dale)};
}

/// The stretches between neighbouring peaks, each of which rises and falls by `least` or more.
std::vector<Motif> SmallestMotifs(std::span<const double> z, double least) {
  std::vector<Motif> motifs;
  if (!(least > 0.0)) return motifs;
  enum class Way { kUnknown, kUp, kDown };
  Way way = Way::kUnknown;
  std::size_t highest = 0;  // since the last turn
  std::size_t lowest = 0;
  std::optional<std::size_t> peak;
  std::size_t dale = 0;
  for (std::size_t i = 1; i < z.size(); ++i) {
    if (z[i] > z[highest]) highest = i;
    if (z[i] < z[lowest]) lowest = i;
    if (way != Way::kUp && z[i] - z[lowest] >= least) {
      way = Way::kUp;
      dale = lowest;
      highest = i;
    } else if (way != Way::kDown && z[highest] - z[i] >= least) {
      if (way == Way::kUp) {
        if (peak) {
          motifs.push_back(MakeMotif(z, static_cast<std::int32_t>(*peak), static_cast<std::int32_t>(dale),
                                     static_cast<std::int32_t>(highest)));
        }
        peak = highest;
      }
      way = Way::kDown;
      lowest = i;
    }
  }
  return motifs;
}

/// The conditions for joining neighbours.
class JoinRule {
public:
  JoinRule(std::span<const double> z, double spacing, const MotifLimits& limits)
      : z_(z), spacing_(spacing), limits_(limits) {}

  /// The joined motif, if the two may be joined.
  std::optional<Motif> Join(const Motif& left, const Motif& right) const {
    const double length = static_cast<double>(right.lastPeak - left.firstPeak) * spacing_;
    if (!(length <= limits_.greatestLengthUM)) return std::nullopt;
    const bool isFree = limits_.freesShortOnesOfEnvelope && length < 0.5 * limits_.greatestLengthUM;
    if (!isFree && At(left.lastPeak) > std::max(At(left.firstPeak), At(right.lastPeak))) return std::nullopt;
    const std::int32_t dale = At(right.dale) < At(left.dale) ? right.dale : left.dale;
    const Motif joined = MakeMotif(z_, left.firstPeak, dale, right.lastPeak);
    const double depth = Depth(joined);
    if (depth < Depth(left) || depth < Depth(right)) return std::nullopt;
    if (DepthAtCommonPeak(left, right) > kRelativeDepth * depth) return std::nullopt;
    return joined;
  }

  static double DepthAtCommonPeak(const Motif& left, const Motif& right) {
    return std::min(left.lastDepthUM, right.firstDepthUM);
  }

private:
  static double Depth(const Motif& motif) { return std::min(motif.firstDepthUM, motif.lastDepthUM); }
  double At(std::int32_t i) const { return z_[static_cast<std::size_t>(i)]; }

  std::span<const double> z_;
  double spacing_;
  MotifLimits limits_;
};

std::vector<Motif> JoinFromLeftToRight(std::span<const Motif> motifs, const JoinRule& rule) {
  std::vector<Motif> joined;
  for (const Motif& motif : motifs) {
    const auto both = joined.empty() ? std::nullopt : rule.Join(joined.back(), motif);
    if (both) {
      joined.back() = *both;
    } else {
      joined.push_back(motif);
    }
  }
  return joined;
}

/// Joins the pair with the shallowest common peak, again and again. A pair is looked at when it comes into being; it
/// waits in a heap, and is out of date there once one of its motifs has changed.
class ShallowestFirst {
public:
  ShallowestFirst(std::span<const Motif> motifs, const JoinRule& rule) : rule_(rule) {
    nodes_.reserve(motifs.size());
    for (std::size_t i = 0; i < motifs.size(); ++i) nodes_.push_back({motifs[i], i - 1, i + 1, 0});
  }

  std::vector<Motif> Run() {
    for (std::size_t i = 0; i + 1 < nodes_.size(); ++i) Consider(i);
    while (!pairs_.empty()) {
      const Pair pair = pairs_.top();
      pairs_.pop();
      Node& left = nodes_[pair.left];
      if (left.age != pair.leftAge || left.next != pair.right || nodes_[pair.right].age != pair.rightAge) continue;
      left.motif = *rule_.Join(left.motif, nodes_[pair.right].motif);
      ++left.age;
      left.next = nodes_[pair.right].next;
      ++nodes_[pair.right].age;
      if (left.next < nodes_.size()) nodes_[left.next].previous = pair.left;
      Consider(pair.left);
      if (left.previous < nodes_.size()) Consider(left.previous);
    }
    std::vector<Motif> motifs;
    for (std::size_t i = 0; i < nodes_.size(); i = nodes_[i].next) motifs.push_back(nodes_[i].motif);
    return motifs;
  }

private:
  struct Node {
    Motif motif;
    std::size_t previous = 0;  // beyond the nodes: none
    std::size_t next = 0;
    std::size_t age = 0;
  };
  struct Pair {
    double depth = 0.0;
    std::size_t left = 0;
    std::size_t right = 0;
    std::size_t leftAge = 0;
    std::size_t rightAge = 0;
    bool operator<(const Pair& other) const {  // the heap's top is the greatest
      return depth != other.depth ? depth > other.depth : left > other.left;
    }
  };

  void Consider(std::size_t left) {
    const std::size_t right = nodes_[left].next;
    if (right >= nodes_.size() || !rule_.Join(nodes_[left].motif, nodes_[right].motif)) return;
    pairs_.push({JoinRule::DepthAtCommonPeak(nodes_[left].motif, nodes_[right].motif), left, right, nodes_[left].age,
                 nodes_[right].age});
  }

  const JoinRule& rule_;
  std::vector<Node> nodes_;
  std::priority_queue<Pair> pairs_;
};

/// Straight lines through some points of a profile, from the first to the last.
class PolyLine {
public:
  explicit PolyLine(std::span<const double> z) : z_(z) {}

  void GoTo(std::int32_t node) {
    const auto to = static_cast<std::size_t>(node);
    if (!heights_.empty()) {
      const double steps = static_cast<double>(to - from_);
      for (std::size_t i = from_ + 1; i < to; ++i) {
        heights_.push_back(z_[from_] + (z_[to] - z_[from_]) * (static_cast<double>(i - from_) / steps));
      }
    }
    heights_.push_back(z_[to]);
    from_ = to;
  }
  std::vector<double> Result() { return std::move(heights_); }

private:
  std::span<const double> z_;
  std::size_t from_ = 0;
  std::vector<double> heights_;
};

}  // namespace

std::vector<Motif> FindMotifs(std::span<const double> heights, double spacingUM, const MotifLimits& limits) {
  const std::vector<Motif> motifs = SmallestMotifs(heights, Discrimination(heights, spacingUM, limits));
  const JoinRule rule(heights, spacingUM, limits);
  if (limits.leftToRightOnly) return JoinFromLeftToRight(motifs, rule);
  return ShallowestFirst(motifs, rule).Run();
}

std::vector<double> UpperEnvelope(std::span<const double> heights, std::span<const Motif> motifs) {
  PolyLine line(heights);
  if (!motifs.empty()) line.GoTo(motifs.front().firstPeak);
  for (const Motif& motif : motifs) line.GoTo(motif.lastPeak);
  return line.Result();
}

std::vector<double> MotifLine(std::span<const double> heights, std::span<const Motif> motifs) {
  PolyLine line(heights);
  if (!motifs.empty()) line.GoTo(motifs.front().firstPeak);
  for (const Motif& motif : motifs) {
    line.GoTo(motif.dale);
    line.GoTo(motif.lastPeak);
  }
  return line.Result();
}

}  // namespace texturon
