// SPDX-License-Identifier: Apache-2.0

#include "export/parameter_file.h"

#include <chrono>
#include <string>
#include <thread>

#include "platform/append_file.h"

namespace texturon {
namespace {

constexpr std::chrono::milliseconds kRetryDelay(1500);
constexpr std::string_view kInUseReason = "is in use";

std::unique_ptr<AppendFile> Hold(const std::filesystem::path& path, InUse inUse, const std::function<bool()>& givesUp) {
  if (inUse == InUse::kWait) return WaitForAppendFile(path, std::chrono::hours(24 * 365), givesUp);
  auto file = std::make_unique<AppendFile>(path);
  if (file->state() != AppendFile::State::kInUse) return file;
  file.reset();
  std::this_thread::sleep_for(kRetryDelay);
  return std::make_unique<AppendFile>(path);
}

}  // namespace

AppendOutcome AppendToParameterFile(const std::filesystem::path& path, std::string_view header, std::string_view rows,
                                    InUse inUse, const std::function<bool()>& givesUp) {
  const auto file = Hold(path, inUse, givesUp);
  if (file->state() == AppendFile::State::kInUse) return {false, std::string(kInUseReason)};
  if (file->state() == AppendFile::State::kFailed) return {false, file->outcome().reason};
  std::string text;
  if (file->size() == 0) text += header;
  if (file->endsInsideLine()) text += "\r\n";
  text += rows;
  const FileOutcome outcome = file->Append(text);
  return {outcome.ok(), outcome.reason};
}

AppendOutcome AppendParameters(const std::filesystem::path& path, std::string_view header, std::string_view row,
                               Prompts& prompts) {
  AppendOutcome outcome = AppendToParameterFile(path, header, row, InUse::kRetryOnce);
  if (outcome.written) return outcome;
  if (outcome.reason == kInUseReason) {
    prompts.ShowMessage(TextFromPath(path.filename()) + ":  File is in use - parameters not written.");
  } else {
    prompts.ShowMessage(FileSentence(path, outcome.reason));
  }
  return outcome;
}

}  // namespace texturon
