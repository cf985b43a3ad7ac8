#include "core/System.h"

#include "core/Project.h"
#include "map/MapScene.h"
#include "records/detail/Messages.h"

#include <mvz/ViewerManager.h>
#include <utils/HTextCodec.h>
#include <utils/QLogicError.h>
#include <utils/ResourceFile.h>
#include <utils/UserBehavior.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMetaType>
#include <QPointer>
#include <QStandardPaths>
#include <QStringList>
#include <QTranslator>
#include <algorithm>
#include <osg/ref_ptr>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kvn {
namespace {

/// A table of the user's language. The working directory goes first, then what came with the library.
bool loadTable(QTranslator& translator, QString const& stem) {
  std::vector<std::string> const folders = utils::resourceFolders(QStringLiteral("translations"));
  return std::any_of(folders.begin(), folders.end(), [&](std::string const& folder) {
    return translator.load(QLocale(), stem, QStringLiteral("_"), QFile::decodeName(folder.c_str()));
  });
}

}  // namespace

System* System::g_System = nullptr;

struct System::Data {
  utils::Config config;
  QString configFile;
  QPointer<utils::UserBehavior> userBehavior;
  osg::ref_ptr<osg::Referenced> viewerManager;
  QStringList unsentWarnings;  ///< of the reading of the configuration, while there is no message function
  std::unordered_map<Project const*, std::list<std::shared_ptr<Project>>::iterator> placeOf;  // in the project list
};

System::System() {
  if (g_System != nullptr) throw QLogicError("kvn::System is only one can be created");
  g_System = this;
  data = std::make_unique<Data>();
  qRegisterMetaType<Json::Value>("Json::Value");
  QDir const documents(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  data->configFile = documents.filePath(QStringLiteral("PLQ/Config/KelvaneConfig.json"));
  data->userBehavior = new utils::UserBehavior(QStringLiteral("Kelvane"), QCoreApplication::instance());
}

// Without a message: what the host's function needs may be gone by now.
System::~System() {
  try {
    data->config.write(HTextCodec::ToLocal8Bit(data->configFile));
  } catch (...) {  // NOLINT(bugprone-empty-catch): there is nobody left to tell
  }
  g_System = nullptr;
  data.reset();
}

System* System::Instance() { return g_System; }

std::shared_ptr<Project> System::createProject() { return std::make_shared<Project>(); }

Project* System::getCurrentProject() const { return projectList.empty() ? nullptr : currentProject.lock().get(); }

void System::setCurrentProject(std::shared_ptr<Project> project) {
  addProject(project);
  currentProject = project;
}

void System::init() {
  readConfig();
  initTranslators();
}

void System::readConfig() {
  switch (data->config.read(HTextCodec::ToLocal8Bit(data->configFile))) {
    case utils::Config::ReadResult::Invalid:
      tellOfConfig(
          tr("The configuration file %1 is not valid JSON; the default settings are used").arg(data->configFile));
      break;
    case utils::Config::ReadResult::Unreadable:
      tellOfConfig(tr("The configuration file %1 cannot be read; the default settings are used").arg(data->configFile));
      break;
    default:
      break;
  }
}

/// Hosts call `init` before they have a place for messages.
void System::tellOfConfig(QString const& text) {
  if (sendMessageFunc) {
    sendMessage(text, Warning);
  } else {
    data->unsentWarnings.append(text);
  }
}

void System::writeConfig() const {
  auto const result = data->config.write(HTextCodec::ToLocal8Bit(data->configFile));
  if (!result.keptAs.isEmpty()) {
    sendMessage(
        tr("The configuration file %1 is not valid JSON; it is kept as %2").arg(data->configFile, result.keptAs),
        Warning);
  }
  if (!result.error.isEmpty()) sendMessage(tr("The configuration was not written: %1").arg(result.error), Warning);
}

QString System::getConfigFile() const { return data->configFile; }
void System::setConfigFile(QString path) { data->configFile = std::move(path); }
utils::Config* System::getConfig() const { return &data->config; }

utils::Formater System::createFormater() const { return utils::Formater(data->config.value("Globle.Configuration")); }

QString System::getOutPath() const {
  Json::Value const path = data->config.value("Globle.Path.OutPath");
  return path.isString() ? QString::fromStdString(path.asString()) : QStringLiteral("./Out");
}

bool System::addProject(std::shared_ptr<Project> project) {
  if (project == nullptr) return false;
  if (hasProject(project.get())) return true;
  std::list<std::shared_ptr<Project>> added{std::move(project)};
  data->placeOf.emplace(added.front().get(), added.begin());
  projectList.splice(projectList.end(), added);  // the entry keeps its place
  return true;
}

bool System::removeProject(Project* project) {
  auto const found = data->placeOf.find(project);
  if (found == data->placeOf.end()) return false;
  auto const place = found->second;
  data->placeOf.erase(found);
  projectList.erase(place);
  return true;
}

bool System::hasProject(Project* project) const { return findProject(project) != nullptr; }

std::shared_ptr<Project> System::findProject(Project* project) const {
  auto const found = data->placeOf.find(project);
  return found == data->placeOf.end() ? nullptr : *found->second;
}

std::shared_ptr<Project> System::findProject(QString const& path) const {
  QFileInfo const wanted(path);
  auto const found = std::find_if(projectList.begin(), projectList.end(), [&wanted](auto const& entry) {
    return QFileInfo(entry->getProjectFile()) == wanted;
  });
  return found == projectList.end() ? nullptr : *found;
}

std::shared_ptr<Project> System::findProjectName(QString const& name) const {
  QString const wanted = name.toLower();
  auto const found = std::find_if(projectList.begin(), projectList.end(),
                                  [&wanted](auto const& entry) { return entry->getName().toLower() == wanted; });
  return found == projectList.end() ? nullptr : *found;
}

std::list<std::shared_ptr<Project>> const& System::getProjectList() const { return projectList; }
bool System::isProjectOpen() const { return !projectList.empty(); }
bool System::isEmptyProject() const { return !projectList.empty(); }

void System::sendMessage(QString const& text, MessType type) const {
  auto const function = sendMessageFunc;  // it may replace itself
  if (function) function(text, type);
}

std::function<void(QString const&, MessType)> const& System::getSendMessageFunc() const { return sendMessageFunc; }

void System::setSendMessageFunc(std::function<void(QString const&, MessType)> function) {
  sendMessageFunc = std::move(function);
  if (!sendMessageFunc) return;
  for (QString const& text : std::exchange(data->unsentWarnings, {})) sendMessage(text, Warning);
}

mvz::ViewerManager* System::getMvzViewerManager() const {
  return dynamic_cast<mvz::ViewerManager*>(data->viewerManager.get());
}

void System::setMvzViewerManager(mvz::ViewerManager* value) { data->viewerManager = value; }

void System::fullMapSystem() {
  std::vector<osgEarth::Layer*> all;
  for (auto const& project : projectList) {
    MapScene const* const scene = project->getOrCreateMapScene();
    std::vector<osgEarth::Layer*> const layers = scene->getLayers();
    all.insert(all.end(), layers.begin(), layers.end());
  }
  mvz::ViewerManager* const viewers = getMvzViewerManager();
  if (!all.empty() && viewers != nullptr) viewers->fullMapAllView(all);
}

utils::UserBehavior* System::getUserBehavior() const { return data->userBehavior; }
void System::setUserBehavior(utils::UserBehavior* value) { data->userBehavior = value; }

QString System::tr(char const* text, char const* disambiguation, int n) {
  return QCoreApplication::translate("kvn::System", text, disambiguation, n);
}

void Messages::send(QString const& text, MessType type) {
  System const* const system = System::Instance();
  if (system != nullptr) system->sendMessage(text, type);
}

QString System::trUtf8(char const* text, char const* disambiguation, int n) { return tr(text, disambiguation, n); }

void System::initTranslators() {
  QCoreApplication* const application = QCoreApplication::instance();
  if (application == nullptr) return;  // without it nothing is translated
  for (char const* stem : {"Kelvane", "Kelvane_ui", "Kelvane_plq"}) {
    auto translator = std::make_unique<QTranslator>();
    bool const loaded = loadTable(*translator, QString::fromLatin1(stem));
    // Not this object's: installed translators stay as long as there is somebody to translate.
    if (loaded && QCoreApplication::installTranslator(translator.get())) translator.release()->setParent(application);
  }
}

}  // namespace kvn
