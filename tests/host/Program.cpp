#include "Program.h"

#include "support/Support.h"

#include <json/reader.h>
#include <QDir>
#include <QProcess>
#include <memory>

namespace test {

Json::Value Run::json() const {
  Json::CharReaderBuilder builder;
  Json::CharReaderBuilder::strictMode(&builder.settings_);
  std::unique_ptr<Json::CharReader> const reader(builder.newCharReader());
  Json::Value value;
  return reader->parse(out.data(), out.data() + out.size(), &value, nullptr) ? value : Json::Value();
}

Run Program::run(QStringList const& arguments, std::string const& input) const {
  return start(KELVANE_HOST_PROGRAM, arguments, input);
}

Run Program::shell(QString const& command) const { return start("/bin/sh", {"-c", command}, {}); }

Run Program::start(QString const& program, QStringList const& arguments, std::string const& input) const {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert("HOME", homeDirectory.path());
  environment.insert("KELVANE", KELVANE_HOST_PROGRAM);
  environment.insert("XDG_CONFIG_HOME", homeDirectory.filePath(".config"));
  QProcess process;
  process.setProcessEnvironment(environment);
  process.setWorkingDirectory(directory.path());
  if (!outputFile.isEmpty()) process.setStandardOutputFile(outputFile);
  process.start(program, arguments);
  process.write(QByteArray::fromStdString(input));
  process.closeWriteChannel();
  Run run;
  if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit) run.exitCode = process.exitCode();
  run.out = process.readAllStandardOutput().toStdString();
  run.err = process.readAllStandardError().toStdString();
  return run;
}

void Program::write(QString const& name, std::string const& bytes) const { writeFile(directory.filePath(name), bytes); }

std::string Program::read(QString const& name) const { return fileBytes(directory.filePath(name)); }

QStringList Program::home() const {
  return QDir(homeDirectory.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

}  // namespace test
