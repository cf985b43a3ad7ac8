// What the single traverses work on; for their sources alone.
#pragma once

#include "adjust/NameIndex.h"
#include "adjust/SingleTraverse.h"

#include <utils/detail/PrivateData.h>

#include <cmath>
#include <vector>

namespace kvn {

struct KELVANE_PRIVATE SingleTraverse::Data {
  KELVANE_LATER_MEMBER
  std::vector<PointInfo> knPoints;
  std::vector<TraverseInfo> stations;  ///< the chain
  NameIndex pointNames;
  int knPointsCount = 0;
  int pointsCount = 0;
  std::vector<double> azimuths;  ///< see `TraverseSummary`
  double m_PI = std::acos(-1.0);

  // Of those that close.
  double angleCloseError = 0.0;  ///< radians; the misclosure, and once it is distributed the correction of one angle
  double sumDistance = 0.0;      ///< metres
  double fx = 0.0;
  double fy = 0.0;
  double fs = 0.0;
  double relativeError = 0.0;

  // Of the polygon.
  bool foldsToNearest = false;
  int stationsCount = 0;  ///< of the input
};

}  // namespace kvn
