#include "adjust/plane/CommonAngle.h"

#include "adjust/plane/NumberedNetwork.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kvn::detail {
namespace {

// All angles are judged by this many of them.
constexpr std::size_t kJudges = 40;
// A difference of this size begins to count as a disagreement, radians.
constexpr double kTinyAngle = 1e-3;
// Angles that differ by no more than this from the best one are averaged, radians.
constexpr double kAgreement = 10.0 * kTinyAngle;

}  // namespace

double commonAngle(std::vector<SeenAngle> const& angles) {
  std::vector<SeenAngle> const judges = spread(angles, kJudges);
  SeenAngle best{0.0, 0.0};
  double least = std::numeric_limits<double>::infinity();
  for (SeenAngle const& candidate : judges) {
    double doubt = 0.0;
    for (SeenAngle const& judge : judges) {
      doubt += std::log1p(std::abs(foldedAngle(judge.angle - candidate.angle)) / kTinyAngle);
    }
    // Among equals, as two alone always are, the longer sight is the better one.
    bool const equal = std::abs(doubt - least) < 1e-9;
    if (equal ? candidate.distance > best.distance : doubt < least) {
      least = std::min(least, doubt);
      best = candidate;
    }
  }
  double sum = 0.0;
  double weights = 0.0;
  for (SeenAngle const& judge : judges) {
    double const difference = foldedAngle(judge.angle - best.angle);
    if (std::abs(difference) > kAgreement) continue;
    sum += judge.distance * difference;
    weights += judge.distance;
  }
  return weights > 0.0 ? best.angle + sum / weights : best.angle;
}

}  // namespace kvn::detail
