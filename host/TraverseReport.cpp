#include "TraverseReport.h"

#include "AdjustReport.h"
#include "Format.h"
#include "Output.h"

#include <cmath>
#include <utility>

namespace kvn::host {
namespace {

constexpr int kClosed = 3;  // Configure::AdjustMethod

}  // namespace

TraverseReport::TraverseReport(QString path, Configure const& settings, AlgorithmAdjust const& adjustment,
                               Network const& observed)
    : file(std::move(path)),
      configure(settings),
      network(observed),
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

QStringList TraverseReport::leftOut() const {
  std::unordered_set<std::string> told;
  for (TraverseInfo const& station : stations) told.insert(station.stationPoint.name);
  QStringList names;
  for (NetworkDataInfo const& line : network.lines) {
    if (told.insert(line.start_name).second) names.append(textOf(line.start_name));
  }
  return names;
}

QStringList TraverseReport::polygonWarnings() const {
  QStringList list;
  // No faults of observing add up to a half circle, but outer angles are off by a full one.
  if (std::abs(angularMisclosure()) > CommonFunction::m_PI) {
    list.append(QString("The angles are off by %1; the stations must go around counter-clockwise")
                    .arg(angleOfRadians(angularMisclosure())));
  }
  return list;
}

QStringList TraverseReport::warnings() const {
  QStringList list;
  QStringList const names = leftOut();
  if (!names.isEmpty()) list.append(QString("Stations outside the traverse are left out: %1").arg(names.join(", ")));
  for (std::size_t i = 0; i < stations.size(); ++i) {
    if (!isLeg(i) || stations[i].distance != 0.0) continue;
    list.append(QString("The leg from %1 to %2 has no distance and counts as 0")
                    .arg(textOf(stations[i].stationPoint.name), textOf(stations[i].forePoints.front().name)));
  }
  return configure.AdjustMethod == kClosed ? list + polygonWarnings() : list;
}

}  // namespace kvn::host
