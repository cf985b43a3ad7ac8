// The built program, run as a user runs it, in a home of its own.
#pragma once

#include <json/value.h>
#include <QStringList>
#include <QTemporaryDir>
#include <string>

namespace test {

struct Run {
  int exitCode = -1;
  std::string out;
  std::string err;

  Json::Value json() const;  ///< null unless the whole of standard output is one JSON value
};

class Program {
 public:
  /// Where it is set, standard output goes there.
  QString outputFile;

  Run run(QStringList const& arguments, std::string const& input = {}) const;
  /// Runs a command of the shell, in which the program is "$KELVANE".
  Run shell(QString const& command) const;
  /// Writes a file into the working directory of the program.
  void write(QString const& name, std::string const& bytes) const;
  std::string read(QString const& name) const;
  /// Files and directories that came to be in the user's home.
  QStringList home() const;

 private:
  Run start(QString const& program, QStringList const& arguments, std::string const& input) const;

  QTemporaryDir homeDirectory;
  QTemporaryDir directory;
};

}  // namespace test
