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

struct KELVANE_EXPORT TraverseResult {
  int method = 0;                      ///< as `Configure::AdjustMethod`: 1 open, 2 connecting, 3 closed
  std::vector<TraverseInfo> stations;  ///< the chain
  TraverseSummary summary;
  std::vector<PointInfo> points;  ///< each once but for the ends of a chain
  TraverseClosing closing = TraverseClosing::AtStation;
  /// Empty where nothing closes, and where the a-priori errors are none.
  std::optional<TraverseJudgement> judgement;
  std::vector<TraverseSidePoint> sidePoints = {};
};

}  // namespace kvn
