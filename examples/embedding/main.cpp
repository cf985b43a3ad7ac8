// A host program in one file: opens observations, adjusts them, prints the points and saves a project file.
//
// Units and axes of the library: x is north, y is east, lengths are metres, angles radians. Texts are UTF-8.
#include <Kelvane.h>

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QString>
#include <QStringList>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

// The library reports what does not stop it, such as doubtful observations, through one function of the host. A window
// would show a list.
void printMessage(QString const& text, kvn::MessType type) {
  char const* const severity = type == kvn::Error ? "error" : type == kvn::Warning ? "warning" : "info";
  std::fprintf(stderr, "%s: %s\n", severity, qUtf8Printable(text));
}

// Commands take and give JSON, throw nothing, and answer whether they succeeded; the reason is in "message".
void openFile(kvn::Project& project, QString const& path) {
  Json::Value in;
  Json::Value out;
  in["file"] = path.toStdString();
  bool const isOpen = project.getCommandManager()->execute("OpenFileCMD", in, out, {});
  if (!isOpen) throw std::runtime_error(out["message"].asString());
  // A suffix that is not known loads nothing and is no failure.
  if (project.isEmpty()) throw std::runtime_error("nothing to read in a file of this kind");
}

// The settings are the project's. The first line of a network file has the a-priori errors, which are taken over here.
void takeErrorsOfNetworkFile(kvn::Project& project) {
  kvn::CosaCollection file;
  file.kvn::INetworkDataCollection::read(HTextCodec::ToLocal8Bit(project.getNetworkFile()));
  project.setConfigure(file.getConfigure());
}

// An instrument job does not say which stations are known, so those with coordinates are, and its rounds are reduced to
// one set of directions a station before they make a network. (Opening a traverse file has made its network already.)
void makeNetworkOfJob(kvn::Project& project) {
  kvn::markKnownStations(project.getTraverseDataList());
  for (kvn::KnownPoint const& point : kvn::getKnownPoint(project.getTraverseDataList())) project.addKnownPoint(point);
  project.buildStationMap();
  project.generateNetworkData();
}

// Least squares, unless `AdjustMethod` of the settings says otherwise. Throws when the data does not determine the
// points: too few known points, a point that nothing connects to them, a target twice at a station.
void adjust(kvn::Project& project) {
  auto adjustment = std::make_unique<kvn::AlgorithmAdjust>();
  adjustment->setConfigure(project.getConfigure());
  adjustment->setCountControlDistances(true);  // distances between known points are observations too
  // Once in the life of the object. A distance without a direction is taken as that, not with a direction of 0.
  adjustment->setNetworkData(project.getNetwork(), kvn::MissingDirection::IsLeftOut);
  adjustment->calculateAdjust();
  project.setAlgorithmAdjust(std::move(adjustment));
}

// Heights from the vertical circle readings of a field book. The calculation wants elevations, the file has zenith
// readings of both faces: the rows are lent to it as elevations and put back. Not every job has heights.
void computeHeights(kvn::Project& project) {
  std::vector<kvn::TraverseDataInfo> const readings = project.getTraverseDataList();
  project.setTraverseDataList(kvn::elevationRows(readings).rows);
  project.setVerticalAngleType(kvn::ElevationAngle);
  try {
    project.calculateTriangleHeight();
  } catch (std::exception const& failure) {
    printMessage(QString("no heights: %1").arg(failure.what()), kvn::Warning);
  }
  project.setTraverseDataList(readings);
  project.setVerticalAngleType(kvn::FullCircleZenith);
}

void calculate(kvn::Project& project) {
  if (project.getFileType() == kvn::Project::CosaFile) takeErrorsOfNetworkFile(project);
  if (project.getFileType() == kvn::Project::LqfFile) makeNetworkOfJob(project);
  adjust(project);
  if (!project.getTraverseDataList().empty()) computeHeights(project);
  project.algorithmPointConvertCoord();  // last: the coordinate list takes what the two have found
}

// The errors are there only where their flags say so: without redundant observations there are none.
QString millimetres(double metres, bool isValid) {
  return isValid ? QString::number(1000 * metres, 'f', 2) : QStringLiteral("-");
}

// The list of the errors and the coordinate list have the points in the same order. Numbers by QString: std::printf
// would write a decimal comma in some locales, since QCoreApplication sets that of the user.
void printPoints(kvn::Project const& project) {
  std::puts("point           x [m]          y [m]      z [m]  mx [mm]  my [mm]  mp [mm]");
  auto coordinate = project.getCoordinatePointList().begin();
  for (kvn::PointErrorInfo const& point : project.getAlgorithmAdjust()->getPointErrorInfoList()) {
    QString const line = QString::asprintf(
        "%-6s %14.4f %14.4f %10.4f %8s %8s %8s", point.name.c_str(), point.x, point.y, (coordinate++)->Z,
        qUtf8Printable(millimetres(point.mx, point.mxValid)), qUtf8Printable(millimetres(point.my, point.myValid)),
        qUtf8Printable(millimetres(point.mp, point.mpValid)));
    std::puts(qUtf8Printable(line));
  }
}

// The project file has settings, observations and coordinates: the calculation is made again, not stored.
void saveAndReadBack(kvn::System& system, kvn::Project& project, QString const& path) {
  project.saveAs(path);  // throws when the file cannot be written; an old one is still whole then
  auto const second = system.createProject();
  second->read(path);
  std::printf("%s holds %zu coordinates\n", qUtf8Printable(path), second->getCoordinatePointList().size());
}

}  // namespace

int main(int argc, char** argv) {
  // First of all: it knows the locale and the arguments, and installs the translations of the library's texts.
  QCoreApplication const application(argc, argv);
  QLoggingCategory::setFilterRules("kelvane.*.info=false\nkelvane.*.debug=false");  // times of the commands
  QStringList const arguments = QCoreApplication::arguments();
  if (arguments.size() != 3) {
    std::fputs("usage: embedding FILE.in2|FILE.txt|FILE.lqf PROJECT.kvn\n", stderr);
    return 2;
  }
  kvn::System system;  // one a process; its end writes the settings to <documents>/PLQ/Config/KelvaneConfig.json
  system.setSendMessageFunc(printMessage);
  system.init();
  try {
    auto const project = system.createProject();
    openFile(*project, arguments[1]);
    calculate(*project);
    printPoints(*project);
    saveAndReadBack(system, *project, arguments[2]);
    return 0;
  } catch (std::exception const& failure) {  // all failures of the library are std::exception; what() is UTF-8
    printMessage(QString("%1: %2").arg(arguments[1], failure.what()), kvn::Error);
    return 1;
  }
}
