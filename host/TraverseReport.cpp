#include "TraverseReport.h"

#include "AdjustReport.h"

#include <utils/Circle.h>

#include <cmath>
#include <utility>

namespace kvn::host {

TraverseReport::TraverseReport(QString path, Configure const& settings, TraverseResult const& traverse,
                               Network const& observed, PointHeights const& pointHeights)
    : file(std::move(path)),
      configure(settings),
      result(traverse),
      summary(traverse.summary),
      stations(traverse.stations),
      points(traverse.points),
      knownNames(namesOf(observed.knownPoints)),
      heights(pointHeights) {
  for (std::size_t i = 0; i < result.pointErrors.size(); ++i) errors.emplace(points[i].name, result.pointErrors[i]);
}

TraversePointError TraverseReport::errorOf(std::string const& name) const {
  auto const found = errors.find(name);
  return found == errors.end() ? TraversePointError() : found->second;
}

double TraverseReport::angularMisclosure() const {
  std::size_t const angles = stations.size() - (result.closing == TraverseClosing::OnItself ? 1 : 0);
  return -summary.angleCorrection * static_cast<double>(angles);
}

double TraverseReport::angleLimit() const { return limits.angleLimit(result.judgement->angles); }

double TraverseReport::sumOfLegs() const {
  double sum = 0.0;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    if (isLeg(i)) sum += stations[i].distance;
  }
  return sum;
}

}  // namespace kvn::host
