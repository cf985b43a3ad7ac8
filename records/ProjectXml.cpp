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

XMLElement& append(XMLElement& parent, char const* name) {
  XMLElement* const child = parent.GetDocument()->NewElement(name);
  parent.InsertEndChild(child);
  return *child;
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

/// Sets an attribute for each field that it is called with.
struct Writer {
  XMLElement& element;

  void operator()(char const* name, std::string const& field) const { setText(element, name, field); }
  void operator()(char const* name, double field) const { setNumber(element, name, field); }
  void operator()(char const* name, bool field) const { element.SetAttribute(name, field); }
  void operator()(char const* name, TraversePointType field) const {
    element.SetAttribute(name, field.toString().c_str());
  }
};

/// Reads the attribute into each field that it is called with.
struct Reader {
  XMLElement const& element;

  void operator()(char const* name, std::string& field) const { field = text(element, name); }
  void operator()(char const* name, double& field) const { readNumber(element, name, field); }
  void operator()(char const* name, bool& field) const { field = element.BoolAttribute(name, field); }
  void operator()(char const* name, TraversePointType& field) const {
    field = TraversePointType::fromString(text(element, name)).value_or(field);
  }
};

// The attributes of each record, in the order of the file.

template <typename Row, typename Access>
void rowFields(Row& row, Access const& access) {
  access("name", row.name);
  access("pointType", row.pointType);
  access("id", row.id);
  access("groupId", row.groupId);
  access("isKnown", row.isKnown);
  access("instrument", row.instrument);
  access("slant_distance", row.slant_distance);
  access("isSlantDistanceHave", row.isSlantDistanceHave);
  access("horizontal_distance", row.horizontal_distance);
  access("horizontal_angle", row.horizontal_angle);
  access("vertical_angle", row.vertical_angle);
  access("azimuth", row.azimuth);
  access("N", row.N);
  access("E", row.E);
  access("Z", row.Z);
}

template <typename Point, typename Access>
void knownPointFields(Point& point, Access const& access) {
  access("id", point.id);
  access("name", point.name);
  access("x", point.x);
  access("y", point.y);
}

template <typename Line, typename Access>
void lineFields(Line& line, Access const& access) {
  access("id", line.id);
  access("start_name", line.start_name);
  access("end_name", line.end_name);
  access("horizontal_distance", line.horizontal_distance);
  access("horizontal_angle", line.horizontal_angle);
}

template <typename Point, typename Access>
void coordinateFields(Point& point, Access const& access) {
  access("name", point.name);
  access("signal", point.signal);
  access("N", point.N);
  access("E", point.E);
  access("Z", point.Z);
}

template <typename Record>
void writeAll(std::vector<Record> const& list, XMLElement& parent, char const* name,
              void (*fields)(Record const&, Writer const&)) {
  for (Record const& record : list) fields(record, Writer{append(parent, name)});
}

template <typename Record>
void readAll(XMLElement const* parent, char const* name, std::vector<Record>& list,
             void (*fields)(Record&, Reader const&)) {
  if (parent == nullptr) return;
  for (XMLElement const* child = parent->FirstChildElement(name); child != nullptr;
       child = child->NextSiblingElement(name)) {
    fields(list.emplace_back(), Reader{*child});
  }
}

}  // namespace

void write(std::vector<TraverseDataInfo> const& rows, XMLElement* element) {
  if (element != nullptr) writeAll(rows, *element, "Point", rowFields);
}

void read(XMLElement const* element, std::vector<TraverseDataInfo>& rows) {
  readAll(element, "Point", rows, rowFields);
}

void write(Network const& network, XMLElement* element) {
  if (element == nullptr) return;
  utils::XMLHandleEx parent(element);
  writeAll(network.knownPoints, *parent.touchInElement("KnownPoints"), "Point", knownPointFields);
  writeAll(network.lines, *parent.touchInElement("NetworkLines"), "Line", lineFields);
}

void read(XMLElement const* element, Network& network) {
  if (element == nullptr) return;
  readAll(element->FirstChildElement("KnownPoints"), "Point", network.knownPoints, knownPointFields);
  readAll(element->FirstChildElement("NetworkLines"), "Line", network.lines, lineFields);
}

void write(std::vector<CoordinatePointInfo> const& points, XMLElement* element) {
  if (element != nullptr) writeAll(points, *element, "Point", coordinateFields);
}

void read(XMLElement const* element, std::vector<CoordinatePointInfo>& points) {
  readAll(element, "Point", points, coordinateFields);
}

}  // namespace kvn
