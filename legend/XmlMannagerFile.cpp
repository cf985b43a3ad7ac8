// The legend file: one XML file of group lists and codes, its texts in the local 8-bit encoding.
#include "formats/detail/FileAccess.h"
#include "legend/detail/XmlMannagerData.h"
#include "records/detail/Messages.h"

#include <utils/FileText.h>
#include <utils/HTextCodec.h>
#include <utils/ResourceFile.h>
#include <utils/XmlText.h>

#include <tinyxml2.h>
#include <QTextCodec>
#include <string>

namespace kvn {
namespace {

using LegendCode = XmlMannager::LegendCodeAttribute;
using tinyxml2::XMLElement;

struct Section {
  AttributeType type;
  char const* groups;
  char const* group;
  char const* codes;
  char const* code;
};

// Polygons are faces here, hence the F.
constexpr Section kSections[] = {{Point, "PGroups", "PGroup", "Points", "Point"},
                                 {Line, "LGroups", "LGroup", "Lines", "Line"},
                                 {Polygon, "FGroups", "FGroup", "Polygons", "Polygon"}};

struct Field {
  char const* element;
  QString LegendCode::*text;
};

constexpr Field kFields[] = {{"Name", &LegendCode::Name}, {"Group", &LegendCode::Group}, {"Code", &LegendCode::Code},
                             {"ID", &LegendCode::ID},     {"Scale", &LegendCode::Scale}, {"Color", &LegendCode::Color}};

/// Calls `use` for every child element of that name (null for any) of a section, which may be missing.
template <typename Use>
void forEachChild(XMLElement const& root, char const* section, char const* name, Use const& use) {
  XMLElement const* const parent = root.FirstChildElement(section);
  if (parent == nullptr) return;
  for (auto* child = parent->FirstChildElement(name); child != nullptr; child = child->NextSiblingElement(name)) {
    use(*child);
  }
}

QString textOf(XMLElement const& element) {
  char const* const text = element.GetText();
  return text == nullptr ? QString() : HTextCodec::FromLocal8Bit(text);
}

LegendCode codeOf(XMLElement const& element, AttributeType type) {
  LegendCode code;
  code.Type = type;
  for (Field const& field : kFields) {
    if (auto const* const child = element.FirstChildElement(field.element)) code.*field.text = textOf(*child);
  }
  return code;
}

/// Bytes as XML text. Control characters, and a blank at the beginning, go as numbers: the parser turns CR into LF and
/// drops a text of blanks alone, but takes a number as it is.
std::string escaped(std::string const& bytes) {
  std::string text;
  for (char const byte : bytes) {
    bool const isControl = byte >= 0 && byte < ' ';
    if (byte == '&') {
      text += "&amp;";
    } else if (byte == '<') {
      text += "&lt;";
    } else if (byte == '>') {
      text += "&gt;";
    } else if (isControl || (byte == ' ' && text.empty())) {
      text += "&#" + std::to_string(int(byte)) + ';';
    } else {
      text += byte;
    }
  }
  return text;
}

/// Builds the document of a legend file.
class Document {
 public:
  Document() {
    xml.InsertFirstChild(xml.NewDeclaration("xml version=\"1.0\" encoding=\"gbk\""));
    root = xml.NewElement("VRDGroundCode");
    xml.InsertEndChild(root);
  }

  XMLElement& addSection(char const* name) { return *root->InsertNewChildElement(name); }

  void addText(XMLElement& parent, char const* name, QString const& text) {
    std::string const bytes = HTextCodec::ToLocal8Bit(text);
    bool const isLossless = HTextCodec::FromLocal8Bit(bytes) == text && bytes.find('\0') == std::string::npos;
    if (!isLossless && objection.isEmpty()) {
      QString const codec = QString::fromLatin1(QTextCodec::codecForLocale()->name());
      objection = Messages::tr("%1 cannot be written in the encoding %2").arg(text, codec);
    }
    parent.InsertNewChildElement(name)->SetText(escaped(bytes).c_str());
  }

  void addCode(XMLElement& parent, char const* name, LegendCode const& code) {
    XMLElement& element = *parent.InsertNewChildElement(name);
    for (Field const& field : kFields) addText(element, field.element, code.*field.text);
  }

  bool save(QString const& path) const {
    tinyxml2::XMLPrinter printer(nullptr, false);
    xml.Print(&printer);
    QString const reason = objection.isEmpty() ? utils::replaceFile(path, printer.CStr()) : objection;
    detail::tellNotWritten(path, reason);
    return reason.isEmpty();
  }

 private:
  tinyxml2::XMLDocument xml{false};  // texts are escaped here: tinyxml2 itself leaves control characters as they are
  XMLElement* root;
  QString objection;  ///< why it must not be written; empty when it may
};

}  // namespace

bool XmlMannager::readPrjCode(QString const& path) {
  own->clear();
  own->file = path;
  QString found = path;
  auto const isMissing = [](utils::FileBytes const& file) {
    return file.state == utils::FileBytes::State::Missing || file.state == utils::FileBytes::State::NotAFile;
  };
  utils::FileBytes read = utils::readFile(found);
  if (isMissing(read)) {
    own->file = Data::isChinese() ? QStringLiteral(".\\config\\Codes\\CASS.xml")
                                  : QStringLiteral(".\\config\\Codes\\PRESET_EN.xml");
    found = utils::pathOfNative(utils::resourceFile(own->file));
    read = utils::readFile(found);
  }
  if (!read.isWhole() && !isMissing(read)) {
    QString const text = Messages::tr("The legend codes were not read: %1");
    Messages::send(text.arg(utils::readablePath(found) + ": " + read.reason), Warning);
  }
  if (!read.isWhole() || utils::lineOfCrowdedElement(read.bytes) > 0) return false;
  tinyxml2::XMLDocument document;
  if (document.Parse(read.bytes.data(), read.bytes.size()) != tinyxml2::XML_SUCCESS) return false;
  XMLElement const* const root = document.FirstChildElement();
  if (root == nullptr) return false;

  for (Section const& section : kSections) {
    forEachChild(*root, section.groups, nullptr, [&](XMLElement const& element) {
      QString const group = textOf(element);
      if (own->codes[section.type].contains(group)) return;
      own->codes[section.type].insert(group, {});
      own->groups[section.type].append(group);
    });
    forEachChild(*root, section.codes, section.code, [&](XMLElement const& element) {
      LegendCode const code = codeOf(element, section.type);
      auto const group = own->codes[section.type].find(code.Group);
      if (group != own->codes[section.type].end()) group->append(code);
    });
  }
  return true;
}

bool XmlMannager::saveAsPrjCode(QString path) const {
  Document document;
  for (Section const& section : kSections) {
    XMLElement& parent = document.addSection(section.groups);
    for (QString const& group : own->groups[section.type]) {
      if (!group.isEmpty()) document.addText(parent, section.group, group);
    }
  }
  for (Section const& section : kSections) {
    XMLElement& parent = document.addSection(section.codes);
    for (QString const& group : own->groups[section.type]) {
      if (group.isEmpty()) continue;
      for (LegendCode const& code : own->codes[section.type].value(group)) document.addCode(parent, section.code, code);
    }
  }
  return document.save(path);
}

}  // namespace kvn
