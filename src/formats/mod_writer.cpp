// SPDX-License-Identifier: Apache-2.0

#include "formats/mod_writer.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "formats/prf_records.h"

namespace texturon {
namespace {

std::string Number(double value) {
  return ScientificText(value, 6);
}

/// Why the points and the other numbers cannot be written; empty: they can.
std::string Problem(const ModPoints& points, std::initializer_list<double> numbers) {
  const auto isFinite = [](double value) { return std::isfinite(value); };
  if (points.heightsUM.empty()) return "is not written: the profile has no points";
  if (!(points.spacingUM > 0.0) || !isFinite(points.spacingUM)) {
    return "is not written: the point spacing of " + ShortestText(points.spacingUM) + " um is not above 0";
  }
  if (!std::all_of(points.heightsUM.begin(), points.heightsUM.end(), isFinite)) {
    return "is not written: a height is no number";
  }
  if (!isFinite(points.xOffsetMM) || !std::all_of(numbers.begin(), numbers.end(), isFinite)) {
    return "is not written: a number of its header is none";
  }
  return {};
}

/// Record 1 with its name line up to the kind.
std::string FirstRecord(const std::string& name, const ModPoints& points) {
  const std::string axis =
      " A " + Number(static_cast<double>(points.heightsUM.size())) + " MM " + Number(1.0) + " D\r\n";
  return "1 2\r\n" + name + " MOD\r\nCX" + axis + "CZ" + axis + "EOR\r\n";
}

std::string LengthAndCount(double assessmentLengthMM, const ModPoints& points) {
  return "ASSESSMENT_LENGTH " + Number(assessmentLengthMM) + " MM\r\nNUMBER_MOD_POINTS " +
         Number(static_cast<double>(points.heightsUM.size())) + "\r\n";
}

/// Record 3 and the end of the file.
void AppendPoints(const ModPoints& points, double offsetMM, std::string& text) {
  text.reserve(text.size() + points.heightsUM.size() * 33);
  for (std::size_t i = 0; i < points.heightsUM.size(); ++i) {
    const double index = static_cast<double>(points.firstIndex) + static_cast<double>(i);
    AppendScientific(text, index * points.spacingUM * kMillimetresPerMicrometre - offsetMM, 6);
    text += "\r\n";
  }
  for (const double height : points.heightsUM) {
    AppendScientific(text, height * kMillimetresPerMicrometre, 6);
    text += "\r\n";
  }
  text += "EOR\r\nEOF\r\n";
}

}  // namespace

ModText WavinessModText(const WavinessMod& record) {
  ModText text{{}, Problem(record.points, {record.assessmentLengthMM})};
  if (!text.ok()) return text;
  text.bytes = FirstRecord("TXRN_  " + Number(0.0), record.points) + "FILTER_MODE NO_FILTER\r\nFORM " +
               (record.isArc ? "LS_ARC" : "LS_LINE") + "\r\n" +
               LengthAndCount(record.assessmentLengthMM, record.points) + "EOR\r\n";
  AppendPoints(record.points, record.isArc ? record.points.xOffsetMM : 0.0, text.bytes);
  return text;
}

ModText AsphereModText(const AsphereMod& record) {
  constexpr std::size_t kMostCoefficients = 20;
  ModText text{{}, Problem(record.points, {record.version, record.assessmentLengthMM, record.radiusMM, record.conic})};
  const auto isFinite = [](const ModCoefficient& c) { return std::isfinite(c.number) && std::isfinite(c.value); };
  if (text.ok() && record.coefficients.size() > kMostCoefficients) {
    text.reason = "is not written: the format holds 20 coefficients";
  } else if (text.ok() && !std::all_of(record.coefficients.begin(), record.coefficients.end(), isFinite)) {
    text.reason = "is not written: a number of its header is none";
  }
  if (!text.ok()) return text;
  text.bytes = FirstRecord(PrfName(record.identification, ' ') + " " + Number(record.version), record.points) +
               "FILTER_MODE WAVINESS\r\nFORM ASPHERIC\r\n" + LengthAndCount(record.assessmentLengthMM, record.points);
  for (const ModCoefficient& c : record.coefficients) {
    text.bytes += "ASPHERIC_COEFF " + Number(c.value) + " MM " + Number(c.number) + "\r\n";
  }
  text.bytes += "ASPHERIC_RADIUS " + Number(record.radiusMM) + " MM\r\nASPHERIC_K " + Number(record.conic) +
                "\r\nCOMMENT " + OnOneLine(record.comment) + "\r\nEOR\r\n";
  AppendPoints(record.points, record.points.xOffsetMM, text.bytes);
  return text;
}

}  // namespace texturon
