// NumberedNetwork: the observations of a plane network by numbers, with look-ups in both ways.
#pragma once

#include "adjust/plane/PairTable.h"

#include <utils/Circle.h>
#include <utils/Export.h>

#include <complex>
#include <cstddef>
#include <vector>

namespace kvn::detail {

/// A place in the plane, x + i y: x north, y east. A product with e^(i a) turns by the azimuth a.
using Place = std::complex<double>;

using utils::foldedAngle;

/// Place by azimuth (radians) and distance from the origin.
inline Place polar(double distance, double azimuth) { return std::polar(distance, azimuth); }

/// Directions of circles and distances between numbered points; points 0 to known - 1 are known. A point may have
/// several stations, each with a circle of its own.
struct KELVANE_EXPORT NumberedNetwork {
  struct Direction {
    int station;
    int target;    ///< point number
    double value;  ///< radians
  };
  struct Line {
    int start;
    int end;
    double value;  ///< metres
  };

  int points = 0;
  int known = 0;
  std::vector<int> stationPoint;
  std::vector<int> directionStart;  ///< station i owns directions directionStart[i] up to directionStart[i + 1]
  std::vector<Direction> directions;
  std::vector<Line> lines;
  std::vector<int> blockOrder;  ///< of elimination: points and, behind their number, stations; empty when not known
  double directionError = 0.0;  ///< a-priori standard error of a direction, radians
  double distanceFixed = 0.0;   ///< of a distance S: distanceFixed + distanceProportion S, metres
  double distanceProportion = 0.0;

  /// Fills the look-ups below.
  void buildLookups();

  int stations() const { return static_cast<int>(stationPoint.size()); }
  int pointOf(int station) const { return stationPoint[static_cast<std::size_t>(station)]; }
  int firstDirection(int station) const { return directionStart[static_cast<std::size_t>(station)]; }
  int endDirection(int station) const { return directionStart[static_cast<std::size_t>(station) + 1]; }
  Direction const& direction(int d) const { return directions[static_cast<std::size_t>(d)]; }
  Line const& line(int l) const { return lines[static_cast<std::size_t>(l)]; }
  int otherEnd(int l, int point) const { return line(l).start == point ? line(l).end : line(l).start; }
  double distanceError(double distance) const { return distanceFixed + distanceProportion * distance; }

  std::vector<int> const& stationsAt(int point) const { return stationsOfPoint[static_cast<std::size_t>(point)]; }
  std::vector<int> const& sightingsOf(int point) const { return directionsToPoint[static_cast<std::size_t>(point)]; }
  std::vector<int> const& linesAt(int point) const { return linesOfPoint[static_cast<std::size_t>(point)]; }
  /// The first direction from the station to the target, -1 for none.
  int directionTo(int station, int target) const;

 private:
  std::vector<std::vector<int>> stationsOfPoint;
  std::vector<std::vector<int>> directionsToPoint;
  std::vector<std::vector<int>> linesOfPoint;
  PairTable directionsOf;  // of (station, target)
};

}  // namespace kvn::detail
