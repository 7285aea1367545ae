// SPDX-License-Identifier: Apache-2.0

#include "presentation/shown_profiles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/number_text.h"

namespace texturon {
namespace {

/// Raw data to roughness and then the form are bits, the envelopes have keys of their own.
constexpr std::size_t kBits = 6;
/// What each bit shows.
constexpr std::array<std::size_t, kBits> kShownOfBit = {0, 1, 2, 3, 4, kShownForm};
constexpr std::int32_t kFirstSum = 16;

constexpr std::int32_t BitOf(ProfileKind kind) {
  return 1 << static_cast<std::int32_t>(kind);
}

constexpr std::int32_t kPrimaryAndWaviness = BitOf(ProfileKind::kPrimary) + BitOf(ProfileKind::kWaviness);

/// Bits of the numbers below kFirstSum.
constexpr std::array<std::int32_t, 6> kNamed = {BitOf(ProfileKind::kRaw),       kPrimaryAndWaviness,
                                                BitOf(ProfileKind::kPrimary),   BitOf(ProfileKind::kWaviness),
                                                BitOf(ProfileKind::kRoughness), BitOf(ProfileKind::kFormSuppressed)};

std::int32_t BitsOf(std::int32_t type) {
  if (type >= 0 && type < static_cast<std::int32_t>(kNamed.size())) return kNamed[static_cast<std::size_t>(type)];
  const bool isSum = type >= kFirstSum && type < kFirstSum + (1 << kBits);
  return isSum ? type - kFirstSum : kPrimaryAndWaviness;
}

std::int32_t TypeOf(std::int32_t bits) {
  for (std::size_t type = 0; type < kNamed.size(); ++type) {
    if (kNamed[type] == bits) return static_cast<std::int32_t>(type);
  }
  return kFirstSum + bits;
}

}  // namespace

ShownProfiles ShownProfilesOf(const DisplaySettings& display) {
  ShownProfiles shown{};
  const std::int32_t bits = BitsOf(display.ProfileType);
  for (std::size_t i = 0; i < kBits; ++i) shown[kShownOfBit[i]] = (bits >> i & 1) != 0;
  shown[static_cast<std::size_t>(ProfileKind::kClosing)] = display.ShowClosingProfile;
  shown[static_cast<std::size_t>(ProfileKind::kOpening)] = display.ShowOpeningProfile;
  return shown;
}

void SetShownProfiles(DisplaySettings& display, const ShownProfiles& shown) {
  std::int32_t bits = 0;
  for (std::size_t i = 0; i < kBits; ++i) bits += shown[kShownOfBit[i]] ? 1 << i : 0;
  display.ProfileType = TypeOf(bits);
  display.ShowClosingProfile = shown[static_cast<std::size_t>(ProfileKind::kClosing)];
  display.ShowOpeningProfile = shown[static_cast<std::size_t>(ProfileKind::kOpening)];
}

ProfileKind ReadKind(const ShownProfiles& shown) {
  for (const ProfileKind kind :
       {ProfileKind::kRoughness, ProfileKind::kPrimary, ProfileKind::kFormSuppressed, ProfileKind::kWaviness}) {
    if (shown[static_cast<std::size_t>(kind)]) return kind;
  }
  return ProfileKind::kRaw;
}

std::optional<ProfileKind> SteepKind(const ShownProfiles& shown) {
  if (shown[static_cast<std::size_t>(ProfileKind::kPrimary)]) return ProfileKind::kPrimary;
  const ProfileKind kind = ReadKind(shown);
  return shown[static_cast<std::size_t>(kind)] ? std::optional(kind) : std::nullopt;
}

std::string SteepCaption(ProfileKind kind, double degrees, double percent) {
  return ProfileTitle(kind) + " above " + FixedText(degrees, 1) + "\xB0: " + FixedText(percent, 1) + " %";
}

Profile RemovedForm(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  return {ProfileKind::kRaw, profiles.form, FormRange(document), profiles.spacingUM};
}

bool IsOverStretch(const Document& document) {
  const auto& computed = document.profiles.computeRange;
  return computed && computed->count < document.profiles.pointCount;
}

bool HasHeightsBeside(const ShownProfiles& shown) {
  const auto isShown = [&](ProfileKind kind) { return shown[static_cast<std::size_t>(kind)]; };
  return !isShown(ProfileKind::kRaw) && (isShown(ProfileKind::kPrimary) || isShown(ProfileKind::kFormSuppressed) ||
                                         isShown(ProfileKind::kClosing) || isShown(ProfileKind::kOpening));
}

std::vector<double> HeightsBeside(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  const Profile form = RemovedForm(document);
  const auto& computed = profiles.computeRange;
  if (!IsOverStretch(document) || form.range.count < 2) return {};
  const bool hasForm = form.samples.size() == profiles.raw.size();
  if (!hasForm || profiles.raw.size() != static_cast<std::size_t>(profiles.pointCount)) return {};
  // Far enough for a slope, near enough for that of the end.
  const std::int32_t reach = std::max(form.range.count / 100, 1);
  const auto at = [&](std::int32_t index) { return form.samples[static_cast<std::size_t>(index)]; };
  const auto slopeAt = [&](std::int32_t from) { return (at(from + reach) - at(from)) / reach; };
  const double slopes[] = {slopeAt(form.range.first), slopeAt(form.range.last - reach)};
  std::vector<double> heights(profiles.raw.size(), std::nan(""));
  for (std::int32_t i = 0; i < profiles.pointCount; ++i) {
    if (i > computed->first && i < computed->last) continue;
    const std::int32_t end = std::clamp(i, form.range.first, form.range.last);
    const double level = at(end) + (i - end) * slopes[i < form.range.first ? 0 : 1];
    heights[static_cast<std::size_t>(i)] = profiles.raw[static_cast<std::size_t>(i)] - level;
  }
  return heights;
}

}  // namespace texturon
