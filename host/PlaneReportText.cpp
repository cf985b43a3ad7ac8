#include "FindingsText.h"
#include "Format.h"
#include "PlaneReport.h"
#include "TextTable.h"

#include <algorithm>
#include <cmath>

namespace kvn::host {
namespace {

QString decimals(double value) { return std::isfinite(value) ? QString::number(value, 'f', 2) : QString("-"); }

QString percent(double share) { return shortNumber(100.0 * share) + " %"; }

}  // namespace

void PlaneReport::writeSummary(QString const& judgement, std::vector<FieldFinding> const& findings,
                               TextSink const& sink) const {
  sink(headText(judgement).toStdString());
  sink(findingsText(findings).toStdString());
}

void PlaneReport::writeTables(TextSink const& sink) const {
  writePointTable(sink);
  writeEllipseTable(sink);
  writeDirectionTable(sink);
  writeDistanceTable(sink);
  writeControlTable(sink);
  writeScatterTable(sink);
  writeLeftOutTable(sink);
}

QString PlaneReport::headText(QString const& judgement) const {
  std::vector<std::pair<QString, QString>> lines{
      {System::tr("Points"), System::tr("%1, %2 of them known").arg(network.points.size()).arg(countKnown())},
      {System::tr("Observations"), observationsText()},
      {System::tr("Datum"), datumText()},
      {System::tr("A-priori errors"), errorsText()},
      {System::tr("Redundancy"), QString::number(result.redundancy)},
      {System::tr("Unit weight error"), unitErrorText()},
      {System::tr("By kind"), kindsText()},
      {System::tr("Iterations"), QString::number(result.iterations)},
  };
  if (heights.exist()) lines.push_back({System::tr("Unit weight error of heights"), heights.unitErrorText()});
  if (options.unitWeight == PlaneSettings::UnitWeight::APriori) {
    lines.insert(lines.end() - 1,
                 {System::tr("Errors of results"), System::tr("by the a-priori unit weight error, 1")});
  }
  if (options.weighsDownSuspects) lines.insert(lines.end() - 1, {System::tr("Robust weights"), robustText()});
  return System::tr("Least-squares adjustment of %1").arg(printable(file)) + "\n\n" + judgement + '\n' +
         labelled(lines);
}

QString PlaneReport::datumText() const {
  if (!isFree()) {
    return isWeighted() ? System::tr("known points, each with its own error") : System::tr("known points, held");
  }
  return countKnown() >= 2 ? System::tr("free: laid on the known points, none of which is held")
                           : System::tr("free: laid on all points");
}

QString PlaneReport::errorsText() const {
  QString text = System::tr("direction %1″, distance %2 mm + %3 ppm (%4)")
                     .arg(shortNumber(double(configure.AngleError)), shortNumber(double(configure.LineFixedError)),
                          shortNumber(double(configure.LineProportionError)),
                          configure.LineCalculateExpression ? System::tr("sum") : System::tr("root"));
  if (options.centring > 0.0) text += System::tr(", centring %1 mm").arg(shortNumber(1000.0 * options.centring));
  if (options.controlError > 0.0) {
    text += System::tr(", known coordinates %1 mm").arg(shortNumber(1000.0 * options.controlError));
  }
  return text;
}

QString PlaneReport::observationsText() const {
  return System::tr("%1 from %2 of %3, %4")
      .arg(counted(network.directions.size(), System::tr("%1 direction"), System::tr("%1 directions")),
           counted(circles.size(), System::tr("%1 set-up"), System::tr("%1 set-ups")),
           counted(countStations(), System::tr("%1 station"), System::tr("%1 stations")),
           counted(network.distances.size(), System::tr("%1 distance"), System::tr("%1 distances")));
}

std::string PlaneReport::stationText(Circle const& circle) const {
  int const point = stationOf(circle);
  std::string const name = utf8Of(nameOf(point));
  bool const isOnlyOne = circlesOfPoint[static_cast<std::size_t>(point)] == 1;
  return isOnlyOne ? name : name + " (" + std::to_string(circle.number) + ')';
}

bool PlaneReport::hasWeights() const {
  auto const isLess = [](PlaneObservation const& observation) { return observation.weight < 1.0; };
  return options.weighsDownSuspects && (std::any_of(result.directions.begin(), result.directions.end(), isLess) ||
                                        std::any_of(result.distances.begin(), result.distances.end(), isLess));
}

/// What catches the eye in a row whose residual is too large for chance, that is left out or that weighs less.
std::string PlaneReport::markOf(PlaneObservation const& observation) const {
  if (observation.weight < 1.0 && options.weighsDownSuspects) return ratioText(observation.weight);
  if (observation.weight == 0.0) return System::tr("left out").toStdString();
  return observation.test > 1.0 ? "*" : "";
}

QString PlaneReport::robustText() const {
  std::size_t less = 0;
  std::size_t none = 0;
  for (auto const* list : {&result.directions, &result.distances}) {
    for (PlaneObservation const& observation : *list) {
      if (observation.weight < 1.0) ++less;
      if (observation.weight == 0.0) ++none;
    }
  }
  if (less == 0) return System::tr("all observations have their full weight");
  QString const text =
      counted(less, System::tr("%1 observation weighs less"), System::tr("%1 observations weigh less"));
  return none == 0 ? text : text + System::tr(", %1 of them nothing: not counted in the redundancy").arg(none);
}

QString PlaneReport::unitErrorText() const {
  if (!result.hasRedundancy) {
    return hasErrors() ? System::tr("- (nothing is redundant)")
                       : System::tr("- (nothing is redundant, so there are no errors)");
  }
  QString text = System::tr("%1, expected between %2 and %3 at %4")
                     .arg(decimals(result.unitError), decimals(result.lowerBound), decimals(result.upperBound),
                          percent(options.confidence));
  if (result.isPassed) return text;
  return (result.unitError < result.lowerBound ? System::tr("%1: fails, for the errors are smaller than expected")
                                               : System::tr("%1: fails"))
      .arg(text);
}

/// Of each kind its unit weight error, and the a-priori error with which it would be 1, unless something is wrong.
QString PlaneReport::kindsText() const {
  constexpr double kDoubtful = 20.0;
  QString directions = System::tr("directions %1").arg(decimals(result.directionUnitError));
  if (result.directionUnitError <= kDoubtful) {
    directions +=
        System::tr(" (%1″ would fit)").arg(decimals(result.directionUnitError * double(configure.AngleError)));
  }
  QString distances = System::tr(", distances %1").arg(decimals(result.distanceUnitError));
  if (result.distanceUnitError <= kDoubtful) {
    distances += QString(" (%1 mm + %2 ppm)")
                     .arg(decimals(result.distanceUnitError * double(configure.LineFixedError)),
                          decimals(result.distanceUnitError * double(configure.LineProportionError)));
  }
  return directions + distances;
}

void PlaneReport::addHeight(std::size_t p, std::vector<std::string>& cells) const {
  if (!heights.exist()) return;
  std::vector<std::string> const ofHeight = heights.utf8Cells(network.points[p].name);
  cells.insert(cells.end(), ofHeight.begin(), ofHeight.end());
}

void PlaneReport::writePointTable(TextSink const& sink) const {
  std::vector<TextTable::Column> columns{{System::tr("Point"), TextTable::Left},
                                         {System::tr("North x [m]"), TextTable::Right},
                                         {System::tr("East y [m]"), TextTable::Right},
                                         {"mx [mm]", TextTable::Right},
                                         {"my [mm]", TextTable::Right},
                                         {"mp [mm]", TextTable::Right}};
  if (heights.exist()) {
    columns.push_back({System::tr("Height [m]"), TextTable::Right});
    columns.push_back({"mh [mm]", TextTable::Right});
  }
  columns.push_back({"", TextTable::Left});
  TextTable table(std::move(columns));
  std::string const known = System::tr("known").toStdString();
  std::string const unchecked = System::tr("unchecked").toStdString();
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    PlanePoint const& point = result.points[p];
    std::string const name = utf8Of(network.points[p].name);
    std::vector<std::string> cells{name, metresText(point.x), metresText(point.y)};
    if (isFixed(p)) {
      cells.insert(cells.end(), {known, "", ""});
    } else {
      cells.insert(cells.end(), {millimetresText(point.mx), millimetresText(point.my), millimetresText(point.mp)});
    }
    addHeight(p, cells);
    cells.emplace_back(isFixed(p) || point.isChecked ? "" : unchecked);
    table.addUtf8(cells);
  }
  writeTitled(System::tr("Points"), table, sink);
}

void PlaneReport::writeEllipseTable(TextSink const& sink) const {
  bool const isAnyMoving = countKnown() < network.points.size() || isFree() || options.controlError > 0.0;
  if (!hasErrors() || !isAnyMoving) return;
  TextTable table({{System::tr("Point"), TextTable::Left},
                   {System::tr("Major [mm]"), TextTable::Right},
                   {System::tr("Minor [mm]"), TextTable::Right},
                   {System::tr("Azimuth"), TextTable::Right},
                   {System::tr("Major %1 [mm]").arg(percent(options.confidence)), TextTable::Right},
                   {System::tr("Minor %1 [mm]").arg(percent(options.confidence)), TextTable::Right}});
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    if (isFixed(p)) continue;
    PlanePoint const& point = result.points[p];
    table.addUtf8({utf8Of(network.points[p].name), millimetresText(point.semiMajor), millimetresText(point.semiMinor),
                   axisOfRadiansText(point.bearing), millimetresText(point.semiMajor * result.confidenceFactor),
                   millimetresText(point.semiMinor * result.confidenceFactor)});
  }
  writeTitled(System::tr("Error ellipses (semi-axes)"), table, sink);
}

void PlaneReport::writeDirectionTable(TextSink const& sink) const {
  if (circles.empty()) return;
  TextTable table({{System::tr("Station"), TextTable::Left},
                   {System::tr("Target"), TextTable::Left},
                   {System::tr("Observed"), TextTable::Right},
                   {QString::fromUtf8("v [″]"), TextTable::Right},
                   {"r", TextTable::Right},
                   {"w", TextTable::Right},
                   {hasWeights() ? System::tr("Weight") : QString(), TextTable::Left},
                   {System::tr("Azimuth"), TextTable::Right},
                   {QString::fromUtf8("m [″]"), TextTable::Right},
                   {System::tr("Distance [m]"), TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  for (Circle const& circle : circles) {
    std::string const station = stationText(circle);
    for (std::size_t const d : circle.directions) {
      PlaneNetwork::Direction const& direction = network.directions[d];
      PlaneObservation const& adjusted = result.directions[d];
      table.addUtf8({d == circle.directions.front() ? station : std::string(), utf8Of(nameOf(direction.target)),
                     angleOfDmsText(dmsOfRadians(direction.value)), secondsText(secondsOfRadians(adjusted.residual)),
                     ratioText(adjusted.redundancy), ratioText(adjusted.standardised), markOf(adjusted),
                     azimuthOfDmsText(dmsOfRadians(adjusted.azimuth)),
                     secondsText(secondsOfRadians(adjusted.azimuthError)), metresText(adjusted.length),
                     millimetresText(adjusted.lengthError)});
    }
  }
  writeTitled(
      System::tr(
          "Directions (v residual, r redundancy, w standardised residual, * too large, m error after adjustment)"),
      table, sink);
}

void PlaneReport::writeDistanceTable(TextSink const& sink) const {
  if (network.distances.empty()) return;
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {System::tr("Observed [m]"), TextTable::Right},
                   {"v [mm]", TextTable::Right},
                   {"r", TextTable::Right},
                   {"w", TextTable::Right},
                   {hasWeights() ? System::tr("Weight") : QString(), TextTable::Left},
                   {System::tr("Adjusted [m]"), TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    PlaneNetwork::Distance const& distance = network.distances[d];
    PlaneObservation const& adjusted = result.distances[d];
    table.addUtf8({utf8Of(nameOf(distance.from)), utf8Of(nameOf(distance.to)), metresText(distance.value),
                   millimetresText(adjusted.residual), ratioText(adjusted.redundancy), ratioText(adjusted.standardised),
                   markOf(adjusted), metresText(adjusted.adjusted), millimetresText(adjusted.lengthError)});
  }
  writeTitled(System::tr("Distances"), table, sink);
}

/// Of given coordinates that are observations, or that a free network is laid on.
void PlaneReport::writeControlTable(TextSink const& sink) const {
  if (!(isWeighted() || isFree()) || countKnown() == 0) return;
  std::vector<TextTable::Column> columns{
      {System::tr("Point"), TextTable::Left},
      {isFree() ? System::tr("North [mm]") : System::tr("v north [mm]"), TextTable::Right},
      {isFree() ? System::tr("East [mm]") : System::tr("v east [mm]"), TextTable::Right}};
  if (isWeighted()) columns.insert(columns.end(), {{System::tr("test"), TextTable::Right}, {"", TextTable::Left}});
  TextTable table(columns);
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    PlaneNetwork::Point const& given = network.points[p];
    if (!given.isKnown) continue;
    std::vector<std::string> cells{utf8Of(given.name), millimetresText(result.points[p].x - given.x),
                                   millimetresText(result.points[p].y - given.y)};
    double const test = controlOf(p) == nullptr ? std::nan("") : controlOf(p)->test;
    if (isWeighted()) cells.insert(cells.end(), {ratioText(test), test > 1.0 ? "*" : ""});
    table.addUtf8(cells);
  }
  writeTitled(isFree()
                  ? System::tr("Known points (shifts from their given coordinates)")
                  : System::tr("Known points (v adjusted minus given, test of both coordinates: * above 1, too large)"),
              table, sink);
}

void PlaneReport::writeScatterTable(TextSink const& sink) const {
  TextTable table({{System::tr("Station"), TextTable::Left},
                   {System::tr("directions [″]"), TextTable::Right},
                   {"f", TextTable::Right},
                   {System::tr("distances [mm]"), TextTable::Right},
                   {"f", TextTable::Right}});
  PlaneNetwork::SetUp::Scatter directions;
  PlaneNetwork::SetUp::Scatter distances;
  int rows = 0;
  // Of all set-ups together: squares weighted by their redundancies.
  auto const join = [](PlaneNetwork::SetUp::Scatter& sum, PlaneNetwork::SetUp::Scatter const& one) {
    if (one.redundancy == 0) return;
    double const before = sum.redundancy == 0 ? 0.0 : sum.error * sum.error * sum.redundancy;
    sum.redundancy += one.redundancy;
    sum.error = std::sqrt((before + one.error * one.error * one.redundancy) / sum.redundancy);
  };
  auto const add = [&table](std::string const& name, PlaneNetwork::SetUp::Scatter const& a,
                            PlaneNetwork::SetUp::Scatter const& b) {
    table.addUtf8({name, secondsText(secondsOfRadians(a.error)), std::to_string(a.redundancy), millimetresText(b.error),
                   std::to_string(b.redundancy)});
  };
  for (Circle const& circle : circles) {
    PlaneNetwork::SetUp const& setUp = network.setUps[circle.setUp];
    if (setUp.directions.redundancy + setUp.distances.redundancy == 0) continue;
    add(stationText(circle), setUp.directions, setUp.distances);
    join(directions, setUp.directions);
    join(distances, setUp.distances);
    ++rows;
  }
  if (rows == 0) return;
  if (rows > 1) add(System::tr("together").toStdString(), directions, distances);
  writeTitled(
      System::tr(
          "Scatter between rounds (standard deviation of one round, f its redundancy; no part of the errors above)"),
      table, sink);
}

void PlaneReport::writeLeftOutTable(TextSink const& sink) const {
  if (result.leftOut.empty()) return;
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {System::tr("Too large by"), TextTable::Right},
                   {"", TextTable::Left},
                   {System::tr("Moved [mm]"), TextTable::Right}});
  for (PlaneLeftOut const& left : result.leftOut) {
    Named const observation = named(left.isDirection, left.observation);
    std::string const size = left.isDirection ? secondsText(secondsOfRadians(left.gross)) : millimetresText(left.gross);
    table.addUtf8({utf8Of(observation.from), utf8Of(observation.to), size, std::string(left.isDirection ? "\"" : "mm"),
                   millimetresText(left.largestMove)});
  }
  writeTitled(System::tr("Left out, in this order (moved: the largest change of a coordinate by it)"), table, sink);
}

}  // namespace kvn::host
