// exec: the JSON commands of standard input.
#include "Commands.h"
#include "ExecRun.h"
#include "Failures.h"
#include "Options.h"
#include "Output.h"
#include "Saving.h"
#include "Session.h"
#include "Streams.h"

#include <json/reader.h>
#include <QRegularExpression>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace kvn::host {
namespace {

/// Where the text stops to be JSON. @param errors  of the parser: "* Line 1, Column 9", and what it expects there.
QString placeOf(std::string const& errors) {
  auto const found = QRegularExpression("Line (\\d+), Column (\\d+)").match(QString::fromStdString(errors));
  return System::tr("line %1, column %2").arg(found.captured(1), found.captured(2));
}

/// @throws Json::Exception for input that is nested too deep, JobException for input that is no JSON.
Json::Value parse(std::string const& bytes, QString const& refusal) {
  Json::CharReaderBuilder builder;
  Json::CharReaderBuilder::strictMode(&builder.settings_);
  std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
  Json::Value value;
  std::string errors;
  if (!reader->parse(bytes.data(), bytes.data() + bytes.size(), &value, &errors)) {
    throw JobException({}, refusal.arg(placeOf(errors)));
  }
  return value;
}

bool isCommand(Json::Value const& value) {
  return value.isObject() && value["name"].isString() && (!value.isMember("in") || value["in"].isObject());
}

bool isBlank(std::string const& text) { return text.find_first_not_of(" \t\r\n") == std::string::npos; }

Json::Value readList(std::string const& bytes) {
  if (isBlank(bytes)) {
    throw JobException({}, System::tr("standard input is empty: commands are a JSON array, or one command a line"));
  }
  Json::Value commands = parse(bytes, System::tr("standard input is not JSON: %1"));
  if (!commands.isArray()) throw JobException({}, System::tr("standard input is not a JSON array of commands"));
  for (Json::ArrayIndex i = 0; i < commands.size(); ++i) {
    if (!isCommand(commands[i])) {
      throw JobException({},
                         System::tr("command %1 on standard input is not {\"name\": text, \"in\": object}").arg(i + 1));
    }
  }
  return commands;
}

/// A failed command stops nothing: each result stands at the place of its command.
bool runList(Json::Value const& commands, Session& session, Json::Value& results) {
  bool const mayUndo = std::any_of(commands.begin(), commands.end(),
                                   [](Json::Value const& command) { return command["name"].asString() == "undo"; });
  ExecRun script(session, mayUndo);
  bool allGood = true;
  for (Json::Value const& command : commands) {
    results.append(script.run(command));
    allGood = allGood && results[results.size() - 1]["ok"].asBool();
  }
  return allGood;
}

/// @throws JobException, Json::Exception for a line that is no command.
Json::Value readLine(std::string const& line, int number) {
  Json::Value command = parse(line, System::tr("line %1 of standard input is not JSON: %2").arg(number).arg("%1"));
  if (isCommand(command)) return command;
  throw JobException({}, System::tr("line %1 of standard input is not {\"name\": text, \"in\": object}").arg(number));
}

/// The result of a line. Whoever writes the lines reads an answer to each: one that is no command is answered too.
Json::Value answerTo(std::string const& line, int number, ExecRun& script) {
  Json::Value command;
  QString fault;
  try {
    command = readLine(line, number);
  } catch (JobException const& failure) {
    fault = failure.text;
  } catch (Json::Exception const& failure) {
    fault = System::tr("line %1 of standard input is not JSON: %2").arg(number).arg(failure.what());
  }
  return fault.isEmpty() ? script.run(command) : script.refuse(fault);
}

/// A command a line, each answered on a line before the next one is read, so that whoever writes them can look at ids.
bool runLines(std::string line, StandardLines& lines, Session& session) {
  ExecRun script(session, true);
  bool allGood = true;
  for (int number = 1;; ++number) {
    if (!isBlank(line)) {
      Json::Value const result = answerTo(line, number, script);
      allGood = allGood && result["ok"].asBool();
      printBytes(jsonLineOf(result) + '\n');
      finishPrinting();
    }
    std::optional<std::string> next = lines.next();
    if (!next) return allGood;
    line = std::move(*next);
  }
}

}  // namespace

int runExec(QStringList const& arguments) {
  auto const options = parseExec(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    if (!options->saveFile.isEmpty()) Job::requireWritableKind(session.outputFor(options->saveFile), savableKinds());
    if (!options->openFile.isEmpty()) session.open(options->openFile);
    StandardLines lines;
    std::string const first = lines.next().value_or(std::string());
    bool const isLines = QString::fromStdString(first).trimmed().startsWith('{');
    Json::Value results(Json::arrayValue);
    bool const allGood =
        isLines ? runLines(first, lines, session) : runList(readList(first + '\n' + lines.rest()), session, results);
    // A script that failed half way must not replace a file.
    bool const saves = allGood && !options->saveFile.isEmpty();
    bool const saved = !saves || save(session, options->saveFile, [&options](Session& from, QString const& path) {
      saveJob(from, path, options->exchange);
    });
    if (!allGood && !options->saveFile.isEmpty()) {
      printLine(printable(
          QString("kelvane: %1: %2").arg(options->saveFile, System::tr("not written, since a command failed"))));
    }
    if (!isLines) printJson(results);
    return allGood && saved ? Done : Refused;
  });
}

}  // namespace kvn::host
