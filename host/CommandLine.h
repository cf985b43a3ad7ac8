// CommandLine: the options of a subcommand, their help, and what is said of a command line that is wrong.
#pragma once

#include <QCommandLineParser>
#include <QList>
#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

namespace kvn::host {

constexpr int kColumns = 79;  ///< that help may take of a terminal that has 80

/// Qt's parser, which keeps what it is given to itself: here the names can be compared with a mistyped one, and the
/// help is broken by the columns of a terminal, of which a Chinese sign takes two.
class CommandLine : public QCommandLineParser {
 public:
  CommandLine() { setSingleDashWordOptionMode(ParseAsLongOptions); }

  void addOption(QCommandLineOption const& option);
  void addOptions(QList<QCommandLineOption> const& list);
  void addPositionalArgument(QString const& name, QString const& description);

  bool has(QString const& name) const;  ///< whether there is such an option

  /// Everything of `--help` behind its first line.
  QString help() const;
  /// What `parse` did not understand, in the user's language.
  QString problem() const;

 private:
  QList<QCommandLineOption> options;
  std::vector<std::pair<QString, QString>> arguments;  ///< name and description
};

/// "; did you mean ...?" with the one of `known` that a slip or two turn into `word`; empty where none is near.
QString suggestion(QString const& word, QStringList const& known);

/// "unknown method: conect; did you mean connect? (least-squares, open, connect)"
QString unknownValue(QString const& text, QString const& word, QStringList const& known);

/// A text broken into lines of at most `width` columns, all but the first behind `indent` blanks. Lines break at blanks
/// and beside Chinese signs; a line end of the text stays.
QString wrapped(QString const& text, int indent, int width);

/// Two columns, the second one wrapped: a line or more for each pair.
QString listed(std::vector<std::pair<QString, QString>> const& pairs);

}  // namespace kvn::host
