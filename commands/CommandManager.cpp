#include "commands/CommandManager.h"

#include "core/Project.h"
#include "records/detail/Messages.h"

#include <mvz/ProjectMapScene.h>
#include <utils/ElapsedTimerLog.h>

#include <new>
#include <utility>

namespace kvn {
namespace {

QString textOf(cmd::CmdErrorCode code) {
  switch (code) {
    case cmd::CmdErrorCode::noCommand:
      return Messages::tr("cat not find Command");
    case cmd::CmdErrorCode::noRedo:
      return Messages::tr("noRedo");
    case cmd::CmdErrorCode::noUndo:
      return Messages::tr("noUndo");
    default:
      return {};
  }
}

/// Sets a member; a result that is no object gives way, since it has no members.
void setMember(Json::Value& out, char const* key, Json::Value const& value) {
  if (!out.isObject()) out = Json::Value(Json::objectValue);
  out[key] = value;
}

void fail(Json::Value& out, cmd::CmdErrorCode code, std::string const& message) {
  setMember(out, "code", static_cast<int>(code));
  setMember(out, "message", message);
}

/// A view that cannot repaint, whatever it throws, does not make a failure of what was done.
void redraw() {
  try {
    mvz::ProjectMapScene::reDraw();
  } catch (std::exception const& failure) {
    Messages::send(QString::fromUtf8(failure.what()), Error);
  } catch (...) {  // NOLINT(bugprone-empty-catch): it says nothing that could be passed on
  }
}

}  // namespace

CommandManager::CommandManager(Project* project) : cmd::CommandMgr<Command>(project) {}
CommandManager::~CommandManager() = default;

bool CommandManager::execute(char const* name, Json::Value const& in, Json::Value& out, std::function<bool()> cancel) {
  utils::ElapsedTimerLog const timer(QStringLiteral("kvn begin command[%1]").arg(QString::fromUtf8(name)));
  setMember(out, "code", static_cast<int>(cmd::CmdErrorCode::Good));
  bool ok = false;
  try {
    ok = cmd::CommandMgr<Command>::execute(name, in, out, std::move(cancel));
  } catch (cmd::CmdException const& failure) {
    fail(out, failure.code, textOf(failure.code).toStdString());
  } catch (std::bad_alloc const&) {
    fail(out, cmd::CmdErrorCode::unknown, Messages::tr("not enough memory").toStdString());
  } catch (std::exception const& failure) {
    fail(out, cmd::CmdErrorCode::unknown, failure.what());
  } catch (...) {
    setMember(out, "code", static_cast<int>(cmd::CmdErrorCode::unknown));
  }
  if (!ok && (!out.isObject() || out["message"].empty())) {
    setMember(out, "message", Messages::tr("unknown error").toStdString());
  }
  if (ok) redraw();
  return ok;
}

}  // namespace kvn
