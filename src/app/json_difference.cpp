// SPDX-License-Identifier: Apache-2.0

#include "app/json_difference.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "base/number_text.h"

namespace texturon {
namespace {

constexpr std::string_view kPassedOver[] = {"file",          "requirements",    "program",   "settings", "request",
                                            "messages",      "reader",          "caption",   "label",    "reason",
                                            "imperial_unit", "imperial_factor", "difference"};

bool IsPassedOver(std::string_view name) {
  return std::find(std::begin(kPassedOver), std::end(kPassedOver), name) != std::end(kPassedOver);
}

std::string TextOf(const JsonValue* value) {
  if (value == nullptr) return "(missing)";
  if (const auto* number = value->As<double>()) return ShortestText(*number);
  if (const auto* flag = value->As<bool>()) return *flag ? "true" : "false";
  if (const auto* text = value->As<std::string>()) return *text;
  if (const auto* list = value->As<JsonValue::Array>()) {
    return IntegerText(static_cast<std::int64_t>(list->size())) + " entries";
  }
  return value->IsNull() ? "null" : "an object";
}

class Comparer {
public:
  JsonComparison Take(const JsonValue& former, const JsonValue& now) {
    Compare("", former, &now);
    return std::move(comparison_);
  }

private:
  void Compare(const std::string& place, const JsonValue& former, const JsonValue* now) {
    if (now == nullptr || former.content.index() != now->content.index()) return Differ(place, former, now);
    if (const auto* members = former.As<JsonValue::Object>()) {
      for (const auto& [name, value] : *members) {
        if (!IsPassedOver(name)) Compare(place.empty() ? name : place + "." + name, value, now->Find(name));
      }
    } else if (const auto* list = former.As<JsonValue::Array>()) {
      CompareLists(place, former, *list, *now);
    } else {
      ++comparison_.figures;
      if (!IsSame(former, *now)) Differ(place, former, now);
    }
  }

  void CompareLists(const std::string& place, const JsonValue& former, const JsonValue::Array& list,
                    const JsonValue& now) {
    const auto& others = *now.As<JsonValue::Array>();
    if (list.size() != others.size()) return Differ(place, former, &now);
    for (std::size_t i = 0; i < list.size(); ++i) Compare(place + "." + NameOf(list[i], i), list[i], &others[i]);
  }

  /// Rows are called by their names.
  static std::string NameOf(const JsonValue& entry, std::size_t i) {
    const JsonValue* const name = entry.Find("name");
    const auto* const text = name != nullptr ? name->As<std::string>() : nullptr;
    return text != nullptr ? *text : IntegerText(static_cast<std::int64_t>(i));
  }

  static bool IsSame(const JsonValue& a, const JsonValue& b) {
    const auto* number = a.As<double>();
    if (number == nullptr) return TextOf(&a) == TextOf(&b);
    return std::bit_cast<std::uint64_t>(*number) == std::bit_cast<std::uint64_t>(*b.As<double>());
  }

  void Differ(const std::string& place, const JsonValue& former, const JsonValue* now) {
    comparison_.differences.push_back({place, TextOf(&former), TextOf(now)});
  }

  JsonComparison comparison_;
};

}  // namespace

JsonComparison CompareResults(const JsonValue& former, const JsonValue& now) {
  return Comparer().Take(former, now);
}

}  // namespace texturon
