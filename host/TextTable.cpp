#include "TextTable.h"

#include <utils/Utf8.h>

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

constexpr std::size_t kPiece = 1 << 16;

/// Of valid UTF-8.
std::size_t widthOfUtf8(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    auto const [code, size] = utils::firstUtf8(text);
    width += code < 0x80 ? 1 : static_cast<std::size_t>(widthOf(code));
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return width;
}

void appendPadded(std::string& line, std::string_view cell, std::size_t width, TextTable::Align align) {
  std::size_t const own = widthOfUtf8(cell);
  std::size_t const blanks = width > own ? width - own : 0;
  if (align == TextTable::Right) line.append(blanks, ' ');
  line += cell;
  if (align == TextTable::Left) line.append(blanks, ' ');
}

}  // namespace

int displayWidth(QString const& text) { return static_cast<int>(widthOfUtf8(text.toStdString())); }

TextTable::TextTable(std::vector<Column> tableColumns) : columns(std::move(tableColumns)), widths(columns.size()) {
  for (Column const& column : columns) append(column.head.toStdString());
}

void TextTable::add(QStringList const& cells) {
  int const count = std::min(cells.size(), static_cast<int>(columns.size()));
  for (int i = 0; i < count; ++i) append(printable(cells[i]).toStdString());
  endRow();
}

void TextTable::addUtf8(std::initializer_list<std::string_view> cells) {
  for (std::string_view const cell : cells) addCell(cell);
  endRow();
}

void TextTable::addUtf8(std::vector<std::string> const& cells) {
  for (std::string const& cell : cells) addCell(cell);
  endRow();
}

void TextTable::addCell(std::string_view utf8) {
  if (isPlainAscii(utf8)) {
    append(utf8);
  } else {
    append(printable(QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()))).toStdString());
  }
}

void TextTable::append(std::string_view printableUtf8) {
  std::size_t& widest = widths[sizes.size() % columns.size()];
  widest = std::max(widest, widthOfUtf8(printableUtf8));
  bytes += printableUtf8;
  sizes.push_back(static_cast<std::uint32_t>(printableUtf8.size()));
}

void TextTable::endRow() {
  while (sizes.size() % columns.size() != 0) sizes.push_back(0);
}

void TextTable::write(TextSink const& sink) const {
  std::string text;
  std::size_t lineBegin = 0;
  std::size_t at = 0;
  for (std::size_t cell = 0; cell < sizes.size(); ++cell) {
    std::size_t const column = cell % columns.size();
    text += "  ";
    appendPadded(text, std::string_view(bytes).substr(at, sizes[cell]), widths[column], columns[column].align);
    at += sizes[cell];
    if (column + 1 < columns.size()) continue;
    while (text.size() > lineBegin && text.back() == ' ') text.pop_back();
    text += '\n';
    if (text.size() >= kPiece) {
      sink(text);
      text.clear();
    }
    lineBegin = text.size();
  }
  sink(text);
}

QString TextTable::toString() const {
  std::string text;
  write([&text](std::string_view piece) { text += piece; });
  return QString::fromStdString(text);
}

QString titled(QString const& title, TextTable const& table) {
  return QString("\n%1\n%2").arg(title, table.toString());
}

void writeTitled(QString const& title, TextTable const& table, TextSink const& sink) {
  sink(QString("\n%1\n").arg(title).toStdString());
  table.write(sink);
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
