// SPDX-License-Identifier: Apache-2.0

#include "signal/envelope/morphological_envelope.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>

#include "base/multiversion.h"

namespace texturon {
namespace {

/// Indices of the points on which the disc rests, ascending.
class ContactScan {
public:
  ContactScan(std::span<const double> z, double spacing, double radius)
      : z_(z),
        spacing_(spacing),
        radius_(radius),
        contacts_(std::make_unique_for_overwrite<std::uint32_t[]>(z.size())) {}

  /// They belong to the scan.
  std::span<const std::uint32_t> Run() {
    std::uint32_t* const contacts = contacts_.get();
    std::size_t count = 0;
    std::size_t anchor = 0;
    std::size_t candidate = 1;
    std::size_t next = 2;
    while (next < z_.size()) {
      if (next - anchor == 2) {
        const std::size_t end = EndOfHill(next);
        for (; next < end; ++next) contacts[count++] = static_cast<std::uint32_t>(anchor++);
        candidate = next - 1;
        if (next == z_.size()) break;
      }
      if (Touches(anchor, candidate, next)) {
        contacts[count++] = static_cast<std::uint32_t>(anchor);
        anchor = candidate;
      } else if (anchor != 0) {
        candidate = anchor;
        anchor = contacts[--count];
        continue;
      }
      candidate = next;
      ++next;
    }
    const std::size_t last = z_.size() - 1;
    if (count == 0) {
      contacts[count++] = 0;
    } else if (Touches(contacts[count - 1], anchor, last)) {
      contacts[count++] = static_cast<std::uint32_t>(anchor);
    }
    contacts[count++] = static_cast<std::uint32_t>(last);
    return {contacts, count};
  }

private:
  bool Touches(std::size_t a, std::size_t b, std::size_t c) const {
    // Of signed integers of 32 bits a double is made by one instruction.
    const auto stepsTo = [a](std::size_t i) { return static_cast<double>(static_cast<std::int32_t>(i - a)); };
    return BallTouches({0.0, z_[a]}, {stepsTo(b) * spacing_, z_[b]}, {stepsTo(c) * spacing_, z_[c]}, radius_);
  }

  /// The first point from `next` on for which the one before is not plainly touched between its neighbours: above the
  /// chord, and in the disc over it. BallTouches, by the same operations, for points one step from each other.
  std::size_t EndOfHill(std::size_t next) const {
    const double* const z = z_.data();
    const double bx = spacing_;
    const double cx = 2.0 * spacing_;
    const double diameterSquare = 4.0 * radius_ * radius_;
    const std::size_t size = z_.size();
    for (; next < size; ++next) {
      const double bz = z[next - 1] - z[next - 2];
      const double cz = z[next] - z[next - 2];
      const double along = bx * (bx - cx) + bz * (bz - cz);
      const double above = cx * bz - cz * bx;
      const bool isTouched = (cx * cx + cz * cz < diameterSquare) & (along <= 0.0) & !(above < 0.0);
      if (!isTouched) break;
    }
    return next;
  }

  std::span<const double> z_;
  double spacing_;
  double radius_;
  std::unique_ptr<std::uint32_t[]> contacts_;  // room for all points
};

/// Lifts the points between the first and the last one to the lower arc of the disc that rests on these two.
void WriteArc(std::span<double> z, double spacing, double radius) {
  const std::size_t steps = z.size() - 1;
  const double chordX = static_cast<double>(steps) * spacing;
  const double chordZ = z[steps] - z[0];
  const double chordSquare = chordX * chordX + chordZ * chordZ;
  if (!(chordSquare < 4.0 * radius * radius)) return;
  // Centre from the first point: half the chord, then up at a right angle to it.
  const double rise = std::sqrt(radius * radius / chordSquare - 0.25);
  const double centreX = 0.5 * chordX - rise * chordZ;
  const double centreZ = 0.5 * chordZ + rise * chordX;
  const double square = radius * radius;
  const double firstZ = z[0];
  double* const heights = z.data();
  const auto count = static_cast<std::int32_t>(steps);
  const auto write = [&](const auto& arcAt) {
    TEXTURON_IVDEP
    for (std::int32_t i = 1; i < count; ++i) {
      const double x = static_cast<double>(i) * spacing;
      const double rest = square - (centreX - x) * (centreX - x);
      const double height = firstZ + arcAt(x, std::sqrt(rest > 0.0 ? rest : 0.0));
      heights[i] = height > heights[i] ? height : heights[i];
    }
  };
  // centreZ - depth, where the centre lies above without the difference of two numbers of the size of r.
  if (centreZ > 0.0) {
    const double twice = 2.0 * centreX;
    write([=](double x, double depth) { return x * (x - twice) / (centreZ + depth); });
  } else {
    write([=](double, double depth) { return centreZ - depth; });
  }
}

/// Turns the profile into its envelope, in place.
void WriteArcs(std::span<const std::uint32_t> contacts, std::span<double> profile, double spacing, double radius) {
  for (std::size_t k = 1; k < contacts.size(); ++k) {
    const std::size_t first = contacts[k - 1];
    const std::size_t count = contacts[k] - first + 1;
    if (count > 2) WriteArc(profile.subspan(first, count), spacing, radius);
  }
}

}  // namespace

bool ClosingEnvelope(std::span<const double> z, std::span<double> envelope, double spacingUM, double radiusUM) {
  try {
    if (z.size() < 3 || !(radiusUM > 0.0)) {
      std::copy(z.begin(), z.end(), envelope.begin());
      return true;
    }
    ContactScan scan(z, spacingUM, radiusUM);
    const std::span<const std::uint32_t> contacts = scan.Run();
    std::copy(z.begin(), z.end(), envelope.begin());
    WriteArcs(contacts, envelope, spacingUM, radiusUM);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool OpeningEnvelope(std::span<const double> z, std::span<double> envelope, double spacingUM, double radiusUM) {
  try {
    std::transform(z.begin(), z.end(), envelope.begin(), std::negate<>());
    if (z.size() >= 3 && radiusUM > 0.0) {
      ContactScan scan(envelope, spacingUM, radiusUM);
      WriteArcs(scan.Run(), envelope, spacingUM, radiusUM);
    }
    std::transform(envelope.begin(), envelope.end(), envelope.begin(), std::negate<>());
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace texturon
