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
      return "instrument job file";
    case Project::VrdFile:
      return "traverse file";
    case Project::CosaFile:
      return "COSA network file";
    case Project::CoordFile:
      return "coordinate file";
  }
  return {};
}

QString head(Session& session) {
  Project const& project = session.project();
  return labelled({
      {"File", session.file()},
      {"Kind", kindOf(project.getFileType())},
      {"Name", project.getName()},
      {"Known points", QString::number(project.getNetwork().knownPoints.size())},
      {"Lines", QString::number(project.getNetwork().lines.size())},
      {"Rows", QString::number(project.getTraverseDataList().size())},
      {"Coordinates", QString::number(project.getCoordinatePointList().size())},
  });
}

QString knownPointTable(std::vector<KnownPoint> const& points) {
  TextTable table({{"Name", TextTable::Left},
                   {"North [m]", TextTable::Right},
                   {"East [m]", TextTable::Right},
                   {"Height [m]", TextTable::Right}});
  for (KnownPoint const& point : points) {
    table.add({textOf(point.name), metres(point.x), metres(point.y), metres(point.z)});
  }
  return table.toString();
}

/// A distance of 0 was not measured.
QString measured(double distance) { return distance == 0.0 ? QStringLiteral("-") : metres(distance); }

QString lineTable(std::vector<NetworkDataInfo> const& lines) {
  TextTable table({{"From", TextTable::Left},
                   {"To", TextTable::Left},
                   {"Direction", TextTable::Right},
                   {"Distance [m]", TextTable::Right}});
  std::string const* station = nullptr;
  for (NetworkDataInfo const& line : lines) {
    bool const isSame = station != nullptr && *station == line.start_name;
    station = &line.start_name;
    table.add({isSame ? QString() : textOf(line.start_name), textOf(line.end_name),
               line.horizontalAngleFlag ? angleOfRadians(line.horizontal_angle) : QStringLiteral("-"),
               measured(line.horizontal_distance)});
  }
  return table.toString();
}

QString rowTable(std::vector<TraverseDataInfo> const& rows) {
  TextTable table({{"Name", TextTable::Left},
                   {"Type", TextTable::Left},
                   {"Height [m]", TextTable::Right},
                   {"Horizontal", TextTable::Right},
                   {"Vertical", TextTable::Right},
                   {"Slant [m]", TextTable::Right},
                   {"North [m]", TextTable::Right},
                   {"East [m]", TextTable::Right},
                   {"Up [m]", TextTable::Right},
                   {"Code", TextTable::Left}});
  for (TraverseDataInfo const& row : rows) {
    table.add({textOf(row.name), QString::fromStdString(row.pointType.toString()), metres(row.instrument),
               angleOfRadians(row.horizontal_angle), angleOfRadians(row.vertical_angle), measured(row.slant_distance),
               metres(row.N), metres(row.E), metres(row.Z), textOf(row.code)});
  }
  return table.toString();
}

QString coordinateTable(std::vector<CoordinatePointInfo> const& points) {
  TextTable table({{"Name", TextTable::Left},
                   {"Mark", TextTable::Left},
                   {"North [m]", TextTable::Right},
                   {"East [m]", TextTable::Right},
                   {"Height [m]", TextTable::Right}});
  for (CoordinatePointInfo const& point : points) {
    table.add({textOf(point.name), textOf(point.signal), metres(point.N), metres(point.E), metres(point.Z)});
  }
  return table.toString();
}

template <typename Record>
QString section(char const* title, std::vector<Record> const& records, QString (*table)(std::vector<Record> const&)) {
  return records.empty() ? QString() : QString("\n%1\n%2").arg(QLatin1String(title), table(records));
}

QString text(Session& session) {
  Project const& project = session.project();
  return head(session) + section("Known points", project.getNetwork().knownPoints, knownPointTable) +
         section("Lines", project.getNetwork().lines, lineTable) +
         section("Rows", project.getTraverseDataList(), rowTable) +
         section("Coordinates", project.getCoordinatePointList(), coordinateTable);
}

Json::Value json(Session& session) {
  Project const& project = session.project();
  Json::Value result;
  result["version"] = kJsonVersion;
  result["file"] = session.file().toStdString();
  result["fileType"] = static_cast<int>(project.getFileType());
  result["name"] = project.getName().toStdString();
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
    if (options->json) {
      printJson(json(session));
    } else {
      printText(text(session));
    }
    return Done;
  });
}

}  // namespace kvn::host
