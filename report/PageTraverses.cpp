// Single traverses: their chains, misclosures and side shots.
#include "adjust/TraverseResult.h"
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

class TraverseWriter {
 public:
  TraverseWriter(PageWriter& writer, ReportParts const& reportParts, std::size_t traverseNumber)
      : page(writer),
        parts(reportParts),
        number(traverseNumber),
        result(reportParts.traverses[traverseNumber]),
        isClosing(result.summary.hasMisclosure && result.closing != TraverseClosing::AtForePoint) {}

  void write() {
    std::string const id = idOf("traverse");
    QString const title = parts.traverses.size() == 1 ? kindText() : kindText() + ' ' + QString::number(number + 1);
    beginSection(page, id.c_str(), title,
                 isClosing ? Messages::tr("v: correction. Azimuth and leg lead to the next point.")
                           : Messages::tr("Azimuth and leg lead to the next point."));
    writeStations();
    endSection(page);
    writeMisclosures();
    writeSidePoints();
  }

 private:
  std::string idOf(char const* kind) const { return kind + std::to_string(number + 1); }

  QString kindText() const {
    if (result.method == 1) return Messages::tr("Open traverse");
    return result.method == 2 ? Messages::tr("Connecting traverse") : Messages::tr("Closed traverse");
  }

  bool isLeg(std::size_t station) const { return !isClosing || station + 1 < result.stations.size(); }

  std::vector<PageColumn> stationColumns() const {
    auto const numbers = [](QString const& head, QString const& unit, std::size_t width) {
      return PageColumn{head, unit, PageColumn::Number, width};
    };
    std::vector<PageColumn> columns{{Messages::tr("Point"), {}, PageColumn::Name, nameWidth(parts)},
                                    numbers(Messages::tr("Angle"), {}, 14)};
    if (isClosing) columns.push_back(numbers("v", "″", 7));
    columns.push_back(numbers(Messages::tr("Azimuth"), {}, 14));
    columns.push_back(numbers(Messages::tr("Distance"), "m", 11));
    columns.push_back(numbers("dx", "m", 11));
    columns.push_back(numbers("dy", "m", 11));
    if (isClosing) {
      columns.push_back(numbers("vx", "mm", 7));
      columns.push_back(numbers("vy", "mm", 7));
    }
    columns.push_back(numbers(Messages::tr("North x"), "m", 13));
    columns.push_back(numbers(Messages::tr("East y"), "m", 13));
    return columns;
  }

  void writeStations() {
    std::vector<TraverseInfo> const& stations = result.stations;
    PageTable table(page, idOf("traverse"), stationColumns(), stations.size() + (result.endsOnOwnPoint() ? 1 : 2),
                    true);
    PointInfo const& back = stations.front().backPoint;
    begin(table, back);
    emptyCells(table, isClosing ? 2 : 1);
    table.number(azimuth(result.summary.azimuths.front()));
    emptyCells(table, isClosing ? 5 : 3);
    end(table, back);
    for (std::size_t i = 0; i < stations.size(); ++i) {
      TraverseInfo const& station = stations[i];
      begin(table, station.stationPoint);
      table.number(angle(station.angle));
      if (isClosing) table.number(seconds(station.adjustedAngle - station.angle));
      table.number(azimuth(result.summary.azimuths[i + 1]));
      if (isLeg(i)) {
        table.number(metres(station.distance)).number(metres(station.deltaX)).number(metres(station.deltaY));
        if (isClosing) {
          table.number(millimetres(station.adjustedDeltaX - station.deltaX));
          table.number(millimetres(station.adjustedDeltaY - station.deltaY));
        }
      } else {
        emptyCells(table, 5);
      }
      end(table, station.stationPoint);
    }
    // A check shot to where the chain begins has its point above.
    PointInfo const& fore = stations.back().forePoints.front();
    if (!result.endsOnOwnPoint()) {
      begin(table, fore);
      emptyCells(table, isClosing ? 8 : 5);
      end(table, fore);
    }
    table.end();
  }

  void begin(PageTable& table, PointInfo const& point) const {
    std::size_t const place = parts.pointOf(point.name);
    table.beginRow(place == kNowhere ? std::string() : "data-p=\"" + std::to_string(place) + '"');
    table.name(utf8Of(point.name));
  }

  static void emptyCells(PageTable& table, int count) {
    for (int i = 0; i < count; ++i) table.empty();
  }

  static void end(PageTable& table, PointInfo const& point) {
    table.number(metres(point.x)).number(metres(point.y)).endRow();
  }

  void writeMisclosures() {
    TraverseSummary const& summary = result.summary;
    if (!summary.hasMisclosure) return;
    auto const told = [](std::string const& utf8) { return QString::fromStdString(utf8); };
    QString const sentence =
        Messages::tr("%1 in %2 m of legs, that is %3.")
            .arg(told(length(summary.fs)), told(metres(summary.sumDistance)), told(oneTo(summary.relativeError)));
    beginSection(page, idOf("misclosures").c_str(), Messages::tr("Misclosures"), sentence);
    TraverseOptions const& limits = parts.content.traverseOptions;
    bool const hasLimits = limits.allowedAngle > 0.0 || limits.allowedRelative > 0.0;
    std::vector<PageColumn> columns{{Messages::tr("Misclosure"), {}, PageColumn::Words, 20},
                                    {Messages::tr("Size"), {}, PageColumn::Number, 14},
                                    {Messages::tr("Allowed at 99 %"), {}, PageColumn::Number, 14}};
    if (hasLimits) columns.push_back({Messages::tr("Limit"), {}, PageColumn::Number, 14});
    columns.push_back({Messages::tr("Remark"), {}, PageColumn::Words, 10});
    PageTable table(page, idOf("misclosures"), std::move(columns), 7, true);
    std::vector<Misclosure> const rows = misclosures();
    auto const isBeyond = [](Misclosure const& row) { return row.isBeyond; };
    auto const worst = std::find_if(rows.begin(), rows.end(), isBeyond);
    auto const named = worst == rows.end() ? rows.begin() : worst;  // findings lead there
    for (auto row = rows.begin(); row != rows.end(); ++row) {
      std::string const attributes = row == named ? "id=\"" + idOf("rm") + '"' : std::string();
      table.beginRow(attributes + (row->isBeyond ? " class=\"bad\"" : ""));
      table.words(row->what).number(row->size).number(row->allowed);
      if (hasLimits) table.number(row->limit);
      table.words(row->isBeyond ? Messages::tr("beyond") : QString()).endRow();
    }
    table.end();
    endSection(page);
  }

  struct Misclosure {
    QString what;
    std::string size;
    std::string allowed = {};  ///< by the a-priori errors
    std::string limit = {};    ///< of the user
    bool isBeyond = false;     ///< of one of the two
  };

  std::vector<Misclosure> misclosures() const {
    TraverseSummary const& summary = result.summary;
    std::vector<Misclosure> list{{"fx", length(summary.fx)}, {"fy", length(summary.fy)}};
    if (result.judgement) {
      addJudged(list, *result.judgement);
    } else if (isClosing) {
      double const angles = -summary.angleCorrection * static_cast<double>(result.stations.size());
      list.push_back({Messages::tr("angles"), seconds(angles) + "″"});
    }
    return list;
  }

  void addJudged(std::vector<Misclosure>& list, TraverseJudgement const& judged) const {
    TraverseOptions const& limits = parts.content.traverseOptions;
    if (!std::isnan(judged.angle)) {
      bool const isBeyond = std::abs(judged.angle) > judged.angleAllowed;
      list.push_back(
          {Messages::tr("angles"), seconds(judged.angle) + "″", seconds(judged.angleAllowed) + "″", {}, isBeyond});
      if (limits.allowedAngle > 0.0) {
        double const limit = limits.angleLimit(judged.angles);
        list.back().limit = seconds(limit) + "″";
        list.back().isBeyond = isBeyond || std::abs(judged.angle) > limit;
      }
    }
    auto const addLength = [&list](QString const& what, double size, double allowed) {
      if (std::isnan(size)) return;
      list.push_back({what, length(size), length(allowed), {}, std::abs(size) > allowed});
    };
    addLength(Messages::tr("along the traverse"), judged.along, judged.alongAllowed);
    addLength(Messages::tr("across the traverse"), judged.across, judged.acrossAllowed);
    if (judged.isLoop()) addLength(Messages::tr("closing error"), judged.fs, judged.fsAllowed);
    if (limits.allowedRelative > 0.0) {
      bool const isBeyond = limits.isBeyondRelative(judged.relative);
      list.push_back(
          {Messages::tr("relative"), oneTo(judged.relative), {}, oneTo(1.0 / limits.allowedRelative), isBeyond});
    }
  }

  void writeSidePoints() {
    if (result.sidePoints.empty()) return;
    beginSection(page, idOf("sideshots").c_str(), Messages::tr("Side shots"),
                 Messages::tr("Nothing checks them; their errors are those of the a-priori errors."));
    PageTable table(page, idOf("sideshots"),
                    {{Messages::tr("Point"), {}, PageColumn::Name, nameWidth(parts)},
                     {Messages::tr("From"), {}, PageColumn::Name, nameWidth(parts)},
                     {Messages::tr("Azimuth"), {}, PageColumn::Number, 14},
                     {Messages::tr("Distance"), "m", PageColumn::Number, 11},
                     {Messages::tr("North x"), "m", PageColumn::Number, 13},
                     {Messages::tr("East y"), "m", PageColumn::Number, 13},
                     {"mx", "mm", PageColumn::Number, 7},
                     {"my", "mm", PageColumn::Number, 7},
                     {"mp", "mm", PageColumn::Number, 7}},
                    result.sidePoints.size());
    for (TraverseSidePoint const& side : result.sidePoints) {
      begin(table, side.point);
      table.name(utf8Of(side.station)).number(azimuth(side.azimuth)).number(metres(side.distance));
      table.number(metres(side.point.x)).number(metres(side.point.y));
      table.number(millimetres(side.mx)).number(millimetres(side.my)).number(millimetres(side.mp)).endRow();
    }
    table.end();
    endSection(page);
  }

  PageWriter& page;
  ReportParts const& parts;
  std::size_t number;
  TraverseResult const& result;
  bool isClosing;  ///< misclosures are distributed
};

}  // namespace

void writeTraverses(PageWriter& page, ReportParts const& parts) {
  for (std::size_t t = 0; t < parts.traverses.size(); ++t) TraverseWriter(page, parts, t).write();
}

}  // namespace kvn::detail
