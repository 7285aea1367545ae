// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <limits>
#include <utility>

#include "analysis/curve_step.h"
#include "analysis/form_step.h"
#include "analysis/spectrum_step.h"
#include "base/charset.h"
#include "base/units.h"
#include "binding.h"
#include "parameters/curves.h"
#include "parameters/profile_elements.h"
#include "settings/filter_table.h"
#include "signal/envelope/morphological_envelope.h"
#include "signal/sort_descending.h"

namespace texturon::binding {
namespace {

std::size_t LengthOf(const Heights& heights) {
  return static_cast<std::size_t>(heights.shape(heights.ndim() - 1));
}

/// A row of heights, or one after the other of several.
std::span<const double> RowAt(const Heights& heights, std::size_t row) {
  return {heights.data() + row * LengthOf(heights), LengthOf(heights)};
}

/// Calls `step` with each row of the heights and that of a result, which has `length` columns, without Python's lock.
template <typename Step>
Heights OverRows(const Heights& heights, std::size_t length, const Step& step) {
  std::vector<py::ssize_t> shape(heights.shape(), heights.shape() + heights.ndim());
  shape.back() = static_cast<py::ssize_t>(length);
  Heights result(shape);
  double* const data = result.mutable_data();
  const std::size_t rows = heights.ndim() == 2 ? static_cast<std::size_t>(heights.shape(0)) : 1;
  CallPrompts prompts;
  WithoutLock(prompts.interrupts(), [&] {
    for (std::size_t row = 0; row < rows && !prompts.interrupts().Pressed(); ++row) {
      step(RowAt(heights, row), std::span(data + row * length, length), prompts);
    }
  });
  return result;
}

Heights Filtered(const std::string& word, const Heights& heights, double spacingUM, double cutoffMM, double tension) {
  const FilterRow& filter = *FindFilter(word);
  return OverRows(heights, LengthOf(heights), [&](auto z, auto w, CallPrompts& prompts) {
    const auto progress = prompts.OpenProgress("", "");
    const FilterRange valid = filter.run(
        z, w, {.spacingUM = spacingUM, .cutoffMM = cutoffMM, .tension = tension, .progress = progress.get()});
    if (!valid) {
      throw Refusal(
          "The " + std::string(filter.label) +
          " filter gives no mean line: spacing and cutoff must be above 0, the spacing at most a third of the "
          "cutoff, the profile long enough.");
    }
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    std::fill_n(w.begin(), valid->first, kNone);
    std::fill(w.begin() + valid->first + valid->count, w.end(), kNone);
  });
}

Heights Envelope(bool closing, const Heights& heights, double spacingUM, double radiusMM) {
  const auto envelope = closing ? ClosingEnvelope : OpeningEnvelope;
  return OverRows(heights, LengthOf(heights), [&](auto z, auto e, CallPrompts& /*prompts*/) {
    if (!envelope(z, e, spacingUM, radiusMM * kMicrometresPerMillimetre)) throw std::bad_alloc();
  });
}

/// Wavelengths in mm, the same for all rows, and amplitudes in um.
py::tuple SpectrumOfRows(const Heights& heights, double spacingUM) {
  const auto spectrumOf = [spacingUM](std::span<const double> z) {
    const auto count = static_cast<std::int32_t>(z.size());
    return SpectrumOf({.samples = z, .range = IndexRange::FromCount(0, count), .spacingUM = spacingUM});
  };
  const std::vector<double> level(LengthOf(heights));
  const Spectrum lines = spectrumOf(level);
  if (!lines.valid) throw Refusal("The profile is too short for a spectrum.");
  Heights amplitudes = OverRows(heights, lines.amplitudeUM.size(), [&](auto z, auto a, CallPrompts& /*prompts*/) {
    const Spectrum spectrum = spectrumOf(z);
    std::copy(spectrum.amplitudeUM.begin(), spectrum.amplitudeUM.end(), a.begin());
  });
  return py::make_tuple(Copy(lines.wavelengthMM), std::move(amplitudes));
}

/// Heights from the highest to the lowest, by row.
Heights Sorted(const Heights& heights) {
  return OverRows(heights, LengthOf(heights), [](auto z, auto sorted, CallPrompts& /*prompts*/) {
    std::vector<double> values(z.begin(), z.end());
    SortDescending(values);
    std::copy(values.begin(), values.end(), sorted.begin());
  });
}

/// Material ratios in percent and heights in um, from sorted heights.
py::tuple BearingRatio(const Heights& sorted) {
  std::vector<double> ratios;
  for (const BearingPoint& point : BearingRatioCurve(RowAt(sorted, 0))) ratios.push_back(point.ratioPercent);
  return py::make_tuple(Copy(ratios), sorted);
}

/// Scaled counts and heights in um, from sorted heights.
py::tuple Amplitudes(const Heights& sorted) {
  std::vector<double> counts;
  std::vector<double> middles;
  for (const AmplitudeClass& row : AmplitudeDistribution(RowAt(sorted, 0))) {
    counts.push_back(row.scaledCount);
    middles.push_back(row.heightUM);
  }
  return py::make_tuple(Copy(counts), Copy(middles));
}

py::list MotifList(const std::vector<Motif>& motifs) {
  py::list rows;
  for (const Motif& motif : motifs) {
    rows.append(py::make_tuple(motif.firstPeak, motif.dale, motif.lastPeak, motif.firstDepthUM, motif.lastDepthUM));
  }
  return rows;
}

py::tuple MotifsOfRow(const Heights& heights, double spacingUM, const Settings& settings) {
  MotifResult motifs;
  Interrupts interrupts;
  const AnalysisSettings analysis = settings.analysis;
  WithoutLock(interrupts, [&] { motifs = ComputeMotifs(RowAt(heights, 0), spacingUM, analysis); });
  return py::make_tuple(MotifList(motifs.roughness), MotifList(motifs.waviness));
}

py::list ElementsOfRow(const Heights& heights, double spacingUM, double heightUM, double widthUM) {
  py::list rows;
  for (const ProfileElement& element :
       FindProfileElements(RowAt(heights, 0), {.heightUM = heightUM, .widthPoints = widthUM / spacingUM})) {
    rows.append(py::make_tuple(element.startPoints * spacingUM, element.widthPoints * spacingUM, element.heightUM));
  }
  return rows;
}

py::dict FiguresOf(const FormGeometry& geometry) {
  py::dict figures;
  for (const FormField& field : FormOf(geometry).fields(geometry)) {
    const py::str name(std::string(field.name));
    std::visit([&](const auto& value) { figures[name] = value; }, field.value);
    if (field.uncertainty) figures[py::str(std::string(field.name) + "_uncertainty")] = *field.uncertainty;
  }
  return figures;
}

/// Residual, form, spacing of the residual in um and the form's figures. The one way of the pipeline, so that there is
/// no form that only this call knows.
py::tuple FormRemoved(const Heights& heights, double spacingUM, const Settings& settings,
                      std::optional<std::pair<std::int32_t, std::int32_t>> exclude) {
  Document document;
  ApplySettings(document, settings);
  const std::span<const double> row = RowAt(heights, 0);
  ComputeRange whole{.range = IndexRange::FromCount(0, static_cast<std::int64_t>(row.size()))};
  if (exclude) whole.exclusion = IndexRange::FromEnds(exclude->first, exclude->second);
  CallPrompts prompts;
  WithoutLock(prompts.interrupts(), [&] {
    SetProfile(document, MakeProfileSet({row.begin(), row.end()}, spacingUM));
    RemoveForm(document, whole, prompts);
    const std::int32_t kind = document.settings.analysis.FormRemovalType;
    if (kind == kFormNone || document.results.formApplied == kind) return;
    std::string reason = "The form cannot be fitted to these heights";
    for (const std::string& message : prompts.messages()) reason += ": " + Utf8FromWindows1252(message);
    throw Refusal(reason.ends_with('.') ? reason : reason + ".");
  });
  const ProfileSet& profiles = document.profiles;
  return py::make_tuple(Copy(profiles.formSuppressed), Copy(profiles.form), profiles.residualSpacingUM,
                        FiguresOf(document.results.formGeometry));
}

}  // namespace

void BindSteps(py::module_& module) {
  module.def("filtered", Filtered);
  module.def("envelope", Envelope);
  module.def("spectrum", SpectrumOfRows);
  module.def("sorted_heights", Sorted);
  module.def("bearing_ratio", BearingRatio);
  module.def("amplitudes", Amplitudes);
  module.def("motifs", MotifsOfRow);
  module.def("profile_elements", ElementsOfRow);
  module.def("form_removed", FormRemoved);
}

}  // namespace texturon::binding
