#include "ExecRun.h"

#include "Output.h"
#include "RecordJson.h"

#include <map>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace kvn::host {
namespace {

using Ids = std::unordered_set<std::string>;

template <typename Record>
void addIds(std::vector<Record> const& records, Ids& ids) {
  for (Record const& record : records) ids.insert(record.id);
}

template <typename Record>
std::vector<std::string> idAt(std::vector<Record> const& records, int index) {
  return {records.at(static_cast<std::size_t>(index)).id};
}

/// Of the record that a command has just put into its list.
std::vector<std::string> addedBy(std::string const& name, Json::Value const& in, Project const& project) {
  Json::Value const& data = in["data"];
  if (name == "AddCoordinateDataCMD") return idAt(project.getCoordinatePointList(), data["Index"].asInt());
  if (name == "AddNetworkDataCMD") return idAt(project.getNetwork().lines, data["index"].asInt());
  if (name == "AddTraverseDataCMD") return idAt(project.getTraverseDataList(), data["index"].asInt());
  return {};
}

/// Whether a command may make the lines of the network anew.
bool mayGenerate(std::string const& name) {
  return name == "RemoveTraverseDataCMD" || name == "ModifyTraverseDataCMD" || name == "SwitchTraverseDataCMD";
}

// Each keeps all records.
constexpr std::size_t kMostUndone = 100;

/// The ids that a data command names, as far as they are texts.
std::vector<std::string> namedIds(Json::Value const& in) {
  std::vector<std::string> ids;
  Json::Value const& data = in["data"];
  if (!data.isObject()) return ids;
  if (data["id"].isString()) ids.push_back(data["id"].asString());
  if (!data["ids"].isArray()) return ids;
  for (Json::Value const& id : data["ids"]) {
    if (id.isString()) ids.push_back(id.asString());
  }
  return ids;
}

/// Lines that are generated anew from rows are the same to whoever asked for their ids: those between the same points,
/// the first one, the second one and so on.
void keepIds(Network const& old, Network& made) {
  using Place = std::tuple<std::string, std::string, int>;
  std::map<std::pair<std::string, std::string>, int> count;
  auto const placeOf = [&count](NetworkDataInfo const& line) {
    return Place(line.start_name, line.end_name, count[{line.start_name, line.end_name}]++);
  };
  Ids used;
  addIds(made.lines, used);
  std::map<Place, std::string> idOf;
  for (NetworkDataInfo const& line : old.lines) idOf.emplace(placeOf(line), line.id);
  count.clear();
  for (NetworkDataInfo& line : made.lines) {
    auto const known = idOf.find(placeOf(line));
    bool const isFree = known != idOf.end() && used.count(known->second) == 0;
    if (isFree) line.id = known->second;
  }
}

/// Those of the ids that no record of the project has.
std::vector<std::string> unknownIn(Project const& project, std::vector<std::string> const& named) {
  if (named.empty()) return {};
  Ids missing(named.begin(), named.end());
  auto const meet = [&missing](auto const& records) {
    for (auto const& record : records) missing.erase(record.id);
  };
  meet(project.getTraverseDataList());
  meet(project.getNetwork().lines);
  meet(project.getCoordinatePointList());
  return {missing.begin(), missing.end()};
}

}  // namespace

// Commands that select or draw ask for a map; nobody has drawn one behind --open.
ExecRun::ExecRun(Session& opened, bool mayUndo) : session(opened), project(opened.project()), keepsStates(mayUndo) {
  project.getOrCreateMapScene();
}

Json::Value ExecRun::run(Json::Value const& command) {
  std::string const name = command["name"].asString();
  bool const adds = name.rfind("Add", 0) == 0;
  Json::Value result;
  Json::Value out;
  bool const isDone = perform(name, command["in"], out);
  result["ok"] = isDone;
  result["out"] = out;
  if (adds) {
    result["ids"] = Json::Value(Json::arrayValue);
    std::vector<std::string> const added = isDone ? addedBy(name, command["in"], project) : std::vector<std::string>();
    for (std::string const& id : added) result["ids"].append(jsonText(id));
  }
  result["messages"] = session.messages().take();
  return result;
}

bool ExecRun::perform(std::string const& name, Json::Value const& in, Json::Value& out) {
  if (name == "list") {
    out = list();
    return true;
  }
  if (name == "undo") return exchange(before, undone, out, 4, "noUndo");
  if (name == "redo") return exchange(undone, before, out, 3, "noRedo");
  if (name == "OpenFileCMD") return openAnother(in, out);
  return edit(name, in, out);
}

/// The library leaves on the map what was drawn and in the list what other files have brought. Where the file cannot be
/// opened they stay.
bool ExecRun::openAnother(Json::Value const& in, Json::Value& out) {
  std::vector<CoordinatePointInfo> coordinates = std::exchange(project.getCoordinatePointList(), {});
  project.clearMapData();
  bool const isOpen = execute("OpenFileCMD", in, out);
  if (!isOpen) {
    project.setCoordinatePointList(std::move(coordinates));
    project.build();
  }
  before.clear();  // records of another file
  undone.clear();
  return isOpen;
}

bool ExecRun::edit(std::string const& name, Json::Value const& in, Json::Value& out) {
  State state;
  if (keepsStates) {
    state = current();
  } else if (mayGenerate(name)) {
    state.network = project.getNetwork();
  }
  std::vector<std::string> const unknown = unknownIn(project, namedIds(in));
  bool const isDone = execute(name, in, out);
  if (mayGenerate(name)) keepIds(state.network, project.getNetwork());
  for (std::string const& id : unknown) out["unknown"].append(id);
  if (!keepsStates) return isDone;
  // A file in the place of the rows is not taken back.
  if (name.rfind("Switch", 0) == 0) {
    before.clear();
  } else if (isDone) {
    before.push_back(std::move(state));
    if (before.size() > kMostUndone) before.erase(before.begin());
  }
  undone.clear();
  return isDone;
}

bool ExecRun::execute(std::string const& name, Json::Value const& in, Json::Value& out) {
  return project.getCommandManager()->execute(name.c_str(), in, out, {});
}

bool ExecRun::exchange(std::vector<State>& from, std::vector<State>& to, Json::Value& out, int code,
                       char const* message) {
  if (from.empty()) {
    out["code"] = code;
    out["message"] = message;
    return false;
  }
  to.push_back(current());
  State state = std::move(from.back());
  from.pop_back();
  project.setTraverseDataList(std::move(state.rows));
  project.setNetwork(std::move(state.network));
  project.setCoordinatePointList(std::move(state.coordinates));
  project.setModify(true);
  return true;
}

ExecRun::State ExecRun::current() const {
  return {project.getTraverseDataList(), project.getNetwork(), project.getCoordinatePointList()};
}

Json::Value ExecRun::list() const {
  Json::Value json;
  json["rows"] = toJson(project.getTraverseDataList());
  json["knownPoints"] = toJson(project.getNetwork().knownPoints);
  json["lines"] = toJson(project.getNetwork().lines);
  json["coordinates"] = toJson(project.getCoordinatePointList());
  return json;
}

}  // namespace kvn::host
