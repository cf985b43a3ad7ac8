// exec: the JSON commands of standard input.
#include "Commands.h"
#include "Failures.h"
#include "Options.h"
#include "Output.h"
#include "Saving.h"
#include "Session.h"

#include <json/reader.h>
#include <unistd.h>
#include <cerrno>
#include <memory>
#include <string>
#include <system_error>

namespace kvn::host {
namespace {

std::string standardInput() {
  std::string bytes;
  char piece[65536];
  for (;;) {
    ssize_t const count = ::read(STDIN_FILENO, piece, sizeof piece);
    if (count == 0) return bytes;
    if (count > 0) bytes.append(piece, static_cast<std::size_t>(count));
    if (count > 0 || errno == EINTR) continue;
    throw JobException({}, "standard input could not be read to its end: " +
                               QString::fromStdString(std::generic_category().message(errno)));
  }
}

/// @throws Json::Exception for input that is nested too deep, JobException for input that is no JSON.
Json::Value parse(std::string const& bytes) {
  Json::CharReaderBuilder builder;
  Json::CharReaderBuilder::strictMode(&builder.settings_);
  std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
  Json::Value value;
  std::string errors;
  if (!reader->parse(bytes.data(), bytes.data() + bytes.size(), &value, &errors)) {
    throw JobException({}, "standard input is not JSON: " + QString::fromStdString(errors).simplified());
  }
  return value;
}

bool isCommand(Json::Value const& value) {
  return value.isObject() && value["name"].isString() && (!value.isMember("in") || value["in"].isObject());
}

Json::Value readCommands() {
  Json::Value commands = parse(standardInput());
  if (!commands.isArray()) throw JobException({}, "standard input is not a JSON array of commands");
  for (Json::ArrayIndex i = 0; i < commands.size(); ++i) {
    if (!isCommand(commands[i])) {
      throw JobException({},
                         QString("command %1 on standard input is not {\"name\": text, \"in\": object}").arg(i + 1));
    }
  }
  return commands;
}

Json::Value run(Json::Value const& command, Session& session) {
  Json::Value out;
  Json::Value result;
  std::string const name = command["name"].asString();
  result["ok"] = session.project().getCommandManager()->execute(name.c_str(), command["in"], out, {});
  result["out"] = out;
  result["messages"] = session.messages().take();
  return result;
}

/// A failed command stops nothing: each result stands at the place of its command.
Json::Value runAll(Json::Value const& commands, Session& session, bool& allGood) {
  Json::Value results(Json::arrayValue);
  for (Json::Value const& command : commands) {
    results.append(run(command, session));
    allGood = allGood && results[results.size() - 1]["ok"].asBool();
  }
  return results;
}

}  // namespace

int runExec(QStringList const& arguments) {
  auto const options = parseExec(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    if (!options->saveFile.isEmpty()) Job::requireWritableKind(options->saveFile, savableKinds());
    if (!options->openFile.isEmpty()) session.open(options->openFile);
    bool allGood = true;
    Json::Value const results = runAll(readCommands(), session, allGood);
    // A script that failed half way must not replace a file.
    bool const saves = allGood && !options->saveFile.isEmpty();
    bool const saved = !saves || save(session, options->saveFile, [&options](Session& from, QString const& path) {
      saveJob(from, path, options->exchange);
    });
    if (!allGood && !options->saveFile.isEmpty()) {
      printLine(printable(QString("kelvane: %1: not written, since a command failed").arg(options->saveFile)));
    }
    printJson(results);
    return allGood && saved ? Done : Refused;
  });
}

}  // namespace kvn::host
