// TraverseResult: a single traverse with all that is to be told of it.
#pragma once

#include "adjust/TraverseJudgement.h"
#include "records/CalculationRecords.h"

#include <utils/Export.h>

#include <optional>
#include <string>
#include <vector>

namespace kvn {

/// A point beside the chain, polar from a station by the azimuth of its back line after the angular misclosure has been
/// distributed. Nothing checks it, unless it is known.
struct TraverseSidePoint {
  std::string station;
  PointInfo point;
  double azimuth = 0.0;   ///< radians, 0 to 2π
  double distance = 0.0;  ///< metres
  /// Standard errors by the a-priori errors of the chain and of the sight, metres; NaN where these are none. Those of
  /// the known points do not count.
  double mx = TraverseJudgement::kNone;
  double my = TraverseJudgement::kNone;
  double mp = TraverseJudgement::kNone;  ///< root of mx² + my²
  bool isKnown = false;                  ///< `point` is as computed nevertheless
  /// Of a known point what is computed less what is given, metres; else NaN.
  double offNorth = TraverseJudgement::kNone;
  double offEast = TraverseJudgement::kNone;
  /// What the a-priori errors allow in that direction: 99 of 100 faultless ones are nearer, metres; NaN without them.
  double offAllowed = TraverseJudgement::kNone;
};

/// A sight to a known point that the chain does not need: it checks the chain, or its known points.
struct TraverseCheck {
  enum Kind { Direction, Distance };

  Kind kind = Direction;
  std::string station;
  std::string target;
  /// The known point that gives the station its azimuth, where target and mark are compared with each other alone; else
  /// empty.
  std::string mark;
  double off = 0.0;                           ///< observed less computed, radians or metres
  double allowed = TraverseJudgement::kNone;  ///< 2.576 standard errors of it; NaN without a-priori errors

  bool isBeyond() const { return off > allowed || off < -allowed; }
};

/// Standard errors of a point of a chain, metres.
struct TraversePointError {
  double mx = TraverseJudgement::kNone;
  double my = TraverseJudgement::kNone;
  double mp = TraverseJudgement::kNone;  ///< root of mx² + my²
};

struct KELVANE_EXPORT TraverseResult {
  int method = 0;                      ///< as `Configure::AdjustMethod`: 1 open, 2 connecting, 3 closed
  std::vector<TraverseInfo> stations;  ///< the chain
  TraverseSummary summary;
  std::vector<PointInfo> points;  ///< each once but for the ends of a chain
  TraverseClosing closing = TraverseClosing::AtStation;
  /// Empty where nothing closes, and where the a-priori errors are none.
  std::optional<TraverseJudgement> judgement;
  std::vector<TraverseSidePoint> sidePoints = {};
  /// An open one that ends on a known station: the side shots from there are oriented by the chain.
  bool isEndStation = false;
  /// Known points in sight that are neither marks nor side points with a distance, and distances to marks.
  std::vector<TraverseCheck> checks = {};
  /// Of `points`, by the a-priori errors as those of side points, 0 of known ones; empty without such errors.
  std::vector<TraversePointError> pointErrors = {};

  /// Whether a check shot goes to the first station or to its mark, which `points` has once.
  bool endsOnOwnPoint() const {
    if (closing != TraverseClosing::AtForePoint || stations.empty()) return false;
    std::string const& fore = stations.back().forePoints.front().name;
    return fore == stations.front().stationPoint.name || fore == stations.front().backPoint.name;
  }
};

}  // namespace kvn
