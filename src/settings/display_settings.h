// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>

namespace texturon {

/// `CursorDisplayType`: the sum of what is shown.
enum CursorDisplay : std::int32_t { kUprightCursors = 1, kLevelCursors = 2 };

/// What the window and the reports show, with the keys' names as in AnalysisSettings.
struct DisplaySettings {
  std::string Identification;
  bool UpperIsSplit = false;
  bool LowerIsSplit = false;
  bool Metric = true;
  bool PrimaryAsTpa = false;
  bool RoughnessAsTpi = false;
  std::int32_t ProfileType = 1;
  std::int32_t BrcAdfType = 2;
  bool ShowRkLines = true;
  std::int32_t ParameterColumns = 3;
  bool ShowFilterTrans = true;
  bool ShowClosingProfile = false;
  bool ShowOpeningProfile = false;
  std::int32_t CursorDisplayType = 1;
  bool ShowXAxisValues = false;
  bool ShowINIPathInHeading = false;
  bool ProfileAutoScale = true;
  bool Profile11AspectRatio = true;
  double ProfileYMaxUM = 10.0;
  double ProfileYMinUM = -10.0;
  bool ProfileAutoYSpacing = true;
  double ProfileYGridSpacingUM = 0.0;
  double ProfileYGridStartUM = -10.0;
  bool ShowExtremeSlopes = false;
  bool ShowFeatures = false;
  double ExtremeSlopePlotDegrees = 40.0;
  double AspherePreviewMaxXMM = 25.0;
  double AspherePreviewMinXMM = -25.0;
  double AspherePreviewMaxYUM = 10.0;
  double AspherePreviewMinYUM = -10.0;
  bool SpectrumAutoScale = true;
  double SpectrumYMaxUM = 10.0;
  double SpectrumYMinUM = 0.0;
  std::string ParameterFile;
  std::string CompanyName;
  std::string LogoFile;

  friend bool operator==(const DisplaySettings&, const DisplaySettings&) = default;
};

}  // namespace texturon
