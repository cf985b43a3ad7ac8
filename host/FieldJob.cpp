#include "FieldJob.h"

#include "Failures.h"
#include "Output.h"
#include "ProjectFileCheck.h"

#include <utils/ByteStream.h>
#include <utils/QLogicError.h>

#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace kvn::host {
namespace {

constexpr int kNamedPlaces = 3;

QString kindOf(QString const& path) { return QFileInfo(path).suffix().toLower(); }

/// A job file has no known points but those that are told to the project.
void takeKnownStations(Project& project) {
  markKnownStations(project.getTraverseDataList());
  for (KnownPoint const& point : getKnownPoint(project.getTraverseDataList())) project.addKnownPoint(point);
}

void readJob(Project& project, QString const& path, std::string const& bytes) {
  try {
    project.readContents(path, bytes);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const&) {
    LQFTraverseDataCollection rows;
    utils::ByteStream stream(bytes);
    readNamingTheLine(rows, stream);  // fails at the same place, and tells it
    throw;
  }
  takeKnownStations(project);
}

void readTraverse(Project& project, QString const& path, std::string const& bytes) {
  VRDTraverseDataCollcetion rows;
  utils::ByteStream stream(bytes);
  readNamingTheLine(rows, stream);
  if (rows.getTraverseDataList().empty()) throw QLogicError(System::tr("The import file data is empty"));
  try {
    project.readContents(path, bytes);  // again, so that the project knows its file
  } catch (std::bad_alloc const&) {
    throw;  // says nothing about the rows
  } catch (std::exception const&) {
    // The library pairs the faces by their places: it may refuse rows that are good.
    project.setFileType(Project::VrdFile);
    project.setVerticalAngleType(FullCircleZenith);
    project.setName(path);
  }
  project.setTraverseDataList(rows.getTraverseDataList());
}

/// A project file tells neither which sights have no readings nor which stations of a job have coordinates.
void restoreMarks(Project& project) {
  auto& rows = project.getTraverseDataList();
  bool const hasKnown = !getKnownPoint(rows).empty();
  for (TraverseDataInfo& row : rows) {
    bool const isStation = row.pointType == TraversePointType::StationPoint;
    bool const isRead = row.horizontal_angle != 0.0 || row.vertical_angle != 0.0 || row.slant_distance != 0.0;
    if (!isStation && !isRead) row.angleMark = 0.0;
    row.hasCoordinate = isStation && !hasKnown;
  }
  if (project.getFileType() == Project::LqfFile) takeKnownStations(project);
}

void readProject(Project& project, QString const& path, std::string const& bytes) {
  try {
    project.readContents(path, bytes);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const&) {
    // The rows are there, but not a network by the library's pairing.
    if (project.getTraverseDataList().empty()) throw;
    project.setName(path);
  }
  restoreMarks(project);
}

void readRows(Project& project, QString const& path, std::string const& bytes) {
  QString const kind = kindOf(path);
  if (kind == "lqf") {
    readJob(project, path, bytes);
  } else if (kind == "txt") {
    readTraverse(project, path, bytes);
  } else {
    readProject(project, path, bytes);
  }
  project.checkVRDData();
}

FieldTextCheck inspectText(Project const& project, QString const& path, std::string const& bytes) {
  if (kindOf(path) == "kvn") return inspectProjectFile(path, bytes);
  utils::ByteStream stream(bytes);
  return kindOf(path) == "lqf" ? inspectJobText(stream, project.getTraverseDataList()) : inspectTraverseText(stream);
}

QString namesOf(FieldFinding const& finding) {
  QStringList targets;
  for (std::string const& target : finding.targets) targets << textOf(target);
  if (finding.station.empty()) return targets.join(", ");
  QString const station = textOf(finding.station);
  return targets.isEmpty() ? station : station + " to " + targets.join(", ");
}

QString placeOf(FieldFinding const& finding) {
  if (finding.line > 0) return QString("line %1").arg(finding.line);
  return finding.row == FieldFinding::kNoRow ? QString() : QString("row %1").arg(finding.row + 1);
}

/// The text without what differs from place to place: what is quoted behind a colon, a Chinese one too, and numbers.
QString kindOfText(QString const& text) {
  static QRegularExpression const quoted("(: |：).*");
  static QRegularExpression const numbers("[0-9][0-9.]*");
  return QString(text).remove(quoted).replace(numbers, "#");
}

/// One message: a warning with the places that it holds for.
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
      places << (names.isEmpty() ? placeOf(finding) : names);
    }
  }

  void send() const {
    QString message = text + ": " + places.join("; ");
    if (count > kNamedPlaces) message += QString("; and %1 more").arg(count - kNamedPlaces);
    if (others > 0) message += QString("; and %1 more of this kind").arg(others);
    System::Instance()->sendMessage(message, Warning);
  }
};

}  // namespace

std::vector<FieldFinding> FieldJob::findings() const {
  std::vector<FieldFinding> all = text.findings;
  std::vector<FieldFinding> const ofRows = placed(reduction.findings);
  all.insert(all.end(), ofRows.begin(), ofRows.end());
  return all;
}

std::vector<FieldFinding> FieldJob::placed(std::vector<FieldFinding> list) const {
  for (FieldFinding& finding : list) {
    if (finding.line == 0 && finding.row < text.rowLines.size()) finding.line = text.rowLines[finding.row];
  }
  return list;
}

FieldJob openFieldJob(Project& project, QString const& path, std::string const& bytes) {
  FieldJob job;
  if (kindOf(path) == "kvn") job.text = inspectText(project, path, bytes);  // a reader would say less of what is wrong
  readRows(project, path, bytes);
  if (kindOf(path) != "kvn") job.text = inspectText(project, path, bytes);
  if (project.getTraverseDataList().empty()) return job;
  job.reduction = reduceField(project.getTraverseDataList());
  project.setNetwork(job.reduction.network);
  return job;
}

void openFieldJobAsRead(Project& project, QString const& path, std::string const& bytes) {
  project.readContents(path, bytes);
  if (project.getFileType() == Project::LqfFile) {
    takeKnownStations(project);
    project.buildStationMap();
  }
  project.generateNetworkData();
}

QString worded(FieldFinding const& finding) {
  QStringList parts{placeOf(finding), namesOf(finding), finding.text};
  parts.removeAll(QString());
  return parts.join(": ");
}

void tellWarnings(std::vector<FieldFinding> const& findings) {
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
  for (Told const& told : list) told.send();
}

void requireNoError(QString const& file, std::vector<FieldFinding> const& findings) {
  auto const isError = [](FieldFinding const& finding) { return finding.severity == FieldFinding::Error; };
  auto const first = std::find_if(findings.begin(), findings.end(), isError);
  if (first == findings.end()) return;
  auto const count = std::count_if(first, findings.end(), isError);
  QString text = worded(*first);
  if (count > 1) text += QString(" (and %1 more; kelvane check tells all)").arg(count - 1);
  throw Refusal(file, text);
}

}  // namespace kvn::host
