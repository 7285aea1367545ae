// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>

namespace texturon {

/// One line of the terminal: bar, count, rate and time left. Nothing where standard error is no terminal.
class BatchProgress {
public:
  explicit BatchProgress(bool isShown);
  ~BatchProgress();
  BatchProgress(const BatchProgress&) = delete;
  BatchProgress& operator=(const BatchProgress&) = delete;

  void Show(std::size_t done, std::size_t total);
  /// Takes the line away, so that a sentence can stand there; the next Show brings it back.
  void Clear();

private:
  bool isShown_;
  std::chrono::steady_clock::time_point start_;
  std::chrono::steady_clock::time_point lastShown_;
  std::size_t shownLength_ = 0;
};

}  // namespace texturon
