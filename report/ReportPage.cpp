#include "report/ReportPage.h"

#include "job/detail/WriteWhole.h"
#include "records/detail/Messages.h"
#include "report/SiteSvg.h"
#include "report/detail/PageAssets.h"
#include "report/detail/ReportParts.h"

#include <algorithm>
#include <ostream>

namespace kvn {
namespace detail {
namespace {

/// Words of the script, and the language of the page.
void writeBeginning(PageWriter& page, ReportParts const& parts) {
  // The translator says which language it speaks.
  page.markup("<!DOCTYPE html>\n<html lang=\"").text(Messages::tr("en")).markup("\">\n<head>\n");
  page.markup("<meta charset=\"utf-8\" />\n");
  // Nothing is loaded, whatever a name in the file says.
  page.markup(
      "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'; "
      "script-src 'unsafe-inline'\" />\n");
  page.markup("<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n");
  page.markup("<meta name=\"color-scheme\" content=\"light dark\" />\n");
  page.element("title", headingOf(parts)).markup("\n<style>/*<![CDATA[*/\n").markup(kPageStyle);
  page.markup("/*]]>*/</style>\n</head>\n<body>\n<main id=\"top\">\n");
}

/// The style puts them first; here it is known what there is.
void writeContents(PageWriter& page) {
  page.markup("<nav><a href=\"#top\">").text(Messages::tr("Summary")).markup("</a>\n");
  constexpr std::size_t kMost = 30;
  for (std::size_t s = 0; s < std::min(page.sections.size(), kMost); ++s) {
    page.markup("<a href=\"#").markup(page.sections[s].first).markup("\">").text(page.sections[s].second);
    page.markup("</a>\n");
  }
  page.markup("</nav>\n");
}

void writeEnd(PageWriter& page, ReportParts const& parts) {
  page.markup("<footer>");
  if (!parts.options.program.isEmpty()) {
    page.element("p", Messages::tr("Computed and written by %1.").arg(parts.options.program));
  }
  page.markup("</footer>\n</main>\n");
  writeContents(page);
  page.markup("<div id=\"words\" hidden=\"hidden\"");
  auto const word = [&page](char const* key, QString const& text) {
    page.markup(" data-").markup(key).markup("=\"").text(text).markup("\"");
  };
  word("larger", Messages::tr("Zoom in"));
  word("smaller", Messages::tr("Zoom out"));
  word("whole", Messages::tr("Whole map"));
  word("ellipses", Messages::tr("Ellipses"));
  word("names", Messages::tr("Names"));
  word("back", Messages::tr("Back to the table"));
  page.markup("></div>\n<script>/*<![CDATA[*/\n").markup(kPageScript).markup("/*]]>*/</script>\n</body>\n</html>\n");
}

}  // namespace

void writeMap(PageWriter& page, ReportParts const& parts) {
  if (!parts.hasMap()) return;
  beginSection(page, "map", Messages::tr("Map"));
  SvgOptions options;
  options.isInPage = true;
  options.hasTitle = false;
  options.title = headingOf(parts).toStdString();
  options.words = translatedMapWord;
  options.elements = parts.mapElements();
  page.markup("<figure id=\"map-frame\">\n");
  SvgPicture const picture = writeSvg(page.stream(), parts.drawing, options);
  page.markup("</figure>\n");
  if (picture.restOfPoints + picture.restOfLines > 0) {
    page.element(
        "p class=\"left-out\"",
        Messages::tr("Points that are drawn as dots, without name and ellipse: %1. Lines that lead to no row: %2.")
            .arg(picture.restOfPoints)
            .arg(picture.restOfLines));
  }
  endSection(page);
}

void writePage(PageWriter& page, ReportParts const& parts) {
  writeBeginning(page, parts);
  writeHead(page, parts);
  writeFindings(page, parts);
  writeMap(page, parts);
  writePoints(page, parts);
  writeControl(page, parts);
  writeTraverses(page, parts);
  writeHistogram(page, parts);
  writeDirections(page, parts);
  writeDistances(page, parts);
  writeSetUps(page, parts);
  writeLines(page, parts);
  writeLiteral(page, parts);
  writeHeights(page, parts);
  writeEnd(page, parts);
  page.stream();
}

}  // namespace detail

void writeReport(std::ostream& stream, Job const& job, ReportOptions const& options) {
  detail::PageWriter page(stream);
  detail::writePage(page, detail::ReportParts(job, options));
}

void writeReport(std::ostream& stream, ReportContent const& content, ReportOptions const& options) {
  detail::PageWriter page(stream);
  detail::writePage(page, detail::ReportParts(content, options));
}

void saveReport(Job const& job, QString const& path, ReportOptions const& options) {
  detail::writeWhole(path, [&](std::ostream& stream) { writeReport(stream, job, options); });
}

}  // namespace kvn
