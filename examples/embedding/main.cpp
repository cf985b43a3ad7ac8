// A host program in one file: opens a job, adjusts it, prints the points, saves a project file and, where it is asked
// for, a page to print and to hand over.
//
// Units and axes of the library: x is north, y is east, lengths are metres, angles radians. Texts are UTF-8.
#include <Kelvane.h>

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QString>
#include <QStringList>
#include <cmath>
#include <cstdio>
#include <exception>

namespace {

// The library reports what does not stop it, such as points without a height, through one function of the host. A
// window would show a list.
void printMessage(QString const& text, kvn::MessType type) {
  char const* const severity = type == kvn::Error ? "error" : type == kvn::Warning ? "warning" : "info";
  std::fprintf(stderr, "%s: %s\n", severity, qUtf8Printable(text));
}

// What a surveyor should look at before the result is trusted: each with its line, station and targets. Notes say that
// nothing is wrong. A window would take the reader to `finding.line` of the file.
void printFindings(kvn::Job const& job) {
  for (kvn::FieldFinding const& finding : job.findings()) {
    if (finding.severity == kvn::FieldFinding::Note) continue;
    printMessage(kvn::worded(finding), finding.severity == kvn::FieldFinding::Error ? kvn::Error : kvn::Warning);
  }
}

// Without redundant observations there are no errors: they are NaN then.
QString millimetres(double metres) {
  return std::isnan(metres) ? QStringLiteral("-") : QString::number(1000 * metres, 'f', 2);
}

// The results and the coordinate list have the points in the same order. Numbers by QString: std::printf would write a
// decimal comma in some locales, since QCoreApplication sets that of the user.
void printPoints(kvn::Job const& job) {
  std::puts("point           x [m]          y [m]      z [m]  mx [mm]  my [mm]  mp [mm]");
  auto point = job.planeAdjustment()->result().points.begin();
  for (kvn::CoordinatePointInfo const& coordinate : job.project()->getCoordinatePointList()) {
    QString const line =
        QString::asprintf("%-6s %14.4f %14.4f %10.4f %8s %8s %8s", coordinate.name.c_str(), point->x, point->y,
                          coordinate.Z, qUtf8Printable(millimetres(point->mx)), qUtf8Printable(millimetres(point->my)),
                          qUtf8Printable(millimetres(point->mp)));
    std::puts(qUtf8Printable(line));
    ++point;
  }
}

// The steps of a job. Each throws what stops it, and leaves project and files as they were.
void run(kvn::System& system, QString const& file, QString const& projectFile, QString const& pageFile) {
  kvn::Job job(system.createProject());
  job.open(file);  // rows, network, known points and the settings of the file
  printFindings(job);
  job.project()->getConfigure().AdjustMethod = 0;  // least squares; what else there is to set is in `Configure`
  job.adjust();
  job.takeResults();  // points, and heights where the rows give any, into the coordinate list
  printPoints(job);

  // One page with findings, map and tables: of least squares as here, of traverses, and of heights alike.
  if (!pageFile.isEmpty()) kvn::saveReport(job, pageFile);

  // The project file has settings, observations and coordinates: the calculation is made again, not stored.
  job.save(projectFile);
  kvn::Job again(system.createProject());
  again.open(projectFile);
  std::printf("%s holds %zu coordinates\n", qUtf8Printable(projectFile),
              again.project()->getCoordinatePointList().size());
}

}  // namespace

int main(int argc, char** argv) {
  // First of all: it knows the locale and the arguments, and installs the translations of the library's texts.
  QCoreApplication const application(argc, argv);
  QLoggingCategory::setFilterRules("kelvane.*.info=false\nkelvane.*.debug=false");
  QStringList const arguments = QCoreApplication::arguments();
  if (arguments.size() < 3 || arguments.size() > 4) {
    std::fputs("usage: embedding FILE.in2|FILE.txt|FILE.lqf|FILE.kvn PROJECT.kvn [PAGE.html]\n", stderr);
    return 2;
  }
  kvn::System system;  // one a process; its end writes the settings to <documents>/PLQ/Config/KelvaneConfig.json
  system.setSendMessageFunc(printMessage);
  system.init();
  try {
    run(system, arguments[1], arguments[2], arguments.value(3));
    return 0;
  } catch (std::exception const& failure) {  // a kvn::JobException, whose text names the file; what() is UTF-8
    printMessage(failure.what(), kvn::Error);
    return 1;
  }
}
