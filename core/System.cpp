#include "core/System.h"

#include "core/Project.h"
#include "map/MapScene.h"
#include "records/detail/Messages.h"

#include <mvz/SelectablePlaceNode.h>
#include <mvz/ViewerManager.h>
#include <utils/FileName.h>
#include <utils/HTextCodec.h>
#include <utils/QLogicError.h>
#include <utils/ResourceFile.h>
#include <utils/UserBehavior.h>
#include <utils/detail/PrivateData.h>

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

struct KELVANE_PRIVATE System::Data {
  KELVANE_LATER_MEMBER
  std::weak_ptr<Project> currentProject;
  std::list<std::shared_ptr<Project>> projectList;
  std::function<void(QString const&, MessType)> sendMessageFunc;
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
  own = std::make_unique<Data>();
  qRegisterMetaType<Json::Value>("Json::Value");
  QDir const documents(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  own->configFile = documents.filePath(QStringLiteral("PLQ/Config/KelvaneConfig.json"));
  own->userBehavior = new utils::UserBehavior(QStringLiteral("Kelvane"), QCoreApplication::instance());
  mvz::SelectablePlaceNode::setIconFailureCall([](QString const& file) {
    Messages::send(tr("The icon %1 cannot be read: points show by their names alone").arg(utils::readablePath(file)),
                   Warning);
  });
}

// Without a message: what the host's function needs may be gone by now.
System::~System() {
  try {
    own->config.write(HTextCodec::ToLocal8Bit(own->configFile));
  } catch (...) {  // NOLINT(bugprone-empty-catch): there is nobody left to tell
  }
  g_System = nullptr;
  own.reset();
}

System* System::Instance() { return g_System; }

std::shared_ptr<Project> System::createProject() { return std::make_shared<Project>(); }

Project* System::getCurrentProject() const {
  return own->projectList.empty() ? nullptr : own->currentProject.lock().get();
}

void System::setCurrentProject(std::shared_ptr<Project> project) {
  addProject(project);
  own->currentProject = project;
}

void System::init() {
  readConfig();
  initTranslators();
}

void System::readConfig() {
  switch (own->config.read(HTextCodec::ToLocal8Bit(own->configFile))) {
    case utils::Config::ReadResult::Invalid:
      tellOfConfig(
          tr("The configuration file %1 is not valid JSON; the default settings are used").arg(own->configFile));
      break;
    case utils::Config::ReadResult::Unreadable:
      tellOfConfig(tr("The configuration file %1: %2; the default settings are used")
                       .arg(own->configFile, own->config.unreadableReason()));
      break;
    default:
      break;
  }
}

/// Hosts call `init` before they have a place for messages.
void System::tellOfConfig(QString const& text) {
  if (own->sendMessageFunc) {
    sendMessage(text, Warning);
  } else {
    own->unsentWarnings.append(text);
  }
}

void System::writeConfig() const {
  auto const result = own->config.write(HTextCodec::ToLocal8Bit(own->configFile));
  if (!result.keptAs.isEmpty()) {
    sendMessage(tr("The configuration file %1 is not valid JSON; it is kept as %2").arg(own->configFile, result.keptAs),
                Warning);
  }
  if (!result.error.isEmpty()) sendMessage(tr("The configuration was not written: %1").arg(result.error), Warning);
}

QString System::getConfigFile() const { return own->configFile; }
void System::setConfigFile(QString path) { own->configFile = std::move(path); }
utils::Config* System::getConfig() const { return &own->config; }

utils::Formater System::createFormater() const { return utils::Formater(own->config.value("Globle.Configuration")); }

QString System::getOutPath() const {
  Json::Value const path = own->config.value("Globle.Path.OutPath");
  return path.isString() ? QString::fromStdString(path.asString()) : QStringLiteral("./Out");
}

bool System::addProject(std::shared_ptr<Project> project) {
  if (project == nullptr) return false;
  if (hasProject(project.get())) return true;
  std::list<std::shared_ptr<Project>> added{std::move(project)};
  own->placeOf.emplace(added.front().get(), added.begin());
  own->projectList.splice(own->projectList.end(), added);  // the entry keeps its place
  return true;
}

bool System::removeProject(Project* project) {
  auto const found = own->placeOf.find(project);
  if (found == own->placeOf.end()) return false;
  auto const place = found->second;
  own->placeOf.erase(found);
  own->projectList.erase(place);
  return true;
}

bool System::hasProject(Project* project) const { return findProject(project) != nullptr; }

std::shared_ptr<Project> System::findProject(Project* project) const {
  auto const found = own->placeOf.find(project);
  return found == own->placeOf.end() ? nullptr : *found->second;
}

std::shared_ptr<Project> System::findProject(QString const& path) const {
  QFileInfo const wanted(path);
  auto const found = std::find_if(own->projectList.begin(), own->projectList.end(), [&wanted](auto const& entry) {
    return QFileInfo(entry->getProjectFile()) == wanted;
  });
  return found == own->projectList.end() ? nullptr : *found;
}

std::shared_ptr<Project> System::findProjectName(QString const& name) const {
  QString const wanted = name.toLower();
  auto const found = std::find_if(own->projectList.begin(), own->projectList.end(),
                                  [&wanted](auto const& entry) { return entry->getName().toLower() == wanted; });
  return found == own->projectList.end() ? nullptr : *found;
}

std::list<std::shared_ptr<Project>> const& System::getProjectList() const { return own->projectList; }
bool System::isProjectOpen() const { return !own->projectList.empty(); }
bool System::isEmptyProject() const { return !own->projectList.empty(); }

void System::sendMessage(QString const& text, MessType type) const {
  auto const function = own->sendMessageFunc;  // it may replace itself
  if (function) function(text, type);
}

std::function<void(QString const&, MessType)> const& System::getSendMessageFunc() const { return own->sendMessageFunc; }

void System::setSendMessageFunc(std::function<void(QString const&, MessType)> function) {
  own->sendMessageFunc = std::move(function);
  if (!own->sendMessageFunc) return;
  for (QString const& text : std::exchange(own->unsentWarnings, {})) sendMessage(text, Warning);
}

mvz::ViewerManager* System::getMvzViewerManager() const {
  return dynamic_cast<mvz::ViewerManager*>(own->viewerManager.get());
}

void System::setMvzViewerManager(mvz::ViewerManager* value) { own->viewerManager = value; }

void System::fullMapSystem() {
  std::vector<osgEarth::Layer*> all;
  for (auto const& project : own->projectList) {
    MapScene const* const scene = project->getOrCreateMapScene();
    std::vector<osgEarth::Layer*> const layers = scene->getLayers();
    all.insert(all.end(), layers.begin(), layers.end());
  }
  mvz::ViewerManager* const viewers = getMvzViewerManager();
  if (!all.empty() && viewers != nullptr) viewers->fullMapAllView(all);
}

utils::UserBehavior* System::getUserBehavior() const { return own->userBehavior; }
void System::setUserBehavior(utils::UserBehavior* value) { own->userBehavior = value; }

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
