// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_text.h"

#include <span>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "settings/settings_table.h"
#include "settings/settings_value.h"

namespace texturon {
namespace {

constexpr std::size_t kMostRemarks = 20;

// Calls visit(key, row) for every key as it stands in the file: the keys of a list go row by row.
template <typename Visit>
void VisitKeys(std::span<const SettingKey> table, const Settings& settings, Visit&& visit) {
  for (std::size_t i = 0; i < table.size();) {
    const SettingBinding& binding = table[i].binding;
    std::size_t end = i + 1;
    if (!binding.isRepeated()) {
      visit(table[i], std::size_t{0});
    } else {
      while (end < table.size() && table[end].binding.isRepeated() && table[end].binding.rows == binding.rows) ++end;
      // Counted here and not before: the visit of the count key may have changed it.
      const std::size_t rows = binding.rows->count(settings);
      for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t k = i; k < end; ++k) visit(table[k], row);
      }
    }
    i = end;
  }
}

class Remarks {
public:
  void Add(std::string remark) {
    if (++count_ <= kMostRemarks) remarks_.push_back(std::move(remark));
  }
  std::vector<std::string> Take() {
    if (count_ > kMostRemarks) {
      remarks_.push_back(IntegerText(static_cast<std::int64_t>(count_ - kMostRemarks)) + " more of this kind.");
    }
    return std::move(remarks_);
  }

private:
  std::vector<std::string> remarks_;
  std::size_t count_ = 0;
};

SettingValue DefaultValue(const SettingBinding& binding, std::size_t row) {
  Settings defaults;
  if (binding.isRepeated() && row >= binding.rows->count(defaults)) binding.rows->resize(defaults, row + 1);
  return binding.get(defaults, row);
}

}  // namespace

bool MayBeCut(std::string_view text) {
  return text.size() == kIniValueLength;
}

std::vector<std::string> LoadSettingsText(const IniFile& file, Settings& settings, std::span<const SettingKey> table) {
  Remarks remarks;
  VisitKeys(table, settings, [&](const SettingKey& entry, std::size_t row) {
    const SettingBinding& binding = entry.binding;
    if (binding.type == SettingType::kVersion) return;
    const std::string key = KeyOfRow(binding, row);
    const std::string_view whole = file.Find(binding.section, key).value_or(std::string_view());
    if (whole.empty()) {
      if (binding.written == KeyWritten::kWhereChanged) binding.set(settings, row, DefaultValue(binding, row));
      return;
    }
    const std::string_view text = whole.substr(0, kIniValueLength);
    const auto remark = [&](const std::string& what) {
      remarks.Add(std::string(binding.section) + "." + key + ": " + Quoted(text) + " " + what + ".");
    };
    if (text.size() != whole.size()) remark("is what is left of a longer value");
    const ReadSettingResult read = ReadSetting(binding.type, text);
    if (!read.usable) return remark(std::string(read.fault) + " and is ignored");
    if (CanHave(entry, read.value)) binding.set(settings, row, read.value);
    if (const std::string fault = FaultOfSetting(entry, read); !fault.empty()) {
      const std::string shown = ShowSetting(binding.type, binding.get(settings, row));
      remark(fault + "; it is read as " + (shown.empty() ? "nothing" : shown));
    }
  });
  return remarks.Take();
}

void SaveSettingsText(IniFile& file, const Settings& settings, std::string_view onlySection,
                      std::span<const SettingKey> table) {
  VisitKeys(table, settings, [&](const SettingKey& entry, std::size_t row) {
    const SettingBinding& binding = entry.binding;
    const bool isWanted =
        onlySection.empty() || binding.section == onlySection || binding.type == SettingType::kVersion;
    if (!isWanted) return;
    const std::string key = KeyOfRow(binding, row);
    const SettingValue value = binding.get(settings, row);
    const bool isLeftOut = binding.written == KeyWritten::kWhereChanged && value == DefaultValue(binding, row) &&
                           !file.Find(binding.section, key);
    if (!isLeftOut) file.Set(binding.section, key, WriteSetting(binding.type, value));
  });
}

std::optional<std::string> SetOne(Settings& settings, std::string_view name, std::string_view value) {
  const std::size_t point = name.find('.');
  if (point == std::string_view::npos) return Quoted(name) + " is not of the form SECTION.KEY";
  const std::string_view section = name.substr(0, point);
  const std::string_view key = name.substr(point + 1);
  if (!IsSettingsSection(section)) return "there is no section " + Quoted(section) + " in the settings";
  const std::optional<SettingPlace> place = FindSetting(section, key);
  if (!place) return "there is no key " + Quoted(key) + " in the section " + Quoted(section);

  const SettingBinding& binding = place->key->binding;
  const std::string fullName = std::string(binding.section) + "." + KeyOfRow(binding, place->row);
  if (binding.type == SettingType::kVersion) return fullName + " cannot be set";
  if (binding.isRepeated() && place->row >= binding.rows->count(settings)) {
    const auto rows = static_cast<std::int64_t>(binding.rows->count(settings));
    return fullName + " does not exist: the list has " + IntegerText(rows) + " rows";
  }
  const ReadSettingResult read = ReadSetting(binding.type, value);
  const std::string fault = FaultOfSetting(*place->key, read);
  if (!fault.empty()) return fullName + ": " + Quoted(value) + " " + fault;
  binding.set(settings, place->row, read.value);
  return std::nullopt;
}

}  // namespace texturon
