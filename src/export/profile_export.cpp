// SPDX-License-Identifier: Apache-2.0

#include "export/profile_export.h"

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"

namespace texturon {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

std::string SettingsLines(ProfileKind kind, const ProfileExportTexts& texts) {
  switch (kind) {
    case ProfileKind::kRaw:
      return {};
    case ProfileKind::kPrimary:
      return QuotedLine(texts.description) + QuotedLine(ShortCutoffText(texts.shortCutoffMM));
    case ProfileKind::kWaviness:
      return QuotedLine(texts.formCaption) + QuotedLine(texts.filterText) + std::string(kLineEnd);
    case ProfileKind::kFormSuppressed:
    case ProfileKind::kRoughness:
    case ProfileKind::kClosing:
    case ProfileKind::kOpening:
      break;
  }
  return QuotedLine(texts.description);
}

}  // namespace

std::string ShortCutoffText(double cutoffMM) {
  return "Short Cutoff = " + FixedText(cutoffMM, 4) + " mm";
}

std::string QuotedLine(std::string_view text) {
  return "\"" + OnOneLine(text) + "\"" + std::string(kLineEnd);
}

std::string ExportHead(const ExportSource& source) {
  return "\"File:\", " + QuotedLine(source.file) + "\"Identification:\", " + QuotedLine(source.identification) +
         std::string(kLineEnd);
}

std::string ProfileExport(const Profile& profile, const ExportSource& source, const ProfileExportTexts& texts) {
  constexpr std::size_t kRowLength = 24;
  const std::span<const double> heights = profile.Heights();
  std::string text = ExportHead(source) + QuotedLine(ProfileTitle(profile.kind, texts.ballRadiusMM));
  text += kLineEnd;
  text += SettingsLines(profile.kind, texts);
  text += "\"Number of Points\", " + IntegerText(static_cast<std::int64_t>(heights.size())) + std::string(kLineEnd);
  text += profile.kind == ProfileKind::kRaw ? "\"X\", \"Raw Data Height\"" : "\"X\", \"Height\"";
  text += kLineEnd;
  text += "\"mm\", \"um\"";
  text += kLineEnd;
  text.reserve(text.size() + heights.size() * kRowLength);
  double index = profile.range.first;
  for (const double height : heights) {
    AppendFixed(text, index * profile.spacingUM * kMillimetresPerMicrometre, 6);
    text += ", ";
    AppendFixed(text, height, 6);
    text += kLineEnd;
    index += 1.0;
  }
  return text;
}

}  // namespace texturon
