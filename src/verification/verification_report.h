// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/environment.h"
#include "verification/verification_run.h"

namespace texturon {

/// What was verified, where and when: the lines of a report's head, UTF-8.
using OriginLines = std::vector<std::pair<std::string, std::string>>;
/// Version, digest of the running program, machine, date.
OriginLines VerificationOrigin(const Environment& environment);

struct VerificationCount {
  std::size_t standards = 0;
  std::size_t missed = 0;
  std::size_t values = 0;  ///< compared, every format by itself
};
VerificationCount CountOf(std::span<const VerifiedStandard> verified);

/// "68 standards, 3000 values, all within their tolerances." UTF-8.
std::string VerificationSentence(const VerificationCount& count);

/// Cells of a table: titles, then a line a standard. UTF-8.
std::vector<std::vector<std::string>> VerificationCells(std::span<const VerifiedStandard> verified);
/// The values of one standard as it is and, of those from files, the one nearest to its tolerance; titles first.
std::vector<std::vector<std::string>> ValueCells(const VerifiedStandard& standard);

/// The whole report as a page of Markdown, and as HTML; UTF-8.
std::string VerificationMarkdown(const OriginLines& origin, std::span<const VerifiedStandard> verified);
std::string VerificationHtml(const OriginLines& origin, std::span<const VerifiedStandard> verified);

}  // namespace texturon
