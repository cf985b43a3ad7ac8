#include "LiteralHeightsReport.h"

#include "Format.h"
#include "Output.h"
#include "TextTable.h"

#include <cmath>
#include <utility>

namespace kvn::host {
namespace {

// The weight of a line is 1 / length in metres, so that its standard error grows with the root of the length.
double const kRootOfKilometre = std::sqrt(1000.0);

}  // namespace

LiteralHeightsReport::LiteralHeightsReport(QString path, double refractionCoefficient,
                                           TriangleHeightDataConvert const& observations,
                                           TriangleHeightAdjust const& adjustment)
    : file(std::move(path)), refraction(refractionCoefficient), input(observations), result(adjustment) {}

QString LiteralHeightsReport::text() const { return headText() + pointsText() + linesText(); }

QString LiteralHeightsReport::headText() const {
  QString const unitError =
      result.getRedundancy() > 0
          ? System::tr("%1 mm for a line of 1 km").arg(millimetres(result.getUnitError() * kRootOfKilometre))
          : System::tr("- (nothing is redundant, so there are no errors)");
  return System::tr("Trigonometric heights of %1").arg(printable(file)) + "\n\n" +
         labelled({
             {System::tr("Points"),
              System::tr("%1, %2 of them known").arg(input.getPnumber()).arg(input.getKnPnumber())},
             {System::tr("Lines"), QString::number(input.getLnumber())},
             {System::tr("Refraction"), shortNumber(refraction)},
             {System::tr("Redundancy"), QString::number(result.getRedundancy())},
             {System::tr("Unit weight error"), unitError},
         });
}

QString LiteralHeightsReport::pointsText() const {
  TextTable table({{System::tr("Point"), TextTable::Left},
                   {System::tr("Height [m]"), TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  int number = 0;  // known points come first
  for (TriangleHeightPointInfo const& point : result.getTriangleHeightPointInfo()) {
    bool const isKnown = number++ < input.getKnPnumber();
    table.add(
        {textOf(point.name), metres(point.height), isKnown ? System::tr("known") : millimetres(point.heightError)});
  }
  return titled(System::tr("Points"), table);
}

QString LiteralHeightsReport::linesText() const {
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {System::tr("Distance [m]"), TextTable::Right},
                   {System::tr("Difference [m]"), TextTable::Right},
                   {"v [mm]", TextTable::Right}});
  std::size_t number = 0;
  for (TriangleViewData const& line : input.getTraingleViewData()) {
    table.add({textOf(line.start_name), textOf(line.end_name), metres(line.horizontalDistance),
               metres(line.heightDifference), millimetres(result.getResiduals()[number++])});
  }
  return titled(System::tr("Lines (v residual)"), table);
}

Json::Value LiteralHeightsReport::json() const {
  Json::Value json;
  json["version"] = kJsonVersion;
  Json::Value& points = json["points"] = Json::Value(Json::arrayValue);
  auto const approximate = result.getTriangleHeightPointInfoH0();
  for (TriangleHeightPointInfo const& point : result.getTriangleHeightPointInfo()) {
    Json::Value entry;
    entry["name"] = jsonText(point.name);
    entry["height"] = number(point.height);
    entry["heightError"] = number(point.heightError);
    entry["approximate"] = number(approximate[points.size()].height);
    points.append(entry);
  }
  Json::Value& lines = json["lines"] = Json::Value(Json::arrayValue);
  for (TriangleViewData const& line : input.getTraingleViewData()) {
    Json::Value entry;
    entry["from"] = jsonText(line.start_name);
    entry["to"] = jsonText(line.end_name);
    entry["difference"] = number(line.heightDifference);
    entry["horizontalDistance"] = number(line.horizontalDistance);
    lines.append(entry);
  }
  return json;
}

}  // namespace kvn::host
