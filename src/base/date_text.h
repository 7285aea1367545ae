// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <ctime>
#include <string>

namespace texturon {

/// "04 Mar 2015 - 09:05:07". The month is English whatever the locale.
std::string DateText(const std::tm& time);

/// "Wed, 04 Mar 2015 09:05:07: ", with which an entry of the event log begins.
std::string EventTimeText(const std::tm& time);

/// "04/03/2015 09:05:07": day, month, year.
std::string ResultsTimeText(const std::tm& time);

}  // namespace texturon
