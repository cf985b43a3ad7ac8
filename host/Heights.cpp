#include "Heights.h"

#include "Failures.h"
#include "Output.h"

#include <QStringList>
#include <vector>

namespace kvn::host {
namespace {

QString reasonText(LeftOutSight::Reason reason) {
  switch (reason) {
    case LeftOutSight::NoStation:
      return "no height from a sight before the first station";
    case LeftOutSight::SightsItself:
      return "no height from a sight to the station itself";
    case LeftOutSight::NoAngle:
      return "no height from a sight without a vertical reading within the circle";
    case LeftOutSight::NoDistance:
      return "no height from a sight without a distance";
    case LeftOutSight::AlongVertical:
      return "no height from a sight straight up or down, or without a vertical reading";
  }
  return {};
}

void tellLeftOut(FieldJob const& job, std::vector<LeftOutSight> const& sights) {
  std::vector<FieldFinding> findings;
  findings.reserve(sights.size());
  for (LeftOutSight const& sight : sights) {
    findings.push_back({FieldFinding::Warning, sight.station, {sight.target}, reasonText(sight.reason), sight.row, 0});
  }
  tellWarnings(job.placed(findings));
}

/// A control point known in plan only has the height 0 in the field book, as one at sea level.
void tellKnownHeightsOfZero(TriangleHeightDataConvert const& observations) {
  for (TriangleStationData const& station : observations.getTriangleStationData()) {
    if (station.height != 0.0) continue;
    System::Instance()->sendMessage(QString("The known height of %1 is 0").arg(textOf(station.name)), Warning);
  }
}

/// Points that no chain of lines connects to a known station, which the library refuses without their names.
QStringList unconnected(TriangleHeightDataConvert const& observations) {
  NameIndex names;
  std::vector<std::vector<int>> neighbours(static_cast<std::size_t>(observations.getPnumber()));
  for (TriangleStationData const& station : observations.getTriangleStationData()) names.numberOf(station.name);
  for (TriangleViewData const& line : observations.getTraingleViewData()) {
    int const start = names.numberOf(line.start_name);
    int const end = names.numberOf(line.end_name);
    neighbours[static_cast<std::size_t>(start)].push_back(end);
    neighbours[static_cast<std::size_t>(end)].push_back(start);
  }
  std::vector<bool> reached(neighbours.size(), false);
  std::vector<int> open;
  auto const reach = [&](int point) {
    if (reached[static_cast<std::size_t>(point)]) return;
    reached[static_cast<std::size_t>(point)] = true;
    open.push_back(point);
  };
  for (int known = 0; known < observations.getKnPnumber(); ++known) reach(known);
  while (!open.empty()) {
    int const point = open.back();
    open.pop_back();
    for (int const neighbour : neighbours[static_cast<std::size_t>(point)]) reach(neighbour);
  }
  QStringList left;
  for (std::size_t n = 0; n < reached.size(); ++n) {
    if (!reached[n]) left << textOf(names.names()[n]);
  }
  return left;
}

}  // namespace

TriangleHeightDataConvert observeHeights(Session& session, double refraction, bool asRead) {
  Project const& project = session.project();
  TriangleHeightDataRead reader(asRead ? project.getVerticalAngleType() : ElevationAngle);
  if (asRead) {
    reader.setTraverseDataList(project.getTraverseDataList(), refraction);
  } else {
    ElevationRows const elevations = elevationRows(project.getTraverseDataList());
    tellLeftOut(session.job(), elevations.leftOut);
    reader.setTraverseDataList(elevations.rows, refraction);
  }
  TriangleHeightDataConvert observations;
  observations.setTriangleHeightDataRead(reader);
  tellKnownHeightsOfZero(observations);
  return observations;
}

void requireSolvable(QString const& file, TriangleHeightDataConvert const& observations) {
  if (observations.getKnPnumber() == 0) throw Refusal(file, "no station has a known height");
  QStringList const left = unconnected(observations);
  if (!left.isEmpty()) throw Refusal(file, "no line connects these points to a known height: " + left.join(", "));
}

}  // namespace kvn::host
