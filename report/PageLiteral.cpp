// The observations of a run to the letter of the formats: residuals, and what the lines came to.
#include "adjust/AlgorithmAdjust.h"
#include "core/Project.h"
#include "job/Job.h"
#include "records/detail/Messages.h"
#include "report/detail/PageNumbers.h"
#include "report/detail/PageTable.h"
#include "report/detail/ReportParts.h"

#include <utils/Circle.h>

#include <cmath>
#include <string>

namespace kvn::detail {
namespace {

double radiansOfSeconds(double seconds) { return seconds / utils::kSecondsPerRadian; }

/// @param dms  DDDMMSS.ss
double radiansOfDms(double dms) {
  double const size = std::abs(dms);
  double const degrees = std::trunc(size / 10000.0);
  double const minutes = std::trunc((size - degrees * 10000.0) / 100.0);
  double const rest = size - degrees * 10000.0 - minutes * 100.0;
  return std::copysign(radiansOfSeconds((degrees * 60.0 + minutes) * 60.0 + rest), dms);
}

std::string existing(std::vector<double> const& values, std::size_t i, std::string (*text)(double)) {
  return text(i < values.size() ? values[i] : std::nan(""));
}

std::string secondsOf(double seconds) { return decimals(seconds, 1); }

PageColumn numbers(QString const& head, QString const& unit, std::size_t width) {
  return {head, unit, PageColumn::Number, width};
}

void writeLiteralDirections(PageWriter& page, ReportParts const& parts) {
  std::vector<DirectionResult> const& stations = parts.literal->getDirectionResultList();
  if (parts.literalDirections.empty()) return;
  beginSection(page, "directions", Messages::tr("Directions"));
  tellLeftOut(page, parts.directions);
  PageTable table(page, "directions",
                  {{Messages::tr("Station"), {}, PageColumn::Name, nameWidth(parts)},
                   {Messages::tr("Target"), {}, PageColumn::Name, nameWidth(parts)},
                   numbers(Messages::tr("Observed"), {}, 14),
                   numbers("v", "″", 7),
                   numbers(Messages::tr("Azimuth"), {}, 14),
                   numbers("m", "″", 7),
                   numbers(Messages::tr("Distance"), "m", 11),
                   numbers("m", "mm", 7)},
                  parts.directions.rows().size());
  auto const& errors = parts.literal->getSummary().directionDistanceErrors;
  for (std::size_t const d : parts.directions.rows()) {
    auto const [s, t] = parts.literalDirections[d];
    DirectionResult const& station = stations[s];
    table.beginRow("id=\"rd" + std::to_string(d) + '"');
    table.name(utf8Of(station.stationName)).name(utf8Of(station.targetNames[t]));
    table.number(azimuth(radiansOfDms(station.observedDirections[t]))).number(secondsOf(station.residuals[t]));
    table.number(azimuth(radiansOfDms(station.adjustedAzimuths[t])));
    table.number(existing(station.azimuthErrors, t, secondsOf)).number(metres(station.distances[t]));
    table.number(existing(s < errors.size() ? errors[s] : std::vector<double>(), t, millimetres)).endRow();
  }
  table.end();
  endSection(page);
}

void writeLiteralDistances(PageWriter& page, ReportParts const& parts) {
  std::vector<LineErrorInfo> const& lines = parts.literal->getLineErrorInfoList();
  if (lines.empty()) return;
  beginSection(page, "distances", Messages::tr("Distances"));
  tellLeftOut(page, parts.distances);
  PageTable table(page, "distances",
                  {{Messages::tr("From"), {}, PageColumn::Name, nameWidth(parts)},
                   {Messages::tr("To"), {}, PageColumn::Name, nameWidth(parts)},
                   numbers(Messages::tr("Observed"), "m", 11),
                   numbers("v", "mm", 7),
                   numbers(Messages::tr("Adjusted"), "m", 11),
                   numbers("m", "mm", 7)},
                  parts.distances.rows().size());
  std::vector<double> const& errors = parts.literal->getSummary().distanceErrors;
  for (std::size_t const i : parts.distances.rows()) {
    LineErrorInfo const& line = lines[i];
    table.beginRow("id=\"rs" + std::to_string(i) + '"');
    table.name(utf8Of(line.start_name)).name(utf8Of(line.end_name)).number(metres(line.observedDistance));
    table.number(millimetres(line.residual)).number(metres(line.adjustedDistance));
    table.number(existing(errors, i, millimetres)).endRow();
  }
  table.end();
  endSection(page);
}

}  // namespace

void writeLiteral(PageWriter& page, ReportParts const& parts) {
  if (parts.literal == nullptr) return;
  writeLiteralDirections(page, parts);
  writeLiteralDistances(page, parts);
}

}  // namespace kvn::detail
