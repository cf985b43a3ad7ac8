#include "MapSketch.h"

#include "Output.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>
#include <vector>

namespace kvn::host {
namespace {

using Look = SketchDataTool::Look;

constexpr unsigned kGridColour = 0xDDE3E8FF;
constexpr unsigned kGridTextColour = 0x6B7884FF;
constexpr unsigned kInk = 0x202020FF;
constexpr unsigned kEllipseColour = 0x0B7A75FF;
constexpr unsigned kKnownColour = 0x14508CFF;
constexpr unsigned kSuspectColour = 0xD0202EFF;
constexpr unsigned kMarkedColour = 0xEC9A29FF;

// Pixels on a screen.
constexpr double kTitleSize = 20.0;
constexpr double kTextSize = 13.0;
constexpr double kRow = 20.0;
constexpr double kSample = 30.0;
constexpr double kLeastPicture = 500.0;  // a smaller one has no room for words
constexpr double kRoomForWords = 86.0;   // above for the title and the grid, below for the legend
constexpr double kMarginOfView = 60.0;   // that a view leaves above and below what it frames

class MapSketch {
 public:
  MapSketch(MapScene& scene, mvz::View const& mapView, SiteDrawing const& siteDrawing, MapOptions const& mapOptions)
      : view(mapView),
        drawing(siteDrawing),
        options(mapOptions),
        tool(&scene),
        magnification(mapView.magnification()),
        width(view.getWidth() / magnification),
        height(view.getHeight() / magnification),
        isTranslated(SketchDataTool::canShow(System::tr("known point"))) {}

  void draw() {
    drawGrid();
    drawLines();
    drawEllipses();
    drawKnown();
    if (width < kLeastPicture || height < kLeastPicture / 2.0) return;
    drawTitle();
    drawLegend();
  }

 private:
  /// The place in the plane that is seen at a place of a picture on a screen.
  coord::xyh at(double x, double y) const {
    osg::Vec3d const place = view.toWorld({x * magnification, y * magnification});
    return {place.y(), place.x(), 0.0};
  }
  coord::xyh at(SitePoint const& point) const { return {point.x, point.y, 0.0}; }
  double metres(double pixels) const { return pixels * magnification * view.metresPerPixel(); }
  Look look(unsigned colour, double size) const { return {colour, static_cast<float>(size * magnification)}; }

  /// A word of the picture, in English where no font has the signs of its translation.
  QString word(char const* english) const { return isTranslated ? System::tr(english) : QString(english); }

  void drawGrid();
  void drawLines();
  void drawEllipses();
  void drawKnown();
  void drawTitle();
  void drawLegend();
  void drawTriangle(coord::xyh const& middle, double pixels = 13.0);
  std::vector<std::pair<QString, std::function<void(double, double)>>> legend();

  mvz::View const& view;
  SiteDrawing const& drawing;
  MapOptions const& options;
  SketchDataTool tool;
  double magnification;
  double width;  ///< of the picture on a screen, pixels
  double height;
  bool isTranslated;
  double scale = 0.0;  ///< of the ellipses; 0 where none is drawn
  bool hasKnown = false;
};

/// The largest of 1, 2 and 5 times a power of ten that is not above.
double roundStep(double value) {
  double const power = std::pow(10.0, std::floor(std::log10(value)));
  double const digits = value / power;
  return (digits >= 5.0 ? 5.0 : digits >= 2.0 ? 2.0 : 1.0) * power;
}

std::vector<double> multiplesBetween(double least, double largest, double step) {
  std::vector<double> values;
  double const first = std::ceil(least / step);
  int const count = static_cast<int>(std::floor(largest / step) - first) + 1;
  values.reserve(static_cast<std::size_t>(std::max(count, 0)));
  for (int i = 0; i < count; ++i) values.push_back((first + i) * step);
  return values;
}

void MapSketch::drawGrid() {
  double const step = roundStep(metres(std::max(width, height)) / 5.0);
  int const decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
  coord::xyh const corner = at(0.0, height);
  coord::xyh const opposite = at(width, 0.0);
  bool const hasWords = width >= kLeastPicture;
  Look const line = look(kGridColour, 1.0);
  Look const text = look(kGridTextColour, 11.0);
  for (double const x : multiplesBetween(corner.x, opposite.x, step)) {
    tool.drawPath({{x, corner.y, 0.0}, {x, opposite.y, 0.0}}, line);
    bool const hasRoom = x > at(0.0, height - 70.0).x && x < at(0.0, 60.0).x;
    if (hasWords && hasRoom) {
      tool.drawText({x + metres(7.0), at(4.0, 0.0).y, 0.0}, QString::number(x, 'f', decimals), text);
    }
  }
  for (double const y : multiplesBetween(corner.y, opposite.y, step)) {
    tool.drawPath({{corner.x, y, 0.0}, {opposite.x, y, 0.0}}, line);
    bool const hasRoom = y > at(50.0, 0.0).y && y < at(width - 50.0, 0.0).y;
    if (hasWords && hasRoom) {
      tool.drawText({at(0.0, 56.0).x, y + metres(3.0), 0.0}, QString::number(y, 'f', decimals), text);
    }
  }
}

void MapSketch::drawLines() {
  for (SiteLine const& line : drawing.lines) {
    bool const isMarked = line.test > 1.0;
    if (!line.isSuspect && !isMarked) continue;
    tool.drawPath({at(drawing.points[line.from]), at(drawing.points[line.to])},
                  look(line.isSuspect ? kSuspectColour : kMarkedColour, 3.0));
  }
}

void MapSketch::drawEllipses() {
  if (!options.hasEllipses) return;
  double const automatic = ellipseScaleOf(drawing, SvgOptions::Ellipses::Confidence);
  if (automatic <= 0.0) return;
  scale = options.ellipseScale.value_or(automatic);
  double const factor = drawing.confidenceFactor > 0.0 ? drawing.confidenceFactor : 1.0;
  for (SitePoint const& point : drawing.points) {
    if (!point.ellipse) continue;
    SiteEllipse const& ellipse = *point.ellipse;
    tool.drawEllipse(at(point), scale * factor * ellipse.semiMajor, scale * factor * ellipse.semiMinor, ellipse.bearing,
                     look(kEllipseColour, 1.5));
  }
}

/// A second triangle about that of the icon.
void MapSketch::drawTriangle(coord::xyh const& middle, double pixels) {
  double const radius = metres(pixels);
  std::vector<coord::xyh> corners;
  for (int corner = 0; corner <= 3; ++corner) {
    double const azimuth = corner * 2.0943951023931953;  // a third of a circle
    corners.emplace_back(middle.x + radius * std::cos(azimuth), middle.y + radius * std::sin(azimuth), 0.0);
  }
  tool.drawPath(corners, look(kKnownColour, 1.5));
}

void MapSketch::drawKnown() {
  if (drawing.lines.empty()) return;  // of a list of coordinates all are
  for (SitePoint const& point : drawing.points) {
    if (!point.isKnown) continue;
    drawTriangle(at(point));
    hasKnown = true;
  }
}

void MapSketch::drawTitle() {
  QString const title = options.title.isEmpty() ? QString::fromStdString(drawing.title) : options.title;
  if (!title.isEmpty()) tool.drawText(at(14.0, 20.0), printable(title).left(60), look(kInk, kTitleSize));
  if (scale <= 0.0) return;
  bool const isConfidence = drawing.confidenceFactor > 0.0;
  QString kind = word(isConfidence ? QT_TRANSLATE_NOOP("kvn::System", "Confidence ellipses")
                                   : QT_TRANSLATE_NOOP("kvn::System", "Standard error ellipses"));
  if (isConfidence) kind += QString(" %1 %").arg(100.0 * drawing.confidence);
  tool.drawText(at(14.0, 41.0), kind + QString::fromUtf8(" \xC3\x97 %1").arg(scale, 0, 'g', 6),
                look(kEllipseColour, kTextSize));
}

std::vector<std::pair<QString, std::function<void(double, double)>>> MapSketch::legend() {
  std::vector<std::pair<QString, std::function<void(double, double)>>> items;
  auto const stroke = [this](unsigned colour, double thickness) {
    return [this, colour, thickness](double x, double y) {
      tool.drawPath({at(x, y), at(x + kSample, y)}, look(colour, thickness));
    };
  };
  constexpr double kIcon = 7.0;  // of the triangle that the layers draw at each station
  if (hasKnown) {
    items.emplace_back(word(QT_TRANSLATE_NOOP("kvn::System", "known point")), [this](double x, double y) {
      drawTriangle(at(x + 14.0, y + 3.0));
      drawTriangle(at(x + 14.0, y + 3.0), kIcon);
    });
  }
  auto const isNewStation = [](SitePoint const& point) { return !point.isKnown && point.isStation; };
  if (std::any_of(drawing.points.begin(), drawing.points.end(), isNewStation)) {
    items.emplace_back(word(QT_TRANSLATE_NOOP("kvn::System", "station")),
                       [this](double x, double y) { drawTriangle(at(x + 14.0, y + 3.0), kIcon); });
  }
  auto const isTarget = [](SitePoint const& point) { return !point.isKnown && !point.isStation; };
  bool const isAdjusted = drawing.source == SiteDrawing::Source::LeastSquares;
  if (isAdjusted && std::any_of(drawing.points.begin(), drawing.points.end(), isTarget)) {
    items.emplace_back(word(QT_TRANSLATE_NOOP("kvn::System", "target")), [this](double x, double y) {
      tool.drawEllipse(at(x + 14.0, y), metres(5.0), metres(5.0), 0.0, look(kKnownColour, 1.5));
    });
  }
  if (scale > 0.0) {
    items.emplace_back(word(QT_TRANSLATE_NOOP("kvn::System", "error ellipse")), [this](double x, double y) {
      tool.drawEllipse(at(x + kSample / 2.0, y), metres(14.0), metres(7.0), utils::kRightAngle,
                       look(kEllipseColour, 1.5));
    });
  }
  auto const any = [this](auto const& is) { return std::any_of(drawing.lines.begin(), drawing.lines.end(), is); };
  if (any([](SiteLine const& line) { return line.isSuspect; }))
    items.emplace_back(word(QT_TRANSLATE_NOOP("kvn::System", "suspect")), stroke(kSuspectColour, 3.0));
  if (any([](SiteLine const& line) { return !line.isSuspect && line.test > 1.0; })) {
    items.emplace_back(word(QT_TRANSLATE_NOOP("kvn::System", "fails its test")), stroke(kMarkedColour, 3.0));
  }
  return items;
}

/// Of a text, in heights of its letters, roughly: Chinese signs are as wide as high.
double widthOfWords(QString const& text) {
  double width = 0.0;
  for (QChar const sign : text) width += sign.unicode() < 0x2E80 ? 0.62 : 1.05;
  return width;
}

void MapSketch::drawLegend() {
  // To the right of the scale bar, which takes a fifth of the width.
  double const left = 0.2 * width + 60.0;
  double x = left;
  double y = height - 22.0 - kRow;
  for (auto const& [words, drawSymbol] : legend()) {
    double const wide = kSample + 34.0 + kTextSize * widthOfWords(words);
    if (x > left && x + wide > width) {
      x = left;
      y += kRow;
    }
    drawSymbol(x, y);
    tool.drawText(at(x + kSample + 6.0, y), words, look(kInk, kTextSize));
    x += wide;
  }
}

}  // namespace

void makeRoomForWords(mvz::View& view, SiteDrawing const& drawing) {
  double const pixel = view.magnification();
  double const width = view.getWidth();
  double const height = view.getHeight();
  if (width < kLeastPicture * pixel || height < kLeastPicture / 2.0 * pixel) return;
  osg::BoundingBoxd bounds;
  double upper = height;
  double lower = 0.0;
  for (SitePoint const& point : drawing.points) {
    osg::Vec3d const place(point.y, point.x, 0.0);
    double const y = view.toPixel(place).y();
    if (!(y >= 0.0 && y <= height)) continue;  // too far to be framed
    bounds.expandBy(place);
    upper = std::min(upper, y);
    lower = std::max(lower, y);
  }
  double const room = kRoomForWords * pixel;
  if (!bounds.valid() || (upper >= room && lower <= height - room)) return;
  // The view frames bounds with a margin of its own; what they are larger by is larger on the picture before.
  double const margin = std::min(kMarginOfView * pixel, 0.2 * height);
  double const more = (room - margin) * view.metresPerPixel() * (height - 2.0 * margin) / (height - 2.0 * room);
  bounds._min.y() -= more;
  bounds._max.y() += more;
  view.fullMap(bounds);
}

void sketch(MapScene& scene, mvz::View const& view, SiteDrawing const& drawing, MapOptions const& options) {
  MapSketch(scene, view, drawing, options).draw();
}

}  // namespace kvn::host
