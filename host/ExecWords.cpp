#include "ExecWords.h"

#include "CommandLine.h"

#include <Kelvane.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <vector>

namespace kvn::host {
namespace {

enum class Kind { Text, Number, Position, YesOrNo, Names };

struct Member {
  char const* name;
  Kind kind;
  bool isRequired = false;  ///< by the command, or by whoever wants a point with a name
};

/// The members of "data" by command; `OpenFileCMD` has its own beside them.
std::map<std::string, std::vector<Member>> const& commands() {
  constexpr Kind text = Kind::Text;
  constexpr Kind number = Kind::Number;
  static std::vector<Member> const file{{"file", text, true}};
  static std::vector<Member> const ids{{"ids", Kind::Names}};
  static std::map<std::string, std::vector<Member>> const table{
      {"OpenFileCMD", file},
      {"AddTraverseDataCMD",
       {{"index", Kind::Position}, {"Name", text, true}, {"N", number}, {"E", number}, {"Z", number}}},
      {"RemoveTraverseDataCMD", ids},
      {"ModifyTraverseDataCMD",
       {{"id", text, true},
        {"Name", text},
        {"Height", number},
        {"IsKnowPoint", Kind::YesOrNo},
        {"N", number},
        {"E", number},
        {"Z", number},
        {"HorizontalAngle", number},
        {"VerticalAngle", number},
        {"SlantDistance", number},
        {"HorizontalDistance", number}}},
      {"SwitchTraverseDataCMD", file},
      {"AddNetworkDataCMD",
       {{"index", Kind::Position},
        {"StartName", text, true},
        {"EndName", text, true},
        {"HorizontalAngle", number},
        {"horizontalDistance", number}}},
      {"RemoveNetworkDataCMD", ids},
      {"ModifyNetworkDataCMD",
       {{"id", text, true},
        {"StartName", text},
        {"EndName", text},
        {"HorizontalAngle", number},
        {"HorizontalDistance", number},
        {"StartN", number},
        {"StartE", number},
        {"EndN", number},
        {"EndE", number}}},
      {"SwitchNetworkDataCMD", file},
      {"AddCoordinateDataCMD",
       {{"Index", Kind::Position},
        {"Name", text, true},
        {"Mark", text, true},
        {"N", number},
        {"E", number},
        {"Z", number}}},
      {"RemoveCoordinateDataCMD", ids},
      {"ModifyCoordinateDataCMD",
       {{"id", text, true}, {"Name", text, true}, {"Signal", text}, {"N", number}, {"E", number}, {"Z", number}}},
      {"SwitchCoordinateDataCMD", file}};
  return table;
}

bool isOf(Kind kind, Json::Value const& value) {
  switch (kind) {
    case Kind::Text:
      return value.isString();
    case Kind::Number:
      return value.isNumeric();
    case Kind::Position:
      return value.isInt();
    case Kind::YesOrNo:
      return value.isBool();
    case Kind::Names:
      break;
  }
  return value.isArray() &&
         std::all_of(value.begin(), value.end(), [](Json::Value const& id) { return id.isString(); });
}

QString textOf(Kind kind) {
  switch (kind) {
    case Kind::Text:
      return System::tr("a text");
    case Kind::Number:
      return System::tr("a number");
    case Kind::Position:
      return System::tr("a whole number");
    case Kind::YesOrNo:
      return System::tr("true or false");
    case Kind::Names:
      break;
  }
  return System::tr("an array of texts");
}

QString missing(QString const& command, char const* member) {
  return System::tr("%1: \"%2\" is missing").arg(command, member);
}

QString mustBe(QString const& command, char const* member, QString const& what) {
  return System::tr("%1: \"%2\" must be %3").arg(command, member, what);
}

void compare(QString const& command, std::vector<Member> const& members, Json::Value const& data,
             ArgumentFaults& faults) {
  QStringList known;
  for (Member const& member : members) {
    known << member.name;
    Json::Value const& value = data[member.name];
    if (value.isNull() && !member.isRequired) continue;
    if (value.isNull()) {
      faults.wrong << missing(command, member.name);
    } else if (!isOf(member.kind, value)) {
      faults.wrong << mustBe(command, member.name, textOf(member.kind));
    }
  }
  for (std::string const& name : data.getMemberNames()) {
    QString const word = QString::fromStdString(name);
    if (known.contains(word)) continue;
    faults.unread << System::tr("%1: nothing reads \"%2\"").arg(command, word) + suggestion(word, known);
  }
}

}  // namespace

ArgumentFaults faultsOf(std::string const& name, Json::Value const& in) {
  ArgumentFaults faults;
  auto const found = commands().find(name);
  if (found == commands().end()) return faults;
  QString const command = QString::fromStdString(name);
  bool const isOpening = name == "OpenFileCMD";
  static Json::Value const none(Json::objectValue);
  Json::Value const& data = isOpening && in.isNull() ? none : isOpening ? in : in["data"];
  if (data.isObject()) {
    compare(command, found->second, data, faults);
  } else if (data.isNull()) {
    faults.wrong << missing(command, "data");
  } else {
    faults.wrong << mustBe(command, "data", System::tr("an object"));
  }
  return faults;
}

QString unknownCommand(std::string const& name) {
  QStringList known{"list", "undo", "redo"};
  for (auto const& command : commands()) known << QString::fromStdString(command.first);
  QString const word = QString::fromStdString(name);
  // A capital letter is no slip of another letter: names are compared without regard to it.
  QStringList small;
  std::transform(known.begin(), known.end(), std::back_inserter(small),
                 [](QString const& one) { return one.toLower(); });
  auto const same = small.indexOf(word.toLower());
  QString const near = same < 0 ? suggestion(word, known) : System::tr("; did you mean %1?").arg(known[same]);
  return System::tr("unknown command: %1").arg(word) + near;
}

}  // namespace kvn::host
