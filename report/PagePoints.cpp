// Tables of points: coordinates with their errors, known points that are not held.
#include "adjust/PlaneAdjustment.h"
#include "job/FindingTexts.h"
#include "job/Job.h"
#include "records/detail/Messages.h"
#include "report/detail/PageNumbers.h"
#include "report/detail/PageTable.h"
#include "report/detail/ReportParts.h"

#include <algorithm>
#include <cmath>

namespace kvn::detail {
namespace {

constexpr std::size_t kWidestName = 28;

std::string idOf(char const* kind, std::size_t number) { return kind + std::to_string(number); }

QString remarkOf(SitePoint const& point) {
  QStringList remarks;
  if (point.isHeld) {
    remarks << Messages::tr("known");
  } else if (point.isKnown) {
    remarks << Messages::tr("known, not held");
  }
  if (point.isSuspect) remarks << Messages::tr("suspect");
  if (point.isSidePoint) remarks << Messages::tr("side shot");
  if (!point.isChecked && !point.isHeld) remarks << Messages::tr("unchecked");
  return remarks.join(", ");
}

/// Which columns some point has something for.
struct PointColumns {
  explicit PointColumns(SiteDrawing const& drawing) {
    for (SitePoint const& point : drawing.points) {
      hasErrors = hasErrors || point.mp.has_value();
      hasEllipses = hasEllipses || point.ellipse.has_value();
      hasHeights = hasHeights || point.height.has_value();
      hasHeightErrors = hasHeightErrors || point.heightError.has_value();
      hasRemarks = hasRemarks || !remarkOf(point).isEmpty();
    }
  }

  std::vector<PageColumn> columns(std::size_t nameWidth) const {
    std::vector<PageColumn> list{
        {Messages::tr("Point"), {}, PageColumn::Name, nameWidth},
        {Messages::tr("North x"), "m", PageColumn::Number, 13},
        {Messages::tr("East y"), "m", PageColumn::Number, 13},
    };
    auto const add = [&list](QString const& head, QString const& unit, std::size_t width, QString const& hint) {
      list.push_back({head, unit, PageColumn::Number, width, hint});
    };
    if (hasErrors) {
      add("mx", "mm", 7, Messages::tr("standard error of the north coordinate"));
      add("my", "mm", 7, Messages::tr("standard error of the east coordinate"));
      add("mp", "mm", 7, Messages::tr("standard error of the point: root of mx² + my²"));
    }
    if (hasEllipses) {
      add("a", "mm", 7, Messages::tr("major semi-axis of the standard error ellipse"));
      add("b", "mm", 7, Messages::tr("minor semi-axis of the standard error ellipse"));
      add(Messages::tr("Azimuth of a"), {}, 9, {});
    }
    if (hasHeights) add(Messages::tr("Height"), "m", 10, {});
    if (hasHeightErrors) add("mh", "mm", 7, Messages::tr("standard error of the height"));
    if (hasRemarks) list.push_back({Messages::tr("Remark"), {}, PageColumn::Words, 18});
    return list;
  }

  bool hasErrors = false;
  bool hasEllipses = false;
  bool hasHeights = false;
  bool hasHeightErrors = false;
  bool hasRemarks = false;
};

void writePoint(PageTable& table, PointColumns const& columns, std::size_t p, SitePoint const& point, bool isOnMap) {
  std::string const number = std::to_string(p);
  bool const isMarked = point.isSuspect;
  table.beginRow("id=\"rp" + number + "\" data-p=\"" + number + (isMarked ? "\" class=\"bad\"" : "\""));
  isOnMap ? table.name(point.name, "p" + number) : table.name(point.name);
  table.number(metres(point.x)).number(metres(point.y));
  if (columns.hasErrors) {
    for (std::optional<double> const& error : {point.mx, point.my, point.mp}) {
      table.number(point.isHeld || !error ? std::string() : millimetres(*error));
    }
  }
  if (columns.hasEllipses) {
    if (point.ellipse && !point.isHeld) {
      table.number(millimetres(point.ellipse->semiMajor)).number(millimetres(point.ellipse->semiMinor));
      table.number(axis(point.ellipse->bearing));
    } else {
      table.empty().empty().empty();
    }
  }
  if (columns.hasHeights) table.number(point.height ? metres(*point.height) : std::string());
  if (columns.hasHeightErrors) table.number(point.heightError ? millimetres(*point.heightError) : std::string());
  if (columns.hasRemarks) table.words(remarkOf(point));
  table.endRow();
}

QString ellipsesText(ReportParts const& parts) {
  if (!(parts.drawing.confidenceFactor > 0.0)) return {};
  return Messages::tr("Standard errors; ellipses at %1 are %2 times as large.")
      .arg(QString::fromStdString(percent(parts.drawing.confidence)),
           QString::fromStdString(ratio(parts.drawing.confidenceFactor)));
}

}  // namespace

std::size_t widthOf(std::string const& utf8) {
  auto const isFirst = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
  // Three bytes and more are mostly ideographs, which are twice as wide as a digit.
  std::size_t const signs = static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), isFirst));
  return signs + (utf8.size() - signs) / 2;
}

std::size_t nameWidth(ReportParts const& parts) {
  std::size_t width = 6;
  for (SitePoint const& point : parts.drawing.points) width = std::max(width, widthOf(point.name));
  return std::min(width, kWidestName);
}

void tellLeftOut(PageWriter& page, RowChoice const& choice) {
  if (choice.leftOut() == 0) return;
  page.element("p class=\"left-out\"",
               Messages::tr("This table has %1 of %2 rows: those that matter most. The result files have all.")
                   .arg(choice.rows().size())
                   .arg(choice.rows().size() + choice.leftOut()));
  page.markup("\n");
}

/// Points that stand in no table and on no map.
void tellWithoutPlace(PageWriter& page, ReportParts const& parts) {
  QStringList names;
  for (std::string const& name : parts.drawing.withoutPlace) names << QString::fromStdString(name);
  if (names.isEmpty()) return;
  page.element("p class=\"left-out\"", Messages::tr("Without coordinates: %1").arg(listedNames(names))).markup("\n");
}

void writePoints(PageWriter& page, ReportParts const& parts) {
  std::vector<std::size_t> rows;
  for (std::size_t const p : parts.points.rows()) {
    if (!parts.drawing.points[p].isApproximate) rows.push_back(p);
  }
  if (rows.empty() && parts.drawing.withoutPlace.empty()) return;
  beginSection(page, "points", Messages::tr("Points"), ellipsesText(parts));
  tellWithoutPlace(page, parts);
  if (rows.empty()) return endSection(page);
  tellLeftOut(page, parts.points);
  PointColumns const columns(parts.drawing);
  PageTable table(page, "points", columns.columns(nameWidth(parts)), rows.size());
  for (std::size_t const p : rows) {
    writePoint(table, columns, p, parts.drawing.points[p], parts.isEachOnMap());
  }
  table.end();
  endSection(page);
}

void writeControl(PageWriter& page, ReportParts const& parts) {
  if (!parts.hasPlane()) return;
  std::vector<PlaneControl const*> controlOf(parts.drawing.points.size(), nullptr);
  for (PlaneControl const& control : parts.plane->result().control) controlOf[control.point] = &control;
  std::vector<std::size_t> rows;
  for (std::size_t p = 0; p < parts.drawing.points.size(); ++p) {
    if (parts.drawing.points[p].shift) rows.push_back(p);
  }
  if (rows.empty()) return;
  beginSection(page, "control", Messages::tr("Known points"),
               Messages::tr("v: adjusted minus given. Test: of both coordinates together, above 1 is too large for "
                            "chance."));
  PageTable table(page, "control",
                  {{Messages::tr("Point"), {}, PageColumn::Name, nameWidth(parts)},
                   {Messages::tr("v north"), "mm", PageColumn::Number, 9},
                   {Messages::tr("v east"), "mm", PageColumn::Number, 9},
                   {Messages::tr("Test"), {}, PageColumn::Number, 6},
                   {Messages::tr("Remark"), {}, PageColumn::Words, 14}},
                  rows.size());
  for (std::size_t const p : rows) {
    SitePoint const& point = parts.drawing.points[p];
    double const test = controlOf[p] == nullptr ? std::nan("") : controlOf[p]->test;
    table.beginRow("data-p=\"" + std::to_string(p) + (test > 1.0 ? "\" class=\"bad\"" : "\""));
    table.name(point.name, idOf("rp", p))
        .number(millimetres(point.shift->north))
        .number(millimetres(point.shift->east));
    table.number(ratio(test)).words(test > 1.0 ? Messages::tr("does not fit") : QString()).endRow();
  }
  table.end();
  endSection(page);
}

}  // namespace kvn::detail
