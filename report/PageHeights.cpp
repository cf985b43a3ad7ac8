// Trigonometric heights: points, sights, what several sights share, loops that do not close.
#include "adjust/HeightAdjustment.h"
#include "job/Job.h"
#include "records/detail/Messages.h"
#include "report/detail/PageNumbers.h"
#include "report/detail/PageTable.h"
#include "report/detail/ReportParts.h"

#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

constexpr std::size_t kNamesOfLoop = 12;

class HeightsWriter {
 public:
  HeightsWriter(PageWriter& writer, ReportParts const& reportParts)
      : page(writer),
        parts(reportParts),
        network(reportParts.heights->network()),
        result(reportParts.heights->result()) {
    for (HeightNetwork::Point const& point : network.points) {
      names.push_back(utf8Of(point.name));
      width = std::max(width, std::min<std::size_t>(widthOf(names.back()), 28));
    }
  }

  void write() {
    writePoints();
    writeSights();
    writeShared();
    writeLoops();
  }

 private:
  std::size_t stationOf(std::size_t setUp) const { return at(network.setUps[setUp].station); }

  std::string placeOf(std::size_t point) const {
    auto const& places = parts.drawing.pointOfHeight;
    bool const hasPlace = point < places.size() && places[point] != kNowhere;
    return hasPlace ? "data-p=\"" + std::to_string(places[point]) + '"' : std::string();
  }

  void writePoints() {
    beginSection(page, "heights", Messages::tr("Heights"));
    tellLeftOut(page, parts.heightPoints);
    PageTable table(page, "heights",
                    {{Messages::tr("Point"), {}, PageColumn::Name, width},
                     {Messages::tr("Height"), "m", PageColumn::Number, 10},
                     {"mh", "mm", PageColumn::Number, 7, Messages::tr("standard error of the height")},
                     {Messages::tr("Remark"), {}, PageColumn::Words, 18}},
                    parts.heightPoints.rows().size());
    for (std::size_t const p : parts.heightPoints.rows()) {
      HeightPoint const& point = result.points[p];
      bool const isKnown = network.points[p].isKnown;
      bool const isBad = isKnown && result.known[p].test > 1.0;
      table.beginRow("id=\"rh" + std::to_string(p) + "\" " + placeOf(p) + (isBad ? " class=\"bad\"" : ""));
      table.name(names[p]).number(metres(point.height));
      table.number(isKnown ? std::string() : millimetres(point.error));
      QStringList remarks;
      if (isKnown) remarks << Messages::tr("known");
      if (isBad) remarks << Messages::tr("does not fit");
      if (!point.isChecked && !isKnown) remarks << Messages::tr("unchecked");
      table.words(remarks.join(", ")).endRow();
    }
    table.end();
    endSection(page);
  }

  void writeSights() {
    bool const hasLines = std::any_of(network.sights.begin(), network.sights.end(),
                                      [](HeightNetwork::Sight const& sight) { return sight.origin.line > 0; });
    std::vector<PageColumn> columns{
        {Messages::tr("From"), {}, PageColumn::Name, width},
        {Messages::tr("To"), {}, PageColumn::Name, width},
        {Messages::tr("Distance"), "m", PageColumn::Number, 11, Messages::tr("horizontal distance")},
        {Messages::tr("Difference"), "m", PageColumn::Number, 10, Messages::tr("of height, from mark to mark")},
        {"σ", "mm", PageColumn::Number, 6, Messages::tr("a-priori standard error")},
        {"v", "mm", PageColumn::Number, 7, Messages::tr("residual: adjusted minus observed")},
        {"w", {}, PageColumn::Bar, 6, Messages::tr("standardised residual")},
        {Messages::tr("Test"),
         {},
         PageColumn::Number,
         6,
         Messages::tr("size of w over its critical value; above 1 is too large for chance")},
        {"r", {}, PageColumn::Number, 5, Messages::tr("redundancy: the share of an error that shows")},
        {Messages::tr("Detectable"), "mm", PageColumn::Number, 9,
         Messages::tr("smallest gross error that the test finds with a power of 80 %")}};
    if (hasLines)
      columns.push_back({Messages::tr("Line"), {}, PageColumn::Number, 5, Messages::tr("line of the file")});
    columns.push_back({Messages::tr("Remark"), {}, PageColumn::Words, 16});
    beginSection(page, "sights", Messages::tr("Height differences"));
    tellLeftOut(page, parts.sights);
    PageTable table(page, "sights", std::move(columns), parts.sights.rows().size());
    for (std::size_t const s : parts.sights.rows()) writeSight(table, s, hasLines);
    table.end();
    endSection(page);
  }

  void writeSight(PageTable& table, std::size_t s, bool hasLines) const {
    HeightNetwork::Sight const& sight = network.sights[s];
    HeightObservation const& adjusted = result.sights[s];
    std::string attributes = "id=\"rz" + std::to_string(s) + '"';
    if (s < parts.drawing.lineOfSight.size() && parts.drawing.lineOfSight[s] != kNowhere) {
      attributes += " data-l=\"" + std::to_string(parts.drawing.lineOfSight[s]) + '"';
    }
    if (adjusted.test > 1.0) attributes += " class=\"bad\"";
    table.beginRow(attributes);
    table.name(names[stationOf(at(sight.setUp))]).name(names[at(sight.target)]);
    table.number(metres(sight.distance)).number(metres(sight.difference)).number(millimetres(sight.error));
    table.number(millimetres(adjusted.residual)).bar(adjusted.standardised).number(ratio(adjusted.test));
    table.number(ratio(adjusted.redundancy)).number(millimetres(adjusted.detectable));
    if (hasLines) table.number(sight.origin.line > 0 ? std::to_string(sight.origin.line) : std::string());
    QString remark;
    if (std::isfinite(adjusted.gross)) {
      remark = (adjusted.gross < 0.0 ? Messages::tr("%1 too small") : Messages::tr("%1 too large"))
                   .arg(QString::fromStdString(millimetres(std::abs(adjusted.gross)) + " mm"));
    } else if (std::isnan(adjusted.standardised)) {
      remark = Messages::tr("unchecked");
    }
    table.words(remark).endRow();
  }

  /// Only what is too large: there is one of each set-up and each target.
  void writeShared() {
    std::vector<SharedHeight const*> rows;
    for (SharedHeight const& shared : result.shared) {
      if (shared.test > 1.0) rows.push_back(&shared);
    }
    if (rows.empty()) return;
    beginSection(page, "shared", Messages::tr("Heights of instruments and targets that do not fit"));
    PageTable table(page, "shared",
                    {{Messages::tr("Kind"), {}, PageColumn::Words, 12},
                     {Messages::tr("Point"), {}, PageColumn::Name, width},
                     {Messages::tr("Entered"), "m", PageColumn::Number, 9},
                     {Messages::tr("Sights"), {}, PageColumn::Number, 6},
                     {"w", {}, PageColumn::Bar, 6},
                     {Messages::tr("Too large by"), "mm", PageColumn::Number, 9}},
                    rows.size());
    for (SharedHeight const* shared : rows) {
      std::size_t const point = shared->isInstrument ? stationOf(shared->setUp) : shared->target;
      table.beginRow(placeOf(point) + " class=\"bad\"");
      table.words(shared->isInstrument ? Messages::tr("instrument") : Messages::tr("target")).name(names[point]);
      table.number(metres(shared->height)).number(std::to_string(shared->sights)).bar(shared->standardised);
      table.number(millimetres(shared->gross)).endRow();
    }
    table.end();
    endSection(page);
  }

  QString nameOf(HeightLoop const& loop) const {
    QStringList list;
    for (std::size_t const point : loop.points) {
      if (static_cast<std::size_t>(list.size()) == kNamesOfLoop) break;
      list << QString::fromStdString(names[point]);
    }
    if (loop.points.size() > kNamesOfLoop) list << Messages::tr("… (%1 points)").arg(loop.points.size());
    return list.join(QString::fromUtf8(" – "));
  }

  void writeLoops() {
    if (result.loops.empty()) return;
    beginSection(page, "loops", Messages::tr("Loops that do not close"));
    PageTable table(page, "loops",
                    {{Messages::tr("Loop"), {}, PageColumn::Words, 40},
                     {Messages::tr("Misclosure"), "mm", PageColumn::Number, 10},
                     {Messages::tr("Allowed at 99 %"), "mm", PageColumn::Number, 10}},
                    result.loops.size());
    for (HeightLoop const& loop : result.loops) {
      table.beginRow();
      table.words(nameOf(loop)).number(millimetres(loop.misclosure)).number(millimetres(loop.allowed)).endRow();
    }
    table.end();
    endSection(page);
  }

  PageWriter& page;
  ReportParts const& parts;
  HeightNetwork const& network;
  HeightResult const& result;
  std::vector<std::string> names;  ///< UTF-8
  std::size_t width = 6;
};

}  // namespace

void writeHeights(PageWriter& page, ReportParts const& parts) {
  if (parts.heights != nullptr) HeightsWriter(page, parts).write();
}

}  // namespace kvn::detail
