// SPDX-License-Identifier: Apache-2.0

// A line for each elementary function with a sum over the bits of a million results. scripts/same_functions builds it
// with several C libraries, one of which has no C++ library beside it: headers alone.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "base/elementary.h"

namespace {

std::uint64_t BitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

/// Numbers of all signs and magnitudes, some of them special.
class Numbers {
public:
  double Next() {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    const std::uint64_t mixed = state_ ^ (state_ >> 29);
    const int kind = static_cast<int>(mixed >> 62);
    if (kind == 0) return static_cast<double>(static_cast<std::int64_t>(mixed << 2)) * 0x1p-63;    // below 1
    if (kind == 1) return static_cast<double>(static_cast<std::int64_t>(mixed << 2)) * 0x1.9p-54;  // some hundreds
    double value = 0.0;
    std::memcpy(&value, &mixed, sizeof value);  // whatever has these bits
    return value;
  }

private:
  std::uint64_t state_ = 1;
};

template <typename Function>
void Say(const char* name, Function function) {
  constexpr int kResults = 1'000'000;
  Numbers numbers;
  std::uint64_t sum = 14695981039346656037U;
  for (int i = 0; i < kResults; ++i) {
    const double x = numbers.Next();
    const double result = function(x, numbers.Next());
    // No number is none of many: which one, nobody may depend on.
    const std::uint64_t bits = result == result ? BitsOf(result) : 0;
    sum = (sum ^ bits) * 1099511628211U;
  }
  std::printf("%s %08lx%08lx\n", name, static_cast<unsigned long>(sum >> 32),
              static_cast<unsigned long>(sum & 0xFFFFFFFFU));
}

double AtanOfOne(double x) {
  double angle = 0.0;
  texturon::AtanOfEach({&x, 1}, {&angle, 1});
  return angle;
}

}  // namespace

int main() {
  using namespace texturon;
  Say("Sin", [](double x, double) { return Sin(x); });
  Say("Cos", [](double x, double) { return Cos(x); });
  Say("Tan", [](double x, double) { return Tan(x); });
  Say("Atan", [](double x, double) { return Atan(x); });
  Say("AtanOfEach", [](double x, double) { return AtanOfOne(x); });
  Say("Atan2", [](double x, double y) { return Atan2(y, x); });
  Say("Exp2", [](double x, double) { return Exp2(x); });
  Say("Log", [](double x, double) { return Log(x); });
  Say("Log2", [](double x, double) { return Log2(x); });
  Say("Log10", [](double x, double) { return Log10(x); });
  Say("Pow", [](double x, double y) { return Pow(x < 0.0 ? -x : x, y); });
  Say("Erfc", [](double x, double) { return Erfc(x); });
  Say("Hypot", [](double x, double y) { return Hypot(x, y); });
  return 0;
}
