// ExecRun: the commands of one script, run one after the other on the project of a session.
#pragma once

#include "ExecFile.h"
#include "Session.h"

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <string>
#include <vector>

namespace kvn::host {

/// Beside the commands of the library a script has three words of its own, which take no argument: "list" has the
/// records with their ids in `out`, "undo" takes the last edit back, "redo" makes it again.
class ExecRun {
 public:
  /// @param mayUndo  whether the script has an "undo": what an edit replaces is kept for that only.
  ExecRun(Session& session, bool mayUndo);

  /// The result of one command, {ok, out, messages}; of one that adds records also "ids".
  Json::Value run(Json::Value const& command);

  /// The result in the place of what is no command.
  Json::Value refuse(QString const& reason);

 private:
  /// What the data commands change.
  struct State {
    std::vector<TraverseDataInfo> rows;
    Network network;
    std::vector<CoordinatePointInfo> coordinates;
  };

  bool perform(std::string const& name, Json::Value const& in, Json::Value& out);
  bool openAnother(Json::Value const& in, Json::Value& out);
  void tellWhatCareFinds(QString const& path);
  bool tellReason(QString const& path, ExecFile& file, Json::Value const& out);
  bool wouldLoseNetwork(std::string const& name, Json::Value& out) const;
  void tellOfArgument(std::string const& name, Json::Value const& in, bool isDone, Json::Value const& out);
  bool switchFile(std::string const& name, Json::Value const& in, Json::Value& out);
  bool edit(std::string const& name, Json::Value const& in, Json::Value& out);
  bool execute(std::string const& name, Json::Value const& in, Json::Value& out);
  bool exchange(std::vector<State>& from, std::vector<State>& to, Json::Value& out, int code, char const* message);
  State current() const;
  Json::Value list() const;

  Session& session;
  Project& project;
  bool keepsStates;
  std::vector<State> before;  ///< of the edits, the last one last
  std::vector<State> undone;
};

}  // namespace kvn::host
