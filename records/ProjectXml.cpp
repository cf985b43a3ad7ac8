#include "records/ProjectXml.h"

#include <utils/Number.h>
#include <utils/XMLHandleEx.h>

#include <tinyxml2.h>
#include <QByteArray>
#include <array>
#include <charconv>
#include <stdexcept>

namespace kvn {
namespace {

using tinyxml2::XMLElement;

XMLElement* append(XMLElement& parent, char const* name) {
  return parent.InsertEndChild(parent.GetDocument()->NewElement(name))->ToElement();
}

/// The text would end at a NUL.
void setText(XMLElement& element, char const* name, std::string const& text) {
  if (text.find('\0') == std::string::npos) return element.SetAttribute(name, text.c_str());
  element.SetAttribute(name, QByteArray::fromStdString(text).replace('\0', "\xEF\xBF\xBD").constData());
}

/// The digits that tinyxml2 gives a double, but with a point whatever the process's locale is.
void setNumber(XMLElement& element, char const* name, double value) {
  std::array<char, 32> digits{};  // zeros behind the text
  std::to_chars(digits.data(), digits.data() + digits.size() - 1, value, std::chars_format::general, 17);
  element.SetAttribute(name, digits.data());
}

std::string text(XMLElement const& element, char const* name) {
  char const* const value = element.Attribute(name);
  return value == nullptr ? std::string() : std::string(value);
}

void readNumber(XMLElement const& element, char const* name, double& value) {
  char const* const attribute = element.Attribute(name);
  if (attribute == nullptr) return;
  try {
    value = utils::leadingNumber(attribute);
  } catch (std::logic_error const&) {  // no number: the field stays
  } catch (std::runtime_error const&) {
  }
}

TraverseDataInfo readRow(XMLElement const& element) {
  TraverseDataInfo row;
  row.name = text(element, "name");
  row.pointType = TraversePointType::fromString(text(element, "pointType")).value_or(row.pointType);
  row.id = text(element, "id");
  row.groupId = text(element, "groupId");
  row.isKnown = element.BoolAttribute("isKnown", row.isKnown);
  readNumber(element, "instrument", row.instrument);
  readNumber(element, "slant_distance", row.slant_distance);
  row.isSlantDistanceHave = element.BoolAttribute("isSlantDistanceHave", row.isSlantDistanceHave);
  readNumber(element, "horizontal_distance", row.horizontal_distance);
  readNumber(element, "horizontal_angle", row.horizontal_angle);
  readNumber(element, "vertical_angle", row.vertical_angle);
  readNumber(element, "azimuth", row.azimuth);
  readNumber(element, "N", row.N);
  readNumber(element, "E", row.E);
  readNumber(element, "Z", row.Z);
  return row;
}

KnownPoint readKnownPoint(XMLElement const& element) {
  KnownPoint point;
  point.id = text(element, "id");
  point.name = text(element, "name");
  readNumber(element, "x", point.x);
  readNumber(element, "y", point.y);
  return point;
}

NetworkDataInfo readLine(XMLElement const& element) {
  NetworkDataInfo line;
  line.id = text(element, "id");
  line.start_name = text(element, "start_name");
  line.end_name = text(element, "end_name");
  readNumber(element, "horizontal_distance", line.horizontal_distance);
  readNumber(element, "horizontal_angle", line.horizontal_angle);
  return line;
}

CoordinatePointInfo readCoordinate(XMLElement const& element) {
  CoordinatePointInfo point;
  point.name = text(element, "name");
  if (element.Attribute("signal") != nullptr) point.signal = text(element, "signal");
  readNumber(element, "N", point.N);
  readNumber(element, "E", point.E);
  readNumber(element, "Z", point.Z);
  return point;
}

template <typename Record>
void readAll(XMLElement const* element, char const* name, std::vector<Record>& list,
             Record (*readOne)(XMLElement const&)) {
  if (element == nullptr) return;
  for (XMLElement const* child = element->FirstChildElement(name); child != nullptr;
       child = child->NextSiblingElement(name)) {
    list.push_back(readOne(*child));
  }
}

}  // namespace

void write(std::vector<TraverseDataInfo> const& rows, XMLElement* element) {
  if (element == nullptr) return;
  for (TraverseDataInfo const& row : rows) {
    XMLElement& point = *append(*element, "Point");
    setText(point, "name", row.name);
    point.SetAttribute("pointType", row.pointType.toString().c_str());
    setText(point, "id", row.id);
    setText(point, "groupId", row.groupId);
    point.SetAttribute("isKnown", row.isKnown);
    setNumber(point, "instrument", row.instrument);
    setNumber(point, "slant_distance", row.slant_distance);
    point.SetAttribute("isSlantDistanceHave", row.isSlantDistanceHave);
    setNumber(point, "horizontal_distance", row.horizontal_distance);
    setNumber(point, "horizontal_angle", row.horizontal_angle);
    setNumber(point, "vertical_angle", row.vertical_angle);
    setNumber(point, "azimuth", row.azimuth);
    setNumber(point, "N", row.N);
    setNumber(point, "E", row.E);
    setNumber(point, "Z", row.Z);
  }
}

void read(XMLElement const* element, std::vector<TraverseDataInfo>& rows) { readAll(element, "Point", rows, readRow); }

void write(Network const& network, XMLElement* element) {
  if (element == nullptr) return;
  XMLElement* const points = utils::XMLHandleEx(element).touchInElement("KnownPoints");
  for (KnownPoint const& known : network.knownPoints) {
    XMLElement& point = *append(*points, "Point");
    setText(point, "id", known.id);
    setText(point, "name", known.name);
    setNumber(point, "x", known.x);
    setNumber(point, "y", known.y);
  }
  XMLElement* const lines = utils::XMLHandleEx(element).touchInElement("NetworkLines");
  for (NetworkDataInfo const& observed : network.lines) {
    XMLElement& line = *append(*lines, "Line");
    setText(line, "id", observed.id);
    setText(line, "start_name", observed.start_name);
    setText(line, "end_name", observed.end_name);
    setNumber(line, "horizontal_distance", observed.horizontal_distance);
    setNumber(line, "horizontal_angle", observed.horizontal_angle);
  }
}

void read(XMLElement const* element, Network& network) {
  if (element == nullptr) return;
  readAll(element->FirstChildElement("KnownPoints"), "Point", network.knownPoints, readKnownPoint);
  readAll(element->FirstChildElement("NetworkLines"), "Line", network.lines, readLine);
}

void write(std::vector<CoordinatePointInfo> const& points, XMLElement* element) {
  if (element == nullptr) return;
  for (CoordinatePointInfo const& coordinate : points) {
    XMLElement& point = *append(*element, "Point");
    setText(point, "name", coordinate.name);
    setText(point, "signal", coordinate.signal);
    setNumber(point, "N", coordinate.N);
    setNumber(point, "E", coordinate.E);
    setNumber(point, "Z", coordinate.Z);
  }
}

void read(XMLElement const* element, std::vector<CoordinatePointInfo>& points) {
  readAll(element, "Point", points, readCoordinate);
}

}  // namespace kvn
