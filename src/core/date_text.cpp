#include "core/date_text.h"

#include <array>
#include <string_view>

#include "core/number_text.h"

namespace texturon {

std::string DateText(const std::tm& time) {
  constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const auto twoDigits = [](int value) { return IntegerText(value, 2, '0'); };
  const auto month = static_cast<std::size_t>(time.tm_mon) % kMonths.size();
  return twoDigits(time.tm_mday) + " " + std::string(kMonths[month]) + " " + IntegerText(time.tm_year + 1900) + " - " +
         twoDigits(time.tm_hour) + ":" + twoDigits(time.tm_min) + ":" + twoDigits(time.tm_sec);
}

}  // namespace texturon
