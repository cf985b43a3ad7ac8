// show: what a file holds.
#include "Commands.h"
#include "Failures.h"
#include "Format.h"
#include "Options.h"
#include "Output.h"
#include "RecordJson.h"
#include "Session.h"
#include "TextTable.h"

namespace kvn::host {
namespace {

QString kindOf(Project::FileType type) {
  switch (type) {
    case Project::LqfFile:
      return System::tr("instrument job file");
    case Project::VrdFile:
      return System::tr("traverse file");
    case Project::CosaFile:
      return System::tr("COSA network file");
    case Project::CoordFile:
      return System::tr("coordinate file");
  }
  return {};
}

QString head(Session& session) {
  Project const& project = session.project();
  return labelled({
      {System::tr("File"), session.file()},
      {System::tr("Kind"), kindOf(project.getFileType())},
      {System::tr("Name"), project.getName()},
      {System::tr("Known points"), QString::number(project.getNetwork().knownPoints.size())},
      {System::tr("Lines"), QString::number(project.getNetwork().lines.size())},
      {System::tr("Rows"), QString::number(project.getTraverseDataList().size())},
      {System::tr("Coordinates"), QString::number(project.getCoordinatePointList().size())},
  });
}

QString knownPointTable(std::vector<KnownPoint> const& points) {
  TextTable table({{System::tr("Name"), TextTable::Left},
                   {System::tr("North [m]"), TextTable::Right},
                   {System::tr("East [m]"), TextTable::Right},
                   {System::tr("Height [m]"), TextTable::Right}});
  for (KnownPoint const& point : points) {
    table.add({textOf(point.name), metres(point.x), metres(point.y), metres(point.z)});
  }
  return table.toString();
}

/// A distance of 0 was not measured.
QString measured(double distance) { return distance == 0.0 ? QStringLiteral("-") : metres(distance); }

QString lineTable(std::vector<NetworkDataInfo> const& lines) {
  TextTable table({{System::tr("From"), TextTable::Left},
                   {System::tr("To"), TextTable::Left},
                   {System::tr("Direction"), TextTable::Right},
                   {System::tr("Distance [m]"), TextTable::Right}});
  std::string const* station = nullptr;
  for (NetworkDataInfo const& line : lines) {
    bool const isSame = station != nullptr && *station == line.start_name;
    station = &line.start_name;
    table.add({isSame ? QString() : textOf(line.start_name), textOf(line.end_name),
               line.horizontalAngleFlag ? azimuthOfRadians(line.horizontal_angle) : QStringLiteral("-"),
               measured(line.horizontal_distance)});
  }
  return table.toString();
}

QString rowTable(std::vector<TraverseDataInfo> const& rows) {
  TextTable table({{System::tr("Name"), TextTable::Left},
                   {System::tr("Type"), TextTable::Left},
                   {System::tr("Height [m]"), TextTable::Right},
                   {System::tr("Horizontal"), TextTable::Right},
                   {System::tr("Vertical"), TextTable::Right},
                   {System::tr("Slant [m]"), TextTable::Right},
                   {System::tr("North [m]"), TextTable::Right},
                   {System::tr("East [m]"), TextTable::Right},
                   {System::tr("Up [m]"), TextTable::Right},
                   {System::tr("Code"), TextTable::Left}});
  for (TraverseDataInfo const& row : rows) {
    table.add({textOf(row.name), translate(row.pointType), metres(row.instrument), angleOfRadians(row.horizontal_angle),
               angleOfRadians(row.vertical_angle), measured(row.slant_distance), metres(row.N), metres(row.E),
               metres(row.Z), textOf(row.code)});
  }
  return table.toString();
}

QString coordinateTable(std::vector<CoordinatePointInfo> const& points) {
  TextTable table({{System::tr("Name"), TextTable::Left},
                   {System::tr("Mark"), TextTable::Left},
                   {System::tr("North [m]"), TextTable::Right},
                   {System::tr("East [m]"), TextTable::Right},
                   {System::tr("Height [m]"), TextTable::Right}});
  for (CoordinatePointInfo const& point : points) {
    table.add({textOf(point.name), textOf(point.signal), metres(point.N), metres(point.E), metres(point.Z)});
  }
  return table.toString();
}

template <typename Record>
QString section(QString const& title, std::vector<Record> const& records,
                QString (*table)(std::vector<Record> const&)) {
  return records.empty() ? QString() : QString("\n%1\n%2").arg(title, table(records));
}

QString text(Session& session) {
  Project const& project = session.project();
  return head(session) + section(System::tr("Known points"), project.getNetwork().knownPoints, knownPointTable) +
         section(System::tr("Lines"), project.getNetwork().lines, lineTable) +
         section(System::tr("Rows"), project.getTraverseDataList(), rowTable) +
         section(System::tr("Coordinates"), project.getCoordinatePointList(), coordinateTable);
}

Json::Value json(Session& session) {
  Project const& project = session.project();
  Json::Value result;
  result["version"] = kJsonVersion;
  result["file"] = session.file().toStdString();
  result["fileType"] = static_cast<int>(project.getFileType());
  result["name"] = utils::readablePath(project.getName()).toStdString();
  result["rows"] = toJson(project.getTraverseDataList());
  result["knownPoints"] = toJson(project.getNetwork().knownPoints);
  result["lines"] = toJson(project.getNetwork().lines);
  result["coordinates"] = toJson(project.getCoordinatePointList());
  result["messages"] = session.messages().take();
  return result;
}

}  // namespace

int runShow(QStringList const& arguments) {
  auto const options = parseShow(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    session.open(options->file);
    for (FieldFinding const& finding : session.job().findingsOf(Job::FileText)) {
      if (finding.severity == FieldFinding::Error) System::Instance()->sendMessage(worded(finding), Error);
    }
    if (options->json) {
      printJson(json(session));
    } else if (!options->quiet) {
      printText(text(session));
    }
    return Done;
  });
}

}  // namespace kvn::host
