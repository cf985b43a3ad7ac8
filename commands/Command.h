// Command: base of the commands that work on a project.
#pragma once

#include "commands/cmd/CommandMgr.h"

#include <utils/Export.h>

#include <json/value.h>
#include <memory>

namespace kvn {

class MapScene;
class Project;
class System;

/// JSON in, JSON out, a project as the user object. Not undoable unless a subclass says otherwise.
class KELVANE_EXPORT Command : public cmd::ICommand<Json::Value, Project> {
 public:
  Command();
  ~Command() override;

  void undo() override;
  void redo() override;
  bool isUndoable() override;
  char const* className() const override;
  void getResult(Json::Value& out) override;  ///< replaces all that `out` held by `result`

  Project* getProjectNothrow() const;
  Project* getProject() const;  ///< @throws QLogicError "kvn core error:project is not open"
  System* getSystemNothrow() const;
  System* getSystem() const;  ///< @throws QLogicError "kvn core error:system is not init"
  MapScene* getMapSceneNothrow() const;
  MapScene* getMapScene() const;  ///< @throws QLogicError "kvn core error:MapScene is not exist"

 protected:
  Json::Value result;
};

}  // namespace kvn

// One registry for the process: the library holds the only instance, also for host programs that use the template.
extern template class KELVANE_EXPORT cmd::CommandMgr<kvn::Command>;

namespace kvn {

/// Registers a command class while its library loads: a static object of this type stands beside each command.
template <typename ConcreteCommand>
class CommandRegistration {
 public:
  explicit CommandRegistration(char const* name) {
    cmd::CommandMgr<Command>::Register(name, {&Create, &ConcreteCommand::DeleteClass});
  }

 private:
  static cmd::ICommand<Json::Value, Project>* Create() { return std::make_unique<ConcreteCommand>().release(); }
};

}  // namespace kvn
