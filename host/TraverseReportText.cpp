#include "Format.h"
#include "Output.h"
#include "TextTable.h"
#include "TraverseReport.h"

#include <cmath>

namespace kvn::host {
namespace {

constexpr char const* kTitles[] = {"", QT_TRANSLATE_NOOP("kvn::System", "Open traverse of %1"),
                                   QT_TRANSLATE_NOOP("kvn::System", "Connecting traverse of %1"),
                                   QT_TRANSLATE_NOOP("kvn::System", "Closed traverse of %1")};  // by AdjustMethod

double secondsOf(double radians) { return radians * 180.0 / CommonFunction::m_PI * 3600.0; }

QString inSeconds(double radians) { return seconds(secondsOf(radians)) + QString::fromUtf8("″"); }

}  // namespace

QString TraverseReport::tablesText() const {
  return stationsText() + misclosureText() + sidePointsText() + checksText();
}

/// A closing error over the sum of the legs; one that is smaller than anything measures has no figure.
QString oneTo(double relative) {
  constexpr double kFinest = 1e-6;
  if (!(relative > 0.0)) return "-";
  return relative < kFinest ? QString("1 : >1000000") : QString("1 : %1").arg(1.0 / relative, 0, 'f', 0);
}

QString TraverseReport::headText() const {
  std::size_t const legs = closes() ? stations.size() - 1 : stations.size();
  std::vector<std::pair<QString, QString>> lines{
      {System::tr("Stations"), QString::number(stations.size())},
      {System::tr("Legs"), QString("%1, %2 m").arg(legs).arg(metres(sumOfLegs()))}};
  if (heights.exist()) lines.push_back({System::tr("Unit weight error of heights"), heights.unitErrorText()});
  return System::tr(kTitles[result.method]).arg(printable(file)) + "\n\n" + labelled(lines);
}

/// An open traverse has no columns for corrections.
QStringList TraverseReport::row(QString const& name, QStringList const& observed, QStringList const& leg,
                                PointInfo const& at) const {
  QStringList cells{name};
  cells << observed << leg << metres(at.x) << metres(at.y);
  for (int const correction : {8, 7, 2}) {
    if (!closes()) cells.removeAt(correction);
  }
  if (!result.pointErrors.empty()) cells << errorCells(at.name);
  if (heights.exist()) cells << heights.cells(at.name);
  return cells;
}

/// Empty of known points.
QStringList TraverseReport::errorCells(std::string const& name) const {
  if (knownNames.count(name) != 0) return {"", "", ""};
  TraversePointError const error = errorOf(name);
  return {millimetres(error.mx), millimetres(error.my), millimetres(error.mp)};
}

void TraverseReport::addHeightColumns(std::vector<TextTable::Column>& columns) const {
  if (!heights.exist()) return;
  columns.push_back({System::tr("Height [m]"), TextTable::Right});
  columns.push_back({"mh [mm]", TextTable::Right});
}

QStringList TraverseReport::observedCells(std::size_t i) const {
  TraverseInfo const& station = stations[i];
  return {angleOfRadians(station.angle), seconds(secondsOf(station.adjustedAngle - station.angle)),
          azimuthOfRadians(summary.azimuths[i + 1])};
}

QStringList TraverseReport::legCells(std::size_t i) const {
  TraverseInfo const& station = stations[i];
  if (!isLeg(i)) return {"", "", "", "", ""};
  return {metres(station.distance), metres(station.deltaX), metres(station.deltaY),
          millimetres(station.adjustedDeltaX - station.deltaX), millimetres(station.adjustedDeltaY - station.deltaY)};
}

QString TraverseReport::stationsText() const {
  std::vector<TextTable::Column> columns{{System::tr("Point"), TextTable::Left}};
  auto const add = [&columns](QString const& head) { columns.push_back({head, TextTable::Right}); };
  add(System::tr("Angle"));
  if (closes()) add(QString::fromUtf8("v [″]"));
  for (QString const& head :
       {System::tr("Azimuth"), System::tr("Distance [m]"), QString("dx [m]"), QString("dy [m]")}) {
    add(head);
  }
  for (char const* head : {"vx [mm]", "vy [mm]"}) {
    if (closes()) add(head);
  }
  add(System::tr("North x [m]"));
  add(System::tr("East y [m]"));
  for (char const* head : {"mx [mm]", "my [mm]", "mp [mm]"}) {
    if (!result.pointErrors.empty()) add(head);
  }
  addHeightColumns(columns);
  TextTable table(std::move(columns));
  QStringList const noLeg{"", "", "", "", ""};
  PointInfo const& back = stations.front().backPoint;
  PointInfo const& fore = stations.back().forePoints.front();
  table.add(row(textOf(back.name), {"", "", azimuthOfRadians(summary.azimuths.front())}, noLeg, back));
  for (std::size_t i = 0; i < stations.size(); ++i) {
    PointInfo const& at = stations[i].stationPoint;
    table.add(row(textOf(at.name), observedCells(i), legCells(i), at));
  }
  // A check shot to where the chain begins has its point above.
  if (!result.endsOnOwnPoint()) table.add(row(textOf(fore.name), {"", "", ""}, noLeg, fore));
  return titled(closes() ? System::tr("Traverse (v correction; azimuth and leg to the next point)")
                         : System::tr("Traverse (azimuth and leg to the next point)"),
                table);
}

QString TraverseReport::misclosureText() const {
  if (!summary.hasMisclosure) return {};
  QString const angles = closes() ? System::tr("%1, each angle corrected by %2")
                                        .arg(inSeconds(angularMisclosure()), inSeconds(summary.angleCorrection))
                                  : QString("-");
  TraverseInfo const& last = stations.back();
  std::vector<std::pair<QString, QString>> lines;
  if (!closes()) {
    lines.push_back({System::tr("Check shot"),
                     System::tr("%1 to %2").arg(textOf(last.stationPoint.name), textOf(last.forePoints.front().name))});
  }
  std::vector<std::pair<QString, QString>> const figures{
      {System::tr("Angles"), angles},
      {"fx", metres(summary.fx) + " m"},
      {"fy", metres(summary.fy) + " m"},
      {"fs", millimetres(summary.fs) + " mm"},
      {System::tr("Sum of legs"), metres(summary.sumDistance) + " m"},
      {System::tr("Relative"), oneTo(summary.relativeError)}};
  lines.insert(lines.end(), figures.begin(), figures.end());
  return "\n" + System::tr("Misclosures") + "\n" + labelled(lines) + allowedText();
}

/// In 99 of 100 faultless traverses a misclosure is smaller than what is allowed.
QString TraverseReport::allowedText() const {
  if (!result.judgement) return {};
  TraverseJudgement const& judged = *result.judgement;
  TextTable table({{System::tr("Misclosure"), TextTable::Left},
                   {System::tr("has"), TextTable::Right},
                   {System::tr("allowed"), TextTable::Right},
                   {"", TextTable::Left}});
  auto const add = [&table](QString const& what, double size, double allowed, QString const& has, QString const& may) {
    if (std::isnan(size)) return;
    table.add({what, has, may, std::abs(size) > allowed ? System::tr("beyond") : QString()});
  };
  auto const addLength = [&add](QString const& what, double size, double allowed) {
    add(what, size, allowed, millimetres(size), millimetres(allowed));
  };
  QString const has = seconds(secondsOf(judged.angle));
  add(System::tr("angles [″]"), judged.angle, judged.angleAllowed, has, seconds(secondsOf(judged.angleAllowed)));
  addLength(System::tr("along [mm]"), judged.along, judged.alongAllowed);
  addLength(System::tr("across [mm]"), judged.across, judged.acrossAllowed);
  if (judged.isLoop()) addLength("fs [mm]", judged.fs, judged.fsAllowed);
  if (limits.allowedAngle > 0.0) {
    double const limit = angleLimit();
    add(System::tr("angles [″], limit"), judged.angle, limit, has, seconds(secondsOf(limit)));
  }
  if (limits.allowedRelative > 0.0) {
    add(System::tr("relative, limit"), judged.relative, 1.0 / limits.allowedRelative, oneTo(judged.relative),
        oneTo(1.0 / limits.allowedRelative));
  }
  return titled(System::tr("Misclosures and what the a-priori errors allow (99 %)"), table);
}

QString TraverseReport::sidePointsText() const {
  if (result.sidePoints.empty()) return {};
  std::vector<TextTable::Column> columns{{System::tr("Point"), TextTable::Left}, {System::tr("From"), TextTable::Left}};
  for (QString const& head : {System::tr("Azimuth"), System::tr("Distance [m]"), System::tr("North x [m]"),
                              System::tr("East y [m]"), QString("mx [mm]"), QString("my [mm]"), QString("mp [mm]")}) {
    columns.push_back({head, TextTable::Right});
  }
  addHeightColumns(columns);
  columns.push_back({"", TextTable::Left});
  TextTable table(std::move(columns));
  for (TraverseSidePoint const& side : result.sidePoints) {
    QStringList cells{textOf(side.point.name), textOf(side.station), azimuthOfRadians(side.azimuth),
                      metres(side.distance),   metres(side.point.x), metres(side.point.y),
                      millimetres(side.mx),    millimetres(side.my), millimetres(side.mp)};
    if (heights.exist()) cells << heights.cells(side.point.name);
    if (side.isKnown)
      cells << System::tr("known, off by %1 mm").arg(millimetres(std::hypot(side.offNorth, side.offEast)));
    table.add(cells);
  }
  return titled(System::tr("Side shots (nothing checks them, unless known; errors by the a-priori errors)"), table);
}

QString TraverseReport::checksText() const {
  if (result.checks.empty()) return {};
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {"", TextTable::Left},
                   {System::tr("off by"), TextTable::Right},
                   {System::tr("allowed"), TextTable::Right},
                   {"", TextTable::Left}});
  for (TraverseCheck const& check : result.checks) {
    bool const isDistance = check.kind == TraverseCheck::Distance;
    auto const figure = [isDistance](double value) {
      if (std::isnan(value)) return QString("-");
      return isDistance ? millimetres(value) + " mm" : inSeconds(value);
    };
    table.add({textOf(check.station), textOf(check.target),
               isDistance ? System::tr("distance") : System::tr("direction"), figure(check.off), figure(check.allowed),
               check.isBeyond() ? System::tr("beyond") : QString()});
  }
  return titled(System::tr("Sights to known points beside the chain"), table);
}

}  // namespace kvn::host
