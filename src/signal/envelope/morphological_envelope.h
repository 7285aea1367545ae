// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>

namespace texturon {

/// A point of a profile, X and height in one unit (um).
struct BallPoint {
  double x = 0.0;
  double z = 0.0;
};

/// Whether B reaches into the disc of radius r that rests on A and C from above, its rim included; also true when A and
/// C are 2 r or more apart, so that no disc rests on both. X rises from A over B to C.
///
/// Decided on the power of B with respect to that disc, b (b - c) against 2 (c x b) sqrt(r^2 / c^2 - 1 / 4) with b and
/// c measured from A: no centre is computed, whose distance would be a difference of numbers of the size of r. With a
/// ball of 1 m that loses 1e-10 um, more than the gaps beside a contact.
inline bool BallTouches(const BallPoint& a, const BallPoint& b, const BallPoint& c, double radiusUM) {
  const double bx = b.x - a.x;
  const double bz = b.z - a.z;
  const double cx = c.x - a.x;
  const double cz = c.z - a.z;
  const double chordSquare = cx * cx + cz * cz;
  const double diameterSquare = 4.0 * radiusUM * radiusUM;
  if (!(chordSquare < diameterSquare)) return true;
  const double along = bx * (bx - cx) + bz * (bz - cz);  // below 0: B in the disc over the chord as diameter
  const double above = cx * bz - cz * bx;                // above 0: B above the chord
  const bool isBelow = above < 0.0;
  if (along <= 0.0 && !isBelow) return true;
  if (along > 0.0 && above <= 0.0) return false;
  // Both sides have one sign: compare their squares, the larger of two negative ones being the smaller number.
  const double left = along * along * chordSquare;
  const double right = above * above * (diameterSquare - chordSquare);
  return isBelow ? left >= right : left <= right;
}

/// Closing envelope of a profile, the disc's closing of ISO 16610-41: what a disc of radius r (um), rolled over the
/// heights z (um, spacing in um) from above, cannot reach. `envelope` has the length of z. Between neighbouring
/// contacts it is the arc of the disc that rests on both, or the profile itself where they are 2 r or more apart. It is
/// never below the profile and equals it exactly where the disc touches. Fewer than three points, and a radius that is
/// not above 0, give the profile.
///
/// Linear in time. False, and nothing written, when memory for the contacts is lacking.
bool ClosingEnvelope(std::span<const double> z, std::span<double> envelope, double spacingUM, double radiusUM);

/// Opening envelope, of a disc rolled along the underside: the closing of -z, negated. `envelope` holds anything when
/// memory is lacking.
bool OpeningEnvelope(std::span<const double> z, std::span<double> envelope, double spacingUM, double radiusUM);

}  // namespace texturon
