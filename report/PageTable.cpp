#include "report/detail/PageTable.h"

#include "report/detail/PageNumbers.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn::detail {
namespace {

// From here on a table is laid out in blocks.
constexpr std::size_t kShort = 400;
constexpr std::size_t kRowsOfBlock = 100;
// Longest bar: what is beyond is gross.
constexpr double kLongestBar = 4.0;

char const* classOf(PageColumn::Kind kind) {
  switch (kind) {
    case PageColumn::Name:
      return "t";
    case PageColumn::Number:
      return "n";
    case PageColumn::Bar:
      return "w";
    case PageColumn::Words:
      break;
  }
  return "r";
}

}  // namespace

PageTable::PageTable(PageWriter& page, std::string_view id, std::vector<PageColumn> columns, std::size_t rows,
                     bool isSequence)
    : out(page), list(std::move(columns)), isLong(rows > kShort) {
  out.markup(isLong ? "<div class=\"scroll tall\"" : "<div class=\"scroll\"");
  out.markup(" tabindex=\"0\" role=\"region\" aria-labelledby=\"h-").markup(id).markup("\">");
  out.markup("<table class=\"rows")
      .markup(isLong ? " long" : "")
      .markup(isSequence ? " sequence" : "")
      .markup("\" id=\"t-")
      .markup(id)
      .markup("\"");
  if (isLong) {
    out.markup(" style=\"--cols:");
    for (PageColumn const& column : list) {
      // Blanks between columns, and the bar beside its number.
      std::size_t const width = column.width + (column.kind == PageColumn::Bar ? 13 : 3);
      if (&column != &list.front()) out.markup(" ");
      bool const isLast = &column == &list.back() && column.kind == PageColumn::Words;
      if (isLast) {
        out.markup("minmax(").markup(width).markup("ch,1fr)");
      } else {
        out.markup(width).markup("ch");
      }
    }
    out.markup("\"");
  }
  out.markup(">\n");
  writeHead();
}

void PageTable::writeHead() {
  out.markup("<thead><tr>");
  for (PageColumn const& column : list) {
    out.markup("<th scope=\"col\" class=\"").markup(classOf(column.kind)).markup("\"");
    if (!column.hint.isEmpty()) out.markup(" title=\"").text(column.hint).markup("\"");
    out.markup(">").text(column.head);
    if (!column.unit.isEmpty()) out.markup(" <span class=\"u\">[").text(column.unit).markup("]</span>");
    out.markup("</th>");
  }
  out.markup("</tr></thead>\n");
}

void PageTable::beginRow(std::string_view attributes) {
  if (row % kRowsOfBlock == 0 && (row == 0 || isLong)) out.markup(row == 0 ? "<tbody>\n" : "</tbody><tbody>\n");
  ++row;
  out.markup(attributes.empty() ? "<tr" : "<tr ").markup(attributes).markup(">");
}

PageTable& PageTable::name(std::string_view utf8) {
  out.markup("<td class=\"t\">").text(utf8).markup("</td>");
  return *this;
}

PageTable& PageTable::name(std::string_view utf8, std::string_view anchor) {
  out.markup("<td class=\"t\"><a href=\"#").markup(anchor).markup("\">").text(utf8).markup("</a></td>");
  return *this;
}

PageTable& PageTable::number(std::string_view plain) {
  out.markup("<td class=\"n\">").markup(plain).markup("</td>");
  return *this;
}

PageTable& PageTable::bar(double standardised) {
  if (!std::isfinite(standardised)) return number(ratio(standardised));
  // CSS knows no sign: the class says to which side the bar goes.
  std::string const size = ratio(std::min(std::abs(standardised), kLongestBar));
  out.markup(standardised < 0.0 ? "<td class=\"w m\" style=\"--b:" : "<td class=\"w\" style=\"--b:");
  out.markup(size).markup("\">").markup(ratio(standardised)).markup("</td>");
  return *this;
}

PageTable& PageTable::words(QString const& text) {
  out.markup("<td class=\"r\">").text(text).markup("</td>");
  return *this;
}

void PageTable::endRow() { out.markup("</tr>\n"); }

void PageTable::end() { out.markup(row == 0 ? "<tbody></tbody></table></div>\n" : "</tbody></table></div>\n"); }

}  // namespace kvn::detail
