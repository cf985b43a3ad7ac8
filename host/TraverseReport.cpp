#include "TraverseReport.h"

#include "AdjustReport.h"

#include <utility>

namespace kvn::host {

TraverseReport::TraverseReport(QString path, Configure const& settings, AlgorithmAdjust const& adjustment,
                               Network const& observed)
    : file(std::move(path)),
      configure(settings),
      summary(adjustment.getTraverseSummary()),
      stations(adjustment.getTraverseAdjustInfoList()),
      points(adjustment.getPointList()),
      knownNames(namesOf(observed.knownPoints)) {}

double TraverseReport::angularMisclosure() const {
  return -summary.angleCorrection * static_cast<double>(stations.size());
}

double TraverseReport::sumOfLegs() const {
  double sum = 0.0;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    if (isLeg(i)) sum += stations[i].distance;
  }
  return sum;
}

}  // namespace kvn::host
