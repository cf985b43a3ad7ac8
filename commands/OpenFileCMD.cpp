#include "commands/Command.h"
#include "commands/detail/DataSteps.h"
#include "core/DataException.h"
#include "core/Project.h"
#include "records/detail/Messages.h"
#include "reduction/CheckData.h"

#include <utils/QLogicError.h>

#include <QFileInfo>
#include <exception>
#include <new>
#include <string>

namespace kvn {
namespace {

/// What the user is told of a file that cannot be read, whatever the reason.
class UnreadableFile : public std::exception {
 public:
  char const* what() const noexcept override { return text.c_str(); }

 private:
  std::string text = Messages::tr("The data is error").toStdString();
};

/// The name of a project is the name of its file up to the suffix.
void checkProjectName(QString const& path) {
  if (!QFileInfo(path).completeBaseName().contains(QLatin1Char('.'))) return;
  throw QLogicError(Messages::tr("Project name cannot contant \".\""));
}

/// Only bad data is told in the words of the reader, which name the line or the point. Want of memory is passed on: it
/// is no fault of the file.
void readInto(Project& project, QString const& path) {
  try {
    project.read(path);
  } catch (DataException const& failure) {
    throw DataException(failure);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const&) {
    throw UnreadableFile();
  }
}

/// Loads a file of any kind, generates the network, checks the data and shows the map: {"file"}. A failed import leaves
/// what it had already replaced; a network that cannot be generated is told and does not fail the command.
class OpenFileCMD : public Command {
 public:
  bool execute(Json::Value const& in) override {
    QString const path = QString::fromUtf8(in["file"].asCString());
    checkProjectName(path);
    Project* const project = getProject();
    readInto(*project, path);
    if (project->getProjectFile().isEmpty()) project->setProjectFile(path + ".kvn");
    auto const reason = detail::failureOf([project] {
      project->generateNetworkData();
      CheckData::checkInitData(project);
    });
    if (reason) Messages::send(*reason, Error);
    project->build();
    project->fullShowMap();
    return true;
  }

  char const* className() const override { return "OpenFileCMD"; }
};

CommandRegistration<OpenFileCMD> const registerOpenFile("OpenFileCMD");

}  // namespace
}  // namespace kvn
