// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "parameters/catalogue_table.h"
#include "parameters/edition2021/edition_input.h"
#include "parameters/edition2021/feature_text.h"

namespace texturon {

/// The standard that the rows bear the names of.
inline constexpr std::string_view kEdition2021Title = "ISO 21920-2:2021";

/// How well a definition is known: the text of the standard was not at hand.
enum class Trust : std::uint8_t {
  kTwoSources,    ///< two independent sources
  kTestedSource,  ///< one source, whose published numbers these rules give
  kOneSource,
  kKnowledge,  ///< general knowledge of the field
};
/// "two sources", "one source, its published numbers reproduced" ...
std::string_view TrustText(Trust trust);

enum class Likeness : std::uint8_t { kNew, kEqual, kNear };
/// "new", "equal", "near".
std::string_view LikenessText(Likeness likeness);

/// The row of the edition before that a row takes the place of; R stands for any letter.
struct OlderRow {
  Likeness likeness = Likeness::kNew;
  std::string_view name = {};
  std::string_view why = {};  ///< why it is not the same number, or what else there is to say; a clause
};

/// What stands as the difference of a row that means what it did before.
inline constexpr std::string_view kSameDefinition = "the same definition";

/// One row of the edition of 2021. It exists for the profiles P, W and R.
struct EditionRow {
  std::string_view suffix;
  Quantity quantity;
  ValueFormat format;
  std::string_view definition;  ///< a sentence
  Trust trust;
  OlderRow older;
  EditionRoutine routine;
  std::string_view arguments = {};  ///< in brackets behind the name, separated by commas: "p, q"
  std::size_t leastArguments = 0;   ///< rows that need none are computed without being asked for
  bool ofCore = false;              ///< of the roughness that the filter for the core gives
  /// Why it differs from the row of the same name of the edition before; empty: there is none.
  std::string_view difference = {};
  /// The same where the core rows are computed on the roughness itself.
  std::string_view roughnessDifference = {};
  bool needsClass = true;  ///< on a drawing: the limit alone does not fix the settings

  std::size_t MostArguments() const;
};

/// Every row, in the order of tables.
std::span<const EditionRow> EditionTable();

/// What a name of the edition stands for.
struct EditionName {
  char letter = 0;  ///< P, W or R
  const EditionRow* row = nullptr;
  std::vector<double> arguments;
  std::optional<FeatureParameter> feature;  ///< in place of a row
  std::string fault;                        ///< a clause; empty: understood
  bool isUnknownLetter = false;
};

/// Reads "Rz", "Rmr(5,1.2)" or "P: FC; ...", a feature without letter as one of R; case does not count.
EditionName ParseEditionName(std::string_view name);

/// Why a text of the settings or the command line is no feature parameter, a clause that goes on after it; empty: it
/// is.
std::string FaultOfFeature(std::string_view text);

}  // namespace texturon
