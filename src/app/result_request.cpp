// SPDX-License-Identifier: Apache-2.0

#include "app/result_request.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "settings/settings_text.h"

namespace texturon {
namespace {

/// What is no such value leaves the default; the faults of an object that a program wrote are those of its transport.
class ObjectReader {
public:
  explicit ObjectReader(const JsonValue& object) : object_(object) {}

  ResultRequest Read() {
    ReadSettings();
    ReadScope();
    ReadImport();
    ReadUncertainty();
    return std::move(result_);
  }

private:
  void Refuse(std::string reason) {
    if (result_.reason.empty()) result_.reason = std::move(reason);
  }

  template <typename T>
  const T* Of(std::string_view part, std::string_view name) {
    const JsonValue* const value = object_.Find(part, name);
    return value != nullptr ? value->As<T>() : nullptr;
  }

  bool Flag(std::string_view name) {
    const bool* const flag = Of<bool>("request", name);
    if (flag == nullptr) Refuse("request." + std::string(name) + " is no flag");
    return flag != nullptr && *flag;
  }

  std::optional<std::int32_t> Whole(const double* number) {
    if (number == nullptr || *number != std::trunc(*number) || std::abs(*number) > 2147483647.0) return std::nullopt;
    return static_cast<std::int32_t>(*number);
  }

  void ReadSettings() {
    result_.setup.document = MakeDocument();
    Settings settings = result_.setup.document.settings;
    settings.analysis.parameters.clear();
    const auto* const inForce = Of<JsonValue::Object>("settings", "in_force");
    if (inForce == nullptr) return Refuse("it has no settings.in_force");
    for (const auto& [name, value] : *inForce) {
      if (value.IsNull() && TakeOpenLimit(settings, name)) continue;
      std::string text;
      if (const auto* words = value.As<std::string>()) text = Windows1252FromUtf8(*words);
      if (const auto* number = value.As<double>()) text = ShortestText(*number);
      if (const auto* flag = value.As<bool>()) text = *flag ? "1" : "0";
      if (const auto refusal = SetOne(settings, Windows1252FromUtf8(name), text)) {
        return Refuse("settings.in_force: " + Utf8FromWindows1252(*refusal));
      }
    }
    // Objects of before have them here instead of among the settings.
    if (const auto* const features = Of<JsonValue::Array>("request", "features")) {
      for (const JsonValue& feature : *features) {
        const auto* const text = feature.As<std::string>();
        if (text == nullptr) return Refuse("request.features is no list of texts");
        settings.analysis.standard.features.push_back(Windows1252FromUtf8(*text));
      }
    }
    ApplySettings(result_.setup.document, std::move(settings));
  }

  /// A limit that a drawing leaves open is infinite, which JSON has as null.
  static bool TakeOpenLimit(Settings& settings, std::string_view name) {
    if (name.empty()) return false;
    const bool isUpper = name.find("UpperTolLimit") != std::string_view::npos;
    const std::size_t point = std::min(name.find('.'), name.size() - 1);
    const auto place = FindSetting(name.substr(0, point), name.substr(point + 1));
    if (!place || !(isUpper || name.find("LowerTolLimit") != std::string_view::npos)) return false;
    const SettingBinding& binding = place->key->binding;
    if (!binding.isRepeated() || place->row >= binding.rows->count(settings)) return false;
    binding.set(settings, place->row, isUpper ? INFINITY : -INFINITY);
    return true;
  }

  void ReadScope() {
    Document& document = result_.setup.document;
    SetWholeCutoffs(document, Flag("whole_cutoffs"));
    document.scope.allDataForForm = Flag("all_data_for_form");
    if (Of<JsonValue::Object>("request", "region") != nullptr) {
      const JsonValue& region = *object_.Find("request", "region");
      const auto number = [&](std::string_view name) {
        const JsonValue* const value = region.Find(name);
        const double* const found = value != nullptr ? value->As<double>() : nullptr;
        if (found == nullptr) Refuse("request.region." + std::string(name) + " is no number");
        return found != nullptr ? *found : 0.0;
      };
      const double mode = number("mode");
      document.scope.region = RegionChoice{Whole(&mode).value_or(kBetweenOffsets), number("start_mm"),
                                           number("end_offset_mm"), number("length_mm")};
    }
    const auto* const ends = Of<JsonValue::Array>("request", "exclusion");
    if (ends == nullptr) return;
    const auto first = ends->size() == 2 ? Whole((*ends)[0].As<double>()) : std::nullopt;
    const auto last = ends->size() == 2 ? Whole((*ends)[1].As<double>()) : std::nullopt;
    if (!first || !last) return Refuse("request.exclusion is no pair of samples");
    document.scope.exclusion = IndexRange::FromEnds(*first, *last);
  }

  void ReadImport() {
    ImportOptions& import = result_.setup.import;
    import.marksInput = true;
    import.profileChoice = Whole(Of<double>("request", "profile"));
    import.column = Whole(Of<double>("request", "column")).value_or(1);
    if (const double* spacing = Of<double>("request", "spacing_um")) import.spacingUM = *spacing;
    import.integratesSlopes = Flag("slope");
    result_.setup.invert = Flag("invert");
    const auto* const answer = Of<std::string>("request", "answer");
    result_.request = {.import = import, .answersYes = answer != nullptr && *answer == "yes"};
    if (const auto* readAs = Of<std::string>("request", "read_as")) result_.request.readAs = *readAs;
  }

  void ReadUncertainty() {
    const auto* const entries = Of<JsonValue::Object>("uncertainty_budget", "entries");
    if (entries == nullptr) return;
    BudgetEntries list;
    for (const auto& [key, value] : *entries) {
      const auto* const text = value.As<std::string>();
      list.emplace_back(Windows1252FromUtf8(key), text != nullptr ? Windows1252FromUtf8(*text) : "");
    }
    BudgetRead read = MakeBudget(list);
    const auto trials = Whole(Of<double>("uncertainty_budget", "trials"));
    const double* const seed = Of<double>("uncertainty_budget", "seed");
    const auto* const word = Of<std::string>("uncertainty_budget", "interval");
    const auto interval = word != nullptr ? FindInterval(*word) : std::nullopt;
    if (!read.budget) return Refuse("uncertainty_budget: " + Utf8FromWindows1252(read.reason));
    if (!trials || *trials < 1 || *trials > kMostTrials || seed == nullptr || !(*seed >= 0.0 && *seed <= kMostSeed) ||
        !interval) {
      return Refuse("uncertainty_budget: trials, seed or interval is not one");
    }
    const bool* const sensitivities = Of<bool>("uncertainty_budget", "sensitivities");
    result_.uncertainty = {.budget = std::move(*read.budget),
                           .trials = *trials,
                           .seed = static_cast<std::uint64_t>(*seed),
                           .interval = *interval,
                           .wantsSensitivities = sensitivities != nullptr && *sensitivities};
  }

  const JsonValue& object_;
  ResultRequest result_;
};

}  // namespace

ResultRequest RequestOfObject(const JsonValue& object) {
  return ObjectReader(object).Read();
}

}  // namespace texturon
