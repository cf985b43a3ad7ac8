// What keeps a plane network from being adjusted, or makes its result doubtful.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

namespace kvn {

/// A point for which no approximate coordinates can be found.
struct UnplacedPoint {
  enum Reason {
    NoConnection,  ///< no chain of observations leads to a known point: often a name written in two ways
    SeenOnce,      ///< one direction leads to it, and no distance
    OneDistance,   ///< one distance leads to it, and no direction
    FewTargets,    ///< it sees one or two points and is not seen
    OnUnplaced,    ///< what leads to it comes from points that are not placed themselves
    TooFew,        ///< its observations, or those of the group that it belongs to, let it move
    OnOneCircle,   ///< it lies on one circle with the points that it sees (danger circle), as far as the errors allow
    TwoPlaces,     ///< different places agree with all observations
    NoStart,       ///< the observations hold it, but only weakly, or no approximate place was found
  };

  std::string name;
  Reason reason = NoConnection;
};

/// An observation that misses what the others say by more than its a-priori error allows.
struct SuspectObservation {
  bool isDirection = false;  ///< else a distance
  std::string from;          ///< the station; of a distance the end that was measured from first
  std::string to;
  double difference =
      0.0;  ///< observed minus what the others say: seconds of arc for a direction, metres for a distance
  /// Which one it is, of several between its points: its number among the directions or distances of the network that a
  /// `PlaneAdjustment` has; -1 of other adjustments.
  int number = -1;
};

/// A motion of points that no observation feels, or hardly any.
struct LooseMotion {
  enum Kind {
    Anywhere,  ///< a single point, in any direction
    Along,     ///< a single point, along an azimuth
    Shift,     ///< all of them together, along an azimuth
    Turn,      ///< about a centre
    Scale,     ///< away from a centre
    Several,   ///< against each other, or in several ways
  };

  std::vector<std::string> names;
  Kind kind = Several;
  double azimuth = 0.0;  ///< of Along and Shift, radians, 0 to π
  double x = 0.0;        ///< of the centre of Turn and Scale, metres
  double y = 0.0;
  std::string centre;  ///< the point that stands there; empty when none does
};

/// One text for all of them, in the host's language: the points in groups of one reason each.
KELVANE_EXPORT QString worded(std::vector<UnplacedPoint> const& points);
KELVANE_EXPORT QString worded(std::vector<SuspectObservation> const& observations);
KELVANE_EXPORT QString worded(std::vector<LooseMotion> const& motions);
/// "a, b, c": names for a message, the first hundred and the number of the others.
KELVANE_EXPORT QString listedNames(QStringList const& names);

/// One of them, without its names: the reason; by how much an observation is off.
KELVANE_EXPORT QString worded(UnplacedPoint::Reason reason);
KELVANE_EXPORT QString wordedSize(SuspectObservation const& observation);

}  // namespace kvn
