// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "analysis/document.h"
#include "base/json_writer.h"
#include "formats/profile_reader.h"

namespace texturon {

/// What of a call makes its results and no document holds.
struct RunRequest {
  std::string settingsFile;  ///< as it was given, in the system's own bytes; empty: none
  ImportOptions import;
  bool answersYes = false;
  std::string readAs;  ///< extension that standard input was read as
};

// Members of an object that tell where results come from: what is enough to have them again. The object is open.

/// "program", and "settings" and "request" of a document, computed or not.
void WriteProgram(JsonWriter& json);
void WriteRequest(JsonWriter& json, const Document& document, const RunRequest& request);
/// "input": digest, length and reader. Null where nobody wanted a digest.
void WriteInput(JsonWriter& json, const InputMark& input);

}  // namespace texturon
