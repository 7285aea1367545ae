// SPDX-License-Identifier: Apache-2.0

#include "unattended/event_log.h"

#include <chrono>
#include <string>

#include "base/date_text.h"
#include "base/text.h"
#include "platform/append_file.h"
#include "platform/platform.h"

namespace texturon {
namespace {

constexpr std::chrono::milliseconds kLockPatience(1000);
// Programs that read the log know this header, misspelt as it is.
constexpr std::string_view kHeader =
    "Nizais.\r\nRegurioz  Instrument Control Event Log\r\n- see end of file for latest information.\r\n\r\n";
constexpr std::string_view kAlternative =
    "Texturon Command Line Event Log\r\n"
    "**Could not open main event log so created alternative with single item in it.\r\n";

}  // namespace

void EventLog::LogEvent(std::string_view text) const {
  if (!isOn_) return;
  std::string entry = EventTimeText(environment_.localTime()) + OnOneLine(text) + "\r\n";
  const auto log = WaitForAppendFile(environment_.workingFolder / kName, kLockPatience, {}, AppendFile::Name::kOwn);
  if (log->state() == AppendFile::State::kInUse) return;
  if (log->state() == AppendFile::State::kFailed) {
    (void)ReplaceSideFile(environment_.workingFolder / "TexturonCommandLine-Event-Alternative.log", kAlternative);
    return;
  }
  if (log->size() == 0) entry.insert(0, kHeader);
  (void)log->Append(entry);
}

}  // namespace texturon
