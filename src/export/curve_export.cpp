// SPDX-License-Identifier: Apache-2.0

#include "export/curve_export.h"

#include <initializer_list>

#include "base/number_text.h"
#include "parameters/curves.h"

namespace texturon {
namespace {

constexpr std::size_t kRowLength = 24;

std::string Beginning(const ExportSource& source, std::string_view settings, std::string_view titles,
                      std::string_view units) {
  return ExportHead(source) + QuotedLine(settings) + std::string(titles) + "\r\n" + std::string(units) + "\r\n";
}

void AppendRow(std::string& text, std::initializer_list<double> values, int decimals) {
  bool isFirst = true;
  for (const double value : values) {
    if (!isFirst) text += ", ";
    isFirst = false;
    AppendFixed(text, value, decimals);
  }
  text += "\r\n";
}

}  // namespace

std::string AmplitudeDistributionExport(std::span<const double> sorted, CurveProfile profile,
                                        const ExportSource& source, std::string_view settings) {
  const bool isPrimary = profile == CurveProfile::kPrimary;
  std::string text =
      Beginning(source, settings, isPrimary ? "\"Primary ADF\", \"Height\"" : "\"Roughness ADF\", \"Height\"",
                isPrimary ? "\"scaled occurrences\", \"um\"" : "\"scaled\", \"um\"");
  for (const AmplitudeClass& amplitudeClass : AmplitudeDistribution(sorted)) {
    AppendRow(text, {amplitudeClass.scaledCount, amplitudeClass.heightUM}, 3);
  }
  return text;
}

std::string BearingRatioExport(std::span<const double> sorted, CurveProfile profile, const ExportSource& source,
                               std::string_view settings) {
  const bool isPrimary = profile == CurveProfile::kPrimary;
  std::string text = Beginning(
      source, settings, isPrimary ? "\"Primary BRC\", \"Height\"" : "\"Roughness BRC\", \"Height\"", "\"%\", \"um\"");
  text.reserve(text.size() + sorted.size() * kRowLength);
  for (const BearingPoint& point : BearingRatioCurve(sorted)) AppendRow(text, {point.ratioPercent, point.heightUM}, 3);
  return text;
}

std::string ProbabilityExport(std::span<const double> sorted, const ExportSource& source, std::string_view settings) {
  std::string text = Beginning(source, settings, "\"Roughness BRC\", \"Roughness Probability\", \"Height\"",
                               "\"%\", \"StdDev\", \"um\"");
  text.reserve(text.size() + sorted.size() * kRowLength);
  for (const ProbabilityPoint& point : ProbabilityCurve(sorted)) {
    AppendRow(text, {point.ratioPercent, point.deviations, point.heightUM}, 3);
  }
  return text;
}

std::string SpectrumExport(const Spectrum& spectrum, const ExportSource& source, std::string_view settings) {
  std::string text = Beginning(source, settings, "\"Wavelengths\", \"Mean to Peak Amplitude\"", "\"mm\", \"um\"");
  text.reserve(text.size() + spectrum.amplitudeUM.size() * kRowLength);
  for (std::size_t i = 0; i < spectrum.amplitudeUM.size(); ++i) {
    AppendRow(text, {spectrum.wavelengthMM[i], spectrum.amplitudeUM[i]}, 6);
  }
  return text;
}

}  // namespace texturon
