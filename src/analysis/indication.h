// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/acceptance.h"
#include "parameters/catalogue_table.h"
#include "settings/class_table.h"

namespace texturon {

/// What one line of a surface texture symbol asks for, and how it is measured. Lengths that nothing settles are open.
struct Requirement {
  Edition edition = Edition::k2021;  ///< k1997 for the drawings of ISO 1302:2002
  bool isUpper = true;
  std::string source;   ///< its line of the text
  std::string name;     ///< as the drawing has it: "Rz", "Rmr(5,1.2)"
  std::string rowName;  ///< of the row that is compared; empty: this program has none
  double limit = 0.0;   ///< in `unit`
  std::string unit;     ///< Windows-1252
  AcceptanceRule rule = AcceptanceRule::kMaximum;
  std::string ruleText;   ///< "Tmax", "T16%", "Tmed"; "max", "16%" on older drawings
  std::string className;  ///< empty: none
  std::optional<double> longIndexMM;
  std::optional<double> shortIndexUM;
  std::optional<double> sectionMM;
  std::optional<std::int32_t> sections;
  std::optional<double> lengthMM;      ///< of the evaluation
  std::optional<double> motifMM;       ///< A of motif parameters
  std::optional<double> largeMotifMM;  ///< B of those of the waviness
  std::string missing;                 ///< what a measurement lacks, a clause; empty: nothing
  std::vector<std::string> notes;      ///< sentences
  double mostSpacingUM = 0.0;          ///< 0: not settled
  double mostTipRadiusUM = 0.0;
};

struct IndicationResult {
  std::vector<Requirement> requirements;
  std::string fault;      ///< a clause on what is not understood; empty: understood
  std::size_t place = 0;  ///< of the fault, from 0
};

/// Reads one or several requirements, separated by line ends or bars. In the style of ISO 21920-1:
///
///     [U|L] name limit { item },  items Tmax T16% Tmed, Sc1 .. Sc5, S=[type]n, L=[type]n (mm), n x k, lsc=n, nsc=k,
///     le=n, F=text, OR(n) in any order, between them blanks or semicolons
///
/// or of ISO 1302:2002, [U|L] [short]-[long]/[le/]name[k][max] limit, and the classes N1 to N12. A first word ISO21920
/// or ISO1302 says which; without it a band, `max`, or a figure behind a name that has none means the older one.
/// Decimal commas and points.
///
/// Settings: what is written, then the class that is written, that of the written long-wave index, that of the limit;
/// a lower limit beside an upper one of the same parameter goes by the class of that.
IndicationResult ReadIndication(std::string_view text, const ClassTable& classes);

/// Puts a class in the place of what a requirement of the newer edition lacks, and another number of sections in that
/// of its own. Null and empty: what it says itself.
void CompleteRequirement(Requirement& requirement, const SettingClass* chosen, std::optional<std::int32_t> sections);

/// Puts a requirement's settings in force: edition, filters, lengths, the row with its limit. It lacks nothing.
void ApplyRequirement(const Requirement& requirement, AnalysisSettings& settings);

/// Adds a requirement to settings that those of another one are in force in: its row, or its limit to the row that is
/// there. False, with nothing changed, where it is measured in another way; what it leaves open is as in `start`, the
/// settings before any requirement.
bool AddRequirement(const Requirement& requirement, const AnalysisSettings& start, AnalysisSettings& settings);

/// The limits as a row has them; an open side is infinite.
Tolerance ToleranceOf(const Requirement& requirement);

/// "conforming", "not conforming", "undecided".
std::string_view ConformityWord(Acceptance verdict);

}  // namespace texturon
