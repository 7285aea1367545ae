// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

#include "platform/environment.h"

namespace texturon {

/// The event log of unattended runs, in the working folder: one line an event, written at once, under a lock that every
/// process takes. An entry for which the lock is not had within a second is dropped; where the log can be neither
/// opened nor created, a second file says so.
class EventLog {
public:
  static constexpr std::string_view kName = "TexturonCommandLine-Event.Log";

  EventLog(const Environment& environment, bool isOn) : environment_(environment), isOn_(isOn) {}

  void SwitchOff() { isOn_ = false; }
  /// Appends local time and text (Windows-1252; its line breaks become blanks); nothing where logging is off.
  void LogEvent(std::string_view text) const;

private:
  const Environment& environment_;
  bool isOn_;
};

}  // namespace texturon
