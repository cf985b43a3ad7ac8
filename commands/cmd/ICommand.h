// ICommand: one command of the engine.
#pragma once

#include <utils/Export.h>

#include <functional>
#include <utility>

namespace cmd {

/// A command takes and gives values of `InValue` and works on an object of `UserData`. The manager makes it with the
/// registered create function, gives it the user object and the cancel query, and deletes it through `DeleteClass`.
template <typename InValue, typename UserData>
class KELVANE_EXPORT ICommand {
 public:
  using In = InValue;
  using User = UserData;

  ICommand() = default;
  ICommand(ICommand const&) = delete;
  ICommand& operator=(ICommand const&) = delete;
  virtual ~ICommand() = default;

  virtual bool execute(In const& in) = 0;  ///< does the work; true is success
  virtual void undo() = 0;
  virtual void redo() = 0;
  virtual bool isUndoable() = 0;              ///< asked after a successful `execute`
  virtual char const* className() const = 0;  ///< the registered name
  virtual void getResult(In& out) = 0;        ///< hands the result value over
  virtual bool isCancel() const {
    std::function<bool()> const query = isCancelFunction;  // it may replace itself
    return query && query();
  }
  virtual void setUserdata(User* value) { userdata = value; }

  User* getUserdata() const { return userdata; }
  void setIsCancelFunction(std::function<bool()> function) { isCancelFunction = std::move(function); }
  std::function<bool()> const& getIsCancelFunction() const { return isCancelFunction; }

  static void DeleteClass(ICommand* command) { delete command; }

 private:
  User* userdata = nullptr;                ///< not owned
  std::function<bool()> isCancelFunction;  ///< empty outside a call
};

}  // namespace cmd
