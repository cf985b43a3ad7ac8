// SiteSvg: the map of a job as SVG, north up.
#pragma once

#include "report/SiteDrawing.h"

#include <utils/Export.h>

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <string>

namespace kvn {

struct SvgOptions {
  enum class Ellipses {
    None,
    Standard,
    Confidence,  ///< standard ones where the drawing has no confidence factor
  };

  /// A file of its own has colours of its own. A picture inside a page takes them from the custom properties `--paper`,
  /// `--ink`, `--known`, `--new`, `--line`, `--suspect`, `--doubt`, `--ellipse` and `--grid` of the page, and keeps the
  /// size of its symbols and names while `--inverse-zoom`, 1 by default, follows the zoom of the group `view`.
  bool isInPage = false;
  double width = 1000.0;  ///< of the whole picture, pixels of 1/96 inch, 200 to 20000
  double height = 0.0;    ///< 0: as the points lie
  Ellipses ellipses = Ellipses::Confidence;
  /// Ellipses are drawn so many times as large as the points lie apart; 0: by the ellipses and the picture, 1, 2 or 5
  /// times a power of ten.
  double ellipseScale = 0.0;
  bool hasTitle = true;
  bool hasNames = true;
  /// A name that finds no room has the class `crowded` and is not seen, but for a page that zooms. Beyond this number
  /// they are left out.
  std::size_t crowdedNames = 5000;
  std::string title;  ///< UTF-8; empty for that of the drawing
  /// The words of the picture in another language, UTF-8; empty for English, `translatedMapWord` for the language of
  /// the library's messages. Asked for: "known point", "new point", "side point", "nothing checks it", "does not fit",
  /// "direction and distance", "direction", "distance", "observed both ways", "suspect", "fails its test", "confidence
  /// ellipses", "standard ellipses", "Not adjusted", "Adjusted by least squares", "Adjusted", "Traverse", "Planned",
  /// "points", "lines"; for the notes of DXF "Confidence ellipses", "Standard error ellipses".
  std::function<std::string(char const* english)> words;
  /// Points, and lines, that are elements of their own, of each at most so many: those that matter most. The others are
  /// one path of dots and one of strokes, without ellipses and names, so that a program opens a hundred thousand
  /// points.
  std::size_t elements = static_cast<std::size_t>(-1);
};

/// A word of pictures in the language of the library's messages, UTF-8; any other text comes back as it is.
KELVANE_EXPORT std::string translatedMapWord(char const* english);

/// What a picture shows and how, beside the drawing itself.
struct SvgPicture {
  double width = 0.0;  ///< pixels
  double height = 0.0;
  double ellipseScale = 0.0;     ///< 0 where no ellipse is drawn
  std::size_t names = 0;         ///< that have found room
  std::size_t crowded = 0;       ///< that have not
  std::size_t restOfPoints = 0;  ///< that are no elements of their own
  std::size_t restOfLines = 0;
};

/// The scale of the ellipses where none is told: the median ellipse is about a 25th of the picture wide, and not wider
/// than the points lie apart; 1, 2 or 5 times a power of ten. 0 without any ellipse.
KELVANE_EXPORT double ellipseScaleOf(SiteDrawing const& drawing, SvgOptions::Ellipses ellipses);

/// Writes one `svg` element; as a file of its own with the head of an XML document.
///
///     <g class="p known suspect" id="p12" data-p="12" transform="translate(x y)">   a point, new ones with class new
///     <line class="l dir dist both suspect" data-l="34" data-a="12" data-b="13">   a line, by its points; marked where
///     an
///                                       observation fails its test and is no suspect
///     <ellipse class="e" data-p="12" data-a="0.0021" data-b="0.0012">              semi-axes in metres, to be drawn
///
/// `p`, `l`, `a` and `b` are places in the lists of the drawing. The group `ellipses` has `data-scale` and
/// `data-pixels`, pixels per metre, so that rx is data-a × pixels × scale; the `svg` element has `data-north`,
/// `data-east` (those of its upper left corner, metres) and `data-pixels`. Works without any script.
///
/// Near-linear in the size of the drawing: names are placed with a raster of what is taken.
KELVANE_EXPORT SvgPicture writeSvg(std::ostream& stream, SiteDrawing const& drawing, SvgOptions const& options);

}  // namespace kvn
