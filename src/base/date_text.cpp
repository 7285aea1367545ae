// SPDX-License-Identifier: Apache-2.0

#include "base/date_text.h"

#include <array>
#include <string_view>

#include "base/number_text.h"

namespace texturon {

namespace {

std::string TwoDigits(int value) {
  return IntegerText(value, 2, '0');
}

std::string Clock(const std::tm& time) {
  return TwoDigits(time.tm_hour) + ":" + TwoDigits(time.tm_min) + ":" + TwoDigits(time.tm_sec);
}

std::string_view Month(const std::tm& time) {
  constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  return kMonths[static_cast<std::size_t>(time.tm_mon) % kMonths.size()];
}

std::string_view Weekday(const std::tm& time) {
  constexpr std::array<std::string_view, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  return kDays[static_cast<std::size_t>(time.tm_wday) % kDays.size()];
}

std::string Year(const std::tm& time) {
  return IntegerText(time.tm_year + 1900);
}

}  // namespace

std::string DateText(const std::tm& time) {
  return TwoDigits(time.tm_mday) + " " + std::string(Month(time)) + " " + Year(time) + " - " + Clock(time);
}

std::string EventTimeText(const std::tm& time) {
  return std::string(Weekday(time)) + ", " + TwoDigits(time.tm_mday) + " " + std::string(Month(time)) + " " +
         Year(time) + " " + Clock(time) + ": ";
}

std::string ResultsTimeText(const std::tm& time) {
  return TwoDigits(time.tm_mday) + "/" + TwoDigits(time.tm_mon + 1) + "/" + Year(time) + " " + Clock(time);
}

}  // namespace texturon
