// Heights: the height differences of a field book, with a surveyor's care, and their adjustment.
#include "adjust/ElevationRows.h"
#include "adjust/NameIndex.h"
#include "adjust/TriangleHeightAdjust.h"
#include "adjust/TriangleHeightDataConvert.h"
#include "adjust/TriangleHeightDataRead.h"
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"

#include <QStringList>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace kvn {
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

void tellLeftOut(detail::OpenedFile const& opened, std::vector<LeftOutSight> const& sights) {
  std::vector<FieldFinding> findings;
  findings.reserve(sights.size());
  for (LeftOutSight const& sight : sights) {
    findings.push_back({FieldFinding::Warning, sight.station, {sight.target}, reasonText(sight.reason), sight.row, 0});
  }
  for (QString const& line : warningLines(opened.placed(findings))) detail::sendWarning(line);
}

/// A control point known in plan only has the height 0 in the field book, as one at sea level.
void tellKnownHeightsOfZero(TriangleHeightDataConvert const& observations) {
  for (TriangleStationData const& station : observations.getTriangleStationData()) {
    if (station.height != 0.0) continue;
    detail::sendWarning(QString("The known height of %1 is 0").arg(recordText(station.name)));
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
    if (!reached[n]) left << recordText(names.names()[n]);
  }
  return left;
}

/// The height lines of the rows, by the elevations of both faces, or as the library takes the rows.
TriangleHeightDataConvert heightLinesOf(detail::JobState const& state, double refraction) {
  Project const& project = *state.project;
  TriangleHeightDataRead reader(state.asRead ? project.getVerticalAngleType() : ElevationAngle);
  if (state.asRead) {
    reader.setTraverseDataList(project.getTraverseDataList(), refraction);
  } else {
    ElevationRows const elevations = elevationRows(project.getTraverseDataList());
    tellLeftOut(state.opened, elevations.leftOut);
    reader.setTraverseDataList(elevations.rows, refraction);
  }
  TriangleHeightDataConvert lines;
  lines.setTriangleHeightDataRead(reader);
  tellKnownHeightsOfZero(lines);
  return lines;
}

void requireSolvable(QString const& file, TriangleHeightDataConvert const& lines) {
  if (lines.getKnPnumber() == 0) throw JobException(file, "no station has a known height");
  QStringList const left = unconnected(lines);
  if (left.isEmpty()) return;
  throw JobException(file, "no line connects these points to a known height: " + left.join(", "));
}

}  // namespace

void detail::adjustHeights(JobState& state, double refraction) {
  Project& project = *state.project;
  if (project.getTraverseDataList().empty()) {
    throw JobException(state.file, "the file has no rows of a field book, from which heights are computed");
  }
  TriangleHeightDataConvert lines = heightLinesOf(state, refraction);
  requireSolvable(state.file, lines);
  auto adjustment = std::make_unique<TriangleHeightAdjust>();
  adjustment->setTriangleHeightDataConvert(lines);
  adjustment->heightLSAdjust();
  project.setTriangleHeightAdjust(std::move(adjustment));
  state.heightLines = std::move(lines);
}

}  // namespace kvn
