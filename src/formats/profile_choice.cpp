// SPDX-License-Identifier: Apache-2.0

#include "formats/profile_choice.h"

#include <algorithm>
#include <vector>

#include "base/number_text.h"

namespace texturon {

std::string ProfileListLine(std::int64_t number, std::string_view name, std::string_view date) {
  if (name.empty() && date.empty()) return "Profile " + IntegerText(number, 2) + ": \t  \t";
  return IntegerText(number, 2) + ": \t" + std::string(name.substr(0, 62)) + " \t" + std::string(date.substr(0, 10));
}

std::optional<std::int64_t> ChooseProfile(const ReaderInput& input, std::int64_t count, const std::string& title,
                                          std::string_view date, const std::function<std::string(std::int64_t)>& nameOf,
                                          std::string& reason) {
  constexpr std::int64_t kMostListed = 10'000;
  if (const auto chosen = input.options.profileChoice) {
    if (*chosen >= 1 && *chosen <= count) return *chosen - 1;
    reason = "there is no profile " + IntegerText(*chosen) + ", the file has " + IntegerText(count);
    return std::nullopt;
  }
  std::vector<std::string> lines;
  for (std::int64_t i = 0; i < std::min(count, kMostListed); ++i) {
    lines.push_back(ProfileListLine(i + 1, nameOf(i), date));
  }
  const auto answer = input.prompts.ChooseFromList(title, lines);
  if (!answer || *answer >= lines.size()) {
    reason = "none of its profiles was chosen";
    return std::nullopt;
  }
  return static_cast<std::int64_t>(*answer);
}

}  // namespace texturon
