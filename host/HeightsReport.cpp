#include "HeightsReport.h"

#include "FindingsText.h"
#include "Format.h"
#include "Output.h"
#include "RecordJson.h"
#include "TextTable.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

namespace kvn::host {
namespace {

QString percent(double share) { return shortNumber(100.0 * share) + " %"; }

QString ratio(double value) { return QString::fromStdString(ratioText(value)); }

void addTest(Json::Value& json, HeightTest const& test) {
  json["redundancy"] = number(test.redundancy);
  json["standardised"] = number(test.standardised);
  json["test"] = number(test.test);
  json["detectable"] = number(test.detectable);
  json["gross"] = number(test.gross);
}

/// Of a field book many a set-up has no height difference.
std::size_t setUpsWithSights(HeightNetwork const& network) {
  std::unordered_set<int> setUps;
  for (HeightNetwork::Sight const& sight : network.sights) setUps.insert(sight.setUp);
  return setUps.size();
}

}  // namespace

HeightsReport::HeightsReport(QString path, Job const& finishedJob, std::vector<FieldFinding> const& runFindings)
    : file(std::move(path)),
      job(finishedJob),
      findings(runFindings),
      network(finishedJob.heightAdjustment()->network()),
      result(finishedJob.heightAdjustment()->result()) {}

std::string const& HeightsReport::stationOf(int setUp) const {
  return nameOf(static_cast<std::size_t>(network.setUps[static_cast<std::size_t>(setUp)].station));
}

QString HeightsReport::text() const {
  return headText() + findingsText(findings) + pointsText() + sightsText() + sharedText() + loopsText();
}

QString HeightsReport::unitErrorText() const {
  if (!result.hasRedundancy) return System::tr("- (nothing is redundant)");
  QString const told = System::tr("%1, expected between %2 and %3 at %4")
                           .arg(ratio(result.unitError), ratio(result.lowerBound), ratio(result.upperBound),
                                percent(job.planeOptions().confidence));
  return result.isPassed ? told : System::tr("%1: fails").arg(told);
}

QString HeightsReport::headText() const {
  Configure const& configure = job.project()->getConfigure();
  HeightOptions const& options = job.heightOptions();
  auto const known = std::count_if(network.points.begin(), network.points.end(),
                                   [](HeightNetwork::Point const& point) { return point.isKnown; });
  QString const errors =
      System::tr("zenith angle %1″, distance %2 mm + %3 ppm, instrument and target %4 mm")
          .arg(shortNumber(options.zenithError.value_or(double(configure.AngleError))),
               shortNumber(double(configure.LineFixedError)), shortNumber(double(configure.LineProportionError)),
               shortNumber(1000.0 * options.heightError));
  QString const refraction =
      QString::fromUtf8("%1 ± %2").arg(shortNumber(options.refraction.value_or(double(configure.AtmosphericIndex))),
                                       shortNumber(options.refractionError));
  return System::tr("Trigonometric heights of %1").arg(printable(file)) + "\n\n" +
         labelled({
             {System::tr("Points"), System::tr("%1, %2 of them known").arg(network.points.size()).arg(known)},
             {System::tr("Sights"),
              System::tr("%1 from %2")
                  .arg(network.sights.size())
                  .arg(counted(setUpsWithSights(network), System::tr("%1 set-up"), System::tr("%1 set-ups")))},
             {System::tr("A-priori errors"), errors},
             {System::tr("Refraction"), refraction},
             {System::tr("Redundancy"), QString::number(result.redundancy)},
             {System::tr("Unit weight error"), unitErrorText()},
         });
}

QString HeightsReport::pointsText() const {
  TextTable table({{System::tr("Point"), TextTable::Left},
                   {System::tr("Height [m]"), TextTable::Right},
                   {"m [mm]", TextTable::Right},
                   {"", TextTable::Left}});
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    HeightPoint const& point = result.points[p];
    bool const isKnown = network.points[p].isKnown;
    table.add({textOf(nameOf(p)), metres(point.height), isKnown ? System::tr("known") : millimetres(point.error),
               point.isChecked ? QString() : System::tr("unchecked")});
  }
  return titled(System::tr("Points"), table);
}

QString HeightsReport::sightsText() const {
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {System::tr("Distance [m]"), TextTable::Right},
                   {System::tr("Difference [m]"), TextTable::Right},
                   {QString::fromUtf8("σ [mm]"), TextTable::Right},
                   {"v [mm]", TextTable::Right},
                   {"r", TextTable::Right},
                   {"w", TextTable::Right},
                   {"", TextTable::Left}});
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    HeightNetwork::Sight const& sight = network.sights[s];
    HeightObservation const& adjusted = result.sights[s];
    table.add({textOf(stationOf(sight.setUp)), textOf(nameOf(static_cast<std::size_t>(sight.target))),
               metres(sight.distance), metres(sight.difference), millimetres(sight.error),
               millimetres(adjusted.residual), ratio(adjusted.redundancy), ratio(adjusted.standardised),
               adjusted.test > 1.0 ? QString("*") : QString()});
  }
  return titled(System::tr("Sights (σ a-priori error, v residual, r redundancy, w standardised residual, * too large)"),
                table);
}

/// Only what is too large: there is one of each set-up and each target.
QString HeightsReport::sharedText() const {
  TextTable table({{"", TextTable::Left},
                   {System::tr("Point"), TextTable::Left},
                   {System::tr("Height [m]"), TextTable::Right},
                   {System::tr("Sights"), TextTable::Right},
                   {"w", TextTable::Right},
                   {System::tr("Too large by [mm]"), TextTable::Right}});
  bool isEmpty = true;
  for (SharedHeight const& shared : result.shared) {
    if (!(shared.test > 1.0)) continue;
    isEmpty = false;
    QString const name =
        textOf(shared.isInstrument ? stationOf(static_cast<int>(shared.setUp)) : nameOf(shared.target));
    table.add({shared.isInstrument ? System::tr("instrument") : System::tr("target"), name, metres(shared.height),
               QString::number(shared.sights), ratio(shared.standardised), millimetres(shared.gross)});
  }
  return isEmpty ? QString() : titled(System::tr("Heights of instruments and targets that do not fit"), table);
}

QString HeightsReport::loopName(HeightLoop const& loop) const {
  constexpr std::size_t kMostNames = 12;
  QStringList names;
  for (std::size_t const point : loop.points) {
    if (static_cast<std::size_t>(names.size()) == kMostNames) break;
    names << textOf(nameOf(point));
  }
  if (loop.points.size() > kMostNames) names << System::tr("... (%1 points)").arg(loop.points.size());
  return names.join(" - ");
}

QString HeightsReport::loopsText() const {
  if (result.loops.empty()) return {};
  TextTable table({{System::tr("Loop"), TextTable::Left},
                   {System::tr("Misclosure [mm]"), TextTable::Right},
                   {System::tr("Allowed [mm]"), TextTable::Right}});
  for (HeightLoop const& loop : result.loops) {
    table.add({loopName(loop), millimetres(loop.misclosure), millimetres(loop.allowed)});
  }
  return titled(System::tr("Loops that do not close (allowed: 99 %)"), table);
}

Json::Value HeightsReport::globalTestJson() const {
  Json::Value json;
  json["lower"] = number(result.lowerBound);
  json["upper"] = number(result.upperBound);
  json["value"] = number(result.unitError);
  json["passed"] = result.hasRedundancy ? Json::Value(result.isPassed) : Json::Value();
  return json;
}

Json::Value HeightsReport::pointsJson() const {
  Json::Value list(Json::arrayValue);
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    HeightPoint const& point = result.points[p];
    Json::Value entry;
    entry["name"] = jsonText(nameOf(p));
    entry["height"] = number(point.height);
    entry["heightError"] = number(point.error);
    entry["approximate"] = number(point.approximate);
    entry["known"] = network.points[p].isKnown;
    entry["checked"] = point.isChecked;
    if (network.points[p].isKnown) entry["test"] = number(result.known[p].test);
    list.append(entry);
  }
  return list;
}

Json::Value HeightsReport::linesJson() const {
  Json::Value list(Json::arrayValue);
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    HeightNetwork::Sight const& sight = network.sights[s];
    HeightObservation const& adjusted = result.sights[s];
    Json::Value entry;
    entry["from"] = jsonText(stationOf(sight.setUp));
    entry["to"] = jsonText(nameOf(static_cast<std::size_t>(sight.target)));
    entry["setUp"] = sight.setUp + 1;
    entry["difference"] = number(sight.difference);
    entry["horizontalDistance"] = number(sight.distance);
    entry["error"] = number(sight.error);
    entry["residual"] = number(adjusted.residual);
    entry["effect"] = number(adjusted.effect);
    addTest(entry, adjusted);
    entry["line"] = sight.origin.line > 0 ? Json::Value(sight.origin.line) : Json::Value();
    list.append(entry);
  }
  return list;
}

Json::Value HeightsReport::sharedJson() const {
  Json::Value list(Json::arrayValue);
  for (SharedHeight const& shared : result.shared) {
    Json::Value entry;
    entry["kind"] = shared.isInstrument ? "instrument" : "target";
    entry["point"] = jsonText(shared.isInstrument ? stationOf(static_cast<int>(shared.setUp)) : nameOf(shared.target));
    entry["setUp"] = shared.isInstrument ? Json::Value(static_cast<int>(shared.setUp) + 1) : Json::Value();
    entry["height"] = number(shared.height);
    entry["sights"] = static_cast<int>(shared.sights);
    addTest(entry, shared);
    list.append(entry);
  }
  return list;
}

Json::Value HeightsReport::loopsJson() const {
  Json::Value list(Json::arrayValue);
  for (HeightLoop const& loop : result.loops) {
    Json::Value entry;
    Json::Value& names = entry["names"] = Json::Value(Json::arrayValue);
    for (std::size_t const point : loop.points) names.append(jsonText(nameOf(point)));
    entry["misclosure"] = number(loop.misclosure);
    entry["allowed"] = number(loop.allowed);
    list.append(entry);
  }
  return list;
}

Json::Value HeightsReport::json() const {
  Json::Value json;
  json["points"] = pointsJson();
  json["lines"] = linesJson();
  json["sharedHeights"] = sharedJson();
  json["loops"] = loopsJson();
  json["unitError"] = number(result.unitError);
  json["redundancy"] = result.redundancy;
  json["globalTest"] = globalTestJson();
  HeightOptions const& options = job.heightOptions();
  json["refraction"] = number(options.refraction.value_or(double(job.project()->getConfigure().AtmosphericIndex)));
  json["findings"] = toJson(findings);
  json["version"] = kJsonVersion;
  return json;
}

}  // namespace kvn::host
