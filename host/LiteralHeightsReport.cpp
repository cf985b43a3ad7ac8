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

void LiteralHeightsReport::writeText(TextSink const& sink) const {
  sink(headText().toStdString());
  writePointTable(sink);
  writeLineTable(sink);
}

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

void LiteralHeightsReport::writePointTable(TextSink const& sink) const {
  TextTable table({{System::tr("Point"), TextTable::Left},
                   {System::tr("Height [m]"), TextTable::Right},
                   {"m [mm]", TextTable::Right}});
  std::string const known = System::tr("known").toStdString();
  int number = 0;  // known points come first
  for (TriangleHeightPointInfo const& point : result.getTriangleHeightPointInfo()) {
    bool const isKnown = number++ < input.getKnPnumber();
    table.addUtf8({utf8Of(point.name), metresText(point.height), isKnown ? known : millimetresText(point.heightError)});
  }
  writeTitled(System::tr("Points"), table, sink);
}

void LiteralHeightsReport::writeLineTable(TextSink const& sink) const {
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {System::tr("Distance [m]"), TextTable::Right},
                   {System::tr("Difference [m]"), TextTable::Right},
                   {"v [mm]", TextTable::Right}});
  std::size_t number = 0;
  for (TriangleViewData const& line : input.getTraingleViewData()) {
    table.addUtf8({utf8Of(line.start_name), utf8Of(line.end_name), metresText(line.horizontalDistance),
                   metresText(line.heightDifference), millimetresText(result.getResiduals()[number++])});
  }
  writeTitled(System::tr("Lines (v residual)"), table, sink);
}

void LiteralHeightsReport::writeLines(JsonStream& json) const {
  json.member("lines").beginArray();
  for (TriangleViewData const& line : input.getTraingleViewData()) {
    json.beginObject();
    json.member("difference").number(line.heightDifference);
    json.member("from").text(line.start_name);
    json.member("horizontalDistance").number(line.horizontalDistance);
    json.member("to").text(line.end_name);
    json.endObject();
  }
  json.endArray();
}

void LiteralHeightsReport::writePoints(JsonStream& json) const {
  json.member("points").beginArray();
  auto const approximate = result.getTriangleHeightPointInfoH0();
  std::size_t number = 0;
  for (TriangleHeightPointInfo const& point : result.getTriangleHeightPointInfo()) {
    json.beginObject();
    json.member("approximate").number(approximate[number++].height);
    json.member("height").number(point.height);
    json.member("heightError").number(point.heightError);
    json.member("name").text(point.name);
    json.endObject();
  }
  json.endArray();
}

// Members in the order of their names, as every other JSON of the program has them.
void LiteralHeightsReport::writeJson(Json::Value const& messages, TextSink const& sink) const {
  JsonStream json(sink, JsonStream::Seventeen);
  json.beginObject();
  writeLines(json);
  json.member("messages").value(messages);
  writePoints(json);
  json.member("version").number(kJsonVersion);
  json.endObject();
}

}  // namespace kvn::host
