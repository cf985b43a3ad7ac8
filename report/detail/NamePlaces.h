// NamePlaces: room for the names of a picture.
#pragma once

#include "report/detail/Sheet.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kvn::detail {

/// Width of a text in a plain font of a size, pixels, as well as it can be told without the font: signs of East Asian
/// writing are as wide as they are high.
double widthOfText(std::string const& utf8, double size);

/// The first signs of a name, with an ellipsis where there are more, in one line: control characters become blanks.
std::string labelOf(std::string const& name);

/// A raster of what is taken on a picture. Names and symbols must not touch; a line under a name counts against it.
class NamePlaces {
 public:
  explicit NamePlaces(Box const& area);

  void takeSymbol(Place middle, double radius);
  void takeLine(Place from, Place to);

  struct Label {
    double x = 0.0;  ///< of the left end of the base line, from the point
    double y = 0.0;
  };
  /// The best free place about a point, which is taken by that; nothing where there is none.
  std::optional<Label> place(Place point, double radius, double width, double size);

 private:
  struct Cells {
    int left, top, right, bottom;  ///< the last ones included
  };
  Cells cellsOf(Box const& box) const;
  std::size_t indexOf(int row, int column) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column);
  }
  bool isInside(Box const& box) const;
  int linesIn(Cells const& cells) const;  ///< -1 where something stands

  static constexpr std::uint8_t kTaken = 255;

  Box area;
  int columns = 0;
  int rows = 0;
  std::vector<std::uint8_t> cells;  ///< lines across a cell, or kTaken
};

}  // namespace kvn::detail
