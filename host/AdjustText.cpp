#include "AdjustReport.h"
#include "Format.h"
#include "Output.h"
#include "TextTable.h"

#include <cmath>
#include <utility>

namespace kvn::host {
namespace {

QString aprioriText(Configure const& configure) {
  return QString::fromUtf8("direction %1″, distance %2 mm + %3 ppm (%4)")
      .arg(shortNumber(double(configure.AngleError)), shortNumber(double(configure.LineFixedError)),
           shortNumber(double(configure.LineProportionError)),
           QLatin1String(configure.LineCalculateExpression ? "sum" : "root"));
}

std::size_t count(int value) { return static_cast<std::size_t>(value); }

}  // namespace

AdjustReport::AdjustReport(QString path, Configure const& settings, AlgorithmAdjust const& adjustment,
                           Network const& network)
    : file(std::move(path)), configure(settings), result(adjustment), knownNames(namesOf(network.knownPoints)) {}

QString AdjustReport::text() const {
  return headText() + pointsText() + ellipsesText() + directionsText() + distancesText();
}

QString AdjustReport::headText() const {
  AdjustSummary const& summary = result.getSummary();
  QString const unitError = summary.hasRedundancy ? QString::number(summary.unitError, 'f', 4) + " (expected 1)"
                                                  : QString("- (nothing is redundant, so there are no errors)");
  return QString("Least-squares adjustment of %1\n\n").arg(printable(file)) +
         labelled({
             {"Points", QString("%1, %2 of them known").arg(summary.points).arg(summary.knownPoints)},
             {"Observations", QString("%1 from %2, %3")
                                  .arg(counted(count(summary.directions), "direction", "directions"),
                                       counted(count(summary.stations), "station", "stations"),
                                       counted(count(summary.distances), "distance", "distances"))},
             {"A-priori errors", aprioriText(configure)},
             {"Redundancy", QString::number(summary.redundancy)},
             {"Unit weight error", unitError},
             {"Iterations", QString::number(summary.iterations)},
         });
}

QString AdjustReport::pointsText() const {
  TextTable table({{"Point", TextTable::Left},
                   {"North x [m]", TextTable::Right},
                   {"East y [m]", TextTable::Right},
                   {"mx [mm]", TextTable::Right},
                   {"my [mm]", TextTable::Right},
                   {"mp [mm]", TextTable::Right}});
  for (PointErrorInfo const& point : result.getPointErrorInfoList()) {
    QStringList cells{textOf(point.name), metres(point.x), metres(point.y)};
    if (isKnown(point.name)) {
      cells << "known";
    } else {
      cells << millimetres(existing(point.mxValid, point.mx)) << millimetres(existing(point.myValid, point.my))
            << millimetres(existing(point.mpValid, point.mp));
    }
    table.add(cells);
  }
  return titled("Points", table);
}

QString AdjustReport::ellipsesText() const {
  auto const& ellipses = result.getErrorEllipseList().ellipseList;
  if (ellipses.empty()) return {};
  TextTable table({{"Point", TextTable::Left},
                   {"Major [mm]", TextTable::Right},
                   {"Minor [mm]", TextTable::Right},
                   {"Azimuth", TextTable::Right}});
  for (ErrorEllipse const& ellipse : ellipses) {
    table.add({textOf(ellipse.name), millimetres(existing(ellipse.semiMajorValid, ellipse.semiMajor)),
               millimetres(existing(ellipse.semiMinorValid, ellipse.semiMinor)),
               axisOfRadians(existing(ellipse.angleValid, ellipse.angle))});
  }
  return titled("Error ellipses (semi-axes)", table);
}

QString AdjustReport::directionsText() const {
  TextTable table({{"Station", TextTable::Left},
                   {"Target", TextTable::Left},
                   {"Observed", TextTable::Right},
                   {QString::fromUtf8("v [″]"), TextTable::Right},
                   {"Azimuth", TextTable::Right},
                   {QString::fromUtf8("m [″]"), TextTable::Right},
                   {"Distance [m]", TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  auto const& stations = result.getDirectionResultList();
  for (std::size_t i = 0; i < stations.size(); ++i) {
    DirectionResult const& station = stations[i];
    for (std::size_t k = 0; k < station.targetNames.size(); ++k) {
      table.add({k == 0 ? textOf(station.stationName) : QString(), textOf(station.targetNames[k]),
                 angleOfDms(station.observedDirections[k]), seconds(station.residuals[k]),
                 azimuthOfDms(station.adjustedAzimuths[k]), seconds(existing(station.azimuthErrors, k)),
                 metres(station.distances[k]), millimetres(distanceErrorOf(result.getSummary(), i, k))});
    }
  }
  return titled("Directions (v residual, m standard error after adjustment)", table);
}

QString AdjustReport::distancesText() const {
  auto const& lines = result.getLineErrorInfoList();
  if (lines.empty()) return {};
  TextTable table({{"From", TextTable::Left},
                   {"To", TextTable::Left},
                   {"Observed [m]", TextTable::Right},
                   {"v [mm]", TextTable::Right},
                   {"Adjusted [m]", TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  for (std::size_t i = 0; i < lines.size(); ++i) {
    LineErrorInfo const& line = lines[i];
    table.add({textOf(line.start_name), textOf(line.end_name), metres(line.observedDistance),
               millimetres(line.residual), metres(line.adjustedDistance),
               millimetres(distanceErrorOf(result.getSummary(), i))});
  }
  return titled("Distances", table);
}

}  // namespace kvn::host
