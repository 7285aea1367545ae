// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/document.h"
#include "base/embedded_file.h"

namespace texturon {

// Records whose values are known in closed form. They are data, share/verification: a section each, with the shape and
// its numbers, the settings, and for every value the number to 30 digits and more, the formula that it comes from, and
// the tolerance.

/// A value of a standard, in the row's metric unit, and how near it must come.
struct KnownValue {
  std::string name;  ///< a parameter, or "form." and a figure of the form
  double value = 0.0;
  double tolerance = 0.0;
  std::string formula;
};

struct SoftwareStandard {
  std::string family;  ///< name of its file
  std::string title;
  std::string shape;
  std::map<std::string, double, std::less<>> numbers;  ///< Points, SpacingUM, HeightUM ...
  std::vector<double> coefficients;                    ///< of a polynomial, lowest power first
  std::vector<std::pair<std::string, std::string>> settings;
  std::vector<KnownValue> values;

  double Number(std::string_view name) const;
  std::size_t Points() const { return static_cast<std::size_t>(Number("Points")); }
  double SpacingUM() const { return Number("SpacingUM"); }
};

/// The files that the program carries.
std::span<const EmbeddedFile> VerificationFiles();

struct StandardsRead {
  std::vector<SoftwareStandard> standards;
  std::string reason;  ///< why not: file, section and what is wrong; empty: all are there
};

/// Reads the standards of files in their order; what is not understood refuses all.
StandardsRead ReadStandards(std::span<const EmbeddedFile> files);

/// Heights of a standard in um. Nothing for a shape that does not exist.
std::optional<std::vector<double>> HeightsOf(const SoftwareStandard& standard);

/// A document with the standard's settings and rows, without a record. Nothing for a setting that does not exist.
std::optional<Document> DocumentFor(const SoftwareStandard& standard);

}  // namespace texturon
