// PageTable: a table of a page, row by row.
#pragma once

#include "report/detail/PageWriter.h"

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvn::detail {

struct PageColumn {
  enum Kind {
    Name,    ///< of a point, left
    Number,  ///< right, sorted by value; an angle too
    Bar,     ///< a standardised residual with a bar beside it
    Words,   ///< left, may be long
  };

  QString head;
  QString unit;  ///< below the head; empty: none
  Kind kind = Number;
  std::size_t width = 8;  ///< digits that the longest cell has about
  QString hint = {};      ///< the head in full words
};

/// A long table is laid out in blocks of rows with columns of fixed width, so that a browser need not look at rows that
/// are not seen; a short one as the browser likes.
///
///     PageTable table(page, "points", columns, rows);
///     table.beginRow("id=\"rp1\" data-p=\"1\"");
///     table.name("A").number("1.0");
///     table.endRow();
///     table.end();
class PageTable {
 public:
  /// @param id    of the table in the page.
  /// @param rows        how many will come.
  /// @param isSequence  the rows have an order that must stay.
  PageTable(PageWriter& page, std::string_view id, std::vector<PageColumn> columns, std::size_t rows,
            bool isSequence = false);

  void beginRow(std::string_view attributes = {});
  PageTable& name(std::string_view utf8);                           ///< with the sequence of characters kept to itself
  PageTable& name(std::string_view utf8, std::string_view anchor);  ///< a link to an element of the page
  PageTable& number(std::string_view plain);                        ///< digits and signs that need no escape
  PageTable& bar(double standardised);
  PageTable& words(QString const& text);
  PageTable& empty() { return number({}); }
  void endRow();
  void end();

 private:
  void writeHead();

  PageWriter& out;
  std::vector<PageColumn> list;
  bool isLong;
  std::size_t row = 0;
};

}  // namespace kvn::detail
