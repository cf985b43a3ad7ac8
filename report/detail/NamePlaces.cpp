#include "report/detail/NamePlaces.h"

#include <utils/Utf8.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace kvn::detail {
namespace {

constexpr double kCell = 3.0;  // pixels
constexpr std::size_t kLongestLabel = 32;
constexpr std::uint32_t kFirstWide = 0x1100;  // Hangul; nearly all that follows is as wide as it is high
constexpr double kGap = 3.0;                  // between symbol and name, pixels

/// Of the size of the font, for plain sans-serif fonts: the mean of digits is 0.56.
double widthOfSign(std::uint32_t code) {
  if (code >= kFirstWide) return 1.0;
  if (code < 0x80 && std::string_view(".,:;'|!iljI ()[]").find(static_cast<char>(code)) != std::string_view::npos) {
    return 0.31;
  }
  if (code == 'm' || code == 'w' || code == 'M' || code == 'W' || code == '@' || code == '%') return 0.88;
  if (code >= 'A' && code <= 'Z') return 0.68;
  return 0.57;
}

}  // namespace

double widthOfText(std::string const& utf8, double size) {
  double width = 0.0;
  std::string_view rest = utf8;
  while (!rest.empty()) {
    utils::Utf8Sign const sign = utils::firstUtf8(rest);
    width += widthOfSign(sign.code);
    rest.remove_prefix(std::max<std::size_t>(sign.size, 1));
  }
  return width * size;
}

std::string labelOf(std::string const& name) {
  std::string label;
  std::size_t count = 0;
  std::string_view rest = name;
  while (!rest.empty()) {
    if (count++ == kLongestLabel) return label + "\xE2\x80\xA6";
    utils::Utf8Sign const sign = utils::firstUtf8(rest);
    bool const isControl = sign.size == 0 || sign.code < 0x20 || (sign.code >= 0x7F && sign.code < 0xA0) ||
                           (sign.code & 0xFFFEU) == 0xFFFE;
    std::size_t const size = std::max<std::size_t>(sign.size, 1);
    label += isControl ? std::string_view(" ") : rest.substr(0, size);
    rest.remove_prefix(size);
  }
  return label;
}

NamePlaces::NamePlaces(Box const& whole)
    : area(whole),
      columns(static_cast<int>(std::ceil(whole.width() / kCell)) + 1),
      rows(static_cast<int>(std::ceil(whole.height() / kCell)) + 1),
      cells(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), 0) {}

NamePlaces::Cells NamePlaces::cellsOf(Box const& box) const {
  auto const cell = [](double value, int count) {
    return static_cast<int>(std::clamp(std::floor(value / kCell), 0.0, static_cast<double>(count - 1)));
  };
  return {cell(box.left - area.left, columns), cell(box.top - area.top, rows), cell(box.right - area.left, columns),
          cell(box.bottom - area.top, rows)};
}

bool NamePlaces::isInside(Box const& box) const {
  return box.left >= area.left && box.right <= area.right && box.top >= area.top && box.bottom <= area.bottom;
}

void NamePlaces::takeSymbol(Place middle, double radius) {
  Cells const taken = cellsOf({middle.x - radius, middle.y - radius, middle.x + radius, middle.y + radius});
  for (int row = taken.top; row <= taken.bottom; ++row) {
    auto const first = cells.begin() + std::ptrdiff_t{row} * columns;
    std::fill(first + taken.left, first + taken.right + 1, kTaken);
  }
}

void NamePlaces::takeLine(Place from, Place to) {
  double const length = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
  int const steps = static_cast<int>(std::min(length / kCell, 1e4)) + 1;
  for (int i = 0; i <= steps; ++i) {
    double const share = static_cast<double>(i) / steps;
    double const x = from.x + share * (to.x - from.x);
    double const y = from.y + share * (to.y - from.y);
    Cells const at = cellsOf({x, y, x, y});
    std::uint8_t& count = cells[indexOf(at.top, at.left)];
    if (count < kTaken - 1) ++count;
  }
}

int NamePlaces::linesIn(Cells const& where) const {
  int lines = 0;
  for (int row = where.top; row <= where.bottom; ++row) {
    for (int column = where.left; column <= where.right; ++column) {
      std::uint8_t const cell = cells[indexOf(row, column)];
      if (cell == kTaken) return -1;
      lines += std::min<int>(cell, 3);
    }
  }
  return lines;
}

std::optional<NamePlaces::Label> NamePlaces::place(Place point, double radius, double width, double size) {
  double const away = radius + kGap;
  double const rise = 0.72 * size;   // of capital letters above the base line
  double const fall = 0.22 * size;   // of letters below it
  double const slant = 0.7 * away;   // of a place to the side and above
  double const middle = rise / 2.0;  // base line of a name beside its point
  Label const choices[] = {
      {slant, -slant},
      {slant, slant + rise},
      {-slant - width, -slant},
      {-slant - width, slant + rise},
      {away, middle},
      {-away - width, middle},
      {-width / 2.0, -away},
      {-width / 2.0, away + rise},
      {2.2 * away, -1.6 * away},
      {2.2 * away, 1.6 * away + rise},
  };
  std::optional<Label> best;
  double least = 0.0;
  double rank = 0.0;
  for (Label const& choice : choices) {
    rank += 1.5;
    Box const box{point.x + choice.x, point.y + choice.y - rise, point.x + choice.x + width, point.y + choice.y + fall};
    if (!isInside(box)) continue;
    int const lines = linesIn(cellsOf(box));
    double const cost = lines + rank;
    if (lines < 0 || (best && cost >= least)) continue;
    least = cost;
    best = choice;
  }
  if (!best) return best;
  Cells const taken =
      cellsOf({point.x + best->x, point.y + best->y - rise, point.x + best->x + width, point.y + best->y + fall});
  for (int row = taken.top; row <= taken.bottom; ++row) {
    auto const first = cells.begin() + std::ptrdiff_t{row} * columns;
    std::fill(first + taken.left, first + taken.right + 1, kTaken);
  }
  return best;
}

}  // namespace kvn::detail
