// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/prompts.h"
#include "record/input_mark.h"
#include "record/instrument_value.h"

namespace texturon {

/// What a reader delivers. Meaningless unless the read succeeded.
struct ImportedProfile {
  std::string identification;  ///< Windows-1252, as the file gives it
  std::string date;            ///< unparsed
  double spacingUM = 0.0;      ///< must end up above 0
  std::vector<double> heightsUM;
  double tipRadiusMM = -1.0;          ///< -1.0: not stated
  std::int32_t column = 0;            ///< the table's column that was asked for, from 1; 0: no question
  std::filesystem::path companion;    ///< the second file that was read; empty: none
  std::string spacingSource;          ///< for people: what of the file, or who, gave the spacing
  std::vector<std::string> warnings;  ///< for people: what was tolerated, guessed, and looks wrong
  std::vector<InstrumentValue> instrumentValues;
  bool isIntegral = false;             ///< the heights are the integral of slopes
  std::vector<std::string> decisions;  ///< for people: how a text without a layout of its own was understood
  InputMark input;                     ///< set by the import, not by a reader
};

/// What the caller knows beforehand, so that a reader need not ask.
struct ImportOptions {
  std::optional<std::int32_t> profileChoice;  ///< which profile of several, from 1; empty: the reader asks
  std::int32_t column = 1;                    ///< preset of a question for a table's column: the last answer, from 1
  std::optional<double> spacingUM;            ///< preset of a question for the spacing
  bool integratesSlopes = false;              ///< a table of slopes is wanted: heights are their integral
  bool knownExtensionsOnly = false;           ///< a file of another extension is not tried by its content
  bool marksInput = false;                    ///< the digests of what was read are wanted
};

/// One file on its way in: its path and all its bytes, with which every reader of a chain works.
struct ReaderInput {
  const std::filesystem::path& path;
  std::string_view bytes;
  const ImportOptions& options;
  Prompts& prompts;
};

/// How a read ended. A reader that does not recognise its input stays silent, so that the next of a chain may try; one
/// that recognises a damaged file has shown its message box. `reason` says for people what was wrong and where.
struct ReadResult {
  enum class Status { kRead, kNotRecognised, kRefused };
  Status status = Status::kNotRecognised;
  std::string reason;
  int nearness = 0;  ///< of a reader that did not recognise its input: how much it understood all the same; 0: nothing

  static ReadResult Read() { return {Status::kRead, {}}; }
  static ReadResult NotRecognised(std::string reason, int nearness = 0) {
    return {Status::kNotRecognised, std::move(reason), nearness};
  }
  static ReadResult Refused(std::string reason) { return {Status::kRefused, std::move(reason)}; }
};

/// How far a text of a point a line is read: readers that take no more than so many points see that there are more.
inline constexpr std::size_t kMostLinesRead = 850'000;

using ReadFunction = ReadResult (*)(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
