#include "Options.h"

#include "CommandLine.h"
#include "Failures.h"
#include "OptionValues.h"
#include "Saving.h"
#include "Streams.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace kvn::host {
namespace {

QString anyFile() {
  return System::tr(
      "Traverse file (.txt), instrument job (.lqf), COSA network (.in2), coordinate file (.dat) or project (.kvn).");
}

QString anyJob() {
  return System::tr("Traverse file (.txt), instrument job (.lqf), COSA network (.in2) or project (.kvn).");
}

constexpr char const* kMethods[] = {"least-squares", "open", "connect", "closed",
                                    "traverse"};  // by Configure::AdjustMethod

int methodOption(QCommandLineParser const& parser) {
  int number = 0;
  for (char const* method : kMethods) {
    if (parser.value("method") == QLatin1String(method)) return number;
    ++number;
  }
  QStringList known;
  for (char const* method : kMethods) known << method;
  throw UsageError(unknownValue(System::tr("unknown method: %1"), parser.value("method"), known));
}

std::optional<bool> formOption(QCommandLineParser const& parser) {
  if (!parser.isSet("distance-error-form")) return std::nullopt;
  QString const form = parser.value("distance-error-form");
  if (form != "sum" && form != "root")
    throw UsageError(System::tr("--distance-error-form is sum or root, not %1").arg(form));
  return form == "sum";
}

bool aPrioriOption(QCommandLineParser const& parser) {
  QString const form = parser.value("sigma0");
  if (form != "a-posteriori" && form != "a-priori") {
    throw UsageError(System::tr("--sigma0 is a-posteriori or a-priori, not %1").arg(form));
  }
  return form == "a-priori";
}

/// What the literal road would take and not look at.
void refuseWithAsRead(QCommandLineParser const& parser, std::initializer_list<char const*> names) {
  for (char const* name : names) {
    if (parser.isSet(name)) throw UsageError(System::tr("--%1 does not go with --as-read").arg(QLatin1String(name)));
  }
}

/// What only an adjustment has in which every observation counts.
void requireFittingOptions(QCommandLineParser const& parser, AdjustOptions const& options) {
  for (char const* name : {"distance-error-form", "centring", "control-error", "free", "confidence", "sigma0",
                           "leave-out", "approximate", "robust"}) {
    if (!parser.isSet(name)) continue;
    bool const isOfTraverses = qstrcmp(name, "centring") == 0 || qstrcmp(name, "distance-error-form") == 0;
    if (options.method != 0 && !isOfTraverses) {
      throw UsageError(System::tr("--%1 is for least squares").arg(QLatin1String(name)));
    }
    bool const isLiteralToo = QLatin1String(name) == QLatin1String("distance-error-form");
    if (options.asRead && !isLiteralToo) refuseWithAsRead(parser, {name});
  }
  for (char const* name : {"allowed-angle", "allowed-relative", "force"}) {
    if (!parser.isSet(name) || (options.method != 0 && !options.asRead)) continue;
    throw UsageError(System::tr("--%1 is for a traverse, read with care").arg(QLatin1String(name)));
  }
  if (options.asRead) refuseWithAsRead(parser, {"refraction", "refraction-error", "zenith-error", "height-error"});
  if (options.isFree && options.controlError) throw UsageError(System::tr("--control-error does not go with --free"));
  if (options.leavesOut && options.weighsDown) throw UsageError(System::tr("--robust does not go with --leave-out"));
}

/// How observations are weighed, and what the results refer to.
void addWeightOptions(CommandLine& parser) {
  parser.addOptions({
      {"angle-error", System::tr("Standard error of a direction in one round on both faces, seconds of arc, above 0."),
       "SECONDS"},
      {"fixed-error", System::tr("Fixed part of the standard error of a distance, millimetres."), "MM"},
      {"proportional-error", System::tr("Part of it that grows with the distance, parts per million."), "PPM"},
      {"centring",
       System::tr("Standard error of each coordinate of instrument and target about their marks, 0 to 1000."), "MM"},
      {"control-error",
       System::tr("Standard error of each coordinate of a known point, which is an observation then, 0 (the default) "
                  "to 100000; 0 holds them."),
       "MM"},
      {"free", System::tr("Hold no known point: the shifts of them all have no translation and no rotation.")},
      {"confidence",
       System::tr("Of the test of the whole and of the confidence ellipses, 0.5 to 0.9999 (default 0.95)."), "P"},
  });
}

void takeWeightOptions(QCommandLineParser const& parser, AdjustOptions& options) {
  options.angleError = errorOption(parser, "angle-error", false);
  options.fixedError = errorOption(parser, "fixed-error", true);
  options.proportionalError = errorOption(parser, "proportional-error", true);
  options.sumForm = formOption(parser);
  options.centring = boundedOption(parser, "centring", 0.0, 1000.0);
  options.controlError = boundedOption(parser, "control-error", 0.0, 100000.0);
  options.confidence = boundedOption(parser, "confidence", 0.5, 0.9999);
  options.isFree = parser.isSet("free");
}

void addHeightOptions(CommandLine& parser) {
  parser.addOptions({
      {"refraction",
       System::tr("Refraction coefficient of heights; 1 takes neither curvature nor refraction (default 0.16)."), "K"},
      {"refraction-error", System::tr("Standard error of the refraction coefficient, 0 to 10 (default 0.05)."), "K"},
      {"zenith-error",
       System::tr("Standard error of a zenith angle, the mean of both faces of one round, above 0 (default: that of a "
                  "direction)."),
       "SECONDS"},
      {"height-error", System::tr("Standard error of each height of instrument and target, 0 to 1000 (default 1)."),
       "MM"},
  });
}

void takeHeightOptions(QCommandLineParser const& parser, HeightWeights& options) {
  options.refraction = numberOption(parser, "refraction");
  options.refractionError = boundedOption(parser, "refraction-error", 0.0, 10.0);
  options.zenithError = boundedOption(parser, "zenith-error", 1e-6, 10000.0);
  options.heightError = boundedOption(parser, "height-error", 0.0, 1000.0);
}

/// A picture that a screen or a sheet of paper can hold, and not so small that the margins leave nothing.
constexpr int kLeastSize = 100;
constexpr int kLargestSize = 8192;

void takeSize(QCommandLineParser const& parser, MapOptions& options) {
  if (!parser.isSet("size")) return;
  QStringList const parts = parser.value("size").split('x');
  bool isNumber[2] = {false, false};
  if (parts.size() == 2) {
    options.width = parts[0].toInt(&isNumber[0]);
    options.height = parts[1].toInt(&isNumber[1]);
  }
  if (!isNumber[0] || !isNumber[1]) {
    throw UsageError(System::tr("--size needs two numbers such as 1200x900: %1").arg(parser.value("size")));
  }
  auto const [least, largest] = std::minmax(options.width, options.height);
  if (least >= kLeastSize && largest <= kLargestSize) return;
  throw UsageError(
      System::tr("--size goes from %1 to %2 pixels: %3").arg(kLeastSize).arg(kLargestSize).arg(parser.value("size")));
}

/// How a map looks, beside its size.
void takeLook(QCommandLineParser const& parser, QString const& file, MapOptions& options) {
  constexpr double kScreen = 96.0;  // dots per inch
  constexpr double kMostScale = 1e9;
  options.magnification = boundedOption(parser, "dpi", 48.0, 1200.0).value_or(kScreen) / kScreen;
  bool const isVector = file.endsWith(".svg", Qt::CaseInsensitive);
  if (isVector && parser.isSet("dpi")) throw UsageError(System::tr("--dpi is for a .png file"));
  options.hasEllipses = parser.value("ellipses") != "none";
  if (options.hasEllipses) options.ellipseScale = boundedOption(parser, "ellipses", 1e-3, kMostScale);
  options.confidence = boundedOption(parser, "confidence", 0.5, 0.9999);
  options.title = parser.value("title");
}

/// What `adjust` and `report` have in common.
void addAdjustOptions(CommandLine& parser) {
  parser.addOptions({
      {"method",
       System::tr(
           "How to adjust: least-squares (the default), or one traverse: open, connect or closed, or traverse for all "
           "traverses of the file, whatever their kind. By the a-priori errors the misclosures are judged."),
       "METHOD", "least-squares"},
      {"distance-error-form",
       System::tr("How the two parts are joined: sum (the default), or root of the sum of squares. With --as-read for "
                  "the unit weight error alone, and as the file says by default."),
       "sum|root"},
      {"leave-out",
       System::tr("Leave suspected observations out, one after the other, and tell what each of them moved.")},
      {"robust", System::tr("Let observations that do not fit weigh less: fully up to 2.5 standard errors, not at all "
                            "from 6 on (Yang's IGG III), and tell the weights.")},
      {"approximate",
       System::tr("Coordinate file (.dat) to start from: it decides between two places that agree with the "
                  "observations, as distances alone leave them, and serves where no search places a point. Without a "
                  "known point --free lays the network on it."),
       "FILE"},
      {"sigma0", System::tr("Unit weight error of the errors and tests: that of the adjustment (the default), or 1."),
       "a-posteriori|a-priori", "a-posteriori"},
      {"allowed-angle",
       System::tr("Limit of the angular misclosure of a traverse, for the root of the number of its angles."),
       "SECONDS"},
      {"allowed-relative", System::tr("Limit of the relative misclosure of a traverse, 1 : N."), "N"},
      {"force", System::tr("Compute a traverse that misses by more than ten times what the a-priori errors allow.")},
      {"as-read", System::tr("Take the file literally, as the library does by default: observations of one line count "
                             "once, a distance alone is a direction of 0 as well, doubtful lines are taken in silence, "
                             "distances between known points are left out, a field book is paired by the places of its "
                             "sights, and a traverse gets distances to both sides as they are.")},
  });
  addWeightOptions(parser);
  addHeightOptions(parser);
}

void takeAdjustOptions(QCommandLineParser const& parser, AdjustOptions& options) {
  options.file = parser.positionalArguments().first();
  options.method = methodOption(parser);
  takeWeightOptions(parser, options);
  takeHeightOptions(parser, options);
  options.leavesOut = parser.isSet("leave-out");
  options.weighsDown = parser.isSet("robust");
  options.isAPriori = aPrioriOption(parser);
  options.approximateFile = fileOption(parser, "approximate");
  options.asRead = parser.isSet("as-read");
  options.allowedAngle = boundedOption(parser, "allowed-angle", 0.0, 100000.0);
  options.allowedRelative = boundedOption(parser, "allowed-relative", 0.0, 1e9);
  options.isForced = parser.isSet("force");
  requireFittingOptions(parser, options);
}

void addExchangeOptions(CommandLine& parser) {
  parser.addOptions({
      {"crs",
       System::tr("Plane reference system of the coordinates, for .geojson: EPSG and its number, such as EPSG:25832."),
       "EPSG:N"},
      {"bom",
       System::tr(
           "Begin .csv with a byte order mark, for spreadsheets that take it for another encoding without one.")},
  });
}

ExchangeChoice exchangeOptions(QCommandLineParser const& parser, QString const& path) {
  QString const kind = path.section('.', -1).toLower();
  ExchangeChoice choice;
  choice.hasByteOrderMark = parser.isSet("bom");
  if (choice.hasByteOrderMark && kind != "csv") throw UsageError(System::tr("--bom is for a .csv file"));
  if (!parser.isSet("crs")) return choice;
  if (kind != "geojson") throw UsageError(System::tr("--crs is for a .geojson file"));
  QString const text = parser.value("crs");
  bool isNumber = false;
  if (text.startsWith("EPSG:", Qt::CaseInsensitive)) choice.epsg = text.mid(5).toInt(&isNumber);
  // Numbers of the registry have four and five digits; those of own systems six.
  if (isNumber && choice.epsg >= 1000 && choice.epsg <= 999999) return choice;
  throw UsageError(System::tr("--crs needs a reference system such as EPSG:25832: %1").arg(text));
}

QString exchangeFiles() { return System::tr(".csv, .geojson, .dxf or .svg"); }

}  // namespace

char const* methodName(int method) { return kMethods[method]; }

std::optional<ShowOptions> parseShow(QStringList const& arguments) {
  CommandLine parser;
  prepare(parser, System::tr("Prints what a file holds."));
  parser.addPositionalArgument("FILE", anyFile());
  addInputKind(parser);
  if (!goesOn(parser, arguments, "show FILE [options]", 1)) return std::nullopt;
  auto options = commonOptions<ShowOptions>(parser);
  options.file = parser.positionalArguments().first();
  return options;
}

std::optional<CheckOptions> parseCheck(QStringList const& arguments) {
  CommandLine parser;
  prepare(parser, System::tr("Prints what is wrong with files, and what computes but should not be trusted, a line "
                             "each. The exit code is 1 when a file cannot be computed or a row check marks a row."));
  parser.addPositionalArgument("FILE...", anyJob());
  addInputKind(parser);
  if (!goesOn(parser, arguments, "check FILE... [options]", kAnyNumber)) return std::nullopt;
  auto options = commonOptions<CheckOptions>(parser, kAnyNumber);
  options.files = parser.positionalArguments();
  return options;
}

std::optional<ConvertOptions> parseConvert(QStringList const& arguments) {
  CommandLine parser;
  prepare(
      parser,
      System::tr(
          "Writes a job in another format, chosen by the suffix of OUT. Field books (.txt, .lqf) turn into each other "
          "and into a network (.in2); every kind turns into a project (.kvn) and into coordinates (.dat), a job or a "
          "network with its known points. For other programs these are written with the lines between them as a table "
          "(.csv), for geographic information systems (.geojson) and CAD (.dxf, release 12), and as a map (.svg)."));
  parser.addPositionalArgument("IN", anyFile());
  parser.addPositionalArgument("OUT",
                               System::tr("File to write: .kvn, .txt, .lqf, .in2, .dat, %1.").arg(exchangeFiles()));
  addExchangeOptions(parser);
  addInputKind(parser);
  addOutputKind(parser);
  if (!goesOn(parser, arguments, "convert IN OUT [options]", 2)) return std::nullopt;
  auto options = commonOptions<ConvertOptions>(parser);
  options.file = parser.positionalArguments().at(0);
  options.outFile = parser.positionalArguments().at(1);
  options.exchange = exchangeOptions(parser, takeOutputKind(parser, options.outFile, options, savableKinds()));
  return options;
}

std::optional<AdjustOptions> parseAdjust(QStringList const& arguments) {
  CommandLine parser;
  prepare(
      parser,
      System::tr("Adjusts the network of a file and prints coordinates with their errors, and the heights of a field "
                 "book. The a-priori errors are those of the options, else those of the file, else the defaults."));
  parser.addPositionalArgument("FILE", anyJob());
  addAdjustOptions(parser);
  parser.addOption(
      {"save",
       System::tr(
           "File to write: the adjusted coordinates (.dat), the project with them (.kvn), or the observations (.txt, "
           ".lqf, .in2); for other programs points, errors and lines (.csv, .geojson, .dxf), or the map (.svg)."),
       "FILE"});
  addExchangeOptions(parser);
  parser.addOption(
      {"short",
       System::tr("Print only what is looked at first: the judgement, the figures of the whole, the findings.")});
  addInputKind(parser);
  addOutputKind(parser);
  if (!goesOn(parser, arguments, "adjust FILE [options]", 1)) return std::nullopt;
  auto options = commonOptions<AdjustOptions>(parser);
  takeAdjustOptions(parser, options);
  options.saveFile = fileOption(parser, "save");
  options.exchange = exchangeOptions(parser, takeOutputKind(parser, options.saveFile, options, savableKinds()));
  options.isShort = parser.isSet("short");
  if (options.isShort && options.json) throw UsageError(System::tr("--short does not go with --json"));
  if (options.isShort && options.asRead) throw UsageError(System::tr("--short does not go with --as-read"));
  return options;
}

std::optional<ReportPageOptions> parseReport(QStringList const& arguments) {
  CommandLine parser;
  prepare(parser,
          System::tr("Adjusts the network of a file as adjust does, and writes a page: the judgement of the whole, "
                     "what to look at first, a map, and tables of points, observations, traverses and heights. It "
                     "needs no other file, and prints on A4. A coordinate file gives points and map."));
  parser.addPositionalArgument("FILE", anyFile());
  parser.addPositionalArgument("OUT.html", System::tr("Page to write."));
  addAdjustOptions(parser);
  parser.addOptions({
      {"heights", System::tr("Of a field book the heights alone, without the plane.")},
      {"title", System::tr("Heading of the page (default: the name of the file)."), "TEXT"},
  });
  addInputKind(parser);
  if (!goesOn(parser, arguments, "report FILE OUT.html [options]", 2)) return std::nullopt;
  auto options = commonOptions<ReportPageOptions>(parser);
  takeAdjustOptions(parser, options);
  options.outFile = parser.positionalArguments().at(1);
  if (options.outFile == kStream) options.to = "html";
  if (options.outFile == kStream && options.json) {
    throw UsageError(System::tr("--json does not go with standard output, -"));
  }
  options.title = parser.value("title");
  options.isOfHeights = parser.isSet("heights");
  if (options.isOfHeights && options.method != 0) throw UsageError(System::tr("--method does not go with --heights"));
  if (options.isOfHeights && options.asRead) throw UsageError(System::tr("--as-read does not go with --heights"));
  return options;
}

std::optional<AdjustOptions> parsePlan(QStringList const& arguments) {
  CommandLine parser;
  prepare(parser,
          System::tr("Tells how good the results of a network will be, before it is measured: standard errors, error "
                     "ellipses, redundancy numbers, smallest detectable gross errors, and what nothing will check. "
                     "Readings that FILE has do not count, and a network file may go without: TARGET,L is a direction, "
                     "TARGET,S a distance, TARGET,LS both. Errors are those by the unit weight error 1."));
  parser.addPositionalArgument("FILE", anyJob());
  parser.addOption(
      {"points", System::tr("Coordinate file (.dat) with all points of FILE; known points keep their own."), "FILE"});
  parser.addOption({"distance-error-form",
                    System::tr("How the two parts are joined: sum (the default), or root of the sum of squares."),
                    "sum|root"});
  addWeightOptions(parser);
  addInputKind(parser);
  if (!goesOn(parser, arguments, "plan FILE --points FILE.dat [options]", 1)) return std::nullopt;
  if (parser.value("points") == kStream) throw UsageError(System::tr("--points needs a file, not standard input"));
  auto options = commonOptions<AdjustOptions>(parser);
  options.file = parser.positionalArguments().first();
  takeWeightOptions(parser, options);
  options.approximateFile = fileOption(parser, "points");
  if (options.approximateFile.isEmpty()) throw UsageError(System::tr("--points is missing"));
  options.isAPriori = true;
  if (options.isFree && options.controlError) throw UsageError(System::tr("--control-error does not go with --free"));
  return options;
}

std::optional<HeightsOptions> parseHeights(QStringList const& arguments) {
  CommandLine parser;
  prepare(parser, System::tr("Computes trigonometric heights from vertical readings and slant distances."));
  parser.addPositionalArgument("FILE", System::tr("Field book (.txt, .lqf) or project (.kvn)."));
  parser.addOptions({
      {"angle-error", System::tr("Standard error of a direction in one round on both faces, seconds of arc, above 0."),
       "SECONDS"},
      {"fixed-error", System::tr("Fixed part of the standard error of a distance, millimetres."), "MM"},
      {"proportional-error", System::tr("Part of it that grows with the distance, parts per million."), "PPM"},
      {"confidence", System::tr("Of the test of the whole, 0.5 to 0.9999 (default 0.95)."), "P"},
      {"sigma0", System::tr("Unit weight error of the errors and tests: that of the adjustment (the default), or 1."),
       "a-posteriori|a-priori", "a-posteriori"},
      {"as-read",
       System::tr(
           "Take the rows literally, as the library does by default: every target needs two faces with distances, and "
           "full-circle zenith readings give the index term of the circle instead of the elevation.")},
      {"save",
       System::tr("File to write with the heights: .csv; of points with coordinates also .geojson, .dxf, .svg."),
       "FILE"},
  });
  addHeightOptions(parser);
  addExchangeOptions(parser);
  addInputKind(parser);
  addOutputKind(parser);
  if (!goesOn(parser, arguments, "heights FILE [options]", 1)) return std::nullopt;
  auto options = commonOptions<HeightsOptions>(parser);
  options.file = parser.positionalArguments().first();
  takeHeightOptions(parser, options);
  options.angleError = errorOption(parser, "angle-error", false);
  options.fixedError = errorOption(parser, "fixed-error", true);
  options.proportionalError = errorOption(parser, "proportional-error", true);
  options.confidence = boundedOption(parser, "confidence", 0.5, 0.9999);
  options.isAPriori = aPrioriOption(parser);
  options.saveFile = fileOption(parser, "save");
  options.exchange = exchangeOptions(parser, takeOutputKind(parser, options.saveFile, options, exchangeKinds()));
  options.asRead = parser.isSet("as-read");
  if (options.asRead)
    refuseWithAsRead(parser, {"refraction-error", "angle-error", "zenith-error", "fixed-error", "proportional-error",
                              "height-error", "confidence", "sigma0", "save"});
  return options;
}

std::optional<MapOptions> parseMap(QStringList const& arguments) {
  CommandLine parser;
  prepare(parser,
          System::tr(
              "Draws the map of a job: lines, points and their names, north up, with a grid; where the job can be "
              "adjusted by least squares, with error ellipses, and with suspected observations in colour. No display "
              "is needed. What cannot be adjusted stands at approximate coordinates."));
  parser.addPositionalArgument("FILE", anyFile());
  parser.addPositionalArgument("OUT", System::tr("Picture to write: .png, or .svg."));
  parser.addOptions({
      {"size", System::tr("Width and height of the picture in pixels (default 1200x900)."), "WxH"},
      {"dpi", System::tr("Dots per inch of a .png, 48 to 1200 (default 96): symbols, names and lines grow with them."),
       "N"},
      {"ellipses",
       System::tr("How many times as large as the map ellipses are drawn, or none; by their size if not given."),
       "SCALE|none"},
      {"confidence", System::tr("Of the ellipses, 0.5 to 0.9999 (default 0.95)."), "P"},
      {"title", System::tr("Title of the picture; the name of FILE if not given."), "TEXT"},
  });
  addInputKind(parser);
  addOutputKind(parser);
  if (!goesOn(parser, arguments, "map FILE OUT [options]", 2)) return std::nullopt;
  auto options = commonOptions<MapOptions>(parser);
  options.file = parser.positionalArguments().at(0);
  options.outFile = parser.positionalArguments().at(1);
  takeSize(parser, options);
  takeLook(parser, takeOutputKind(parser, options.outFile, options, {"svg", "png"}), options);
  return options;
}

std::optional<ExecOptions> parseExec(QStringList const& arguments) {
  CommandLine parser;
  prepare(parser, System::tr("Runs a JSON array of commands, each {\"name\", \"in\"}, on a project. Prints a JSON "
                             "array of results, each {\"ok\", \"out\", \"messages\"}."));
  parser.addPositionalArgument(
      "COMMANDS", System::tr("JSON array on standard input; or one command a line, each answered on a line before the "
                             "next one is read. Beside the commands of the library: list, undo, redo."));
  parser.addOptions({
      {"open", System::tr("File to open before the first command."), "FILE"},
      {"save",
       System::tr("File to write after the last command: .kvn, .txt, .lqf, .in2, .dat, %1.").arg(exchangeFiles()),
       "FILE"},
  });
  addExchangeOptions(parser);
  if (!goesOn(parser, arguments, "exec [options] < COMMANDS", 0)) return std::nullopt;
  auto options = commonOptions<ExecOptions>(parser);
  options.openFile = fileOption(parser, "open");
  options.saveFile = fileOption(parser, "save");
  if (options.saveFile == kStream)
    throw UsageError(System::tr("--save needs a file: the results are on standard output"));
  options.exchange = exchangeOptions(parser, options.saveFile);
  return options;
}

}  // namespace kvn::host
