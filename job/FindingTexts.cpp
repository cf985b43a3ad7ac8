#include "job/FindingTexts.h"

#include "records/NetworkFindings.h"
#include "records/detail/Messages.h"

#include <utils/HTextCodec.h>

#include <QHash>
#include <QRegularExpression>
#include <QTextCodec>
#include <algorithm>
#include <cstddef>
#include <utility>

namespace kvn {
namespace {

constexpr int kNamedPlaces = 3;

QString namesOf(FieldFinding const& finding) {
  QStringList targets;
  for (std::string const& target : finding.targets) targets << recordText(target);
  if (finding.station.empty()) return listedNames(targets);
  QString const station = recordText(finding.station);
  if (finding.traverse != FieldFinding::kNoRow && !targets.isEmpty()) {
    if (targets.size() == 1) return Messages::tr("traverse from %1 to %2").arg(station, targets.first());
    return Messages::tr("traverse from %1 over %2 to %3").arg(station, targets.first(), targets.last());
  }
  return targets.isEmpty() ? station : Messages::tr("%1 to %2").arg(station, targets.join(", "));
}

QString placeOf(FieldFinding const& finding) {
  if (finding.line > 0) return Messages::tr("line %1").arg(finding.line);
  return finding.row == FieldFinding::kNoRow ? QString() : Messages::tr("row %1").arg(finding.row + 1);
}

/// The text without what differs from place to place: what is quoted behind a colon, a Chinese one too, and numbers.
QString kindOfText(QString const& text) {
  static QRegularExpression const quoted("(: |：).*");
  static QRegularExpression const numbers("[0-9][0-9.]*");
  return QString(text).remove(quoted).replace(numbers, "#");
}

/// A warning with the places that it holds for.
struct Told {
  QString text;
  QStringList places;  ///< the first ones
  int count = 0;       ///< of all places
  int others = 0;      ///< warnings of the same kind whose text is not told

  void add(FieldFinding const& finding) {
    if (finding.text != text) {
      ++others;
    } else if (++count <= kNamedPlaces) {
      QString const names = namesOf(finding);
      QString const place = names.isEmpty() ? placeOf(finding) : names;
      if (!place.isEmpty()) places << place;
    }
  }

  QString line() const {
    QString told = text;
    if (!places.isEmpty()) told += ": " + places.join("; ");
    if (count > kNamedPlaces) told += Messages::tr("; and %1 more").arg(count - kNamedPlaces);
    if (others > 0) told += Messages::tr("; and %1 more of this kind").arg(others);
    return told;
  }
};

/// What calculators say in the place of a name, in their own English.
constexpr char const* kWordsOfCalculators[] = {
    QT_TRANSLATE_NOOP("kvn::System", "Calculate failed"),
    QT_TRANSLATE_NOOP("kvn::System", "No start data"),
    QT_TRANSLATE_NOOP("kvn::System", "No enough data"),
    QT_TRANSLATE_NOOP("kvn::System", "Data error"),
};

QString toldName(AlgorithmException const& failure) {
  for (char const* words : kWordsOfCalculators) {
    if (failure.name == words) return Messages::tr(words);
  }
  return recordText(failure.name);
}

}  // namespace

QString recordText(std::string const& bytes) {
  QTextCodec::ConverterState state;
  QTextCodec const* const utf8 = QTextCodec::codecForName("UTF-8");
  QString const text = utf8->toUnicode(bytes.data(), static_cast<int>(bytes.size()), &state);
  bool const valid = state.invalidChars == 0 && state.remainingChars == 0;
  return valid ? text : HTextCodec::FromLocal8Bit(bytes);
}

QString worded(FieldFinding const& finding) {
  QStringList parts{placeOf(finding), namesOf(finding), finding.text};
  parts.removeAll(QString());
  return parts.join(": ");
}

QString worded(AlgorithmException const& failure, Network const& network) {
  QString const text = QString::fromUtf8(failure.what());
  if (failure.index >= 0) {
    auto const index = static_cast<std::size_t>(failure.index);
    if (index >= network.lines.size()) return Messages::tr("%1: item %2").arg(text).arg(failure.index + 1);
    NetworkDataInfo const& line = network.lines[index];
    return Messages::tr("%1: line from %2 to %3").arg(text, recordText(line.start_name), recordText(line.end_name));
  }
  QString const name = toldName(failure);
  // The text of a repeated station has the name in it; "Data error" stands for no point and says what the text says.
  bool const isTold =
      name.isEmpty() || failure.name == "Data error" || failure.errorType == AlgorithmException::StationNameRepeat;
  return isTold ? text : QString("%1: %2").arg(text, name);
}

QStringList warningLines(std::vector<FieldFinding> const& findings) {
  std::vector<Told> list;
  QHash<QString, std::size_t> placeOfText;
  QHash<QString, int> textsOfKind;
  QHash<QString, std::size_t> lastOfKind;
  for (FieldFinding const& finding : findings) {
    if (finding.severity != FieldFinding::Warning) continue;
    auto known = placeOfText.constFind(finding.text);
    if (known == placeOfText.cend()) {
      QString const kind = kindOfText(finding.text);
      bool const isNamed = ++textsOfKind[kind] <= kNamedPlaces;
      if (isNamed) {
        list.push_back({finding.text, {}, 0, 0});
        lastOfKind[kind] = list.size() - 1;
      }
      known = placeOfText.insert(finding.text, isNamed ? list.size() - 1 : lastOfKind[kind]);
    }
    list[*known].add(finding);
  }
  QStringList lines;
  for (Told const& told : list) lines << told.line();
  return lines;
}

void sortByCost(std::vector<FieldFinding>& findings) {
  std::stable_sort(findings.begin(), findings.end(), [](FieldFinding const& a, FieldFinding const& b) {
    return std::pair(a.severity, a.cost) > std::pair(b.severity, b.cost);
  });
}

void sortFindings(std::vector<FieldFinding>& findings) {
  std::stable_sort(findings.begin(), findings.end(), [](FieldFinding const& a, FieldFinding const& b) {
    return std::pair(a.line, a.severity) < std::pair(b.line, b.severity);
  });
}

}  // namespace kvn
