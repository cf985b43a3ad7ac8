// TextTable: aligned columns for people.
#pragma once

#include "Output.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvn::host {

/// Columns of a fixed-pitch terminal that a text takes: two for the wide signs of East Asia, none for combining marks.
int displayWidth(QString const& text);

/// Rows of cells, of which a table may have millions: the bytes of all cells stand in one string.
class TextTable {
 public:
  enum Align { Left, Right };
  struct Column {
    QString head;
    Align align;
  };

  explicit TextTable(std::vector<Column> columns);

  /// Missing cells at the end stay empty.
  void add(QStringList const& cells);
  /// The same in UTF-8.
  void addUtf8(std::initializer_list<std::string_view> cells);
  void addUtf8(std::vector<std::string> const& cells);
  /// Head and rows, each a line, two blanks between columns and none at the end of a line.
  void write(TextSink const& sink) const;
  QString toString() const;  ///< what `write` writes

 private:
  void addCell(std::string_view utf8);
  void append(std::string_view printableUtf8);
  void endRow();

  std::vector<Column> columns;
  std::vector<std::size_t> widths;
  std::string bytes;                 ///< of all cells, row by row, the head first
  std::vector<std::uint32_t> sizes;  ///< bytes of each cell
};

/// A table below its title.
QString titled(QString const& title, TextTable const& table);
void writeTitled(QString const& title, TextTable const& table, TextSink const& sink);

/// Labels and values, one pair a line: the head of a report.
QString labelled(std::vector<std::pair<QString, QString>> const& lines);

}  // namespace kvn::host
