#pragma once

#include <ctime>
#include <string>

namespace texturon {

/// "04 Mar 2015 - 09:05:07". The month is English whatever the locale.
std::string DateText(const std::tm& time);

}  // namespace texturon
