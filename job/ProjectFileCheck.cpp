// A look at the text of a project file.
#include "formats/FieldTextCheck.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/TraversePointType.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>
#include <utils/Number.h>
#include <utils/XmlText.h>

#include <tinyxml2.h>
#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>

namespace kvn {
namespace {

using tinyxml2::XMLElement;
using Names = std::initializer_list<char const*>;

// The version whose files tell what kind of data they hold, and the kinds that there are.
constexpr char const* kTypedVersion = "1.0.1";
constexpr int kKinds = 4;
// Two turns of a circle: readings stay within one, and a larger number is in degrees or none.
constexpr double kMostRadians = 4.0 * utils::kPi;

class Inspection {
 public:
  FieldTextCheck run(XMLElement const& root) {
    head(root);
    if (XMLElement const* const config = root.FirstChildElement("Config")) settings(*config);
    children(root.FirstChildElement("ViewData"), "Point", &Inspection::row);
    if (XMLElement const* const network = root.FirstChildElement("NetworkData")) {
      children(network->FirstChildElement("KnownPoints"), "Point", &Inspection::knownPoint);
      children(network->FirstChildElement("NetworkLines"), "Line", &Inspection::line);
    }
    children(root.FirstChildElement("CoordinateData"), "Point", &Inspection::coordinate);
    return std::move(result);
  }

 private:
  void add(FieldFinding::Severity severity, XMLElement const& element, QString const& text) {
    FieldFinding finding;
    finding.severity = severity;
    finding.text = text;
    finding.line = element.GetLineNum();
    for (char const* name : {"name", "start_name"}) {
      if (element.Attribute(name) != nullptr) finding.station = element.Attribute(name);
    }
    result.findings.push_back(std::move(finding));
  }

  void bad(XMLElement const& element, char const* name, QString const& what) {
    add(FieldFinding::Error, element,
        Messages::tr("the attribute %1 is %2: %3").arg(QLatin1String(name), what, element.Attribute(name)));
  }

  void numbers(XMLElement const& element, Names names) {
    for (char const* name : names) {
      if (element.Attribute(name) == nullptr) continue;
      std::optional<double> const value = utils::fullNumber(element.Attribute(name));
      if (!value) bad(element, name, Messages::tr("no number"));
      if (value && !std::isfinite(*value)) bad(element, name, Messages::tr("not finite"));
    }
  }

  /// What is not there would be read as 0, and a coordinate of 0 is one.
  void required(XMLElement const& element, Names names) {
    for (char const* name : names) {
      if (element.Attribute(name) != nullptr) continue;
      add(FieldFinding::Error, element, Messages::tr("the attribute %1 is missing").arg(QLatin1String(name)));
    }
  }

  static bool hasAny(XMLElement const& element, Names names) {
    return std::any_of(names.begin(), names.end(),
                       [&element](char const* name) { return element.Attribute(name) != nullptr; });
  }

  void angles(XMLElement const& element, Names names) {
    numbers(element, names);
    for (char const* name : names) {
      char const* const text = element.Attribute(name);
      double const value = text == nullptr ? 0.0 : utils::fullNumber(text).value_or(0.0);
      if (std::isfinite(value) && std::abs(value) > kMostRadians)
        bad(element, name, Messages::tr("no angle in radians"));
    }
  }

  void truths(XMLElement const& element, Names names) {
    bool value = false;
    for (char const* name : names) {
      if (element.QueryBoolAttribute(name, &value) == tinyxml2::XML_WRONG_ATTRIBUTE_TYPE) {
        bad(element, name, Messages::tr("neither true nor false"));
      }
    }
  }

  void head(XMLElement const& root) {
    char const* const version = root.Attribute("Version");
    QString const told = QString::fromUtf8(version).trimmed();
    if (told.isEmpty()) return;
    if (told != QLatin1String(kTypedVersion)) {
      add(FieldFinding::Warning, root, Messages::tr("the version %1 is not known").arg(told));
    } else if (int const kind = root.IntAttribute("FileType", 0); kind < 0 || kind >= kKinds) {
      add(FieldFinding::Warning, root, Messages::tr("the kind of data %1 is not known").arg(kind));
    }
  }

  void settings(XMLElement const& element) {
    numbers(element, {"AngleError", "LineFixedError", "LineProportionError", "AtmosphericIndex", "AdjustMethod",
                      "TraversePointAdjust"});
    truths(element, {"LineCalculateExpression"});
  }

  void row(XMLElement const& element) {
    result.rowLines.push_back(element.GetLineNum());
    numbers(element, {"instrument", "slant_distance", "horizontal_distance", "N", "E", "Z"});
    angles(element, {"horizontal_angle", "vertical_angle", "azimuth"});
    truths(element, {"isKnown", "isSlantDistanceHave"});
    char const* const kind = element.Attribute("pointType");
    if (kind != nullptr && !TraversePointType::fromString(kind))
      bad(element, "pointType", Messages::tr("no kind of row"));
    required(element, {"name", "pointType"});
    if (kind == nullptr) return;
    if (TraversePointType::fromString(kind) == TraversePointType::StationPoint) {
      required(element, {"isKnown", "instrument", "N", "E", "Z"});
    } else if (hasAny(element, {"horizontal_angle", "vertical_angle", "slant_distance"})) {
      required(element, {"instrument", "horizontal_angle", "vertical_angle", "slant_distance", "isSlantDistanceHave"});
    }
  }

  void knownPoint(XMLElement const& element) {
    numbers(element, {"x", "y"});
    required(element, {"name", "x", "y"});
  }

  void line(XMLElement const& element) {
    numbers(element, {"horizontal_distance"});
    if (element.DoubleAttribute("horizontal_distance") < 0.0) {
      bad(element, "horizontal_distance", Messages::tr("negative"));
    }
    angles(element, {"horizontal_angle"});
    required(element, {"start_name", "end_name", "horizontal_distance", "horizontal_angle"});
  }

  void coordinate(XMLElement const& element) {
    numbers(element, {"N", "E", "Z"});
    required(element, {"name", "N", "E", "Z"});
  }

  void children(XMLElement const* parent, char const* name, void (Inspection::*look)(XMLElement const&)) {
    if (parent == nullptr) return;
    for (XMLElement const* child = parent->FirstChildElement(name); child != nullptr;
         child = child->NextSiblingElement(name)) {
      (this->*look)(*child);
    }
  }

  FieldTextCheck result;
};

bool isProject(XMLElement const& root) {
  for (char const* name : {"Config", "ViewData", "NetworkData", "CoordinateData"}) {
    if (root.FirstChildElement(name) != nullptr) return true;
  }
  return QLatin1String(root.Name()) == QLatin1String("Kelvane");
}

}  // namespace

FieldTextCheck detail::inspectProjectFile(QString const& path, std::string const& bytes) {
  if (int const line = utils::lineOfCrowdedElement(bytes)) {
    QString const text = Messages::tr("line %1: an element has more than %2 attributes");
    throw JobException(path, text.arg(line).arg(utils::kMostXmlAttributes), line);
  }
  tinyxml2::XMLDocument document;
  document.Parse(bytes.data(), bytes.size());
  if (document.Error()) {
    int const line = std::max(1, document.ErrorLineNum());
    throw JobException(path, Messages::tr("line %1: the file is not well-formed XML").arg(line), line);
  }
  if (document.RootElement() == nullptr || !isProject(*document.RootElement())) {
    throw JobException(path, Messages::tr("the file is no project file"));
  }
  return Inspection().run(*document.RootElement());
}

}  // namespace kvn
