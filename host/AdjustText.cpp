#include "AdjustReport.h"
#include "Format.h"
#include "Output.h"
#include "TextTable.h"

#include <cmath>
#include <utility>

namespace kvn::host {
namespace {

QString aprioriText(Configure const& configure) {
  return System::tr("direction %1″, distance %2 mm + %3 ppm (%4)")
      .arg(shortNumber(double(configure.AngleError)), shortNumber(double(configure.LineFixedError)),
           shortNumber(double(configure.LineProportionError)),
           configure.LineCalculateExpression ? System::tr("sum") : System::tr("root"));
}

std::size_t count(int value) { return static_cast<std::size_t>(value); }

}  // namespace

AdjustReport::AdjustReport(QString path, Configure const& settings, AlgorithmAdjust const& adjustment,
                           Network const& network)
    : file(std::move(path)), configure(settings), result(adjustment), knownNames(namesOf(network.knownPoints)) {}

void AdjustReport::writeText(TextSink const& sink) const {
  sink(headText().toStdString());
  writePoints(sink);
  writeEllipses(sink);
  writeDirections(sink);
  writeDistances(sink);
}

QString AdjustReport::headText() const {
  AdjustSummary const& summary = result.getSummary();
  QString const unitError = summary.hasRedundancy ? System::tr("%1 (expected 1)").arg(summary.unitError, 0, 'f', 4)
                                                  : System::tr("- (nothing is redundant, so there are no errors)");
  return System::tr("Least-squares adjustment of %1").arg(printable(file)) + "\n\n" +
         labelled({
             {System::tr("Points"), System::tr("%1, %2 of them known").arg(summary.points).arg(summary.knownPoints)},
             {System::tr("Observations"),
              System::tr("%1 from %2, %3")
                  .arg(counted(count(summary.directions), System::tr("%1 direction"), System::tr("%1 directions")),
                       counted(count(summary.stations), System::tr("%1 station"), System::tr("%1 stations")),
                       counted(count(summary.distances), System::tr("%1 distance"), System::tr("%1 distances")))},
             {System::tr("A-priori errors"), aprioriText(configure)},
             {System::tr("Redundancy"), QString::number(summary.redundancy)},
             {System::tr("Unit weight error"), unitError},
             {System::tr("Iterations"), QString::number(summary.iterations)},
         });
}

void AdjustReport::writePoints(TextSink const& sink) const {
  TextTable table({{System::tr("Point"), TextTable::Left},
                   {System::tr("North x [m]"), TextTable::Right},
                   {System::tr("East y [m]"), TextTable::Right},
                   {"mx [mm]", TextTable::Right},
                   {"my [mm]", TextTable::Right},
                   {"mp [mm]", TextTable::Right}});
  std::string const known = System::tr("known").toStdString();
  for (PointErrorInfo const& point : result.getPointErrorInfoList()) {
    std::string const name = utf8Of(point.name);
    if (isKnown(point.name)) {
      table.addUtf8({name, metresText(point.x), metresText(point.y), known});
    } else {
      table.addUtf8({name, metresText(point.x), metresText(point.y), millimetresText(existing(point.mxValid, point.mx)),
                     millimetresText(existing(point.myValid, point.my)),
                     millimetresText(existing(point.mpValid, point.mp))});
    }
  }
  writeTitled(System::tr("Points"), table, sink);
}

void AdjustReport::writeEllipses(TextSink const& sink) const {
  auto const& ellipses = result.getErrorEllipseList().ellipseList;
  if (ellipses.empty()) return;
  TextTable table({{System::tr("Point"), TextTable::Left},
                   {System::tr("Major [mm]"), TextTable::Right},
                   {System::tr("Minor [mm]"), TextTable::Right},
                   {System::tr("Azimuth"), TextTable::Right}});
  for (ErrorEllipse const& ellipse : ellipses) {
    table.addUtf8({utf8Of(ellipse.name), millimetresText(existing(ellipse.semiMajorValid, ellipse.semiMajor)),
                   millimetresText(existing(ellipse.semiMinorValid, ellipse.semiMinor)),
                   axisOfRadiansText(existing(ellipse.angleValid, ellipse.angle))});
  }
  writeTitled(System::tr("Error ellipses (semi-axes)"), table, sink);
}

void AdjustReport::writeDirections(TextSink const& sink) const {
  TextTable table({{System::tr("Station"), TextTable::Left},
                   {System::tr("Target"), TextTable::Left},
                   {System::tr("Observed"), TextTable::Right},
                   {QString::fromUtf8("v [″]"), TextTable::Right},
                   {System::tr("Azimuth"), TextTable::Right},
                   {QString::fromUtf8("m [″]"), TextTable::Right},
                   {System::tr("Distance [m]"), TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  auto const& stations = result.getDirectionResultList();
  for (std::size_t i = 0; i < stations.size(); ++i) {
    DirectionResult const& station = stations[i];
    for (std::size_t k = 0; k < station.targetNames.size(); ++k) {
      table.addUtf8({k == 0 ? utf8Of(station.stationName) : std::string(), utf8Of(station.targetNames[k]),
                     angleOfDmsText(station.observedDirections[k]), secondsText(station.residuals[k]),
                     azimuthOfDmsText(station.adjustedAzimuths[k]), secondsText(existing(station.azimuthErrors, k)),
                     metresText(station.distances[k]), millimetresText(distanceErrorOf(result.getSummary(), i, k))});
    }
  }
  writeTitled(System::tr("Directions (v residual, m standard error after adjustment)"), table, sink);
}

void AdjustReport::writeDistances(TextSink const& sink) const {
  auto const& lines = result.getLineErrorInfoList();
  if (lines.empty()) return;
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {System::tr("Observed [m]"), TextTable::Right},
                   {"v [mm]", TextTable::Right},
                   {System::tr("Adjusted [m]"), TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  for (std::size_t i = 0; i < lines.size(); ++i) {
    LineErrorInfo const& line = lines[i];
    table.addUtf8({utf8Of(line.start_name), utf8Of(line.end_name), metresText(line.observedDistance),
                   millimetresText(line.residual), metresText(line.adjustedDistance),
                   millimetresText(distanceErrorOf(result.getSummary(), i))});
  }
  writeTitled(System::tr("Distances"), table, sink);
}

}  // namespace kvn::host
