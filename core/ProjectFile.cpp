// The project file: one XML document with the settings and the data of a project.
#include "core/DataException.h"
#include "core/detail/ProjectData.h"
#include "records/ProjectXml.h"
#include "records/detail/Messages.h"

#include <utils/FileText.h>
#include <utils/QLogicError.h>
#include <utils/XMLHandleEx.h>
#include <utils/XmlText.h>

#include <tinyxml2.h>
#include <QFileInfo>
#include <QLoggingCategory>
#include <string>

namespace kvn {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

Q_LOGGING_CATEGORY(projectLog, "kelvane.project", QtWarningMsg)

// The version whose files tell what kind of data they were made from.
constexpr char const* kTypedVersion = "1.0.1";

std::string utf8(QString const& text) { return text.toStdString(); }
QString attribute(XMLElement const& element, char const* name) { return QString::fromUtf8(element.Attribute(name)); }

void setFileName(XMLElement& element, QString const& path) {
  element.SetAttribute("Name", utf8(QFileInfo(path).fileName()).c_str());
}

/// Control characters inside attribute values become character references, since a reader takes a carriage return for
/// a line feed, and other programs every one for a blank. Quotes stand nowhere but around the values.
std::string withControlsEscaped(char const* text, std::size_t size) {
  std::string result;
  result.reserve(size);
  bool isInside = false;
  for (char const* c = text; c != text + size; ++c) {
    if (*c == '"') isInside = !isInside;
    if (isInside && static_cast<unsigned char>(*c) < 0x20) {
      result += "&#" + std::to_string(int(*c)) + ";";
    } else {
      result += *c;
    }
  }
  return result;
}

std::string printed(XMLDocument const& document) {
  tinyxml2::XMLPrinter printer;
  document.Print(&printer);
  return withControlsEscaped(printer.CStr(), static_cast<std::size_t>(printer.CStrSize()) - 1);
}

}  // namespace

void Project::importKVNFile(QString const& path) {
  readProject(path);
  finishProject(path);
}

void Project::finishProject(QString const& path) {
  setName(path);
  if (isUsingViewData()) generateNetworkData();
}

void Project::saveAs(QString path) {
  own->projectFile = path;
  writeProject(path);
  if (!isUsingViewData() || !own->traverseDataList->empty() || own->network->isEmpty()) return;
  Messages::send(Messages::tr("The network lines are not in the project file, which holds the observation rows"),
                 Warning);
}

void Project::writeProject(QString path) const {
  XMLDocument document;
  document.InsertEndChild(document.NewDeclaration());
  XMLElement& root = *document.NewElement("Kelvane");
  root.SetAttribute("Version", utf8(own->version).c_str());
  root.SetAttribute("FileType", int(own->fileType));
  document.InsertEndChild(&root);
  utils::XMLHandleEx children(root);
  own->configure.write(children.touchInElement("Config"));
  XMLElement& observations = *children.touchInElement(isUsingViewData() ? "ViewData" : "NetworkData");
  if (isUsingViewData()) {
    setFileName(observations, own->sourcesAreOfOtherData ? QString() : own->viewFile);
    kvn::write(*own->traverseDataList, &observations);
  } else {
    setFileName(observations, own->networkFile);
    kvn::write(*own->network, &observations);
  }
  XMLElement& coordinates = *children.touchInElement("CoordinateData");
  setFileName(coordinates, own->coordFile);
  kvn::write(*own->coordinatePointList, &coordinates);

  QString const error = utils::replaceFile(path, printed(document));
  if (error.isEmpty()) return;
  qCDebug(projectLog).noquote() << utils::readablePath(path) << error;
  throw QLogicError(Messages::tr("Can not write file") + QStringLiteral(": ") + error);
}

void Project::readProject(QString path) {
  utils::FileBytes const file = utils::readFile(path);
  if (file.state == utils::FileBytes::State::Broken) throw DataException(file.reason.toStdString());
  takeProject(path, file.bytes);
}

/// What could not be opened is an empty document. Not tinyxml2's `LoadFile`, which knows nothing of the charset of file
/// names and takes a read error for the end.
void Project::takeProject(QString const& path, std::string const& bytes) {
  if (int const line = utils::lineOfCrowdedElement(bytes)) {
    throw QLogicError(
        Messages::tr("Line %1: an element with more than %2 attributes").arg(line).arg(utils::kMostXmlAttributes));
  }
  resetData();
  forgetSources();
  XMLDocument document;
  document.Parse(bytes.data(), bytes.size());
  XMLElement const* const root = document.RootElement();
  if (root == nullptr) {
    qCDebug(projectLog).noquote() << path << document.ErrorStr();
    throw QLogicError(Messages::tr("Can not open file"));
  }
  own->version = attribute(*root, "Version").trimmed();
  if (own->version == QLatin1String(kTypedVersion))
    own->fileType = static_cast<FileType>(root->IntAttribute("FileType", 0));
  own->configure.read(root->FirstChildElement("Config"));
  readViewData(root->FirstChildElement("ViewData"));
  readNetworkData(root->FirstChildElement("NetworkData"));
  readCoordinateData(root->FirstChildElement("CoordinateData"));
}

/// What the project was made from before: `save` would write the new data over those files, and the station map leads
/// into the rows that are gone.
void Project::forgetSources() {
  for (QString* path : {&own->viewFile, &own->networkFile, &own->coordFile, &own->lqfFile}) path->clear();
  own->sourcesAreOfOtherData = false;
  own->lqfCollection.reset();
  own->stationMap.clear();
}

// Early versions have no FileType; the last data element decides.

void Project::readViewData(XMLElement const* element) {
  if (element == nullptr) return;
  own->viewFile = attribute(*element, "Name");
  kvn::read(element, *own->traverseDataList);
  if (own->version.isEmpty()) own->fileType = VrdFile;
}

void Project::readNetworkData(XMLElement const* element) {
  if (element == nullptr) return;
  own->networkFile = attribute(*element, "Name");
  kvn::read(element, *own->network);
  setKnownPointList(getKnownPoint(*own->traverseDataList));
  if (own->version.isEmpty()) own->fileType = CosaFile;
}

void Project::readCoordinateData(XMLElement const* element) {
  if (element == nullptr) return;
  own->coordFile = attribute(*element, "Name");
  kvn::read(element, *own->coordinatePointList);
  if (own->version.isEmpty()) own->fileType = CoordFile;
}

}  // namespace kvn
