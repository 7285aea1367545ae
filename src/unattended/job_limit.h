// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>

namespace texturon {

/// How many analyses are at work at once: fewer, once the memory did not hold them all.
class JobLimit {
public:
  explicit JobLimit(std::size_t jobs) : limit_(std::max<std::size_t>(jobs, 1)) {}

  /// Waits until there is room for one more. Returns how many there is room for in all.
  std::size_t Begin() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return active_ < limit_; });
    ++active_;
    return limit_;
  }

  void End() {
    const std::lock_guard lock(mutex_);
    --active_;
    changed_.notify_all();
  }

  /// After an analysis that ran out of memory with room for `atBegin`: 0 where it was the only one and another attempt
  /// ends like it; else how many there is room for from now on, at most half as many.
  std::size_t Shrink(std::size_t atBegin) {
    const std::lock_guard lock(mutex_);
    if (atBegin <= 1) return 0;
    limit_ = std::min(limit_, atBegin / 2);
    return limit_;
  }

private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t limit_;
  std::size_t active_ = 0;
};

}  // namespace texturon
