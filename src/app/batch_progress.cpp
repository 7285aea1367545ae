// SPDX-License-Identifier: Apache-2.0

#include "app/batch_progress.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <string>

#include "base/number_text.h"
#include "platform/platform.h"

namespace texturon {
namespace {

constexpr std::chrono::milliseconds kBetween(100);
constexpr std::size_t kBarWidth = 30;

std::string TimeText(double seconds) {
  const auto whole = static_cast<std::int64_t>(std::ceil(seconds));
  const std::string minutes = IntegerText(whole / 60 % 60, 2, '0') + ":" + IntegerText(whole % 60, 2, '0');
  return whole < 3600 ? minutes : IntegerText(whole / 3600) + ":" + minutes;
}

std::string Line(std::size_t done, std::size_t total, double seconds) {
  const std::size_t filled = total == 0 ? kBarWidth : done * kBarWidth / total;
  std::string line = "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                     IntegerText(static_cast<std::int64_t>(done)) + "/" + IntegerText(static_cast<std::int64_t>(total));
  if (done == 0 || seconds <= 0.0) return line;
  const double rate = static_cast<double>(done) / seconds;
  return line + "  " + FixedText(rate, rate < 10.0 ? 1 : 0) + "/s  " +
         TimeText(static_cast<double>(total - done) / rate) + " left";
}

}  // namespace

BatchProgress::BatchProgress(bool isShown)
    : isShown_(isShown && ErrorOutputIsTerminal()), start_(std::chrono::steady_clock::now()) {}

BatchProgress::~BatchProgress() {
  Clear();
}

void BatchProgress::Show(std::size_t done, std::size_t total) {
  if (!isShown_) return;
  const auto now = std::chrono::steady_clock::now();
  if (now - lastShown_ < kBetween) return;
  lastShown_ = now;
  const std::string line = Line(done, total, std::chrono::duration<double>(now - start_).count());
  const std::size_t blanks = shownLength_ > line.size() ? shownLength_ - line.size() : 0;
  std::cerr << '\r' << line << std::string(blanks, ' ') << std::flush;
  shownLength_ = line.size();
}

void BatchProgress::Clear() {
  if (shownLength_ == 0) return;
  std::cerr << '\r' << std::string(shownLength_, ' ') << '\r' << std::flush;
  shownLength_ = 0;
}

}  // namespace texturon
