// System: the process-wide object of the library.
#pragma once

#include "records/MessType.h"

#include <utils/Config.h>
#include <utils/Export.h>
#include <utils/Formater.h>

#include <QString>
#include <functional>
#include <list>
#include <memory>

namespace mvz {
class ViewerManager;
}
namespace utils {
class UserBehavior;
}

namespace kvn {

class Project;

/// The list of open projects, the configuration file, the translators and the one way of messages to the host.
///
/// The host constructs exactly one, calls `init()`, gives it the viewer manager and the message function, and destroys
/// it at the end; the destructor writes the configuration and sends no message. Used from the host's thread; it has no
/// lock.
class KELVANE_EXPORT System {
 public:
  /// Neither reads the configuration nor installs translators: `init()` does.
  /// @throws QLogicError when there is one already, which stays in place.
  System();
  System(System const&) = delete;
  System& operator=(System const&) = delete;
  virtual ~System();

  virtual std::shared_ptr<Project> createProject();  ///< a new empty project, not yet in the list
  virtual Project* getCurrentProject() const;        ///< null when the list is empty or the project is gone
  /// A non-null project that is not listed is appended; null clears the current project and leaves the list alone.
  virtual void setCurrentProject(std::shared_ptr<Project> project);

  static System* Instance();  ///< null before construction and after destruction

  void init();  ///< reads the configuration and installs the translators
  /// A missing file is no failure; one that is not valid JSON is reported as a `Warning` and the defaults hold. The
  /// warning waits for a message function where none is set yet.
  void readConfig();
  /// Creates the directory. A file that is not valid JSON is kept under another name, with a `Warning`.
  void writeConfig() const;
  QString getConfigFile() const;
  void setConfigFile(QString path);  ///< no file access; with an empty path nothing is read or written
  utils::Config* getConfig() const;
  utils::Formater createFormater() const;  ///< from "Globle.Configuration"
  QString getOutPath() const;              ///< "Globle.Path.OutPath", "./Out" where it is not set

  bool addProject(std::shared_ptr<Project> project);  ///< whether the argument was non-null; a project is listed once
  bool removeProject(Project* project);               ///< false when it is not listed
  bool hasProject(Project* project) const;
  std::shared_ptr<Project> findProject(Project* project) const;
  std::shared_ptr<Project> findProject(QString const& path) const;      ///< the first whose file is the same file
  std::shared_ptr<Project> findProjectName(QString const& name) const;  ///< without regard to case
  std::list<std::shared_ptr<Project>> const& getProjectList() const;
  bool isProjectOpen() const;   ///< the list has an entry
  bool isEmptyProject() const;  ///< the same answer as `isProjectOpen`

  void sendMessage(QString const& text, MessType type) const;  ///< to the host's function; silent without one
  std::function<void(QString const&, MessType)> const& getSendMessageFunc() const;
  /// The function also gets what the reading of the configuration had to say before there was one.
  void setSendMessageFunc(std::function<void(QString const&, MessType)> function);

  mvz::ViewerManager* getMvzViewerManager() const;      ///< may be null: a host without a map
  void setMvzViewerManager(mvz::ViewerManager* value);  ///< counted while it is stored
  void fullMapSystem();                                 ///< moves all views so that all projects of the list fill them
  utils::UserBehavior* getUserBehavior() const;
  void setUserBehavior(utils::UserBehavior* value);  ///< not owned; the former one stays with its Qt parent

  /// Translation of an English source text, the context being "kvn::System".
  static QString tr(char const* text, char const* disambiguation = nullptr, int n = -1);
  static QString trUtf8(char const* text, char const* disambiguation = nullptr, int n = -1);

  static System* g_System;

 private:
  struct Data;

  void initTranslators();
  void tellOfConfig(QString const& text);

  std::unique_ptr<Data> own;
};

}  // namespace kvn
