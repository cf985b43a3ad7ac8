// TextTable: aligned columns for people.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace kvn::host {

/// Columns of a fixed-pitch terminal that a text takes: two for the wide signs of East Asia, none for combining marks.
int displayWidth(QString const& text);

class TextTable {
 public:
  enum Align { Left, Right };
  struct Column {
    QString head;
    Align align;
  };

  explicit TextTable(std::vector<Column> columns);

  /// Missing cells at the end stay empty.
  void add(QStringList cells);
  /// Head and rows, each a line, two blanks between columns and none at the end of a line.
  QString toString() const;

 private:
  std::vector<int> widths() const;
  QString line(QStringList const& cells, std::vector<int> const& widths) const;

  std::vector<Column> columns;
  QStringList heads;
  std::vector<QStringList> rows;
};

/// A table below its title.
QString titled(QString const& title, TextTable const& table);

/// Labels and values, one pair a line: the head of a report.
QString labelled(std::vector<std::pair<QString, QString>> const& lines);

}  // namespace kvn::host
