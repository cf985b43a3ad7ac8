// Opening: the bytes of a file of any kind into a project.
#include "adjust/AlgorithmData.h"
#include "adjust/input/Unobserved.h"
#include "core/DataException.h"
#include "core/Project.h"
#include "formats/CarefulCosaCollection.h"
#include "formats/CoordinateDataCollection.h"
#include "formats/CosaCollection.h"
#include "formats/FieldTextCheck.h"
#include "formats/LQFTraverseDataCollection.h"
#include "formats/detail/PointText.h"
#include "formats/detail/TraverseReading.h"
#include "job/FindingTexts.h"
#include "job/Job.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"
#include "reduction/FieldReduction.h"

#include <utils/ByteStream.h>
#include <utils/FileText.h>
#include <utils/HTextCodec.h>

#include <QFileInfo>
#include <QRegularExpression>
#include <QTextCodec>
#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

using detail::OpenedFile;
using detail::suffixOf;

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

FieldTextCheck readTraverse(Project& project, QString const& path, std::string const& bytes) {
  detail::InspectedTraverse rows;
  utils::ByteStream stream(bytes);
  detail::reserveRows(stream, rows.getTraverseDataList());
  readNamingTheLine(rows, stream);
  // Not `readContents`: its pairing of the faces by their places may refuse rows that are good.
  project.importTraverseRows(path, std::move(rows.getTraverseDataList()));
  return std::move(rows.text);
}

/// A station whose coordinates are given, and which nothing is observed from or to, may have a misspelt name.
void tellUnobserved(Network const& network) {
  NameIndex observed;
  for (NetworkDataInfo const& line : network.lines) {
    observed.numberOf(line.start_name);
    observed.numberOf(line.end_name);
  }
  std::vector<PointInfo> known(network.knownPoints.size());
  for (std::size_t i = 0; i < known.size(); ++i) known[i].name = network.knownPoints[i].name;
  detail::warnOfLeftOut(known, observed);
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

/// Takes in a traverse file, an instrument job file or a project file. Stations of a job that have coordinates are
/// known. A project file may hold a network or coordinates in place of rows.
OpenedFile takeFieldJob(Project& project, QString const& path, std::string bytes) {
  OpenedFile opened;
  QString const kind = suffixOf(path);
  if (kind == "txt") {
    opened.text = readTraverse(project, path, bytes);
  } else if (kind == "lqf") {
    readJob(project, path, bytes);
    utils::ByteStream stream(bytes);
    opened.text = inspectJobText(stream, project.getTraverseDataList());
  } else {
    opened.text = detail::inspectProjectFile(path, bytes);  // a reader would say less of what is wrong
    readProject(project, path, bytes);
  }
  std::string().swap(bytes);  // a sixth of what the rows take
  project.checkVRDData();
  if (project.getTraverseDataList().empty()) return opened;
  opened.takeReduction(reduceField(project.getTraverseDataList()), project);
  if (kind == "txt") tellUnobserved(project.getNetwork());
  return opened;
}

/// The same as the library does it: the two faces paired by their place, or the station map.
void takeFieldJobAsRead(Project& project, QString const& path, std::string const& bytes) {
  project.readContents(path, bytes);
  if (project.getFileType() == Project::LqfFile) {
    takeKnownStations(project);
    project.buildStationMap();
  }
  project.generateNetworkData();
}

void takeNetwork(Project& project, QString const& path, std::string const& bytes, CosaCollection& collection) {
  utils::ByteStream stream(bytes);
  collection.setConfigure(project.getConfigure());  // what the head does not say stays
  collection.read(stream);
  Network network = collection.takeNetwork();
  if (network.lines.empty() && network.knownPoints.empty()) {
    project.readContents(path, bytes);  // refuses an empty file, but not one of lines without an observation
    project.setNetwork(std::move(network));
  } else {
    project.importCosaNetwork(path, std::move(network));
    project.setFileType(Project::CosaFile);
    project.setName(path);
  }
  project.setConfigure(collection.getConfigure());  // which the project does not take from a network file
}

/// Text of a file is told by its lines: one observation may stand there several times.
void tellByLine(std::vector<FieldFinding> findings) {
  for (FieldFinding& finding : findings) {
    finding.station.clear();
    finding.targets.clear();
  }
  for (QString const& line : warningLines(findings)) detail::sendWarning(line);
}

OpenedFile takeNetworkWithCare(Project& project, QString const& path, std::string const& bytes, bool isPlan) {
  CarefulCosaCollection collection;
  collection.setTakePlanned(isPlan);
  collection.setKeepObservations(true);
  collection.setTellFindings(false);
  try {
    takeNetwork(project, path, bytes, collection);
  } catch (...) {
    tellByLine(collection.getFindings());  // the failure may follow from it
    throw;
  }
  tellByLine(collection.getFindings());
  OpenedFile opened;
  opened.takeObservations(collection.takeObservations(), project.getNetwork());
  opened.toldFindings = collection.getFindings();
  return opened;
}

[[noreturn]] void refuseEncoding(QString const& path, int line) {
  QString const codec = QString::fromLatin1(QTextCodec::codecForLocale()->name());
  throw JobEncodingException(path, Messages::tr("line %1 is no text in the encoding %2").arg(line).arg(codec), line);
}

/// Names of a coordinate file in another encoding would become question marks, and several points one.
void requireEncoding(QString const& path, std::string const& bytes) {
  if (bytes.empty()) throw JobException(path, Messages::tr("the file is empty"));
  std::string_view text = bytes;
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.remove_prefix(3);  // a byte order mark, which the reader passes over
  for (int number = 1; !text.empty(); ++number) {
    std::string const line(text.substr(0, text.find('\n')));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (detail::isSameInLocal8Bit(line) || HTextCodec::ToLocal8Bit(HTextCodec::FromLocal8Bit(line)) == line) continue;
    refuseEncoding(path, number);
  }
}

/// The text in UTF-8, where all of it is text of the encoding.
std::optional<std::string> decoded(std::string const& bytes, QTextCodec const& codec) {
  QString const text = codec.toUnicode(bytes.data(), static_cast<int>(bytes.size()));
  QByteArray const back = codec.fromUnicode(text);
  if (back.size() != static_cast<int>(bytes.size()) || !std::equal(bytes.begin(), bytes.end(), back.begin())) return {};
  return text.toStdString();
}

/// The encoding that an XML declaration names; null for none, for UTF-8 and for an unknown one.
QTextCodec const* declaredCodec(std::string const& bytes) {
  static QRegularExpression const form(R"(^<\?xml[^>]*\bencoding\s*=\s*["']([A-Za-z][A-Za-z0-9._-]*)["'])");
  constexpr std::size_t kLongestDeclaration = 200;
  QString const head = QString::fromLatin1(bytes.substr(0, kLongestDeclaration).c_str());
  QString const name = form.match(head.trimmed()).captured(1);
  bool const isOther = !name.isEmpty() && name.compare("UTF-8", Qt::CaseInsensitive) != 0;
  QTextCodec const* const codec = isOther ? QTextCodec::codecForName(name.toLatin1()) : nullptr;
  // The declaration itself could be read, which it could not in an encoding that is none of 8 bits.
  return codec != nullptr && codec->fromUnicode("A") == "A" ? codec : nullptr;
}

/// The text of a network, a field book or a project in UTF-8, as its readers take it, where the bytes are not that: in
/// the encoding that its XML declaration names, else in the local 8-bit one. A name in another encoding would lose its
/// characters, and several points would become one.
/// @throws JobEncodingException with the first line that is no text.
std::optional<std::string> utf8TextOfOther(QString const& path, std::string const& bytes) {
  if (detail::isSameInLocal8Bit(bytes)) return {};
  QTextCodec const* const declared = suffixOf(path) == "kvn" ? declaredCodec(bytes) : nullptr;
  if (declared != nullptr) {
    if (auto text = decoded(bytes, *declared)) return text;
  }
  if (utils::isUtf8(bytes)) return {};
  if (auto text = decoded(bytes, *QTextCodec::codecForLocale())) return text;
  std::string_view rest = bytes;
  for (int number = 1; !rest.empty(); ++number) {
    std::string const line(rest.substr(0, rest.find('\n')));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    // Characters of an encoding hold no line end.
    if (!utils::isUtf8(line) && !decoded(line, *QTextCodec::codecForLocale())) refuseEncoding(path, number);
  }
  refuseEncoding(path, 1);  // lines of two encodings
}

/// @throws DataException with the line that is no point.
void readCoordinates(Project& project, QString const& path, std::string const& bytes) {
  try {
    project.readContents(path, bytes);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const&) {
    std::string_view rest = bytes;
    for (int number = 1; !rest.empty(); ++number) {
      std::string const line(rest.substr(0, rest.find('\n')));
      rest.remove_prefix(std::min(line.size() + 1, rest.size()));
      try {
        CoordinateDataCollection().readContents(line + '\n');
      } catch (std::bad_alloc const&) {
        throw;
      } catch (std::exception const& failure) {
        throw DataException(number, failure.what());
      }
    }
    throw;
  }
}

}  // namespace

std::string detail::bytesOf(QString const& path) {
  utils::FileBytes file = utils::readFile(path);  // the project would open a file that is missing as an empty one
  if (!file.isWhole()) throw JobException(path, file.reason);
  return std::move(file.bytes);
}

std::vector<TraverseDataInfo> detail::rowsWithKnownStations(Project const& project) {
  std::vector<TraverseDataInfo> rows = project.getTraverseDataList();
  if (project.getFileType() == Project::LqfFile && getKnownPoint(rows).empty()) markKnownStations(rows);
  return rows;
}

void detail::reduce(JobState& state) {
  Project& project = *state.project;
  if (project.getTraverseDataList().empty()) return;
  if (state.asRead) {
    project.generateNetworkData();
    return;
  }
  project.setTraverseDataList(rowsWithKnownStations(project));
  project.checkVRDData();
  // Where rows have come or gone, no line of the file belongs to the others any more.
  std::vector<int>& lines = state.opened.text.rowLines;
  if (lines.size() != project.getTraverseDataList().size()) lines.clear();
  state.opened.takeReduction(reduceField(project.getTraverseDataList()), project);
}

OpenedFile detail::takeIn(Project& project, QString const& path, std::string bytes, bool asRead, bool isPlan) {
  QString const kind = suffixOf(path);
  if (!Job::readableKinds().contains(kind)) {
    throw JobException(
        path, Messages::tr("unknown kind of file; what can be read: .in2 (COSA network), .txt (traverse file), "
                           ".lqf (instrument job), .dat (coordinates), .kvn (project)"));
  }
  if (!asRead && kind != "dat") {
    std::optional<std::string> text = utf8TextOfOther(path, bytes);
    bool const isOther = text && *text != bytes;
    if (text) bytes = *std::move(text);
    OpenedFile opened = kind == "in2" ? takeNetworkWithCare(project, path, bytes, isPlan)
                                      : takeFieldJob(project, path, std::move(bytes));
    opened.isLocalText = isOther;
    return opened;
  }
  if (kind == "in2") {
    CosaCollection collection;
    takeNetwork(project, path, bytes, collection);
  } else if (kind == "dat") {
    requireEncoding(path, bytes);
    readCoordinates(project, path, bytes);
  } else {
    takeFieldJobAsRead(project, path, bytes);
  }
  return {};
}

}  // namespace kvn
