#include "CommandLine.h"

#include "TextTable.h"

#include <Kelvane.h>
#include <QRegularExpression>
#include <algorithm>

namespace kvn::host {
namespace {

// Words of Qt's parser, which looks them up under its own name.
[[maybe_unused]] constexpr char const* kWordsOfTheParser[] = {
    QT_TRANSLATE_NOOP("QCommandLineParser", "Unexpected value after '%1'."),
    QT_TRANSLATE_NOOP("QCommandLineParser", "Missing value after '%1'."),
};

/// Smallest number of letters that are left out, put in, changed, or swapped with their neighbour (Damerau 1964, in the
/// form in which no pair is changed twice).
int slipsBetween(QString const& a, QString const& b) {
  int const width = b.size() + 1;
  std::vector<int> table(static_cast<std::size_t>(a.size() + 1) * static_cast<std::size_t>(width));
  auto const at = [&table, width](int i, int k) -> int& {
    return table[static_cast<std::size_t>(i) * static_cast<std::size_t>(width) + static_cast<std::size_t>(k)];
  };
  for (int i = 0; i <= a.size(); ++i) {
    for (int k = 0; k <= b.size(); ++k) {
      if (i == 0 || k == 0) {
        at(i, k) = i + k;
        continue;
      }
      int const change = at(i - 1, k - 1) + (a[i - 1] == b[k - 1] ? 0 : 1);
      at(i, k) = std::min({change, at(i - 1, k) + 1, at(i, k - 1) + 1});
      bool const isSwap = i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1];
      if (isSwap) at(i, k) = std::min(at(i, k), at(i - 2, k - 2) + 1);
    }
  }
  return at(a.size(), b.size());
}

/// Where a line may end before `next`: not in front of a sign that closes a phrase.
bool mayBreakBetween(QChar before, QChar next) {
  static QString const closing = QString::fromUtf8("，。；：、）！？”」》,.;:)!?");
  static QString const opening = QString::fromUtf8("（“《");
  return (displayWidth(before) == 2 || displayWidth(next) == 2) && !closing.contains(next) && !opening.contains(before);
}

QString namesOf(QCommandLineOption const& option) {
  QStringList names;
  for (QString const& name : option.names()) names << (name.size() == 1 ? "-" : "--") + name;
  QString const all = names.join(", ");
  return option.valueName().isEmpty() ? all : QString("%1 <%2>").arg(all, option.valueName());
}

}  // namespace

void CommandLine::addOption(QCommandLineOption const& option) {
  QCommandLineParser::addOption(option);
  options << option;
}

void CommandLine::addOptions(QList<QCommandLineOption> const& list) {
  for (QCommandLineOption const& option : list) addOption(option);
}

void CommandLine::addPositionalArgument(QString const& name, QString const& description) {
  QCommandLineParser::addPositionalArgument(name, description);
  arguments.emplace_back(name, description);
}

bool CommandLine::has(QString const& name) const {
  return std::any_of(options.begin(), options.end(),
                     [&name](QCommandLineOption const& option) { return option.names().contains(name); });
}

QString CommandLine::help() const {
  std::vector<std::pair<QString, QString>> pairs;
  for (QCommandLineOption const& option : options) pairs.emplace_back(namesOf(option), option.description());
  return wrapped(applicationDescription(), 0, kColumns) + "\n\n" + System::tr("Options:") + '\n' + listed(pairs) +
         '\n' + System::tr("Arguments:") + '\n' + listed(arguments);
}

QString CommandLine::problem() const {
  QStringList const unknown = unknownOptionNames();
  if (unknown.isEmpty()) return errorText();
  QStringList known;
  for (QCommandLineOption const& option : options) {
    known << "--" + option.names().last();
  }
  QString const& name = unknown.first();
  return System::tr("Unknown option '%1'").arg(name) + suggestion("--" + name, known);
}

QString suggestion(QString const& word, QStringList const& known) {
  if (word.size() - word.count('-') < 3) return {};
  // Two slips turn any short word into any other one.
  int const mostSlips = word.size() - word.count('-') < 4 ? 1 : 2;
  QString best;
  int least = mostSlips + 1;
  for (QString const& one : known) {
    int const slips = slipsBetween(word, one);
    if (slips < least) {
      least = slips;
      best = one;
    }
  }
  if (best.isEmpty() && word.size() >= 5) {  // the beginning of a single one
    QStringList const longer = known.filter(QRegularExpression('^' + QRegularExpression::escape(word)));
    if (longer.size() == 1) best = longer.first();
  }
  return best.isEmpty() ? QString() : System::tr("; did you mean %1?").arg(best);
}

QString unknownValue(QString const& text, QString const& word, QStringList const& known) {
  return text.arg(word) + suggestion(word, known) + " (" + known.join(", ") + ')';
}

QString wrapped(QString const& text, int indent, int width) {
  QString all;
  QString line;
  auto const endLine = [&](int from) {
    QString rest = line.mid(from);
    while (rest.startsWith(' ')) rest.remove(0, 1);
    line.truncate(from);
    while (line.endsWith(' ')) line.chop(1);
    all += line + '\n' + QString(indent, ' ');
    line = rest;
  };
  int breakAt = -1;  // in the line, where it may end
  for (QChar const c : text) {
    if (c == '\n') {
      endLine(line.size());
      breakAt = -1;
      continue;
    }
    bool const mayBreak = !line.isEmpty() && (c == ' ' || mayBreakBetween(line.back(), c));
    if (mayBreak && displayWidth(line) <= width - indent) breakAt = line.size();
    line += c;
    if (c != ' ' && displayWidth(line) > width - indent && breakAt > 0) {
      endLine(breakAt);
      breakAt = -1;
    }
  }
  return all + line;
}

QString listed(std::vector<std::pair<QString, QString>> const& pairs) {
  int widest = 0;
  for (auto const& pair : pairs) widest = std::max(widest, displayWidth(pair.first));
  QString text;
  for (auto const& [name, description] : pairs) {
    text += "  " + name;
    QString const blanks(widest - displayWidth(name) + 2, ' ');
    if (!description.isEmpty()) text += blanks + wrapped(description, widest + 4, kColumns);
    text += '\n';
  }
  return text;
}

}  // namespace kvn::host
