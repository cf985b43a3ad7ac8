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
      {System::tr("Points"), System::tr("%1, %2 of them known").arg(network.points.size()).arg(countKnown())},
      {System::tr("Observations"), observationsText()},
      {System::tr("Datum"), datumText()},
      {System::tr("A-priori errors"), errorsText()},
      {System::tr("Redundancy"), QString::number(result.redundancy)},
      {System::tr("Errors of results"), System::tr("by the a-priori unit weight error, 1")},
  };
  return System::tr("Plan of %1").arg(printable(file)) + "\n\n" + labelled(lines);
}

void PlaneReport::writePlannedDirections(TextSink const& sink) const {
  if (circles.empty()) return;
  TextTable table({{System::tr("Station"), TextTable::Left},
                   {System::tr("Target"), TextTable::Left},
                   {System::tr("Error [″]"), TextTable::Right},
                   {"r", TextTable::Right},
                   {System::tr("Detectable [″]"), TextTable::Right},
                   {System::tr("Effect [mm]"), TextTable::Right},
                   {System::tr("Azimuth"), TextTable::Right},
                   {QString::fromUtf8("m [″]"), TextTable::Right},
                   {System::tr("Distance [m]"), TextTable::Right},
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
      System::tr("Directions (r redundancy, detectable the smallest gross error that a test finds, effect of it on a "
                 "coordinate, m error after adjustment)"),
      table, sink);
}

void PlaneReport::writePlannedDistances(TextSink const& sink) const {
  if (network.distances.empty()) return;
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {System::tr("Distance [m]"), TextTable::Right},
                   {System::tr("Error [mm]"), TextTable::Right},
                   {"r", TextTable::Right},
                   {System::tr("Detectable [mm]"), TextTable::Right},
                   {System::tr("Effect [mm]"), TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    PlaneNetwork::Distance const& distance = network.distances[d];
    PlaneObservation const& planned = result.distances[d];
    table.addUtf8({utf8Of(nameOf(distance.from)), utf8Of(nameOf(distance.to)), metresText(planned.length),
                   millimetresText(planned.error), ratioText(planned.redundancy), millimetresText(planned.detectable),
                   millimetresText(planned.effect), millimetresText(planned.lengthError)});
  }
  writeTitled(System::tr("Distances"), table, sink);
}

}  // namespace kvn::host
