#include "report/SiteSvg.h"

#include "report/detail/NamePlaces.h"
#include "report/detail/Sheet.h"
#include "report/detail/SvgText.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace kvn {
namespace {

using detail::Box;
using detail::ellipseScaleFor;
using detail::Extent;
using detail::extentOf;
using detail::labelOf;
using detail::NamePlaces;
using detail::Place;
using detail::roundStep;
using detail::Sheet;
using detail::SvgText;

constexpr double kDegree = 180.0 / utils::kPi;
constexpr double kLeft = 34.0;  // of the map, for the coordinates of the grid
constexpr double kRight = 14.0;
constexpr double kTop = 14.0;
constexpr double kTitle = 46.0;
constexpr double kBottom = 22.0;  // coordinates of the grid
constexpr double kLegendRow = 22.0;
constexpr double kLegendText = 11.0;
constexpr double kMargin = 46.0;  // about the outermost points, for their names
constexpr double kSmallest = 200.0;
constexpr double kGreatest = 20000.0;

/// How large symbols and names are: smaller where there are many.
struct Sizes {
  double symbol = 4.5;  ///< radius of a new point, pixels
  double side = 2.4;
  double name = 12.0;
  double line = 1.0;
};

Sizes sizesFor(std::size_t points) {
  if (points <= 60) return {};
  if (points <= 400) return {3.4, 1.9, 10.5, 0.9};
  if (points <= 3000) return {2.2, 1.3, 9.0, 0.6};
  return {1.4, 0.9, 8.0, 0.4};
}

/// A custom property of the page, or a colour.
std::string colour(bool isInPage, char const* property, char const* own) {
  return isInPage ? std::string("var(--") + property + ',' + own + ')' : own;
}

/// Marks the `most` with the largest weights; of equal ones the first.
std::vector<bool> heaviest(std::size_t most, std::vector<double> const& weights) {
  std::vector<bool> isIn(weights.size(), weights.size() <= most);
  if (weights.size() <= most) return isIn;
  std::vector<std::size_t> order(weights.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  auto const isBefore = [&weights](std::size_t a, std::size_t b) {
    return weights[a] != weights[b] ? weights[a] > weights[b] : a < b;
  };
  std::nth_element(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(most), order.end(), isBefore);
  for (std::size_t i = 0; i < most; ++i) isIn[order[i]] = true;
  return isIn;
}

class SvgWriter {
 public:
  SvgWriter(SiteDrawing const& siteDrawing, SvgOptions const& svgOptions)
      : drawing(siteDrawing), options(svgOptions), sizes(sizesFor(siteDrawing.points.size())) {
    layOut();
    chooseElements();
  }

  std::string text() {
    writeHead();
    writeStyle();
    writeFrame();
    out += "<g clip-path=\"url(#kelvane-area)\"><g class=\"view\">\n";
    writeLines();
    writeEllipses();
    writePoints();
    out += "</g></g>\n";
    writeGridLabels();
    if (options.hasTitle) writeTitle();
    writeNorthArrow();
    writeLegend();
    out += "</svg>\n";
    return std::move(out.text);
  }

  SvgPicture picture;

 private:
  struct LegendItem {
    std::string symbol;  ///< SVG, about 0, 0
    std::string words;
    double width;  ///< of the symbol, pixels
  };

  void layOut();
  void chooseElements();
  void chooseEllipses();
  std::vector<LegendItem> legendItems() const;
  double legendHeight() const;
  double gridStep() const;
  std::string words(char const* english) const { return options.words ? options.words(english) : english; }
  Place placeOf(std::size_t point) const { return sheet->placeOf(drawing.points[point].x, drawing.points[point].y); }
  double radiusOf(SitePoint const& point) const {
    if (point.isKnown) return 1.35 * sizes.symbol;
    return point.isSidePoint ? sizes.side : sizes.symbol;
  }

  void writeHead();
  void writeStyle();
  void writeFrame();
  void writeLines();
  void writeRestOfLines();
  void writeEllipses();
  void takeEllipse(NamePlaces& places, std::size_t p) const;
  void writePoints();
  void writeRestOfPoints();
  void writePoint(std::size_t p, std::optional<NamePlaces::Label> const& label, bool isCrowded, bool isNamed);
  void writeGridLabels();
  void writeTitle();
  void writeNorthArrow();
  void writeLegend();
  void writeScaleBar(double x, double y);

  SiteDrawing const& drawing;
  SvgOptions const& options;
  Sizes sizes;
  Box map;
  std::optional<Sheet> sheet;
  Extent extent;
  double ellipseFactor = 1.0;
  bool isConfidence = false;
  std::vector<LegendItem> legend;
  std::vector<bool> isPointElement;
  std::vector<bool> isLineElement;
  SvgText out;
};

void SvgWriter::chooseElements() {
  constexpr double kFirst = 1e300;
  std::vector<double> weights;
  for (SitePoint const& point : drawing.points) {
    bool const isFirst = point.isKnown || point.isSuspect || !point.isChecked;
    weights.push_back(isFirst ? kFirst : point.mp.value_or(0.0));
  }
  isPointElement = heaviest(options.elements, weights);
  weights.clear();
  for (SiteLine const& line : drawing.lines) {
    weights.push_back(line.isSuspect ? kFirst : std::isnan(line.test) ? 0.0 : line.test);
  }
  isLineElement = heaviest(options.elements, weights);
  auto const countRest = [](std::vector<bool> const& isIn) {
    return static_cast<std::size_t>(std::count(isIn.begin(), isIn.end(), false));
  };
  picture.restOfPoints = countRest(isPointElement);
  picture.restOfLines = countRest(isLineElement);
}

void SvgWriter::chooseEllipses() {
  if (options.ellipses == SvgOptions::Ellipses::None) return;
  isConfidence = options.ellipses == SvgOptions::Ellipses::Confidence && drawing.confidenceFactor > 0.0;
  ellipseFactor = isConfidence ? drawing.confidenceFactor : 1.0;
  double const automatic = ellipseScaleFor(drawing, ellipseFactor, extent);
  if (automatic > 0.0) picture.ellipseScale = options.ellipseScale > 0.0 ? options.ellipseScale : automatic;
}

void SvgWriter::layOut() {
  extent = extentOf(drawing);
  chooseEllipses();
  legend = legendItems();
  picture.width = std::clamp(options.width, kSmallest, kGreatest);
  map.left = kLeft;
  map.right = picture.width - kRight;
  map.top = options.hasTitle ? kTitle : kTop;
  double const below = kBottom + legendHeight() + 8.0;
  double const least = map.top + below + 60.0;
  double height = std::min(options.height, kGreatest);
  if (height <= 0.0) {
    double const across = map.width() - 2.0 * kMargin;
    double const down =
        std::clamp(across * extent.height() / std::max(extent.width(), 1e-9), 0.35 * across, 1.25 * across);
    height = down + 2.0 * kMargin + map.top + below;
  }
  picture.height = std::max(height, least);
  map.bottom = picture.height - below;
  sheet.emplace(extent, map, std::min(kMargin, map.height() / 5.0));
}

std::vector<SvgWriter::LegendItem> SvgWriter::legendItems() const {
  auto const& points = drawing.points;
  auto const& lines = drawing.lines;
  auto const anyPoint = [&points](auto const& is) { return std::any_of(points.begin(), points.end(), is); };
  auto const anyLine = [&lines](auto const& is) { return std::any_of(lines.begin(), lines.end(), is); };
  std::vector<LegendItem> items;
  auto const add = [&](bool isThere, std::string symbol, char const* english, double width) {
    if (isThere) items.push_back({std::move(symbol), words(english), width});
  };
  auto const dot = [](char const* classes, bool isKnown, double radius) {
    return "<g class=\"p " + std::string(classes) + "\" transform=\"translate(7 0)\">" +
           SvgText::symbol(isKnown, radius) + "</g>";
  };
  auto const stroke = [](char const* classes) {
    return "<line class=\"l " + std::string(classes) + "\" x1=\"0\" y1=\"0\" x2=\"26\" y2=\"0\"/>";
  };
  add(anyPoint([](SitePoint const& p) { return p.isKnown; }), dot("known", true, 6.0), "known point", 14.0);
  add(anyPoint([](SitePoint const& p) { return !p.isKnown && !p.isSidePoint && p.isChecked; }), dot("new", false, 4.5),
      "new point", 14.0);
  add(anyPoint([](SitePoint const& p) { return p.isSidePoint && p.isChecked; }), dot("new side", false, 2.6),
      "side point", 14.0);
  bool const isLarge = anyPoint([](SitePoint const& p) { return !p.isChecked && !p.isSidePoint; });
  add(anyPoint([](SitePoint const& p) { return !p.isChecked; }),
      isLarge ? dot("new unchecked", false, 4.5) : dot("new side unchecked", false, 2.6), "nothing checks it", 14.0);
  add(anyPoint([](SitePoint const& p) { return p.isSuspect; }), dot("known suspect", true, 6.0), "does not fit", 14.0);
  add(anyLine([](SiteLine const& l) { return l.hasDirection && l.hasDistance; }), stroke("dir dist"),
      "direction and distance", 26.0);
  add(anyLine([](SiteLine const& l) { return l.hasDirection && !l.hasDistance; }), stroke("dir"), "direction", 26.0);
  add(anyLine([](SiteLine const& l) { return !l.hasDirection && l.hasDistance; }), stroke("dist"), "distance", 26.0);
  add(anyLine([](SiteLine const& l) { return l.bothWays; }), stroke("dir dist both"), "observed both ways", 26.0);
  add(anyLine([](SiteLine const& l) { return l.isSuspect; }), stroke("dir dist suspect"), "suspect", 26.0);
  add(anyLine([](SiteLine const& l) { return !l.isSuspect && l.test > 1.0; }), stroke("dir dist marked"),
      "fails its test", 26.0);
  return items;
}

double SvgWriter::legendHeight() const {
  double rows = 2.0;  // scale bars stand above the legend
  double x = kLeft;
  for (LegendItem const& item : legend) {
    double const width = item.width + 24.0 + detail::widthOfText(item.words, kLegendText);
    if (x > kLeft && x + width > picture.width - kRight && picture.width > 0.0) {
      ++rows;
      x = kLeft;
    }
    x += width;
  }
  return rows * kLegendRow + 6.0;
}

double SvgWriter::gridStep() const { return roundStep(std::max(map.width(), map.height()) / 5.0 / sheet->pixels); }

void SvgWriter::writeHead() {
  if (!options.isInPage) out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out += "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"site-map\" role=\"img\"";
  if (!options.isInPage) out.attribute("width", picture.width).attribute("height", picture.height);
  out += " viewBox=\"0 0 ";
  out.number(picture.width);
  out += " ";
  out.number(picture.height);
  out += "\"";
  out.exact("data-north", sheet->north).exact("data-east", sheet->east).exact("data-pixels", sheet->pixels);
  out += ">\n<title>";
  out.escaped(labelOf(options.title.empty() ? drawing.title : options.title));
  out += "</title>\n";
}

void SvgWriter::writeStyle() {
  auto const of = [this](char const* property, char const* own) { return colour(options.isInPage, property, own); };
  std::string const paper = of("paper", "#ffffff");
  std::string const ink = of("ink", "#1f2933");
  std::string const line = of("line", "#52677a");
  std::string const suspect = of("suspect", "#d0202e");
  out +=
      "<style>\n.site-map{font-family:'Helvetica Neue',Arial,'Noto Sans','Noto Sans CJK SC',sans-serif;fill:" + ink +
      "}\n.site-map .paper{fill:" + paper + "}\n.site-map .grid{stroke:" + of("grid", "#dfe5ea") +
      ";stroke-width:.6;fill:none}\n.site-map .frame{stroke:" + ink +
      ";stroke-width:1;fill:none}\n.site-map .tick{stroke:" + ink +
      ";stroke-width:.8;fill:none}\n.site-map .small{font-size:10px;fill:" + of("muted", "#5b6875") +
      "}\n.site-map .l{stroke:" + line + ";stroke-width:" + SvgText::of(sizes.line) +
      ";fill:none;vector-effect:non-scaling-stroke}\n.site-map .l.both{stroke-width:" + SvgText::of(1.9 * sizes.line) +
      "}\n.site-map .l.dir{stroke-dasharray:7 4}\n.site-map .l.dist{stroke-dasharray:1.5 3.5;stroke-linecap:round}\n"
      ".site-map .l.dir.dist{stroke-dasharray:none}\n.site-map .l.suspect{stroke:" +
      suspect + ";stroke-width:" + SvgText::of(std::max(2.2 * sizes.line, 1.8)) +
      "}\n.site-map .l.marked{stroke:" + of("doubt", "#ec9a29") +
      ";stroke-width:" + SvgText::of(std::max(2.0 * sizes.line, 1.5)) +
      "}\n.site-map .e{fill:" + of("ellipse", "#0b7a75") + ";fill-opacity:.14;stroke:" + of("ellipse", "#0b7a75") +
      ";stroke-width:" + SvgText::of(0.9 * sizes.line) +
      ";vector-effect:non-scaling-stroke}\n.site-map .p .s{fill:" + paper + ";stroke:" + of("new", "#1f2933") +
      ";stroke-width:" + SvgText::of(std::max(1.3 * sizes.line, 0.7)) +
      "}\n.site-map .rest{fill:none;stroke-linecap:round;vector-effect:non-scaling-stroke;stroke:" +
      of("new", "#1f2933") + ";stroke-width:" + SvgText::of(2.0 * sizes.symbol) +
      "}\n.site-map .p.side .s{fill:" + of("new", "#1f2933") +
      ";stroke:none}\n.site-map .p.known .s{fill:" + of("known", "#14508c") + ";stroke:" + paper +
      ";stroke-width:.8}\n.site-map .p.unchecked .s{fill:" + of("doubt", "#ec9a29") +
      "}\n.site-map .p.suspect .s{fill:" + suspect + "}\n.site-map .n{font-size:" + SvgText::of(sizes.name) +
      "px;paint-order:stroke;stroke:" + paper +
      ";stroke-width:2.5px;stroke-linejoin:round;stroke-opacity:.85}\n"
      ".site-map .known .n{font-weight:600}\n.site-map .n.crowded{display:none}\n";
  if (options.isInPage) out += ".site-map .view .p>*{transform:scale(var(--inverse-zoom,1))}\n";
  out += "</style>\n";
}

void SvgWriter::writeFrame() {
  out += "<clipPath id=\"kelvane-area\">";
  out.rectangle(map, "");
  out += "</clipPath>\n";
  if (!options.isInPage) out.rectangle({0.0, 0.0, picture.width, picture.height}, "paper");
  double const step = gridStep();
  out += "<g class=\"grid\">\n";
  double const south = sheet->north - map.bottom / sheet->pixels;
  double const north = sheet->north - map.top / sheet->pixels;
  double const west = sheet->east + map.left / sheet->pixels;
  double const east = sheet->east + map.right / sheet->pixels;
  for (double const x : detail::multiplesBetween(south, north, step)) {
    double const y = sheet->placeOf(x, 0.0).y;
    out.line({map.left, y}, {map.right, y}, "");
  }
  for (double const y : detail::multiplesBetween(west, east, step)) {
    double const x = sheet->placeOf(0.0, y).x;
    out.line({x, map.top}, {x, map.bottom}, "");
  }
  out += "</g>\n";
}

void SvgWriter::writeLines() {
  out += "<g class=\"lines\">\n";
  writeRestOfLines();
  // Suspects are drawn last, so that nothing hides them.
  for (bool const isSuspect : {false, true}) {
    for (std::size_t l = 0; l < drawing.lines.size(); ++l) {
      SiteLine const& line = drawing.lines[l];
      if (line.isSuspect != isSuspect || !isLineElement[l]) continue;
      out += "<line class=\"l";
      if (line.hasDirection) out += " dir";
      if (line.hasDistance) out += " dist";
      if (line.bothWays) out += " both";
      if (line.isTraverseLeg) out += " leg";
      if (line.isSuspect) {
        out += " suspect";
      } else if (line.test > 1.0) {
        out += " marked";
      }
      out += "\"";
      out.count("data-l", l).count("data-a", line.from).count("data-b", line.to);
      Place const a = placeOf(line.from);
      Place const b = placeOf(line.to);
      out.attribute("x1", a.x).attribute("y1", a.y).attribute("x2", b.x).attribute("y2", b.y);
      out += "/>\n";
    }
  }
  out += "</g>\n";
}

void SvgWriter::writeRestOfLines() {
  if (picture.restOfLines == 0) return;
  out += "<path class=\"l dir dist\" d=\"";
  for (std::size_t l = 0; l < drawing.lines.size(); ++l) {
    if (isLineElement[l]) continue;
    Place const a = placeOf(drawing.lines[l].from);
    Place const b = placeOf(drawing.lines[l].to);
    out += "M";
    out.number(a.x);
    out += " ";
    out.number(a.y);
    out += "L";
    out.number(b.x);
    out += " ";
    out.number(b.y);
  }
  out += "\"/>\n";
}

void SvgWriter::writeRestOfPoints() {
  if (picture.restOfPoints == 0) return;
  out += "<path class=\"rest\" d=\"";
  for (std::size_t p = 0; p < drawing.points.size(); ++p) {
    if (isPointElement[p]) continue;
    Place const at = placeOf(p);
    out += "M";
    out.number(at.x);
    out += " ";
    out.number(at.y);
    out += "h0";
  }
  out += "\"/>\n";
}

void SvgWriter::writeEllipses() {
  if (picture.ellipseScale <= 0.0) return;
  out += "<g class=\"ellipses\"";
  out.exact("data-scale", picture.ellipseScale).exact("data-pixels", sheet->pixels);
  out += ">\n";
  double const pixels = picture.ellipseScale * sheet->pixels;
  for (std::size_t p = 0; p < drawing.points.size(); ++p) {
    if (!drawing.points[p].ellipse || !isPointElement[p]) continue;
    detail::SiteEllipseAxes const axes = detail::axesOf(*drawing.points[p].ellipse, ellipseFactor);
    Place const at = placeOf(p);
    out += "<ellipse class=\"e\"";
    out.count("data-p", p).exact("data-a", axes.major).exact("data-b", axes.minor);
    out.attribute("rx", axes.major * pixels).attribute("ry", axes.minor * pixels);
    out += " transform=\"translate(";
    out.number(at.x);
    out += " ";
    out.number(at.y);
    // The x axis of the picture has the azimuth 90°, and both turn clockwise.
    out += ") rotate(";
    out.number(axes.bearing * kDegree - 90.0);
    out += ")\"/>\n";
  }
  out += "</g>\n";
}

/// Its axes, as lines.
void SvgWriter::takeEllipse(NamePlaces& places, std::size_t p) const {
  if (picture.ellipseScale <= 0.0 || !drawing.points[p].ellipse) return;
  detail::SiteEllipseAxes const axes = detail::axesOf(*drawing.points[p].ellipse, ellipseFactor);
  double const pixels = picture.ellipseScale * sheet->pixels;
  Place const at = placeOf(p);
  for (auto const& [length, bearing] :
       {std::pair{axes.major, axes.bearing}, std::pair{axes.minor, axes.bearing + utils::kRightAngle}}) {
    double const right = length * pixels * std::sin(bearing);
    double const down = -length * pixels * std::cos(bearing);
    places.takeLine({at.x - right, at.y - down}, {at.x + right, at.y + down});
  }
}

void SvgWriter::writePoints() {
  std::size_t const count = drawing.points.size();
  NamePlaces places(map);
  for (SiteLine const& line : drawing.lines) places.takeLine(placeOf(line.from), placeOf(line.to));
  for (std::size_t p = 0; p < count; ++p) {
    takeEllipse(places, p);
    places.takeSymbol(placeOf(p), radiusOf(drawing.points[p]));
  }
  // Which names come first to the free places.
  auto const rank = [this](std::size_t p) {
    SitePoint const& point = drawing.points[p];
    if (point.isSuspect) return 0;
    if (point.isKnown) return 1;
    if (point.isSidePoint) return 4;
    return point.isStation ? 2 : 3;
  };
  std::vector<std::size_t> order(count);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&rank](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
  std::vector<std::optional<NamePlaces::Label>> labels(count);
  std::vector<bool> isNamed(count, false);
  for (std::size_t const p : order) {
    if (!options.hasNames || drawing.points[p].name.empty() || !isPointElement[p]) continue;
    double const width = detail::widthOfText(labelOf(drawing.points[p].name), sizes.name);
    labels[p] = places.place(placeOf(p), radiusOf(drawing.points[p]), width, sizes.name);
    isNamed[p] = labels[p] || picture.crowded < options.crowdedNames;
    ++(labels[p] ? picture.names : picture.crowded);
  }
  out += "<g class=\"points\">\n";
  writeRestOfPoints();
  // What matters most is drawn last, above the others.
  for (auto p = order.rbegin(); p != order.rend(); ++p) {
    if (isPointElement[*p]) writePoint(*p, labels[*p], !labels[*p], isNamed[*p]);
  }
  out += "</g>\n";
}

void SvgWriter::writePoint(std::size_t p, std::optional<NamePlaces::Label> const& label, bool isCrowded, bool isNamed) {
  SitePoint const& point = drawing.points[p];
  double const radius = radiusOf(point);
  Place const at = placeOf(p);
  out += point.isKnown ? "<g class=\"p known" : "<g class=\"p new";
  if (point.isSidePoint) out += " side";
  if (point.isStation) out += " station";
  if (!point.isChecked) out += " unchecked";
  if (point.isSuspect) out += " suspect";
  out += "\" id=\"p";
  out.integer(p);
  out += "\"";
  out.count("data-p", p);
  out += " transform=\"translate(";
  out.number(at.x);
  out += " ";
  out.number(at.y);
  out += ")\">";
  out += SvgText::symbol(point.isKnown, radius);
  if (isNamed) {
    NamePlaces::Label const where = label.value_or(NamePlaces::Label{radius + 1.0, -radius - 1.0});
    out += isCrowded ? "<text class=\"n crowded\"" : "<text class=\"n\"";
    out.attribute("x", where.x).attribute("y", where.y);
    out += ">";
    out.escaped(labelOf(point.name));
    out += "</text>";
  }
  out += "</g>\n";
}

void SvgWriter::writeGridLabels() {
  double const step = gridStep();
  int const decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
  out += "<g class=\"grid-labels\">\n";
  double const south = sheet->north - map.bottom / sheet->pixels;
  double const north = sheet->north - map.top / sheet->pixels;
  double const west = sheet->east + map.left / sheet->pixels;
  double const east = sheet->east + map.right / sheet->pixels;
  for (double const x : detail::multiplesBetween(south, north, step)) {
    double const y = sheet->placeOf(x, 0.0).y;
    out.line({map.left - 4.0, y}, {map.left, y}, "tick");
    out.line({map.right, y}, {map.right + 4.0, y}, "tick");
    out += "<text class=\"small\" text-anchor=\"middle\" transform=\"translate(";
    out.number(map.left - 9.0);
    out += " ";
    out.number(y);
    out += ") rotate(-90)\">";
    out.fixed(x, decimals);
    out += "</text>\n";
  }
  for (double const y : detail::multiplesBetween(west, east, step)) {
    double const x = sheet->placeOf(0.0, y).x;
    out.line({x, map.bottom}, {x, map.bottom + 4.0}, "tick");
    out.line({x, map.top - 4.0}, {x, map.top}, "tick");
    out += "<text class=\"small\" text-anchor=\"middle\"";
    out.attribute("x", x).attribute("y", map.bottom + 15.0);
    out += ">";
    out.fixed(y, decimals);
    out += "</text>\n";
  }
  out += "</g>\n";
  out.rectangle(map, "frame");
}

void SvgWriter::writeTitle() {
  out += "<text font-size=\"17\" font-weight=\"600\"";
  out.attribute("x", map.left).attribute("y", 22.0);
  out += ">";
  out.escaped(labelOf(options.title.empty() ? drawing.title : options.title));
  out += "</text>\n<text class=\"small\"";
  out.attribute("x", map.left).attribute("y", 38.0);
  out += ">";
  std::string kind;
  switch (drawing.source) {
    case SiteDrawing::Source::Coordinates:
      kind = words("Not adjusted");
      break;
    case SiteDrawing::Source::LeastSquares:
      kind = words("Adjusted by least squares");
      break;
    case SiteDrawing::Source::Literal:
      kind = words("Adjusted");
      break;
    case SiteDrawing::Source::Traverses:
      kind = words("Traverse");
      break;
    case SiteDrawing::Source::Plan:
      kind = words("Planned");
      break;
  }
  out.escaped(kind + " \xC2\xB7 " + words("points") + ' ' + std::to_string(drawing.points.size()) + " \xC2\xB7 " +
              words("lines") + ' ' + std::to_string(drawing.lines.size()));
  out += "</text>\n";
}

void SvgWriter::writeNorthArrow() {
  double const x = map.right - 12.0;
  double const y = options.hasTitle ? 6.0 : map.top + 8.0;
  out += "<g class=\"north\" transform=\"translate(";
  out.number(x);
  out += " ";
  out.number(y);
  out +=
      ")\"><path d=\"M0 0L7 26L0 20Z\"/><path d=\"M0 0L-7 26L0 20Z\" fill=\"none\" stroke=\"currentColor\" "
      "class=\"tick\"/><text x=\"-12\" y=\"12\" font-size=\"13\" font-weight=\"600\" "
      "text-anchor=\"middle\">N</text></g>\n";
}

void SvgWriter::writeScaleBar(double x, double y) {
  double const length = roundStep(map.width() / 4.0 / sheet->pixels);
  double const width = length * sheet->pixels;
  out += "<g class=\"scale\">";
  for (int part = 0; part < 4; ++part) {
    double const left = x + part * width / 4.0;
    out += part % 2 == 0 ? "<rect class=\"tick\" style=\"fill:currentColor\"" : "<rect class=\"tick\"";
    out.attribute("x", left).attribute("y", y - 3.0).attribute("width", width / 4.0).attribute("height", 5.0);
    out += "/>";
  }
  out += "<text font-size=\"11\"";
  out.attribute("x", x + width + 8.0).attribute("y", y + 4.0);
  out += ">";
  bool const isLong = length >= 1000.0;
  out.escaped(SvgText::of(isLong ? length / 1000.0 : length) + (isLong ? " km" : " m"));
  out += "</text></g>\n";
  if (picture.ellipseScale <= 0.0) return;
  double const left = x + width + 80.0;
  double const error = roundStep(70.0 / picture.ellipseScale / sheet->pixels);
  double const errorWidth = error * picture.ellipseScale * sheet->pixels;
  out += "<g class=\"ellipse-scale\"><ellipse class=\"e\" rx=\"15\" ry=\"7\"";
  out.attribute("cx", left + 15.0).attribute("cy", y);
  out += "/><text font-size=\"11\"";
  std::string caption = words(isConfidence ? "confidence ellipses" : "standard ellipses");
  if (isConfidence) caption += ' ' + SvgText::of(100.0 * drawing.confidence) + " %";
  caption += " \xC3\x97 " + SvgText::of(picture.ellipseScale);
  out.attribute("x", left + 38.0).attribute("y", y + 4.0);
  out += ">";
  out.escaped(caption);
  out += "</text>";
  double const bar = left + 38.0 + detail::widthOfText(caption, 11.0) + 22.0;
  out += "<path class=\"tick\" d=\"M";
  out.number(bar);
  out += " ";
  out.number(y - 4.0);
  out += "v7h";
  out.number(errorWidth);
  out += "v-7\"/><text font-size=\"11\"";
  out.attribute("x", bar + errorWidth + 8.0).attribute("y", y + 4.0);
  out += ">";
  out.escaped(SvgText::of(1000.0 * error) + " mm");
  out += "</text></g>\n";
}

void SvgWriter::writeLegend() {
  double y = map.bottom + kBottom + kLegendRow / 2.0 + 6.0;
  writeScaleBar(map.left, y);
  y += kLegendRow;
  double x = kLeft;
  out += "<g class=\"legend\">\n";
  for (LegendItem const& item : legend) {
    double const width = item.width + 24.0 + detail::widthOfText(item.words, kLegendText);
    if (x > kLeft && x + width > picture.width - kRight) {
      y += kLegendRow;
      x = kLeft;
    }
    out += "<g transform=\"translate(";
    out.number(x);
    out += " ";
    out.number(y);
    out += ")\">" + item.symbol + "<text font-size=\"11\" y=\"4\"";
    out.attribute("x", item.width + 6.0);
    out += ">";
    out.escaped(item.words);
    out += "</text></g>\n";
    x += width;
  }
  out += "</g>\n";
}

}  // namespace

double ellipseScaleOf(SiteDrawing const& drawing, SvgOptions::Ellipses ellipses) {
  if (ellipses == SvgOptions::Ellipses::None) return 0.0;
  bool const isConfidence = ellipses == SvgOptions::Ellipses::Confidence && drawing.confidenceFactor > 0.0;
  return ellipseScaleFor(drawing, isConfidence ? drawing.confidenceFactor : 1.0, extentOf(drawing));
}

SvgPicture writeSvg(std::ostream& stream, SiteDrawing const& drawing, SvgOptions const& options) {
  SvgWriter writer(drawing, options);
  std::string const text = writer.text();
  stream.write(text.data(), static_cast<std::streamsize>(text.size()));
  return writer.picture;
}

}  // namespace kvn
