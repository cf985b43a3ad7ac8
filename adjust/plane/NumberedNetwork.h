// NumberedNetwork: the observations of a plane network by numbers, with look-ups in both ways.
#pragma once

#include "adjust/linalg/Poll.h"
#include "adjust/plane/NumberLists.h"
#include "adjust/plane/PairTable.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <vector>

namespace kvn::detail {

/// A place in the plane, x + i y: x north, y east. A product with e^(i a) turns by the azimuth a.
using Place = std::complex<double>;

/// Of a point whose place is not known.
inline Place const kNoPlace{std::numeric_limits<double>::quiet_NaN(), 0.0};
inline bool hasPlace(Place place) { return std::isfinite(place.real() + place.imag()); }

using utils::foldedAngle;

/// Place by azimuth (radians) and distance from the origin.
inline Place polar(double distance, double azimuth) { return std::polar(distance, azimuth); }

/// Directions of circles and distances between numbered points; points 0 to known - 1 are known. A point may have
/// several stations, each with a circle of its own.
struct NumberedNetwork {
  struct Direction {
    int station;
    int target;          ///< point number
    double value;        ///< radians
    double error = 1.0;  ///< a-priori standard error, radians, above 0
  };
  struct Line {
    int start;
    int end;
    double value;        ///< metres
    double error = 1.0;  ///< a-priori standard error, metres, above 0
  };

  int points = 0;
  int known = 0;
  std::vector<int> stationPoint;
  std::vector<int> directionStart;  ///< station i owns directions directionStart[i] up to directionStart[i + 1]
  std::vector<Direction> directions;
  std::vector<Line> lines;
  std::vector<int> blockOrder;  ///< of elimination: points and, behind their number, stations; empty when not known
  // What the search for a start allows for, where it has no observation of its own to ask.
  double directionError = 0.0;  ///< usual standard error of a direction, radians
  double distanceFixed = 0.0;   ///< usual standard error of a distance S: distanceFixed + distanceProportion S, metres
  double distanceProportion = 0.0;

  /// Fills the look-ups below.
  void buildLookups(Poll const& poll = {});

  int stations() const { return static_cast<int>(stationPoint.size()); }
  int pointOf(int station) const { return stationPoint[static_cast<std::size_t>(station)]; }
  int firstDirection(int station) const { return directionStart[static_cast<std::size_t>(station)]; }
  int endDirection(int station) const { return directionStart[static_cast<std::size_t>(station) + 1]; }
  Direction const& direction(int d) const { return directions[static_cast<std::size_t>(d)]; }
  Line const& line(int l) const { return lines[static_cast<std::size_t>(l)]; }
  int otherEnd(int l, int point) const { return line(l).start == point ? line(l).end : line(l).start; }
  double distanceError(double distance) const { return distanceFixed + distanceProportion * distance; }

  NumberLists::List stationsAt(int point) const { return stationsOfPoint.of(point); }
  NumberLists::List sightingsOf(int point) const { return directionsToPoint.of(point); }
  NumberLists::List linesAt(int point) const { return linesOfPoint.of(point); }
  /// Station of a direction.
  int stationOf(int d) const { return direction(d).station; }
  /// The first and the last direction from the station to the target, -1 for none.
  int directionTo(int station, int target) const { return directionsOf.firstOf(station, target); }
  int lastDirectionTo(int station, int target) const { return directionsOf.lastOf(station, target); }
  /// The first distance between two points in either order, -1 for none.
  int lineBetween(int a, int b) const { return linesOf.firstOf(std::min(a, b), std::max(a, b)); }

 private:
  NumberLists stationsOfPoint;
  NumberLists directionsToPoint;
  NumberLists linesOfPoint;
  PairTable directionsOf;  // of (station, target)
  PairTable linesOf;       // of two points, the smaller number first
};

}  // namespace kvn::detail
