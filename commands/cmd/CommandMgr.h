// CommandMgr: runs registered commands by name, with undo, redo, hooks and an error state.
#pragma once

#include "commands/cmd/CmdException.h"
#include "commands/cmd/ICommand.h"

#include <utils/Export.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <stack>
#include <string>
#include <utility>

namespace cmd {

/// One manager works for one user object; the registry of commands is one for the process. `Base` names the value type
/// as `In` and the type of the user object as `User`.
///
/// Every operation holds the recursive mutex from entry to exit: a hook or a command may call back on the same thread.
/// Commands register while libraries load; later registration is not safe beside running commands.
template <typename Base>
class KELVANE_EXPORT CommandMgr {
 public:
  using In = typename Base::In;
  using User = typename Base::User;
  using Interface = ICommand<In, User>;
  using CreateFunction = Interface* (*)();
  using DeleteFunction = void (*)(Interface*);
  using Functions = std::pair<CreateFunction, DeleteFunction>;
  using ErrorCall = std::function<void(CommandMgr*)>;
  using ValueCall = std::function<void(In const&)>;

  explicit CommandMgr(User* user) : userdata(user) {}
  CommandMgr(CommandMgr const&) = delete;
  CommandMgr& operator=(CommandMgr const&) = delete;

  /// Runs the command of that name. `out` takes the command's result, whether it succeeded or not.
  ///
  /// @return  whether the command succeeded; false also when an error hook took a failure.
  /// @throws CmdException(noCommand) and whatever the command throws, when there is no error hook.
  virtual bool execute(char const* name, In const& in, In& out, std::function<bool()> cancel);
  /// Undoes the newest `count` commands, or all when there are fewer.
  /// @throws CmdException(noUndo) when there is none at all. A command whose undo fails stays where it was.
  virtual void undo(std::size_t count);
  /// Redoes the `count` commands undone last, or all when there are fewer.
  /// @throws CmdException(noRedo) when there is none at all.
  virtual void redo(std::size_t count);
  virtual void setErrorCallFunc(ErrorCall function) { set(errorCallFunc, std::move(function)); }
  /// Takes effect at the next `execute`, and then removes one entry at most.
  virtual void setMaxQueueLen(std::size_t length) { set(maxQueueLen, std::uint64_t{length}); }
  virtual void setExecuteBeforeCall(ValueCall function) { set(executeBeforeCall, std::move(function)); }
  virtual void setExecuteAfterCall(ValueCall function) { set(executeAfterCall, std::move(function)); }

  ErrorCall getErrorCallFunc() const { return get(errorCallFunc); }
  unsigned int getErrorCode() const { return get(errorCode); }
  std::string getErrorMessage() const { return get(errorMessage); }
  ValueCall getExecuteAfterCall() const { return get(executeAfterCall); }
  ValueCall getExecuteBeforeCall() const { return get(executeBeforeCall); }
  std::size_t getMaxQueueLen() const { return static_cast<std::size_t>(get(maxQueueLen)); }
  std::stack<Interface*> const& getRedoQueue() const { return redoStack; }
  std::list<Interface*> const& getUndoQueue() const { return undoQueue; }

  /// Holds the manager's lock across several operations.
  [[nodiscard]] std::unique_lock<std::recursive_mutex> lock() const {
    return std::unique_lock<std::recursive_mutex>(mutex);
  }

  /// Registers the create and the delete function of a command, in place of an earlier entry of that name.
  /// @return false, and nothing changes, when the name or one of the functions is null.
  static bool Register(char const* name, Functions functions);

 protected:
  virtual void setErrorCode(unsigned int code) { errorCode = code; }
  virtual void setErrorMessage(std::string message) { errorMessage = std::move(message); }

 public:
  virtual ~CommandMgr();  // behind the operations, which keep the first slots of the virtual table

 protected:
  static std::map<std::string, Functions>& CmdMap() {
    static std::map<std::string, Functions> map;
    return map;
  }
  static std::mutex& CmdListMutex() {
    static std::mutex instance;
    return instance;
  }

 private:
  using Guard = std::lock_guard<std::recursive_mutex>;
  using Owned = std::unique_ptr<Interface, DeleteFunction>;

  template <typename Field>
  void set(Field& field, Field value) {
    Guard const hold(mutex);
    field = std::move(value);
  }
  template <typename Field>
  Field get(Field const& field) const {
    Guard const hold(mutex);
    return field;
  }

  bool runCommand(char const* name, In const& in, In& out, std::function<bool()> cancel);
  static Owned create(char const* name);
  static bool runGuarded(Interface& command, In const& in, In& out, std::function<bool()> cancel);
  static void takeBack(Interface& command);
  void keepForUndo(Interface* command);
  void clearRedo();
  void undoNewest();
  void redoNewest();

  /// Notes the failure that is in flight, and lets it pass when no error hook takes it.
  void handleFailure();

  mutable std::recursive_mutex mutex;
  std::stack<Interface*> redoStack;  ///< undone and not yet redone, owned
  std::list<Interface*> undoQueue;   ///< done, oldest first, owned
  std::uint64_t maxQueueLen = 1000;
  ErrorCall errorCallFunc;
  unsigned int errorCode = 0;
  std::string errorMessage;
  User* userdata;
  ValueCall executeBeforeCall;
  ValueCall executeAfterCall;
};

template <typename Base>
CommandMgr<Base>::~CommandMgr() {
  clearRedo();
  for (Interface* command : undoQueue) Interface::DeleteClass(command);
}

template <typename Base>
bool CommandMgr<Base>::Register(char const* name, Functions functions) {
  if (name == nullptr || functions.first == nullptr || functions.second == nullptr) return false;
  CmdMap()[name] = functions;
  return true;
}

template <typename Base>
bool CommandMgr<Base>::execute(char const* name, In const& in, In& out, std::function<bool()> cancel) {
  Guard const hold(mutex);
  try {
    return runCommand(name, in, out, std::move(cancel));
  } catch (...) {
    handleFailure();
  }
  return false;
}

template <typename Base>
bool CommandMgr<Base>::runCommand(char const* name, In const& in, In& out, std::function<bool()> cancel) {
  // Copies of the hooks are called: a hook may replace itself.
  if (ValueCall const before = executeBeforeCall) before(in);
  Owned command = create(name);
  command->setUserdata(userdata);
  if (!runGuarded(*command, in, out, std::move(cancel))) return false;
  if (command->isUndoable()) {
    keepForUndo(command.release());
  } else {
    command.reset();
  }
  if (ValueCall const after = executeAfterCall) after(out);
  return true;
}

template <typename Base>
typename CommandMgr<Base>::Owned CommandMgr<Base>::create(char const* name) {
  if (name == nullptr) throw CmdException(CmdErrorCode::noCommand);
  auto const& map = CmdMap();
  auto const entry = map.find(name);
  if (entry == map.end()) throw CmdException(CmdErrorCode::noCommand);
  Owned command(entry->second.first(), entry->second.second);
  if (command == nullptr) throw CmdException(CmdErrorCode::noCommand);
  return command;
}

template <typename Base>
bool CommandMgr<Base>::runGuarded(Interface& command, In const& in, In& out, std::function<bool()> cancel) {
  try {
    command.setIsCancelFunction(std::move(cancel));
    bool const ok = command.execute(in);
    command.getResult(out);
    command.setIsCancelFunction({});
    return ok;
  } catch (...) {
    command.setIsCancelFunction({});
    takeBack(command);
    throw;
  }
}

/// What was done half is undone where the command knows how. The failure of the command is what is told, and not one of
/// its undo.
template <typename Base>
void CommandMgr<Base>::takeBack(Interface& command) {
  try {
    if (command.isUndoable()) command.undo();
  } catch (...) {  // NOLINT(bugprone-empty-catch): see above
  }
}

template <typename Base>
void CommandMgr<Base>::keepForUndo(Interface* command) {
  undoQueue.push_back(command);
  if (undoQueue.size() > maxQueueLen) {
    Interface* const oldest = undoQueue.front();
    undoQueue.pop_front();
    Interface::DeleteClass(oldest);
  }
  clearRedo();
}

template <typename Base>
void CommandMgr<Base>::clearRedo() {
  while (!redoStack.empty()) {
    Interface* const command = redoStack.top();
    redoStack.pop();
    Interface::DeleteClass(command);
  }
}

template <typename Base>
void CommandMgr<Base>::undo(std::size_t count) {
  Guard const hold(mutex);
  try {
    if (undoQueue.empty()) throw CmdException(CmdErrorCode::noUndo);
    for (; count > 0 && !undoQueue.empty(); --count) undoNewest();
  } catch (...) {
    handleFailure();
  }
}

template <typename Base>
void CommandMgr<Base>::redo(std::size_t count) {
  Guard const hold(mutex);
  try {
    if (redoStack.empty()) throw CmdException(CmdErrorCode::noRedo);
    for (; count > 0 && !redoStack.empty(); --count) redoNewest();
  } catch (...) {
    handleFailure();
  }
}

// The command is out of its place while it runs, since it may call back; it goes back there when it fails.
template <typename Base>
void CommandMgr<Base>::undoNewest() {
  Interface* const command = undoQueue.back();
  undoQueue.pop_back();
  try {
    command->undo();
  } catch (...) {
    undoQueue.push_back(command);
    throw;
  }
  redoStack.push(command);
}

template <typename Base>
void CommandMgr<Base>::redoNewest() {
  Interface* const command = redoStack.top();
  redoStack.pop();
  try {
    command->redo();
  } catch (...) {
    redoStack.push(command);
    throw;
  }
  undoQueue.push_back(command);
}

template <typename Base>
void CommandMgr<Base>::handleFailure() {
  try {
    throw;
  } catch (CmdException const& failure) {
    setErrorMessage(failure.what());
    setErrorCode(static_cast<unsigned int>(failure.code));
  } catch (std::exception const& failure) {
    setErrorCode(CmdErrorCode::unknown);
    setErrorMessage(failure.what());
  } catch (...) {
    setErrorCode(CmdErrorCode::unknown);
  }
  ErrorCall const hook = errorCallFunc;
  if (!hook) throw;
  hook(this);
}

}  // namespace cmd
