// SPDX-License-Identifier: Apache-2.0

#include "parameters/motif_finder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
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

/// The turning points of a profile, each `least` or more away in height from those beside it.
class TurnScan {
public:
  TurnScan(std::span<const double> z, double least) : z_(z), least_(least) {}

  /// The stretches between neighbouring peaks.
  std::vector<Motif> Run() {
    std::size_t at = FindFirstTurn();
    while (at < z_.size()) at = isRising_ ? Rise(at) : Fall(at);
    return std::move(motifs_);
  }

private:
  /// The point that is `least` above or below another before it.
  std::size_t FindFirstTurn() {
    for (std::size_t i = 1; i < z_.size(); ++i) {
      if (z_[i] > z_[highest_]) highest_ = i;
      if (z_[i] < z_[lowest_]) lowest_ = i;
      isRising_ = z_[i] - z_[lowest_] >= least_;
      if (isRising_) dale_ = lowest_;
      if (isRising_ || z_[highest_] - z_[i] >= least_) return i;
    }
    return z_.size();
  }

  /// From a point on the way up to the first that is on the way down again.
  std::size_t Rise(std::size_t at) {
    std::size_t highest = at;
    double top = z_[at];
    for (std::size_t i = at + 1; i < z_.size(); ++i) {
      if (z_[i] > top) {
        top = z_[i];
        highest = i;
      } else if (top - z_[i] >= least_) {
        if (peak_) {
          motifs_.push_back(MakeMotif(z_, static_cast<std::int32_t>(*peak_), static_cast<std::int32_t>(dale_),
                                      static_cast<std::int32_t>(highest)));
        }
        peak_ = highest;
        isRising_ = false;
        return i;
      }
    }
    return z_.size();
  }

  std::size_t Fall(std::size_t at) {
    dale_ = at;
    double bottom = z_[at];
    for (std::size_t i = at + 1; i < z_.size(); ++i) {
      if (z_[i] < bottom) {
        bottom = z_[i];
        dale_ = i;
      } else if (z_[i] - bottom >= least_) {
        isRising_ = true;
        return i;
      }
    }
    return z_.size();
  }

  std::span<const double> z_;
  double least_;
  std::vector<Motif> motifs_;
  bool isRising_ = false;
  std::size_t highest_ = 0;  // the highest and the lowest point before the first turn
  std::size_t lowest_ = 0;
  std::optional<std::size_t> peak_;
  std::size_t dale_ = 0;
};

std::vector<Motif> SmallestMotifs(std::span<const double> z, double least) {
  if (!(least > 0.0)) return {};
  return TurnScan(z, least).Run();
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
/// waits in a queue, and is out of date there once one of its motifs has changed: its left one has another age then.
/// The pairs of the beginning, nearly all, are put in order once; a heap holds those that come later.
class ShallowestFirst {
public:
  ShallowestFirst(std::span<const Motif> motifs, const JoinRule& rule) : rule_(rule) {
    nodes_.reserve(motifs.size());
    for (std::uint32_t i = 0; i < motifs.size(); ++i) nodes_.push_back({motifs[i], i - 1, i + 1, 0});
  }

  std::vector<Motif> Run() {
    for (std::uint32_t i = 0; i + 1 < nodes_.size(); ++i) {
      if (const auto pair = PairFrom(i)) first_.push_back(*pair);
    }
    std::sort(first_.begin(), first_.end(), [](const Pair& a, const Pair& b) { return b < a; });
    while (const auto pair = TakeShallowest()) {
      Node& left = nodes_[pair->left];
      if (left.age != pair->age) continue;
      Node& right = nodes_[left.next];
      left.motif = *rule_.Join(left.motif, right.motif);
      left.next = right.next;
      ++right.age;
      if (left.next < nodes_.size()) nodes_[left.next].previous = pair->left;
      Renew(pair->left);
      if (left.previous < nodes_.size()) Renew(left.previous);
    }
    std::vector<Motif> motifs;
    for (std::size_t i = 0; i < nodes_.size(); i = nodes_[i].next) motifs.push_back(nodes_[i].motif);
    return motifs;
  }

private:
  struct Node {
    Motif motif;
    std::uint32_t previous = 0;  // beyond the nodes: none
    std::uint32_t next = 0;
    std::uint32_t age = 0;  // grows whenever the pair with the next one changes
  };
  struct Pair {
    double depth = 0.0;
    std::uint32_t left = 0;
    std::uint32_t age = 0;
    bool operator<(const Pair& other) const {  // the greatest comes first
      return depth != other.depth ? depth > other.depth : left > other.left;
    }
  };

  /// The node and its next one, if they may be joined.
  std::optional<Pair> PairFrom(std::uint32_t left) const {
    const std::uint32_t right = nodes_[left].next;
    if (right >= nodes_.size() || !rule_.Join(nodes_[left].motif, nodes_[right].motif)) return std::nullopt;
    return Pair{JoinRule::DepthAtCommonPeak(nodes_[left].motif, nodes_[right].motif), left, nodes_[left].age};
  }

  void Renew(std::uint32_t left) {
    ++nodes_[left].age;
    if (const auto pair = PairFrom(left)) later_.push(*pair);
  }

  std::optional<Pair> TakeShallowest() {
    if (taken_ < first_.size() && (later_.empty() || later_.top() < first_[taken_])) return first_[taken_++];
    if (later_.empty()) return std::nullopt;
    const Pair pair = later_.top();
    later_.pop();
    return pair;
  }

  const JoinRule& rule_;
  std::vector<Node> nodes_;
  std::vector<Pair> first_;  // from the shallowest on
  std::size_t taken_ = 0;
  std::priority_queue<Pair> later_;
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
