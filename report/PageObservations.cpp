// Tables of what was observed: directions, distances, set-ups, and the lines as they came out.
#include "adjust/PlaneAdjustment.h"
#include "job/Job.h"
#include "records/detail/Messages.h"
#include "report/detail/PageNumbers.h"
#include "report/detail/PageTable.h"
#include "report/detail/ReportParts.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

// A shorter error is that of a line between held points: none.
constexpr double kNoError = 1e-7;

std::string attributesOf(char const* kind, std::size_t number, std::size_t line, PlaneObservation const& observation) {
  std::string text = "id=\"" + std::string(kind) + std::to_string(number) + '"';
  if (line != kNowhere) text += " data-l=\"" + std::to_string(line) + '"';
  if (observation.weight == 0.0) {
    text += " class=\"out\"";
  } else if (observation.test > 1.0 || std::isfinite(observation.gross)) {
    text += " class=\"bad\"";
  }
  return text;
}

/// A size with its unit: of a direction seconds, of a distance millimetres.
QString sizeOf(double size, bool isDirection) {
  return QString::fromStdString(isDirection ? seconds(std::abs(size)) + "″" : millimetres(std::abs(size)) + " mm");
}

QString remarkOf(PlaneObservation const& observation, bool isDirection) {
  if (observation.weight == 0.0) return Messages::tr("left out");
  QStringList remarks;
  if (observation.weight < 1.0) {
    remarks << Messages::tr("weight %1").arg(QString::fromStdString(ratio(observation.weight)));
  }
  if (std::isfinite(observation.gross)) {
    QString const text = observation.gross < 0.0 ? Messages::tr("%1 too small") : Messages::tr("%1 too large");
    remarks << text.arg(sizeOf(observation.gross, isDirection));
  }
  if (std::isnan(observation.standardised)) remarks << Messages::tr("unchecked");
  return remarks.join(", ");
}

/// The columns that directions and distances share, behind the observed value.
void addTestColumns(std::vector<PageColumn>& columns, QString const& unit, bool hasLines) {
  columns.push_back({"σ", unit, PageColumn::Number, 6, Messages::tr("a-priori standard error")});
  columns.push_back({"v", unit, PageColumn::Number, 7, Messages::tr("residual: adjusted minus observed")});
  columns.push_back({"w", {}, PageColumn::Bar, 6, Messages::tr("standardised residual")});
  columns.push_back({Messages::tr("Test"),
                     {},
                     PageColumn::Number,
                     6,
                     Messages::tr("size of w over its critical value; above 1 is too large for chance")});
  columns.push_back({"r", {}, PageColumn::Number, 5, Messages::tr("redundancy: the share of an error that shows")});
  columns.push_back({Messages::tr("Detectable"), unit, PageColumn::Number, 9,
                     Messages::tr("smallest gross error that the test finds with a power of 80 %")});
  columns.push_back({Messages::tr("Effect"), "mm", PageColumn::Number, 8,
                     Messages::tr("what a gross error of that size moves a coordinate by")});
  if (hasLines) columns.push_back({Messages::tr("Line"), {}, PageColumn::Number, 5, Messages::tr("line of the file")});
  columns.push_back({Messages::tr("Remark"), {}, PageColumn::Words, 16});
}

/// @param inUnit  of the unit of the columns: seconds of arc or millimetres.
void writeTests(PageTable& table, PlaneObservation const& observation, std::string (*inUnit)(double),
                std::optional<int> line, bool isDirection) {
  table.number(inUnit(observation.error));
  table.number(isDirection ? fineSeconds(observation.residual) : inUnit(observation.residual));
  table.bar(observation.standardised);
  table.number(ratio(observation.test)).number(ratio(observation.redundancy));
  table.number(inUnit(observation.detectable)).number(millimetres(observation.effect));
  if (line) table.number(*line > 0 ? std::to_string(*line) : std::string());
  table.words(remarkOf(observation, isDirection)).endRow();
}

template <typename List>
bool hasFileLines(List const& list) {
  return std::any_of(list.begin(), list.end(), [](auto const& observation) { return observation.origin.line > 0; });
}

QString testSentence(ReportParts const& parts) {
  double const critical = parts.plane->result().criticalValue;
  if (!std::isfinite(critical)) return {};
  return Messages::tr("v residual, w standardised residual, marked from %1 on (0.1 %), r redundancy.")
      .arg(QString::fromStdString(ratio(critical)));
}

bool hasScatter(PlaneNetwork const& network) {
  return std::any_of(network.setUps.begin(), network.setUps.end(), [](PlaneNetwork::SetUp const& setUp) {
    return setUp.directions.redundancy + setUp.distances.redundancy > 0;
  });
}

}  // namespace

void writeDirections(PageWriter& page, ReportParts const& parts) {
  if (!parts.hasPlane() || parts.plane->network().directions.empty()) return;
  PlaneNetwork const& network = parts.plane->network();
  bool const hasLines = hasFileLines(network.directions);
  std::size_t const width = nameWidth(parts);
  std::vector<PageColumn> columns{{Messages::tr("Station"), {}, PageColumn::Name, width + 4},
                                  {Messages::tr("Target"), {}, PageColumn::Name, width},
                                  {Messages::tr("Observed"), {}, PageColumn::Number, 14}};
  addTestColumns(columns, "″", hasLines);
  beginSection(page, "directions", Messages::tr("Directions"), testSentence(parts));
  tellLeftOut(page, parts.directions);
  PageTable table(page, "directions", std::move(columns), parts.directions.rows().size());
  for (std::size_t const d : parts.directions.rows()) {
    PlaneNetwork::Direction const& direction = network.directions[d];
    PlaneObservation const& observation = parts.plane->result().directions[d];
    table.beginRow(attributesOf("rd", d, parts.drawing.lineOfDirection[d], observation));
    table.name(parts.stationName(at(direction.setUp))).name(parts.pointName(direction.target));
    table.number(azimuth(direction.value));
    writeTests(table, observation, seconds, hasLines ? std::optional(direction.origin.line) : std::nullopt, true);
  }
  table.end();
  endSection(page);
}

void writeDistances(PageWriter& page, ReportParts const& parts) {
  if (!parts.hasPlane() || parts.plane->network().distances.empty()) return;
  PlaneNetwork const& network = parts.plane->network();
  bool const hasLines = hasFileLines(network.distances);
  std::size_t const width = nameWidth(parts);
  std::vector<PageColumn> columns{{Messages::tr("From"), {}, PageColumn::Name, width},
                                  {Messages::tr("To"), {}, PageColumn::Name, width},
                                  {Messages::tr("Observed"), "m", PageColumn::Number, 11}};
  addTestColumns(columns, "mm", hasLines);
  beginSection(page, "distances", Messages::tr("Distances"),
               network.directions.empty() ? testSentence(parts) : QString());
  tellLeftOut(page, parts.distances);
  PageTable table(page, "distances", std::move(columns), parts.distances.rows().size());
  for (std::size_t const d : parts.distances.rows()) {
    PlaneNetwork::Distance const& distance = network.distances[d];
    PlaneObservation const& observation = parts.plane->result().distances[d];
    table.beginRow(attributesOf("rs", d, parts.drawing.lineOfDistance[d], observation));
    table.name(parts.pointName(distance.from)).name(parts.pointName(distance.to)).number(metres(distance.value));
    writeTests(table, observation, millimetres, hasLines ? std::optional(distance.origin.line) : std::nullopt, false);
  }
  table.end();
  endSection(page);
}

void writeSetUps(PageWriter& page, ReportParts const& parts) {
  if (!parts.hasPlane() || parts.plane->network().directions.empty()) return;
  PlaneNetwork const& network = parts.plane->network();
  PlaneResult const& result = parts.plane->result();
  std::vector<std::size_t> directions(network.setUps.size(), 0);
  for (PlaneNetwork::Direction const& direction : network.directions) ++directions[at(direction.setUp)];
  std::vector<std::size_t> rows;
  for (std::size_t s = 0; s < network.setUps.size(); ++s) {
    if (directions[s] > 0) rows.push_back(s);
  }
  RowChoice const choice(rows.size(), parts.options.rowsAtMost,
                         [&](std::size_t i) { return result.orientationErrors[rows[i]]; });
  bool const isScattered = hasScatter(network);
  std::vector<PageColumn> columns{
      {Messages::tr("Station"), {}, PageColumn::Name, nameWidth(parts) + 4},
      {Messages::tr("Directions"), {}, PageColumn::Number, 9},
      {Messages::tr("Orientation"), {}, PageColumn::Number, 14, Messages::tr("azimuth of the circle's zero")},
      {"m", "″", PageColumn::Number, 7, Messages::tr("standard error of the orientation")}};
  if (isScattered) {
    QString const f = Messages::tr("redundancy of the scatter");
    columns.push_back({Messages::tr("Scatter of directions"), "″", PageColumn::Number, 10,
                       Messages::tr("standard deviation of one round")});
    columns.push_back({"f", {}, PageColumn::Number, 4, f});
    columns.push_back({Messages::tr("Scatter of distances"), "mm", PageColumn::Number, 10,
                       Messages::tr("standard deviation of one round")});
    columns.push_back({"f", {}, PageColumn::Number, 4, f});
  }
  beginSection(page, "setups", Messages::tr("Set-ups"));
  tellLeftOut(page, choice);
  PageTable table(page, "setups", std::move(columns), choice.rows().size());
  for (std::size_t const i : choice.rows()) {
    std::size_t const s = rows[i];
    PlaneNetwork::SetUp const& setUp = network.setUps[s];
    table.beginRow("data-p=\"" + std::to_string(setUp.station) + '"');
    table.name(parts.stationName(s)).number(std::to_string(directions[s]));
    table.number(azimuth(result.orientations[s])).number(seconds(result.orientationErrors[s]));
    if (isScattered) {
      auto const redundancy = [](int f) { return f == 0 ? std::string() : std::to_string(f); };
      table.number(setUp.directions.redundancy == 0 ? std::string() : seconds(setUp.directions.error));
      table.number(redundancy(setUp.directions.redundancy));
      table.number(setUp.distances.redundancy == 0 ? std::string() : millimetres(setUp.distances.error));
      table.number(redundancy(setUp.distances.redundancy));
    }
    table.endRow();
  }
  table.end();
  endSection(page);
}

/// Each pair of points once, by the first of its observations.
void writeLines(PageWriter& page, ReportParts const& parts) {
  if (!parts.hasPlane()) return;
  PlaneResult const& result = parts.plane->result();
  SiteDrawing const& drawing = parts.drawing;
  struct Line {
    std::size_t number;
    int from;
    int to;
    PlaneObservation const* observation;
  };
  std::vector<Line> lines;
  std::vector<bool> isTaken(drawing.lines.size(), false);
  auto const take = [&](std::size_t line, int from, int to, PlaneObservation const& observation) {
    if (line == kNowhere || isTaken[line]) return;
    isTaken[line] = true;
    lines.push_back({line, from, to, &observation});
  };
  PlaneNetwork const& network = parts.plane->network();
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    PlaneNetwork::Direction const& direction = network.directions[d];
    take(drawing.lineOfDirection[d], network.setUps[at(direction.setUp)].station, direction.target,
         result.directions[d]);
  }
  for (std::size_t d = 0; d < network.distances.size(); ++d) {
    take(drawing.lineOfDistance[d], network.distances[d].from, network.distances[d].to, result.distances[d]);
  }
  if (lines.empty()) return;
  RowChoice const choice(lines.size(), parts.options.rowsAtMost,
                         [&lines](std::size_t i) { return lines[i].observation->lengthError; });
  beginSection(page, "lines", Messages::tr("Lines after adjustment"));
  tellLeftOut(page, choice);
  std::size_t const width = nameWidth(parts);
  PageTable table(page, "lines",
                  {{Messages::tr("From"), {}, PageColumn::Name, width},
                   {Messages::tr("To"), {}, PageColumn::Name, width},
                   {Messages::tr("Azimuth"), {}, PageColumn::Number, 14},
                   {"m", "″", PageColumn::Number, 7, Messages::tr("standard error of the azimuth")},
                   {Messages::tr("Distance"), "m", PageColumn::Number, 11},
                   {"m", "mm", PageColumn::Number, 7, Messages::tr("standard error of the distance")},
                   {Messages::tr("Relative"), {}, PageColumn::Number, 12}},
                  choice.rows().size());
  for (std::size_t const i : choice.rows()) {
    Line const& line = lines[i];
    PlaneObservation const& adjusted = *line.observation;
    table.beginRow("data-l=\"" + std::to_string(line.number) + '"');
    table.name(parts.pointName(line.from)).name(parts.pointName(line.to)).number(azimuth(adjusted.azimuth));
    table.number(seconds(adjusted.azimuthError)).number(metres(adjusted.length));
    table.number(millimetres(adjusted.lengthError))
        .number(oneTo(adjusted.lengthError > kNoError ? adjusted.lengthError / adjusted.length : 0.0))
        .endRow();
  }
  table.end();
  endSection(page);
}

}  // namespace kvn::detail
