// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/index_range.h"
#include "base/samples.h"
#include "base/units.h"
#include "record/input_mark.h"
#include "record/instrument_value.h"
#include "record/motif.h"
#include "record/profile.h"

namespace texturon {

/// Most points that a record may have.
inline constexpr std::int32_t kPointCapacity = 750'000;

/// Length of a record or of a stretch, in the unit of its spacing: every point stands for one spacing, so that the last
/// one lies a spacing before the end.
constexpr double LengthOfPoints(std::int64_t points, double spacing) {
  return static_cast<double>(points) * spacing;
}

/// Amplitudes of the harmonics of the form-suppressed profile. Index 0 is the mean and carries the longest wavelength.
struct Spectrum {
  bool valid = false;  ///< the profile has one; the lists are empty all the same where it was not wanted
  std::vector<double> amplitudeUM;
  std::vector<double> wavelengthMM;
  double peakAmplitudeUM = 0.0;  ///< largest amplitude without index 0

  bool IsEmpty() const { return amplitudeUM.empty(); }
};

/// The measured record and every profile derived from it. All arrays have pointCount entries and share one index: index
/// i is the same place of the surface in each. A reader fills the measured part, the pipeline everything else: a
/// derived array is empty before the first run. A derived profile means something only inside its range, and outside it
/// keeps what it held, at first zeros.
struct ProfileSet {
  // Measured.
  std::int32_t pointCount = 0;
  double spacingUM = 0.0;
  std::vector<double> raw;
  std::string identification;
  std::string dateTime;
  std::string sourcePath;                         ///< as outputs show it; several files may share the text
  std::filesystem::path sourceFile;               ///< itself
  InputMark input;                                ///< of that file's content
  double tipRadiusMM = -1.0;                      ///< -1.0 or 0.0: none known
  std::vector<InstrumentValue> instrumentValues;  ///< what the file tells of the instrument's own results
  bool inverted = false;                          ///< `raw` is upside down to what the reader delivered

  // Derived.
  Samples form;  ///< the geometry that form removal took out
  Samples formSuppressed;
  Samples primary;
  Samples waviness;
  Samples roughness;
  Samples closing;  ///< empty until a parameter asks for the envelope
  Samples opening;
  std::vector<Motif> roughnessMotifs;  ///< of the primary profile; empty until a parameter asks for them
  std::vector<Motif> wavinessMotifs;
  double residualSpacingUM = 0.0;          ///< spacing of the derived profiles; perpendicular residuals stretch it
  std::optional<IndexRange> computeRange;  ///< of the form-suppressed profile; none: there is no such profile
  std::optional<IndexRange> primaryRange;
  std::optional<IndexRange> evaluationRange;  ///< of waviness, roughness and the envelopes
  std::optional<double> shortCutoffMM;        ///< of the filter that made the primary profile; none: not filtered
  std::optional<double> longCutoffMM;         ///< of the filter that made the waviness; none: the primary stands for it
  Spectrum spectrum;

  bool IsEmpty() const { return pointCount < 1; }

  double LengthUM() const { return LengthOfPoints(pointCount, spacingUM); }
  double LengthMM() const { return LengthUM() * kMillimetresPerMicrometre; }

  /// Whether there is a profile of a kind: measured, or left by the last run.
  bool Has(ProfileKind kind) const;

  /// The view of one profile with its range, empty where there is none, and spacing.
  Profile View(ProfileKind kind) const;
};

/// A record as a reader delivers it: measured part set, derived arrays empty.
ProfileSet MakeProfileSet(std::vector<double> heightsUM, double spacingUM);

/// Gives a derived array its pointCount entries before those of `written` are written. Where it has none yet, what lies
/// outside becomes zero and what lies inside holds anything.
void MakeRoom(Samples& derived, std::int32_t pointCount, const IndexRange& written);

/// Zeros for the derived arrays that a run has left empty; not for the envelopes.
void FillEmpty(ProfileSet& profiles);

}  // namespace texturon
