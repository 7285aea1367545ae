// SPDX-License-Identifier: Apache-2.0

#include "analysis/analysis_json.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "analysis/captions.h"
#include "analysis/decision.h"
#include "analysis/edition_json.h"
#include "analysis/ratio_row_list.h"
#include "base/charset.h"
#include "base/units.h"
#include "parameters/catalogue.h"
#include "parameters/labels.h"

namespace texturon {
namespace {

class AnalysisJsonWriter {
public:
  AnalysisJsonWriter(const Document& document, JsonWriter& json, const UncertaintyResult* uncertainty)
      : document_(document), json_(json), uncertainty_(uncertainty) {}

  void Form() {
    const AnalysisResults& results = document_.results;
    json_.Key("form");
    json_.BeginObject();
    json_.Key("requested");
    json_.Integer(document_.settings.analysis.FormRemovalType);
    json_.Key("applied");
    json_.Integer(results.formApplied);
    Text("caption", FormCaption(document_));
    Number("residual_spacing_um", document_.profiles.residualSpacingUM);
    if (document_.profiles.computeRange) Fields(results.formGeometry);
    json_.EndObject();
  }

  void Ranges() {
    const ProfileSet& profiles = document_.profiles;
    json_.Key("ranges");
    json_.BeginObject();
    Range("compute", profiles.computeRange.value_or(IndexRange{}));
    Range("primary", profiles.primaryRange.value_or(IndexRange{}));
    Range("evaluation", profiles.evaluationRange.value_or(IndexRange{}));
    json_.EndObject();
  }

  void Flags() {
    json_.Key("flags");
    json_.BeginObject();
    Bool("ls_applied", document_.profiles.shortCutoffMM.has_value());
    Bool("waviness_computed", document_.profiles.evaluationRange.has_value());
    Bool("spectrum_valid", document_.profiles.spectrum.valid);
    json_.EndObject();
  }

  void Parameters() {
    json_.Key("parameters");
    json_.BeginArray();
    for (const ParameterDef& row : document_.catalogue.rows) {
      if (!row.selected) continue;
      json_.BeginObject();
      Text("name", row.name);
      json_.Key("value");
      row.valid ? json_.Number(row.value) : json_.Null();
      Text("unit", PrintedUnit(row.quantity.metricUnit));
      Text("imperial_unit", PrintedUnit(row.quantity.imperialUnit));
      Number("imperial_factor", row.quantity.imperialFactor);
      Bool("valid", row.valid);
      const bool hasLabel = row.edition == Edition::k1997;
      Text("label", hasLabel ? RowLabel(row.name, document_.settings.analysis, document_.settings.display.Metric) : "");
      Judge(row);
      WriteEditionOfRow(json_, document_, row);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void ConfigurableRows() {
    json_.Key("material_ratios");
    RatioRows(SelectedMaterialRatios(document_));
    json_.Key("htps");
    RatioRows(SelectedHtps(document_));
  }

  void InstrumentValues() {
    if (document_.profiles.instrumentValues.empty()) return;
    json_.Key("instrument_values");
    json_.BeginArray();
    for (const InstrumentValue& value : document_.profiles.instrumentValues) {
      json_.BeginObject();
      Text("name", value.name);
      Number("value", value.value);
      Text("unit", value.unit);
      json_.EndObject();
    }
    json_.EndArray();
  }

  void CoreRoughness() {
    const RkResult& rk = document_.results.coreRoughness;
    const std::pair<std::string_view, double> values[] = {{"Rk", rk.Rk},
                                                          {"Rpk", rk.Rpk},
                                                          {"Rvk", rk.Rvk},
                                                          {"Mr1", rk.Mr1},
                                                          {"Mr2", rk.Mr2},
                                                          {"upper_line", rk.upperLine},
                                                          {"lower_line", rk.lowerLine}};
    json_.Key("rk");
    json_.BeginObject();
    Bool("valid", rk.valid);
    for (const auto& [name, value] : values) {
      json_.Key(name);
      rk.valid ? json_.Number(value) : json_.Null();
    }
    json_.EndObject();
  }

  void Profiles() {
    const ProfileSet& profiles = document_.profiles;
    json_.Key("profiles");
    json_.BeginObject();
    Numbers("raw", profiles.raw);
    Numbers("form_suppressed", profiles.formSuppressed);
    Numbers("primary", profiles.primary);
    Numbers("waviness", profiles.waviness);
    Numbers("roughness", profiles.roughness);
    if (!profiles.closing.empty()) Numbers("closing", profiles.closing);
    if (!profiles.opening.empty()) Numbers("opening", profiles.opening);
    json_.EndObject();
    json_.Key("spectrum");
    json_.BeginObject();
    Numbers("wavelength_mm", profiles.spectrum.wavelengthMM);
    Numbers("amplitude_um", profiles.spectrum.amplitudeUM);
    json_.EndObject();
  }

  void Number(std::string_view key, double value) {
    json_.Key(key);
    json_.Number(value);
  }
  void Text(std::string_view key, std::string_view text) {
    json_.Key(key);
    json_.Text(Utf8FromWindows1252(text));
  }

private:
  void Fields(const FormGeometry& geometry) {
    const std::vector<FormField> fields = FormOf(geometry).fields(geometry);
    for (const FormField& field : fields) {
      if (const double* const number = std::get_if<double>(&field.value)) {
        Number(field.name, *number);
      } else {
        Numbers(field.name, std::get<std::vector<double>>(field.value));
      }
    }
    const auto isKnown = [](const FormField& field) { return field.uncertainty || !field.uncertainties.empty(); };
    if (std::none_of(fields.begin(), fields.end(), isKnown)) return;
    json_.Key("standard_uncertainty");
    json_.BeginObject();
    for (const FormField& field : fields) {
      if (field.uncertainty) Number(field.name, *field.uncertainty);
      if (!field.uncertainties.empty()) Numbers(field.name, field.uncertainties);
    }
    json_.EndObject();
  }

  void RatioRows(const std::vector<RatioRowEntry>& rows) {
    json_.BeginArray();
    for (const RatioRowEntry& entry : rows) {
      json_.BeginObject();
      Text("name", entry.row.name);
      json_.Key("row");
      json_.Integer(static_cast<std::int64_t>(entry.index));
      json_.Key("value");
      entry.row.valid ? json_.Number(entry.row.value) : json_.Null();
      Bool("valid", entry.row.valid);
      Text("label", entry.label);
      Judge(entry.row);
      json_.EndObject();
    }
    json_.EndArray();
  }

  /// What comes last of every row, which are taken in the order of ShownRows.
  void Judge(const ParameterDef& row) {
    const auto decision = Decide(document_, row, row_);
    json_.Key("verdict");
    decision ? json_.Text(AcceptanceWord(decision->verdict)) : json_.Null();
    if (decision && decision->conformity) Number("conformity_probability", *decision->conformity);
    ReasonFor(row);
    if (uncertainty_ != nullptr) WriteUncertainty(json_, *uncertainty_, row_);
    ++row_;
  }

  void ReasonFor(const ParameterDef& row) {
    const std::string reason = ReasonOf(row, document_.settings.display.Metric);
    if (!reason.empty()) Text("reason", reason);
  }

  void Range(std::string_view key, const IndexRange& range) {
    const std::int32_t ends[] = {range.first, range.last, range.count};
    json_.Key(key);
    json_.Integers(ends);
  }
  void Bool(std::string_view key, bool value) {
    json_.Key(key);
    json_.Bool(value);
  }
  void Numbers(std::string_view key, std::span<const double> values) {
    json_.Key(key);
    json_.Numbers(values);
  }

  const Document& document_;
  JsonWriter& json_;
  const UncertaintyResult* uncertainty_;
  std::size_t row_ = 0;
};

}  // namespace

void WriteAnalysisJson(std::ostream& out, const Document& document, std::string_view file,
                       const std::vector<std::string>& messages, const AnalysisJsonOptions& options) {
  JsonWriter json(options.layout, &out);
  AnalysisJsonWriter writer(document, json, options.uncertainty);
  json.BeginObject();
  json.Key("file");
  json.Text(file);
  if (const std::string_view edition = EditionTitle(document); !edition.empty()) writer.Text("edition", edition);
  writer.Text("identification", document.profiles.identification);
  writer.Text("date", document.profiles.dateTime);
  writer.Number("spacing_um", document.profiles.spacingUM);
  json.Key("point_count");
  json.Integer(document.profiles.pointCount);
  json.Key("tip_radius_mm");
  document.profiles.tipRadiusMM > 0.0 ? json.Number(document.profiles.tipRadiusMM) : json.Null();
  writer.Form();
  writer.Ranges();
  writer.Flags();
  writer.Parameters();
  writer.ConfigurableRows();
  writer.CoreRoughness();
  writer.InstrumentValues();
  json.Key("messages");
  json.BeginArray();
  for (const std::string& message : messages) json.Text(Utf8FromWindows1252(message));
  json.EndArray();
  if (options.request != nullptr) {
    WriteProgram(json);
    WriteInput(json, document.profiles.input);
    WriteRequest(json, document, *options.request);
  }
  if (options.uncertaintyRequest != nullptr) WriteUncertaintyBudget(json, *options.uncertaintyRequest);
  if (options.withProfiles) writer.Profiles();
  if (options.more) options.more(json);
  json.EndObject();
  json.Finish();
}

}  // namespace texturon
