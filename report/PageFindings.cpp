// What to look at first, each finding with the ways to its row and its place on the map.
#include "job/FindingTexts.h"
#include "records/detail/Messages.h"
#include "report/detail/PageNumbers.h"
#include "report/detail/ReportParts.h"

#include <algorithm>

namespace kvn::detail {
namespace {

// More are not read; those that may cost most stand first.
constexpr std::size_t kListed = 200;
constexpr std::size_t kNames = 30;

void writeName(PageWriter& page, ReportParts const& parts, std::string const& name, bool isOfHeights) {
  std::string const row = parts.rowOfPoint(name, isOfHeights);
  if (!row.empty()) page.markup("<a class=\"to-row\" href=\"#").markup(row).markup("\">");
  page.markup("<bdi>").text(utf8Of(name)).markup("</bdi>");
  if (!row.empty()) page.markup("</a>");
}

void writeNames(PageWriter& page, ReportParts const& parts, FieldFinding const& finding) {
  page.markup("<span class=\"who\">");
  if (!finding.station.empty()) writeName(page, parts, finding.station, finding.isOfHeights);
  if (!finding.station.empty() && !finding.targets.empty()) page.markup(" → ");
  std::size_t const count = std::min(finding.targets.size(), kNames);
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) page.markup(", ");
    writeName(page, parts, finding.targets[i], finding.isOfHeights);
  }
  if (count < finding.targets.size()) {
    page.markup(" ").text(Messages::tr("and %1 more").arg(finding.targets.size() - count));
  }
  page.markup("</span> ");
}

void writeWays(PageWriter& page, ReportParts const& parts, FieldFinding const& finding) {
  std::string const row = parts.rowOf(finding);
  auto const [line, point] = parts.placeOf(finding);
  page.markup("<span class=\"ways\">");
  if (!row.empty()) {
    page.markup("<a class=\"to-row\" href=\"#").markup(row).markup("\">").text(Messages::tr("row")).markup("</a>");
  }
  if (line != kNowhere) {
    page.markup(" <a class=\"to-map\" href=\"#map\" data-l=\"").markup(line).markup("\">");
    page.text(Messages::tr("map")).markup("</a>");
  } else if (point != kNowhere) {
    page.markup(" <a class=\"to-map\" href=\"#");
    parts.isEachOnMap() ? page.markup("p").markup(point) : page.markup("map");
    page.markup("\" data-p=\"").markup(point).markup("\">").text(Messages::tr("map")).markup("</a>");
  }
  page.markup("</span>");
}

void writeFinding(PageWriter& page, ReportParts const& parts, FieldFinding const& finding) {
  bool const isError = finding.severity == FieldFinding::Error;
  page.markup(isError ? "<li class=\"bad\"" : "<li class=\"look\"").markup("><div class=\"what\">");
  if (!finding.station.empty() || !finding.targets.empty()) writeNames(page, parts, finding);
  page.text(finding.text);
  if (finding.line > 0) {
    page.markup(" <span class=\"line\">").text(Messages::tr("line %1").arg(finding.line)).markup("</span>");
  }
  page.markup("</div><div class=\"cost\">");
  constexpr double kLeastCost = 5e-5;  // metres; less is told as 0.0 mm
  if (finding.cost >= kLeastCost) {
    page.text(Messages::tr("up to %1").arg(QString::fromStdString(length(finding.cost))));
  }
  page.markup("</div>");
  writeWays(page, parts, finding);
  page.markup("</li>\n");
}

/// It must not sound as if all were well where something is wrong, or where nothing was tested.
QString textOfNone(ReportParts const& parts) {
  auto const is = [&parts](Judgement::Level level) {
    return std::any_of(parts.judgements.begin(), parts.judgements.end(),
                       [level](Judgement const& judgement) { return judgement.level == level; });
  };
  if (is(Judgement::Bad)) return Messages::tr("No single observation is named: see the sentence at the top.");
  std::size_t const marked = parts.hasPlane() ? markedBy(parts.plane->result()) : 0;
  if (marked > 0) {
    return Messages::tr(
               "Nothing stands out but the rows of the tables that are marked: %1. One in a thousand is by chance.")
        .arg(marked);
  }
  bool const isTested = parts.hasPlane() || parts.heights != nullptr || is(Judgement::Good);
  return isTested ? Messages::tr("No single observation and no point stands out.")
                  : Messages::tr("Nothing was tested.");
}

}  // namespace

void writeFindings(PageWriter& page, ReportParts const& parts) {
  if (parts.content.findings.empty()) {
    beginSection(page, "findings", Messages::tr("What to look at first"), textOfNone(parts));
    return endSection(page);
  }
  beginSection(page, "findings", Messages::tr("What to look at first"),
               Messages::tr("What may cost most stands first: by how much a coordinate may be wrong, where that can be "
                            "told."));
  page.markup("<ol class=\"findings\">\n");
  std::size_t const count = std::min(parts.content.findings.size(), kListed);
  for (std::size_t i = 0; i < count; ++i) writeFinding(page, parts, parts.content.findings[i]);
  page.markup("</ol>\n");
  if (count < parts.content.findings.size()) {
    page.element("p class=\"left-out\"",
                 Messages::tr("Left out here: %1 more.").arg(parts.content.findings.size() - count));
  }
  endSection(page);
}

}  // namespace kvn::detail
