// Results of the least-squares adjustment with their errors.
//
// A value that exists only when the network has redundant observations stands behind a flag, which a reader must test.
#pragma once

#include "records/CalculationRecords.h"

#include <string>
#include <vector>

namespace kvn {

struct PointErrorInfo : PointInfo {
  bool mxValid = true;
  double mx = 0.0;  ///< standard error of x, metres
  bool myValid = true;
  double my = 0.0;  ///< standard error of y, metres
  bool mpValid = true;
  double mp = 0.0;  ///< point error, root of mx² + my², metres
};

/// Standard error ellipse of a point.
struct ErrorEllipse {
  std::string name;
  bool semiMajorValid = true;
  double semiMajor = 0.0;  ///< metres
  bool semiMinorValid = true;
  double semiMinor = 0.0;  ///< metres
  bool angleValid = true;
  double angle = 0.0;  ///< azimuth of the major axis, radians, 0 to π
};

struct ErrorEllipseManage {
  bool isValid = true;                    ///< false when the list is empty because nothing is redundant
  std::vector<ErrorEllipse> ellipseList;  ///< one for each point whose variance is not negligible
};

/// A distance with its residual and the line's adjusted azimuth and length.
struct LineErrorInfo : LineInfo {
  double observedDistance = 0.0;  ///< metres
  double residual = 0.0;          ///< adjusted minus observed, metres
  double azimuth = 0.0;           ///< adjusted, radians
  Degree azimuthDms;
  bool azimuthErrorValid = true;
  double azimuthError = 0.0;      ///< seconds of arc
  double adjustedDistance = 0.0;  ///< metres
  bool distanceErrorValid = true;
  double distanceError = 0.0;  ///< metres
};

/// The directions of one station. The vectors run in parallel, one entry for each direction.
struct DirectionResult {
  std::string stationName;
  std::vector<std::string> targetNames;
  std::vector<double> observedDirections;  ///< DDDMMSS.ss
  std::vector<double> residuals;           ///< seconds of arc
  std::vector<double> adjustedAzimuths;    ///< DDDMMSS.ss
  bool azimuthErrorValid = true;
  std::vector<double> azimuthErrors;  ///< seconds of arc; empty without redundancy
  std::vector<double> distances;      ///< from the adjusted coordinates, metres
  bool distanceErrorValid = true;
  std::vector<double> distanceErrors;  ///< metres; empty without redundancy
};

/// What the adjustment tells as a whole, beside its lists.
struct AdjustSummary {
  bool hasRedundancy = false;  ///< more observations than unknowns; without it there are no errors
  double unitError = 0.0;  ///< unit weight error, 1 when the observations were as good as told; NaN without redundancy
  int redundancy = 0;      ///< observations minus unknowns
  int iterations = 0;
  int points = 0;       ///< observed points, known ones included
  int knownPoints = 0;  ///< known points that are observed
  int stations = 0;
  int directions = 0;
  int distances = 0;  ///< distinct lines with a distance; those between two known points only where they are counted
  /// Standard errors of the adjusted distances in the order of `LineErrorInfo`, metres, also below the 0.1 mm under
  /// which `LineErrorInfo::distanceError` is 0; empty without redundancy.
  std::vector<double> distanceErrors;
  /// The same for the lines of the directions, by station and direction.
  std::vector<std::vector<double>> directionDistanceErrors;
};

}  // namespace kvn
