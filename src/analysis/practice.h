// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/document.h"
#include "base/embedded_file.h"
#include "base/ini_file.h"
#include "settings/settings_table.h"

namespace texturon {

/// One way of evaluating records: settings, and what a settings file does not carry.
struct Practice {
  Settings settings;
  AnalysisScope scope;
  std::optional<double> spacingUM;  ///< in place of the record's own
  double heightFactor = 1.0;        ///< of heights in another unit
  bool invert = false;
};

/// Takes what a file has in its section SCOPE: Region (MODE,START,END,LENGTH; empty: none), WholeCutoffs, Exclude
/// (FIRST,LAST; empty: none), AllDataForForm, SpacingUM, HeightFactor, Invert. Why not, a sentence without full stop;
/// empty: done.
std::string TakeScope(const IniFile& file, Practice& practice);
/// One key of that section.
std::string SetScope(Practice& practice, std::string_view key, std::string_view value);
inline constexpr std::string_view kScopeSection = "SCOPE";

/// Puts a practice into force for a record, which keeps its heights and spacing as they were measured.
void ApplyPractice(const Practice& practice, const ProfileSet& record, Document& document);

/// Ways of evaluating that other programs and instruments have, with a title and a remark in the first two lines.
std::span<const EmbeddedFile> PracticeFiles();
struct PracticeTitle {
  std::string title;
  std::string remark;
};
PracticeTitle TitleOf(const EmbeddedFile& file);
/// Changes what such a file is about and nothing else. Why not, a sentence without full stop; empty: done.
std::string TakePractice(const EmbeddedFile& file, Practice& practice);

/// The steps from one practice to another, in the order of the pipeline.
struct PracticeStep {
  std::string_view name;
  bool (*holds)(const SettingKey& key);                   ///< a setting that belongs to it; of several steps the first
  void (*takeScope)(Practice& to, const Practice& from);  ///< what else does; may be null
};
std::span<const PracticeStep> PracticeSteps();

/// The step of a setting; null for what no result depends on, and for the selection of rows.
const PracticeStep* StepOf(const SettingKey& key);

/// Makes one step.
void TakeStep(const PracticeStep& step, Practice& to, const Practice& from);

/// What one step does to a parameter, in its metric unit; nothing where a value is missing.
struct StepChange {
  std::string_view step;
  std::optional<double> change;  ///< after the steps before it
  std::optional<double> alone;   ///< by itself from the first practice
};

struct ComparedRow {
  std::string name;
  Quantity quantity;
  std::optional<double> a;
  std::optional<double> b;
  std::vector<StepChange> steps;  ///< those in which the practices differ

  std::optional<double> Difference() const;
  /// The difference minus what the steps do by themselves: what they do to each other.
  std::optional<double> Interaction() const;
};

/// The rows that either practice selects, by both, and the way between them.
std::vector<ComparedRow> ComparePractices(const ProfileSet& record, const Practice& a, const Practice& b);

}  // namespace texturon
