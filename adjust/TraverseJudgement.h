// TraverseJudgement: the misclosures of a single traverse against what the a-priori errors allow.
#pragma once

#include "adjust/PlaneNetwork.h"
#include "records/CalculationRecords.h"

#include <utils/Export.h>

#include <cstddef>
#include <limits>
#include <vector>

namespace kvn {

/// Of how many rounds the observations at one station are the means: of a direction rounds on both faces, one on a
/// single face being half of one; of the leg distances. Above 0; means of means have numbers with a fraction.
struct TraverseRounds {
  double back = 1.0;
  double fore = 1.0;
  double leg = 1.0;
};

/// A-priori errors of what a traverse consists of.
struct TraverseErrors {
  /// Of a direction in one round on both faces and of one distance. Known points and azimuths count as without error.
  ObservationErrors observations = {};
  /// Standard error of each coordinate of instrument and target about their marks, metres, 0 or more; each set-up of
  /// either by itself.
  double centring = 0.0;
  std::vector<TraverseRounds> rounds = {};  ///< of each station; beyond the end of the list 1 each
};

/// What the misclosures of a chain of stations are.
enum class TraverseClosing {
  AtStation,  ///< the last station is known, and so is the azimuth that it closes on
  OnItself,  ///< as `AtStation`, where the last station is the first one; the angle at the first carries the azimuth of
             ///< a mark into the loop, has no part in the angular misclosure and takes no correction
  AtForePoint,  ///< the fore point of the last station is known: no angular misclosure, nothing is distributed
};

/// One angle or one leg that would explain the misclosures.
struct TraverseSuspect {
  enum Kind { Angle, Leg };

  Kind kind = Angle;
  std::size_t station = 0;  ///< place in the chain; a leg runs from there forward
  double gross = 0.0;       ///< what the observed value is too large by, radians or metres
};

/// Misclosures and the sizes that 99 of 100 faultless traverses stay below, each by itself: 2.576 standard errors by
/// error propagation along the chain. What does not exist is NaN.
///
/// fx and fy are those of the `TraverseSummary`, that is after the angular misclosure has been distributed. Their
/// errors are propagated accordingly: an angle counts by what it differs from the mean of all angles.
struct KELVANE_EXPORT TraverseJudgement {
  static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

  std::size_t angles = 0;  ///< how many there are in the angular misclosure
  double angle = kNone;    ///< radians
  double angleAllowed = kNone;
  /// (fx, fy) along the line from the first to the last known station and across it, to the right; metres. NaN where
  /// the two are one point.
  double along = kNone;
  double across = kNone;
  double alongAllowed = kNone;
  double acrossAllowed = kNone;
  double fs = kNone;  ///< length of (fx, fy), metres
  /// Radius of the ellipse that holds (fx, fy) in 99 of 100 faultless traverses, in the direction of (fx, fy): that of
  /// the error ellipse times √9.21. It is what judges where there is no `along` and `across`.
  double fsAllowed = kNone;
  double relative = kNone;  ///< fs over the sum of the legs
  /// Where something is beyond what is allowed: the angles and legs of which the one correction, that which makes the
  /// misclosures before any distribution smallest in their weights, brings all of them inside. Several explain it
  /// equally well: it is one of them. None where more than one is at fault.
  std::vector<TraverseSuspect> suspects = {};

  bool isLoop() const { return !(along == along); }
  /// The largest ratio of a misclosure to what is allowed; above 1 something is at fault. `fs` counts in a loop alone.
  double excess() const;
};

/// @param stations  a chain with its legs, as the calculators give it.
/// @param summary   with misclosures; of `AtForePoint` fx and fy alone.
/// @param errors    in range: positive direction error, a distance error above 0.
///
/// Near-linear in the number of stations.
KELVANE_EXPORT TraverseJudgement judgedTraverse(std::vector<TraverseInfo> const& stations,
                                                TraverseSummary const& summary, TraverseClosing closing,
                                                TraverseErrors const& errors);

}  // namespace kvn
