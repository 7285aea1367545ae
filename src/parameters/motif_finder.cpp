// SPDX-License-Identifier: Apache-2.0

#include "parameters/motif_finder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

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
      // Without a branch of its own, which noise would decide.
      const double z = z_[i];
      highest = z > top ? i : highest;
      top = std::max(top, z);
      if (top - z >= least_) {
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
    std::size_t lowest = at;
    double bottom = z_[at];
    for (std::size_t i = at + 1; i < z_.size(); ++i) {
      const double z = z_[i];
      lowest = z < bottom ? i : lowest;
      bottom = std::min(bottom, z);
      if (z - bottom >= least_) {
        dale_ = lowest;
        isRising_ = true;
        return i;
      }
    }
    dale_ = lowest;
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

/// Joins the pair with the shallowest common peak, again and again; of two equally shallow ones the left goes first.
///
/// No queue is needed for that. Joining makes dales deeper only, so a common peak never becomes shallower; and a pair
/// that may not be joined may be so only after a join next to it. Where a pair may be joined and the next such pairs on
/// both sides have deeper common peaks, neither of its motifs can change before its turn comes: it may be joined at
/// once. One walk from left to right finds all of them, with a stack of the pairs passed that wait for a shallower one
/// to come, each shallower than the one below it.
class ShallowestFirst {
public:
  ShallowestFirst(std::vector<Motif>&& motifs, const JoinRule& rule) : rule_(rule), motifs_(std::move(motifs)) {
    links_.reserve(motifs_.size());
    for (std::uint32_t i = 0; i < motifs_.size(); ++i) links_.push_back({i - 1, i + 1});
  }

  std::vector<Motif> Run() {
    if (motifs_.empty()) return {};
    for (std::uint32_t i = 1; i < motifs_.size(); ++i) {
      last_ = i;
      ahead_.push_back(links_[i].previous);
      LookAhead();
    }
    while (!waiting_.empty()) {
      JoinLastWaiting();
      LookAhead();
    }
    std::vector<Motif> motifs;
    motifs.reserve(motifs_.size() - joins_);
    for (std::size_t i = 0; i < motifs_.size(); i = links_[i].next) motifs.push_back(motifs_[i]);
    return motifs;
  }

private:
  struct Link {
    std::uint32_t previous;  // beyond the motifs: none
    std::uint32_t next;
  };
  struct Pair {
    double depth = 0.0;  // at the common peak
    std::uint32_t left = 0;
  };

  /// Looks at the pairs ahead: they wait, or those that have waited before them are joined.
  void LookAhead() {
    while (!ahead_.empty()) {
      const std::uint32_t i = ahead_.back();
      const Motif& left = motifs_[i];
      const Motif& right = motifs_[links_[i].next];
      if (!rule_.Join(left, right)) {
        ahead_.pop_back();
        continue;
      }
      const double depth = JoinRule::DepthAtCommonPeak(left, right);
      if (!waiting_.empty() && waiting_.back().depth <= depth) {
        JoinLastWaiting();
      } else {
        waiting_.push_back({depth, i});
        ahead_.pop_back();
      }
    }
  }

  void JoinLastWaiting() {
    const std::uint32_t left = waiting_.back().left;
    waiting_.pop_back();
    const std::uint32_t right = links_[left].next;
    motifs_[left] = *rule_.Join(motifs_[left], motifs_[right]);
    ++joins_;
    const std::uint32_t next = links_[right].next;
    links_[left].next = next;
    if (next < motifs_.size()) links_[next].previous = left;
    // The pairs on both sides are others now; the left one is looked at first.
    if (!ahead_.empty() && ahead_.back() == right) {
      ahead_.back() = left;
    } else if (next <= last_) {
      ahead_.push_back(left);
    }
    const std::uint32_t previous = links_[left].previous;
    if (previous >= motifs_.size()) return;
    if (!waiting_.empty() && waiting_.back().left == previous) waiting_.pop_back();
    ahead_.push_back(previous);
  }

  const JoinRule& rule_;
  std::vector<Motif> motifs_;  // the right one of a joined pair stays where it was, and no link leads to it
  std::vector<Link> links_;
  std::vector<Pair> waiting_;         // from left to right
  std::vector<std::uint32_t> ahead_;  // left motifs of pairs to look at, the leftmost last
  std::uint32_t last_ = 0;            // the walk has come to this one
  std::size_t joins_ = 0;
};

/// Straight lines through some points of a profile, from the first to the last.
class PolyLine {
public:
  PolyLine(std::span<const double> z, std::span<const Motif> motifs) : z_(z) {
    if (!motifs.empty()) {
      heights_.reserve(static_cast<std::size_t>(motifs.back().lastPeak - motifs.front().firstPeak) + 1);
    }
  }

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
  std::vector<Motif> motifs = SmallestMotifs(heights, Discrimination(heights, spacingUM, limits));
  const JoinRule rule(heights, spacingUM, limits);
  if (limits.leftToRightOnly) return JoinFromLeftToRight(motifs, rule);
  return ShallowestFirst(std::move(motifs), rule).Run();
}

std::vector<double> UpperEnvelope(std::span<const double> heights, std::span<const Motif> motifs) {
  PolyLine line(heights, motifs);
  if (!motifs.empty()) line.GoTo(motifs.front().firstPeak);
  for (const Motif& motif : motifs) line.GoTo(motif.lastPeak);
  return line.Result();
}

std::vector<double> MotifLine(std::span<const double> heights, std::span<const Motif> motifs) {
  PolyLine line(heights, motifs);
  if (!motifs.empty()) line.GoTo(motifs.front().firstPeak);
  for (const Motif& motif : motifs) {
    line.GoTo(motif.dale);
    line.GoTo(motif.lastPeak);
  }
  return line.Result();
}

}  // namespace texturon
