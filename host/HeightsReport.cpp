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

void HeightsReport::writeText(TextSink const& sink) const {
  sink(headText().toStdString());
  sink(findingsText(findings).toStdString());
  writePointTable(sink);
  writeSightTable(sink);
  writeSharedTable(sink);
  sink(loopsText().toStdString());
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

void HeightsReport::writePointTable(TextSink const& sink) const {
  TextTable table({{System::tr("Point"), TextTable::Left},
                   {System::tr("Height [m]"), TextTable::Right},
                   {"m [mm]", TextTable::Right},
                   {"", TextTable::Left}});
  std::string const known = System::tr("known").toStdString();
  std::string const unchecked = System::tr("unchecked").toStdString();
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    HeightPoint const& point = result.points[p];
    table.addUtf8({utf8Of(nameOf(p)), metresText(point.height),
                   network.points[p].isKnown ? known : millimetresText(point.error),
                   point.isChecked ? std::string() : unchecked});
  }
  writeTitled(System::tr("Points"), table, sink);
}

void HeightsReport::writeSightTable(TextSink const& sink) const {
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
    table.addUtf8({utf8Of(stationOf(sight.setUp)), utf8Of(nameOf(static_cast<std::size_t>(sight.target))),
                   metresText(sight.distance), metresText(sight.difference), millimetresText(sight.error),
                   millimetresText(adjusted.residual), ratioText(adjusted.redundancy), ratioText(adjusted.standardised),
                   adjusted.test > 1.0 ? "*" : ""});
  }
  writeTitled(System::tr("Sights (σ a-priori error, v residual, r redundancy, w standardised residual, * too large)"),
              table, sink);
}

/// Only what is too large: there is one of each set-up and each target.
void HeightsReport::writeSharedTable(TextSink const& sink) const {
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
  if (!isEmpty) writeTitled(System::tr("Heights of instruments and targets that do not fit"), table, sink);
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

void HeightsReport::writePoints(JsonStream& json) const {
  json.member("points").beginArray();
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    HeightPoint const& point = result.points[p];
    json.beginObject();
    json.member("approximate").number(point.approximate);
    json.member("checked").truth(point.isChecked);
    json.member("height").number(point.height);
    json.member("heightError").number(point.error);
    json.member("known").truth(network.points[p].isKnown);
    json.member("name").text(nameOf(p));
    if (network.points[p].isKnown) json.member("test").number(result.known[p].test);
    json.endObject();
  }
  json.endArray();
}

void HeightsReport::writeLines(JsonStream& json) const {
  json.member("lines").beginArray();
  for (std::size_t s = 0; s < network.sights.size(); ++s) {
    HeightNetwork::Sight const& sight = network.sights[s];
    HeightObservation const& adjusted = result.sights[s];
    json.beginObject();
    json.member("detectable").number(adjusted.detectable);
    json.member("difference").number(sight.difference);
    json.member("effect").number(adjusted.effect);
    json.member("error").number(sight.error);
    json.member("from").text(stationOf(sight.setUp));
    json.member("gross").number(adjusted.gross);
    json.member("horizontalDistance").number(sight.distance);
    json.member("line").place(sight.origin.line);
    json.member("redundancy").number(adjusted.redundancy);
    json.member("residual").number(adjusted.residual);
    json.member("setUp").number(sight.setUp + 1);
    json.member("standardised").number(adjusted.standardised);
    json.member("test").number(adjusted.test);
    json.member("to").text(nameOf(static_cast<std::size_t>(sight.target)));
    json.endObject();
  }
  json.endArray();
}

void HeightsReport::writeShared(JsonStream& json) const {
  json.member("sharedHeights").beginArray();
  for (SharedHeight const& shared : result.shared) {
    auto const setUp = static_cast<int>(shared.setUp);
    json.beginObject();
    json.member("detectable").number(shared.detectable);
    json.member("gross").number(shared.gross);
    json.member("height").number(shared.height);
    json.member("kind").text(shared.isInstrument ? "instrument" : "target");
    json.member("point").text(shared.isInstrument ? stationOf(setUp) : nameOf(shared.target));
    json.member("redundancy").number(shared.redundancy);
    json.member("setUp").place(shared.isInstrument ? setUp + 1 : 0);
    json.member("sights").number(static_cast<int>(shared.sights));
    json.member("standardised").number(shared.standardised);
    json.member("test").number(shared.test);
    json.endObject();
  }
  json.endArray();
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

/// Of a large network with a few known points there is one for nearly every point: nothing checks it.
void HeightsReport::writeFindings(JsonStream& json) const {
  json.member("findings").beginArray();
  for (FieldFinding const& finding : findings) write(finding, json);
  json.endArray();
}

// Members in the order of their names, as every other JSON of the program has them.
void HeightsReport::writeJson(Json::Value const& messages, TextSink const& sink) const {
  HeightOptions const& options = job.heightOptions();
  JsonStream json(sink, JsonStream::Seventeen);
  json.beginObject();
  writeFindings(json);
  json.member("globalTest").value(globalTestJson());
  writeLines(json);
  json.member("loops").value(loopsJson());
  json.member("messages").value(messages);
  writePoints(json);
  json.member("redundancy").number(result.redundancy);
  json.member("refraction").number(options.refraction.value_or(double(job.project()->getConfigure().AtmosphericIndex)));
  writeShared(json);
  json.member("unitError").number(result.unitError);
  json.member("version").number(kJsonVersion);
  json.endObject();
}

}  // namespace kvn::host
