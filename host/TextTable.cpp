#include "TextTable.h"

#include "Output.h"

#include <QVector>
#include <algorithm>
#include <utility>

namespace kvn::host {
namespace {

struct Range {
  uint first;
  uint last;
};

// The wide and full-width blocks of Unicode's East Asian width.
constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x4DBF},   {0x4E00, 0xA4CF}, {0xA960, 0xA97F},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

int widthOf(uint c) {
  switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
      return 0;
    default:
      break;
  }
  bool const wide = std::any_of(std::begin(kWide), std::end(kWide),
                                [c](Range const& range) { return c >= range.first && c <= range.last; });
  return wide ? 2 : 1;
}

QString padded(QString const& text, int width, TextTable::Align align) {
  QString const blanks(std::max(width - displayWidth(text), 0), QLatin1Char(' '));
  return align == TextTable::Left ? text + blanks : blanks + text;
}

QString withoutTrailingBlanks(QString text) {
  while (text.endsWith(QLatin1Char(' '))) text.chop(1);
  return text;
}

}  // namespace

int displayWidth(QString const& text) {
  int width = 0;
  for (uint const c : text.toUcs4()) width += widthOf(c);
  return width;
}

TextTable::TextTable(std::vector<Column> tableColumns) : columns(std::move(tableColumns)) {
  for (Column const& column : columns) heads.append(column.head);
}

void TextTable::add(QStringList cells) {
  for (QString& cell : cells) cell = printable(cell);
  while (cells.size() < heads.size()) cells.append(QString());
  rows.push_back(std::move(cells));
}

QString TextTable::toString() const {
  std::vector<int> const width = widths();
  QString text = line(heads, width);
  for (QStringList const& row : rows) text += line(row, width);
  return text;
}

std::vector<int> TextTable::widths() const {
  std::vector<int> width;
  for (int i = 0; i < heads.size(); ++i) {
    int widest = displayWidth(heads[i]);
    for (QStringList const& row : rows) widest = std::max(widest, displayWidth(row[i]));
    width.push_back(widest);
  }
  return width;
}

QString TextTable::line(QStringList const& cells, std::vector<int> const& width) const {
  QString text;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    text += QLatin1String("  ") + padded(cells[static_cast<int>(i)], width[i], columns[i].align);
  }
  return withoutTrailingBlanks(text) + QLatin1Char('\n');
}

QString titled(QString const& title, TextTable const& table) {
  return QString("\n%1\n%2").arg(title, table.toString());
}

QString labelled(std::vector<std::pair<QString, QString>> const& lines) {
  int widest = 0;
  for (auto const& entry : lines) widest = std::max(widest, displayWidth(entry.first));
  QString text;
  for (auto const& [label, value] : lines) {
    text += QLatin1String("  ") + padded(label, widest + 2, TextTable::Left) + printable(value) + QLatin1Char('\n');
  }
  return text;
}

}  // namespace kvn::host
