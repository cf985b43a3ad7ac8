// A plan as text.
#include "FindingsText.h"
#include "Format.h"
#include "PlaneReport.h"
#include "TextTable.h"

namespace kvn::host {

void PlaneReport::writePlanText(std::vector<FieldFinding> const& findings, TextSink const& sink) const {
  sink(planHeadText().toStdString());
  sink(findingsText(findings).toStdString());
  writePointTable(sink);
  writeEllipseTable(sink);
  writePlannedDirections(sink);
  writePlannedDistances(sink);
}

QString PlaneReport::planHeadText() const {
  std::vector<std::pair<QString, QString>> lines{
      {"Points", QString("%1, %2 of them known").arg(network.points.size()).arg(countKnown())},
      {"Observations", observationsText()},
      {"A-priori errors", errorsText()},
      {"Redundancy", QString::number(result.redundancy)},
      {"Errors of results", "by the a-priori unit weight error, 1"},
  };
  if (isFree()) lines.insert(lines.begin() + 2, {"Datum", datumText()});
  return QString("Plan of %1\n\n").arg(printable(file)) + labelled(lines);
}

void PlaneReport::writePlannedDirections(TextSink const& sink) const {
  if (circles.empty()) return;
  TextTable table({{"Station", TextTable::Left},
                   {"Target", TextTable::Left},
                   {QString::fromUtf8("Error [″]"), TextTable::Right},
                   {"r", TextTable::Right},
                   {QString::fromUtf8("Detectable [″]"), TextTable::Right},
                   {"Effect [mm]", TextTable::Right},
                   {"Azimuth", TextTable::Right},
                   {QString::fromUtf8("m [″]"), TextTable::Right},
                   {"Distance [m]", TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  for (Circle const& circle : circles) {
    std::string const station = stationText(circle);
    for (std::size_t const d : circle.directions) {
      PlaneObservation const& planned = result.directions[d];
      table.addUtf8({d == circle.directions.front() ? station : std::string(),
                     utf8Of(nameOf(network.directions[d].target)), secondsText(secondsOfRadians(planned.error)),
                     ratioText(planned.redundancy), secondsText(secondsOfRadians(planned.detectable)),
                     millimetresText(planned.effect), azimuthOfDmsText(dmsOfRadians(planned.azimuth)),
                     secondsText(secondsOfRadians(planned.azimuthError)), metresText(planned.length),
                     millimetresText(planned.lengthError)});
    }
  }
  writeTitled(
      "Directions (r redundancy, detectable the smallest gross error that a test finds, effect of it on a "
      "coordinate, m error after adjustment)",
      table, sink);
}

void PlaneReport::writePlannedDistances(TextSink const& sink) const {
  if (network.distances.empty()) return;
  TextTable table({{"From", TextTable::Left},
                   {"To", TextTable::Left},
                   {"Distance [m]", TextTable::Right},
                   {"Error [mm]", TextTable::Right},
                   {"r", TextTable::Right},
                   {"Detectable [mm]", TextTable::Right},
                   {"Effect [mm]", TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    PlaneNetwork::Distance const& distance = network.distances[d];
    PlaneObservation const& planned = result.distances[d];
    table.addUtf8({utf8Of(nameOf(distance.from)), utf8Of(nameOf(distance.to)), metresText(planned.length),
                   millimetresText(planned.error), ratioText(planned.redundancy), millimetresText(planned.detectable),
                   millimetresText(planned.effect), millimetresText(planned.lengthError)});
  }
  writeTitled("Distances", table, sink);
}

}  // namespace kvn::host
