// SPDX-License-Identifier: Apache-2.0

#include "unattended/plan_keys.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

constexpr std::string_view kListKey = "Parameters";

std::vector<std::string_view> Names(std::string_view list) {
  std::vector<std::string_view> names;
  while (!list.empty()) {
    // Not within brackets: "Rdc(10,80)".
    std::size_t end = list.find_first_of(",;(");
    if (end < list.size() && list[end] == '(') end = list.find_first_of(",;", std::min(list.find(')'), list.size()));
    end = std::min(end, list.size());
    const std::string_view name = TrimBlanks(list.substr(0, end));
    if (!name.empty()) names.push_back(name);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

}  // namespace

PlanKeys::PlanKeys(const IniFile& plan) {
  const std::vector<IniSectionHeader> sections = plan.Sections();
  hasSections_ = !sections.empty();
  // Two sections of one name are two sections here, so that nothing goes by which of them an INI reader would take.
  std::vector<IniEntry> entries = plan.Entries();
  std::stable_sort(entries.begin(), entries.end(),
                   [](const IniEntry& a, const IniEntry& b) { return a.line < b.line; });
  std::size_t next = 0;
  for (const IniEntry& entry : entries) {
    while (next < sections.size() && sections[next].line < entry.line) ++next;
    Key key{.name = entry.key, .value = entry.value, .line = entry.line};
    if (next > 0) {
      key.section = next - 1;
      key.sectionName = sections[key.section].name;
      byName_[LowerAscii(entry.key)].push_back(keys_.size());
    }
    keys_.push_back(key);
  }
}

PlanKeys::Key* PlanKeys::Find(std::string_view key, std::size_t section) {
  const auto found = byName_.find(LowerAscii(key));
  if (found == byName_.end()) return nullptr;
  for (const std::size_t place : found->second) {
    if (keys_[place].section == section) return &keys_[place];
  }
  return &keys_[found->second.front()];
}

std::vector<PlanKeys::ListedName> PlanKeys::ParameterNames() {
  std::vector<ListedName> listed;
  const auto found = byName_.find(LowerAscii(kListKey));
  if (found == byName_.end()) return listed;
  std::unordered_set<std::string> earlier;
  std::size_t section = kAnySection;
  for (const std::size_t place : found->second) {
    Key& list = keys_[place];
    if (list.section == section) continue;  // a second line of one section
    section = list.section;
    list.isRead = true;
    const std::size_t first = listed.size();
    for (const std::string_view name : Names(list.value)) {
      if (!earlier.contains(LowerAscii(name))) listed.push_back({name, section});
    }
    for (std::size_t i = first; i < listed.size(); ++i) earlier.insert(LowerAscii(listed[i].name));
  }
  return listed;
}

std::optional<std::string_view> PlanKeys::Text(std::string_view key, std::size_t section) {
  Key* const found = Find(key, section);
  if (found == nullptr) return std::nullopt;
  found->isRead = true;
  return found->value;
}

double PlanKeys::Real(std::string_view key, std::size_t section) {
  const auto text = Text(key, section);
  if (!text) return -1.0;
  const ParsedDouble number = ParseDouble(TrimBlanks(*text));
  const double value = number.usable() ? number.value : 0.0;
  if (!number.usable() || number.length != TrimBlanks(*text).size()) RemarkReadAs(key, ShortestText(value), section);
  return value;
}

std::int32_t PlanKeys::Integer(std::string_view key, std::size_t section) {
  const auto text = Text(key, section);
  if (!text) return -1;
  const ParsedInt32 number = ParseInt32(TrimBlanks(*text));
  if (!number.found() || number.length != TrimBlanks(*text).size()) {
    RemarkReadAs(key, IntegerText(number.value), section);
  }
  return number.value;
}

void PlanKeys::RemarkReadAs(std::string_view key, std::string_view readAs, std::size_t section) {
  Key* const found = Find(key, section);
  if (found == nullptr || std::exchange(found->isRemarkedOn, true)) return;
  remarks_.push_back(std::string(found->name) + "=" + std::string(TrimBlanks(found->value)) + " is read as " +
                     std::string(readAs));
}

std::vector<std::string> PlanKeys::TakeRemarks() {
  return std::exchange(remarks_, {});
}

std::string PlanKeys::UnreadText(const Key& key) const {
  std::string text(key.name);
  if (key.section == kAnySection) {
    return text + ", line " + IntegerText(static_cast<std::int64_t>(key.line)) +
           ", stands before the first section and has no effect";
  }
  text += " in [" + std::string(key.sectionName) + "], line " + IntegerText(static_cast<std::int64_t>(key.line)) +
          ", has no effect";
  if (EqualIgnoringCase(key.name, "Parameter")) return text + "; the list is called Parameters";
  for (const std::size_t place : byName_.at(LowerAscii(key.name))) {
    if (!keys_[place].isRead) continue;
    return text + "; that of line " + IntegerText(static_cast<std::int64_t>(keys_[place].line)) + " counts";
  }
  return text;
}

std::vector<std::string> PlanKeys::UnreadKeys() const {
  std::vector<std::string> texts;
  for (const Key& key : keys_) {
    if (!key.isRead) texts.push_back(UnreadText(key));
  }
  return texts;
}

}  // namespace texturon
