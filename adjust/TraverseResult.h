// TraverseResult: a single traverse with all that is to be told of it.
#pragma once

#include "adjust/TraverseJudgement.h"
#include "records/CalculationRecords.h"

#include <utils/Export.h>

#include <optional>
#include <vector>

namespace kvn {

struct KELVANE_EXPORT TraverseResult {
  int method = 0;                      ///< as `Configure::AdjustMethod`: 1 open, 2 connecting, 3 closed
  std::vector<TraverseInfo> stations;  ///< the chain
  TraverseSummary summary;
  std::vector<PointInfo> points;  ///< each once but for the ends of a chain
  TraverseClosing closing = TraverseClosing::AtStation;
  /// Empty where nothing closes, and where the a-priori errors are none.
  std::optional<TraverseJudgement> judgement;
};

}  // namespace kvn
