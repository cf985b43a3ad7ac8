#include "report/Exchange.h"

#include "job/Job.h"
#include "job/JobException.h"
#include "job/detail/WriteWhole.h"
#include "records/detail/Messages.h"
#include "report/detail/PlainNumber.h"
#include "report/detail/PointColumns.h"

#include <QFileInfo>
#include <cmath>
#include <ostream>
#include <string>

namespace kvn {
namespace {

using detail::plainNumber;
using detail::PointColumn;
using detail::pointColumns;

/// A field of CSV.
std::string quoted(std::string const& text) {
  // Blanks at the ends are kept, but some readers take them off where there are no quotes.
  bool const isPlain = text.find_first_of(",\"\r\n") == std::string::npos &&
                       (text.empty() || (text.front() != ' ' && text.back() != ' '));
  if (isPlain) return text;
  std::string out = "\"";
  for (char const sign : text) {
    if (sign == '"') out += '"';
    out += sign;
  }
  return out + '"';
}

std::string jsonString(std::string const& utf8) {
  constexpr char const* kHex = "0123456789abcdef";
  std::string out = "\"";
  for (char const sign : utf8) {
    auto const code = static_cast<unsigned char>(sign);
    if (sign == '"' || sign == '\\') {
      out += '\\';
      out += sign;
    } else if (code < 0x20 || code == 0x7F) {
      out += "\\u00";
      out += kHex[code >> 4U];
      out += kHex[code & 0xFU];
    } else {
      out += sign;
    }
  }
  return out + '"';
}

std::string jsonNumber(double value) { return std::isfinite(value) ? plainNumber(value) : "null"; }
char const* jsonTruth(bool value) { return value ? "true" : "false"; }

char const* sourceName(SiteDrawing::Source source) {
  switch (source) {
    case SiteDrawing::Source::LeastSquares:
      return "least-squares";
    case SiteDrawing::Source::Literal:
      return "least-squares-as-read";
    case SiteDrawing::Source::Traverses:
      return "traverses";
    case SiteDrawing::Source::Plan:
      return "plan";
    case SiteDrawing::Source::Coordinates:
      break;
  }
  return "coordinates";
}

std::string valueOf(PointColumn const& column, SiteDrawing const& drawing, SitePoint const& point) {
  if (column.text != nullptr) {
    std::string const text = column.text(drawing, point);
    return text.empty() && column.text != pointColumns().front().text ? "null" : jsonString(text);
  }
  std::optional<double> const number = column.number(drawing, point);
  return number ? jsonNumber(*number) : "null";
}

std::string positionOf(SitePoint const& point) {
  std::string text = '[' + jsonNumber(point.y) + ',' + jsonNumber(point.x);
  if (point.height) text += ',' + jsonNumber(*point.height);
  return text + ']';
}

/// Columns that no point has a value in are left out: most jobs have no shifts, many no heights.
std::vector<PointColumn> columnsOf(SiteDrawing const& drawing) {
  std::vector<PointColumn> used;
  for (PointColumn const& column : pointColumns()) {
    bool isUsed = column.text != nullptr;
    for (std::size_t p = 0; !isUsed && p < drawing.points.size(); ++p) {
      isUsed = column.number(drawing, drawing.points[p]).has_value();
    }
    if (isUsed) used.push_back(column);
  }
  return used;
}

void writeHead(std::ostream& stream, SiteDrawing const& drawing, int epsg) {
  stream << "{\"type\":\"FeatureCollection\",\n\"name\":" << jsonString(drawing.title) << ",\n";
  if (epsg > 0) {
    stream << R"("crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::)" << std::to_string(epsg)
           << "\"}},\n";
  }
  stream << "\"kelvane\":{\"version\":" << std::to_string(kExchangeVersion) << ",\"source\":\""
         << sourceName(drawing.source) << "\",\"note\":"
         << (epsg > 0 ? "\"Positions are east, north and height in metres of the reference system in crs.\""
                      : "\"Positions are east, north and height in metres of a plane without a reference system, not "
                        "degrees.\"");
  if (drawing.confidenceFactor > 0.0) {
    stream << ",\"confidence\":" << jsonNumber(drawing.confidence)
           << ",\"confidence_factor\":" << jsonNumber(drawing.confidenceFactor);
  }
  stream << "},\n\"features\":[";
}

std::string csvLine(SiteDrawing const& drawing, SitePoint const& point) {
  std::string text;
  bool isFirst = true;
  for (PointColumn const& column : pointColumns()) {
    if (!isFirst) text += ',';
    isFirst = false;
    if (column.text != nullptr) {
      text += quoted(column.text(drawing, point));
    } else if (auto const number = column.number(drawing, point); number && std::isfinite(*number)) {
      text += plainNumber(*number);
    }
  }
  return text;
}

}  // namespace

QStringList exchangeKinds() { return {"csv", "geojson", "dxf", "svg"}; }

void writeCsv(std::ostream& stream, SiteDrawing const& drawing, ExchangeOptions const& options) {
  if (options.hasByteOrderMark) stream << "\xEF\xBB\xBF";
  std::string text;
  for (PointColumn const& column : pointColumns()) text += (text.empty() ? "" : ",") + std::string(column.head);
  stream << text << "\r\n";
  for (auto const* list : {&drawing.points, &drawing.heightsAlone}) {
    for (SitePoint const& point : *list) stream << csvLine(drawing, point) << "\r\n";
  }
}

void writeGeoJson(std::ostream& stream, SiteDrawing const& drawing, ExchangeOptions const& options) {
  writeHead(stream, drawing, options.epsg);
  std::vector<PointColumn> const columns = columnsOf(drawing);
  char const* separator = "\n";
  for (std::size_t p = 0; p < drawing.points.size(); ++p) {
    SitePoint const& point = drawing.points[p];
    stream << separator << R"({"type":"Feature","id":"p)" << std::to_string(p)
           << R"(","geometry":{"type":"Point","coordinates":)" << positionOf(point) << R"(},"properties":{)";
    char const* comma = "";
    for (PointColumn const& column : columns) {
      stream << comma << '"' << column.head << "\":" << valueOf(column, drawing, point);
      comma = ",";
    }
    stream << "}}";
    separator = ",\n";
  }
  for (std::size_t l = 0; l < drawing.lines.size(); ++l) {
    SiteLine const& line = drawing.lines[l];
    SitePoint const& from = drawing.points[line.from];
    SitePoint const& to = drawing.points[line.to];
    stream << separator << R"({"type":"Feature","id":"l)" << std::to_string(l)
           << R"(","geometry":{"type":"LineString","coordinates":[[)" << jsonNumber(from.y) << ',' << jsonNumber(from.x)
           << "],[" << jsonNumber(to.y) << ',' << jsonNumber(to.x) << R"(]]},"properties":{"from":)"
           << jsonString(from.name) << ",\"to\":" << jsonString(to.name)
           << ",\"direction\":" << jsonTruth(line.hasDirection) << ",\"distance\":" << jsonTruth(line.hasDistance)
           << ",\"zenith\":" << jsonTruth(line.hasZenith) << ",\"both_ways\":" << jsonTruth(line.bothWays)
           << ",\"suspect\":" << jsonTruth(line.isSuspect) << ",\"test\":" << jsonNumber(line.test) << "}}";
    separator = ",\n";
  }
  stream << "\n]}\n";
}

void writeExchange(QString const& path, SiteDrawing const& drawing, ExchangeOptions const& options) {
  Job::requireWritableKind(path, exchangeKinds());
  QString const kind = QFileInfo(path).suffix().toLower();
  bool const isTable = kind == "csv" && !drawing.heightsAlone.empty();
  if (drawing.points.empty() && !isTable) {
    throw JobException(path, Messages::tr("there is no point with coordinates to write"));
  }
  detail::writeWhole(path, [&](std::ostream& stream) {
    if (kind == "csv") return writeCsv(stream, drawing, options);
    if (kind == "geojson") return writeGeoJson(stream, drawing, options);
    if (kind == "dxf") return writeDxf(stream, drawing, options);
    writeSvg(stream, drawing, options.svg);
  });
}

}  // namespace kvn
