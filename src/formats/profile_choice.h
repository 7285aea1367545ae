// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "formats/profile_reader.h"

namespace texturon {

/// One line of the list of a file's profiles: number, name cut to 62 and date cut to 10 characters; "Profile" and the
/// number where it has neither.
std::string ProfileListLine(std::int64_t number, std::string_view name, std::string_view date);

/// Which of `count` profiles to take, from 0: the caller's choice, else the user's from a list under `title`, whose
/// names `nameOf` gives by index. Empty: cancelled, or the caller's choice is not there; `reason` tells. Lists show no
/// more than the first 10 000.
std::optional<std::int64_t> ChooseProfile(const ReaderInput& input, std::int64_t count, const std::string& title,
                                          std::string_view date, const std::function<std::string(std::int64_t)>& nameOf,
                                          std::string& reason);

}  // namespace texturon
