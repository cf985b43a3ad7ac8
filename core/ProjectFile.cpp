// The project file: one XML document with the settings and the data of a project.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/AlgorithmData.h"
#include "adjust/TriangleHeightAdjust.h"
#include "commands/CommandManager.h"
#include "core/DataException.h"
#include "core/OutputReport.h"
#include "core/Project.h"
#include "formats/ITraverseDataCollcetion.h"
#include "legend/XmlMannager.h"
#include "map/MapScene.h"
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
  projectFile = path;
  writeProject(path);
  if (!isUsingViewData() || !traverseDataList->empty() || network->isEmpty()) return;
  Messages::send(Messages::tr("The network lines are not in the project file, which holds the observation rows"),
                 Warning);
}

void Project::writeProject(QString path) const {
  XMLDocument document;
  document.InsertEndChild(document.NewDeclaration());
  XMLElement& root = *document.NewElement("Kelvane");
  root.SetAttribute("Version", utf8(version).c_str());
  root.SetAttribute("FileType", int(fileType));
  document.InsertEndChild(&root);
  utils::XMLHandleEx children(root);
  configure.write(children.touchInElement("Config"));
  XMLElement& data = *children.touchInElement(isUsingViewData() ? "ViewData" : "NetworkData");
  if (isUsingViewData()) {
    setFileName(data, sourcesAreOfOtherData ? QString() : viewFile);
    kvn::write(*traverseDataList, &data);
  } else {
    setFileName(data, networkFile);
    kvn::write(*network, &data);
  }
  XMLElement& coordinates = *children.touchInElement("CoordinateData");
  setFileName(coordinates, coordFile);
  kvn::write(*coordinatePointList, &coordinates);

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
  version = attribute(*root, "Version").trimmed();
  if (version == QLatin1String(kTypedVersion)) fileType = static_cast<FileType>(root->IntAttribute("FileType", 0));
  configure.read(root->FirstChildElement("Config"));
  readViewData(root->FirstChildElement("ViewData"));
  readNetworkData(root->FirstChildElement("NetworkData"));
  readCoordinateData(root->FirstChildElement("CoordinateData"));
}

/// What the project was made from before: `save` would write the new data over those files, and the station map leads
/// into the rows that are gone.
void Project::forgetSources() {
  for (QString* path : {&viewFile, &networkFile, &coordFile, &lqfFile}) path->clear();
  sourcesAreOfOtherData = false;
  lqfCollection.reset();
  stationMap.clear();
}

// Early versions have no FileType; the last data element decides.

void Project::readViewData(XMLElement const* element) {
  if (element == nullptr) return;
  viewFile = attribute(*element, "Name");
  kvn::read(element, *traverseDataList);
  if (version.isEmpty()) fileType = VrdFile;
}

void Project::readNetworkData(XMLElement const* element) {
  if (element == nullptr) return;
  networkFile = attribute(*element, "Name");
  kvn::read(element, *network);
  setKnownPointList(getKnownPoint(*traverseDataList));
  if (version.isEmpty()) fileType = CosaFile;
}

void Project::readCoordinateData(XMLElement const* element) {
  if (element == nullptr) return;
  coordFile = attribute(*element, "Name");
  kvn::read(element, *coordinatePointList);
  if (version.isEmpty()) fileType = CoordFile;
}

}  // namespace kvn
