// DXF of release 12: groups of a code and a value, a line each.
#include "report/Exchange.h"
#include "report/detail/PlainNumber.h"
#include "report/detail/Sheet.h"
#include "report/detail/SvgText.h"

#include <utils/Circle.h>
#include <utils/Utf8.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>
#include <string_view>

namespace kvn {
namespace {

using detail::plainNumber;

constexpr std::size_t kLongestText = 250;  // a string of release 12 has at most 255 characters
constexpr int kEllipseCorners = 36;        // of an ellipse
constexpr int kFewCorners = 16;            // where there are many ellipses
constexpr std::size_t kManyPoints = 5000;

struct Layer {
  std::string name;
  int colour;  ///< of the colour index: 1 red, 3 green, 5 blue, 7 black or white, 8 grey
};

std::string unicode(unsigned unit) {
  constexpr char const* kHex = "0123456789ABCDEF";
  std::string text = "\\U+";
  for (unsigned shift = 16; shift > 0;) {
    shift -= 4;
    text += kHex[(unit >> shift) & 0xFU];
  }
  return text;
}

/// One sign of a text. A caret is the mark of a control character, a backslash that of a code, and %% that of a symbol.
std::string dxfSign(std::uint32_t code, bool isDoublePercent) {
  if (code < 0x20) return {'^', static_cast<char>(code + 0x40)};
  if (code == '^') return "^ ";
  if (code == '\\') return unicode(code);
  if (code == '%' && isDoublePercent) return "%%%";
  if (code < 0x7F) return {static_cast<char>(code)};
  if (code < 0x10000) return unicode(code);
  std::uint32_t const rest = code - 0x10000;
  return unicode(0xD800 + (rest >> 10U)) + unicode(0xDC00 + (rest & 0x3FFU));
}

std::string dxfText(std::string const& utf8) {
  std::string text;
  std::string_view rest = utf8;
  char before = 0;
  while (!rest.empty()) {
    utils::Utf8Sign const sign = utils::firstUtf8(rest);
    std::size_t const size = std::max<std::size_t>(sign.size, 1);
    char const next = rest.size() > size ? rest[size] : '\0';
    std::string const more = sign.size == 0 ? unicode(0xFFFD) : dxfSign(sign.code, before == '%' || next == '%');
    if (text.size() + more.size() > kLongestText) return text;
    text += more;
    before = rest.front();
    rest.remove_prefix(size);
  }
  return text;
}

class DxfWriter {
 public:
  DxfWriter(std::ostream& target, SiteDrawing const& siteDrawing, ExchangeOptions const& exchangeOptions)
      : stream(target), drawing(siteDrawing), options(exchangeOptions), extent(detail::extentOf(siteDrawing)) {
    double const greater = std::max(extent.width(), extent.height());
    textHeight = detail::roundStep(greater / 120.0);
    auto const kind = options.svg.ellipses;
    if (kind == SvgOptions::Ellipses::None) return;
    isConfidence = kind == SvgOptions::Ellipses::Confidence && drawing.confidenceFactor > 0.0;
    factor = isConfidence ? drawing.confidenceFactor : 1.0;
    double const automatic = detail::ellipseScaleFor(drawing, factor, extent);
    if (automatic > 0.0) scale = options.svg.ellipseScale > 0.0 ? options.svg.ellipseScale : automatic;
    ellipseLayer = "ELLIPSES_X" + detail::plainNumber(scale);
    std::replace(ellipseLayer.begin(), ellipseLayer.end(), '.', '_');
    ellipseLayer.resize(std::min<std::size_t>(ellipseLayer.size(), 31));  // the longest name of release 12
  }

  void write() {
    writeHeader();
    writeTables();
    group(0, "SECTION");
    group(2, "ENTITIES");
    for (SiteLine const& line : drawing.lines) writeLine(line);
    if (scale > 0.0) {
      for (SitePoint const& point : drawing.points) writeEllipse(point);
    }
    for (SitePoint const& point : drawing.points) writePoint(point);
    writeNotes();
    group(0, "ENDSEC");
    group(0, "EOF");
  }

 private:
  void group(int code, std::string const& value) { stream << code << "\r\n" << value << "\r\n"; }
  void number(int code, double value) { group(code, plainNumber(value)); }
  void place(double x, double y, double height) {
    number(10, y);
    number(20, x);
    number(30, height);
  }
  void begin(char const* entity, std::string const& layer) {
    group(0, entity);
    group(8, layer);
  }

  void writeHeader();
  void writeTables();
  void writeLine(SiteLine const& line);
  void writePoint(SitePoint const& point);
  void writeEllipse(SitePoint const& point);
  void writeText(char const* layer, double x, double y, std::string const& text);
  void writeNotes();

  std::ostream& stream;
  SiteDrawing const& drawing;
  ExchangeOptions const& options;
  detail::Extent extent;
  double textHeight = 1.0;
  double scale = 0.0;  ///< of the ellipses; 0 without any
  double factor = 1.0;
  bool isConfidence = false;
  std::string ellipseLayer;
};

void DxfWriter::writeHeader() {
  group(0, "SECTION");
  group(2, "HEADER");
  group(9, "$ACADVER");
  group(1, "AC1009");
  group(9, "$DWGCODEPAGE");
  group(3, "ANSI_1252");
  group(9, "$EXTMIN");
  place(extent.north[0], extent.east[0], 0.0);
  group(9, "$EXTMAX");
  place(extent.north[1], extent.east[1], 0.0);
  group(9, "$PDMODE");  // a circle with a cross, of 1 % of the window: a dot could not be seen
  group(70, "34");
  group(9, "$PDSIZE");
  number(40, -1.0);
  group(9, "$LTSCALE");
  number(40, textHeight);
  group(0, "ENDSEC");
}

void DxfWriter::writeTables() {
  struct LineType {
    char const* name;
    char const* looks;
    std::vector<double> parts;
  };
  LineType const types[] = {
      {"CONTINUOUS", "Solid", {}}, {"DASHED", "_ _ _", {1.0, -0.5}}, {"DOTTED", ". . .", {0.0, -0.4}}};
  group(0, "SECTION");
  group(2, "TABLES");
  group(0, "TABLE");
  group(2, "LTYPE");
  group(70, "3");
  for (LineType const& type : types) {
    group(0, "LTYPE");
    group(2, type.name);
    group(70, "0");
    group(3, type.looks);
    group(72, "65");
    group(73, std::to_string(type.parts.size()));
    double length = 0.0;
    for (double const part : type.parts) length += std::abs(part);
    number(40, length);
    for (double const part : type.parts) number(49, part);
  }
  group(0, "ENDTAB");
  std::vector<Layer> layers{{"0", 7},       {"POINTS_KNOWN", 5}, {"POINTS_NEW", 7},    {"POINTS_SIDE", 8}, {"NAMES", 7},
                            {"HEIGHTS", 8}, {"LINES", 8},        {"LINES_SUSPECT", 1}, {"NOTES", 7}};
  if (scale > 0.0) layers.push_back({ellipseLayer, 3});
  group(0, "TABLE");
  group(2, "LAYER");
  group(70, std::to_string(layers.size()));
  for (Layer const& layer : layers) {
    group(0, "LAYER");
    group(2, layer.name);
    group(70, "0");
    group(62, std::to_string(layer.colour));
    group(6, "CONTINUOUS");
  }
  group(0, "ENDTAB");
  group(0, "TABLE");
  group(2, "STYLE");
  group(70, "1");
  group(0, "STYLE");
  group(2, "STANDARD");
  group(70, "0");
  number(40, 0.0);
  number(41, 1.0);
  number(50, 0.0);
  group(71, "0");
  number(42, textHeight);
  group(3, "txt");
  group(4, "");
  group(0, "ENDTAB");
  group(0, "ENDSEC");
}

void DxfWriter::writeLine(SiteLine const& line) {
  begin("LINE", line.isSuspect ? "LINES_SUSPECT" : "LINES");
  if (!line.hasDistance) group(6, "DASHED");
  if (!line.hasDirection && line.hasDistance) group(6, "DOTTED");
  SitePoint const& from = drawing.points[line.from];
  SitePoint const& to = drawing.points[line.to];
  place(from.x, from.y, 0.0);
  number(11, to.y);
  number(21, to.x);
  number(31, 0.0);
}

void DxfWriter::writeText(char const* layer, double x, double y, std::string const& text) {
  begin("TEXT", layer);
  group(10, plainNumber(y, 4));
  group(20, plainNumber(x, 4));
  number(30, 0.0);
  number(40, textHeight);
  group(1, text);
}

void DxfWriter::writePoint(SitePoint const& point) {
  begin("POINT", point.isKnown ? "POINTS_KNOWN" : point.isSidePoint ? "POINTS_SIDE" : "POINTS_NEW");
  place(point.x, point.y, point.height.value_or(0.0));
  double const right = point.y + 0.6 * textHeight;
  if (!point.name.empty()) writeText("NAMES", point.x + 0.4 * textHeight, right, dxfText(point.name));
  if (point.height) writeText("HEIGHTS", point.x - 1.2 * textHeight, right, plainNumber(*point.height, 3));
}

void DxfWriter::writeEllipse(SitePoint const& point) {
  if (!point.ellipse || !(point.ellipse->semiMajor > 0.0)) return;
  double const major = scale * factor * point.ellipse->semiMajor;
  double const minor = scale * factor * point.ellipse->semiMinor;
  double const north = std::cos(point.ellipse->bearing);
  double const east = std::sin(point.ellipse->bearing);
  begin("POLYLINE", ellipseLayer);
  group(66, "1");  // vertices follow
  place(0.0, 0.0, 0.0);
  group(70, "1");  // closed
  int const corners = drawing.points.size() > kManyPoints ? kFewCorners : kEllipseCorners;
  for (int corner = 0; corner < corners; ++corner) {
    double const along = major * std::cos(utils::kFullCircle * corner / corners);
    double const across = minor * std::sin(utils::kFullCircle * corner / corners);
    begin("VERTEX", ellipseLayer);
    group(10, plainNumber(point.y + along * east + across * north, 5));
    group(20, plainNumber(point.x + along * north - across * east, 5));
    group(30, "0.0");
  }
  begin("SEQEND", ellipseLayer);
}

void DxfWriter::writeNotes() {
  double x = extent.north[0] - 4.0 * textHeight;
  auto const note = [&](std::string const& text) {
    writeText("NOTES", x, extent.east[0], text);
    x -= 1.8 * textHeight;
  };
  if (!drawing.title.empty()) note(dxfText(drawing.title));
  if (scale <= 0.0) return;
  char const* const english = isConfidence ? "Confidence ellipses" : "Standard error ellipses";
  std::string kind = options.svg.words ? options.svg.words(english) : english;
  if (isConfidence) kind += ", " + detail::SvgText::of(100.0 * drawing.confidence) + " %";
  note(dxfText(kind + ", x " + plainNumber(scale)));
}

}  // namespace

void writeDxf(std::ostream& stream, SiteDrawing const& drawing, ExchangeOptions const& options) {
  DxfWriter(stream, drawing, options).write();
}

}  // namespace kvn
