#include "commands/Command.h"

#include "core/Project.h"
#include "core/System.h"

#include <utils/QLogicError.h>

namespace kvn {

Command::Command() = default;
Command::~Command() = default;

void Command::undo() {}
void Command::redo() {}
bool Command::isUndoable() { return false; }
char const* Command::className() const { return "Command"; }
void Command::getResult(Json::Value& out) { out = result; }

Project* Command::getProjectNothrow() const { return getUserdata(); }

Project* Command::getProject() const {
  Project* const project = getProjectNothrow();
  if (project == nullptr) throw QLogicError(System::tr("kvn core error:project is not open"));
  return project;
}

System* Command::getSystemNothrow() const { return System::Instance(); }

System* Command::getSystem() const {
  System* const system = getSystemNothrow();
  if (system == nullptr) throw QLogicError(System::tr("kvn core error:system is not init"));
  return system;
}

MapScene* Command::getMapSceneNothrow() const {
  Project const* const project = getProjectNothrow();
  return project == nullptr ? nullptr : project->getMapScene();
}

MapScene* Command::getMapScene() const {
  MapScene* const scene = getMapSceneNothrow();
  if (scene == nullptr) throw QLogicError(System::tr("kvn core error:MapScene is not exist"));
  return scene;
}

}  // namespace kvn

template class cmd::CommandMgr<kvn::Command>;
