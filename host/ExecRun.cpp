#include "ExecRun.h"

#include "ExecWords.h"
#include "Failures.h"
#include "Output.h"
#include "RecordJson.h"

#include <QFileInfo>
#include <algorithm>
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

/// A known point that a command has moved is a new record without an id; the list has as many as before.
void keepIds(std::vector<KnownPoint> const& old, std::vector<KnownPoint>& made) {
  for (std::size_t i = 0; i < std::min(old.size(), made.size()); ++i) {
    if (made[i].id.empty()) made[i].id = old[i].id;
  }
}

bool startsWith(std::string const& name, char const* beginning) { return name.rfind(beginning, 0) == 0; }

/// Whether a command puts the lines of the network in the place of the rows that they were made of.
bool editsNetwork(std::string const& name) {
  return name == "AddNetworkDataCMD" || name == "RemoveNetworkDataCMD" || name == "ModifyNetworkDataCMD";
}

void send(QString const& text, MessType type) { System::Instance()->sendMessage(text, type); }

void fail(Json::Value& out, QString const& reason) {
  out = Json::Value(Json::objectValue);
  out["code"] = 0;  // of no number of its own
  out["message"] = reason.toStdString();
}

/// Without the other coordinate a known point is moved onto the axis.
void tellHalfMoved(Json::Value const& data) {
  auto const tell = [&data](char const* name, char const* given, char const* other) {
    if (!data[given].isNumeric() || data[other].isNumeric()) return;
    send(System::tr("%1: with \"%2\" alone \"%3\" is 0 now").arg(textOf(data[name].asString()), given, other), Warning);
  };
  tell("StartName", "StartN", "StartE");
  tell("StartName", "StartE", "StartN");
  tell("EndName", "EndN", "EndE");
  tell("EndName", "EndE", "EndN");
}

QString reasonOf(QString const& path, JobException const& failure) {
  return path.isEmpty() ? refusalText(failure) : QString("%1: %2").arg(path, refusalText(failure));
}

Json::Value withFile(Json::Value in, QString const& path) {
  in["file"] = path.toStdString();
  return in;
}

/// Whether the library's command opens a file, on a project of its own.
bool triesToOpen(Json::Value const& in, Json::Value& out) {
  auto const tried = System::Instance()->createProject();
  tried->getOrCreateMapScene();
  return tried->getCommandManager()->execute("OpenFileCMD", in, out, {});
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

Json::Value ExecRun::refuse(QString const& reason) {
  send(reason, Error);
  Json::Value result;
  result["ok"] = false;
  fail(result["out"], reason);
  result["messages"] = session.messages().take();
  return result;
}

Json::Value ExecRun::run(Json::Value const& command) {
  std::string const name = command["name"].asString();
  bool const adds = startsWith(name, "Add");
  Json::Value result;
  Json::Value out;
  bool const isDone = perform(name, command["in"], out);
  tellOfArgument(name, command["in"], isDone, out);
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

/// What the library's reason does not say: which member it is about, and which command was meant.
void ExecRun::tellOfArgument(std::string const& name, Json::Value const& in, bool isDone, Json::Value const& out) {
  if (!isDone && out["code"] == static_cast<int>(cmd::CmdErrorCode::noCommand))
    return send(unknownCommand(name), Error);
  ArgumentFaults const faults = faultsOf(name, in);
  for (QString const& text : faults.wrong) send(text, isDone ? Warning : Error);
  for (QString const& text : faults.unread) send(text, Warning);
}

/// The library's command reads to the letter, leaves in the project what the file before has brought, and takes neither
/// the a-priori errors of a network file nor what its observations lack. It runs on a project of its own for what it
/// has to say; the job then reads the file as it reads the one of --open. A file that one of the two refuses leaves all
/// as it was.
bool ExecRun::openAnother(Json::Value const& in, Json::Value& out) {
  QString const path = QString::fromStdString(in["file"].isString() ? in["file"].asString() : std::string());
  Configure const settings = project.getConfigure();
  try {
    bool const isKnownKind = Job::readableKinds().contains(QFileInfo(path).suffix().toLower());
    if (!isKnownKind && !path.isEmpty()) session.job().open(path);  // refuses it
    ExecFile file(path);
    if (!triesToOpen(path.isEmpty() ? in : withFile(in, file.copy()), out)) return tellReason(path, file, out);
    bool const isDoubted = session.messages().hasError();
    project.setConfigure(Configure());  // those of the file before say nothing of this one
    file.openIn(session.job());
    if (isDoubted) tellWhatCareFinds(path);
  } catch (JobException const& failure) {
    project.setConfigure(settings);
    fail(out, reasonOf(path, failure));
    return false;
  }
  project.clearMapData();
  before.clear();  // records of another file
  undone.clear();
  return true;
}

/// The library's checks take a direction that rounding has put just below 0 for an error, and tell no line of what they
/// find.
void ExecRun::tellWhatCareFinds(QString const& path) {
  std::vector<FieldFinding> const found =
      session.job().findingsOf(Job::FileTold | Job::FileText | Job::FieldReduced | Job::RowChecks | Job::NetworkChecks);
  bool const hasError = std::any_of(
      found.begin(), found.end(), [](FieldFinding const& finding) { return finding.severity == FieldFinding::Error; });
  send(hasError ? System::tr("What is wrong with %1, and in which line, kelvane check tells").arg(path)
                : System::tr("Read with care, %1 has no error in its lines; kelvane check tells more").arg(path),
       Info);
}

/// Of a file that the library refuses: where it cannot be read with care either, that reason names the line. Want of
/// memory says nothing of the file.
/// @return false.
bool ExecRun::tellReason(QString const& path, ExecFile& file, Json::Value const& out) {
  bool const isForMemory = out["message"] == System::tr("not enough memory").toStdString();
  if (path.isEmpty() || isForMemory) return false;
  try {
    Job job(System::Instance()->createProject());
    file.openIn(job);
    send(System::tr("%1 can be read with care, by --open").arg(path), Info);
  } catch (JobException const& failure) {
    send(reasonOf(path, failure), Error);
  }
  return false;
}

/// A row that is put beside a network would take its place: what is saved is made of the rows.
bool ExecRun::wouldLoseNetwork(std::string const& name, Json::Value& out) const {
  Network const& network = project.getNetwork();
  bool const isNetworkAlone =
      project.getTraverseDataList().empty() && !(network.isEmpty() && network.knownPoints.empty());
  if (name != "AddTraverseDataCMD" || !isNetworkAlone) return false;
  fail(out,
       System::tr("the job is a network of %1 known points and %2 lines without rows: a row would take their place; "
                  "AddNetworkDataCMD adds to a network")
           .arg(network.knownPoints.size())
           .arg(network.lines.size()));
  return true;
}

bool ExecRun::edit(std::string const& name, Json::Value const& in, Json::Value& out) {
  if (wouldLoseNetwork(name, out)) return false;
  State state;
  if (keepsStates) {
    state = current();
  } else if (mayGenerate(name) || name == "ModifyNetworkDataCMD") {  // these take the time of the whole network anyway
    state.network = project.getNetwork();
  }
  std::size_t const rowsBefore = project.getTraverseDataList().size();
  std::vector<std::string> const unknown = unknownIn(project, namedIds(in));
  bool const isDone = startsWith(name, "Switch") ? switchFile(name, in, out) : execute(name, in, out);
  bool const hasLostRows = rowsBefore > 0 && project.getTraverseDataList().empty();
  // The lines of rows that are gone; the library keeps those of a traverse file.
  if (hasLostRows && name == "RemoveTraverseDataCMD") project.clearNetwork();
  if (hasLostRows && editsNetwork(name)) {
    send(System::tr("The %1 rows are no longer in the job: the network does not follow from them any more")
             .arg(rowsBefore),
         Warning);
  }
  if (mayGenerate(name)) keepIds(state.network, project.getNetwork());
  if (name == "ModifyNetworkDataCMD") keepIds(state.network.knownPoints, project.getNetwork().knownPoints);
  if (isDone && name == "ModifyNetworkDataCMD") tellHalfMoved(in["data"]);
  for (std::string const& id : unknown) out["unknown"].append(id);
  if (!keepsStates) return isDone;
  // A file in the place of the rows is not taken back.
  if (startsWith(name, "Switch")) {
    before.clear();
  } else if (isDone) {
    before.push_back(std::move(state));
    if (before.size() > kMostUndone) before.erase(before.begin());
  }
  undone.clear();
  return isDone;
}

bool ExecRun::switchFile(std::string const& name, Json::Value const& in, Json::Value& out) {
  bool const hasFile = in["data"].isObject() && in["data"]["file"].isString();
  if (!hasFile) return execute(name, in, out);
  QString const path = QString::fromStdString(in["data"]["file"].asString());
  try {
    ExecFile const file(path);
    Json::Value argument = in;
    argument["data"] = withFile(in["data"], file.copy());
    return execute(name, argument, out);
  } catch (JobException const& failure) {
    fail(out, reasonOf(path, failure));
    return false;
  }
}

bool ExecRun::execute(std::string const& name, Json::Value const& in, Json::Value& out) {
  return project.getCommandManager()->execute(name.c_str(), in, out, {});
}

bool ExecRun::exchange(std::vector<State>& from, std::vector<State>& to, Json::Value& out, int code,
                       char const* message) {
  if (from.empty()) {
    out["code"] = code;
    out["message"] = message;
    send(code == 4 ? System::tr("there is nothing to undo") : System::tr("there is nothing to redo"), Error);
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
