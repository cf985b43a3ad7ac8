#include "Options.h"

#include "Failures.h"
#include "Output.h"

#include <QCommandLineParser>
#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace kvn::host {
namespace {

constexpr char const* kAnyFile =
    "Traverse file (.txt), instrument job (.lqf), COSA network (.in2), coordinate file (.dat) or project (.kvn).";
constexpr char const* kAnyJob = "Traverse file (.txt), instrument job (.lqf), COSA network (.in2) or project (.kvn).";
constexpr char const* kMethods[] = {"least-squares", "open", "connect", "closed",
                                    "traverse"};  // by Configure::AdjustMethod

void prepare(QCommandLineParser& parser, char const* description) {
  parser.setApplicationDescription(QString::fromUtf8(description));
  parser.addOption({{"h", "help"}, "Print this help."});
  parser.addOption({{"v", "version"}, "Print the version."});
  parser.addOption({"json", "Print one JSON value and nothing else."});
  parser.addOption({"encoding", "Encoding of 8-bit texts, such as GBK; that of the locale if not given.", "NAME"});
}

/// False when the help or the version was asked for and has been printed.
bool goesOn(QCommandLineParser& parser, QStringList const& arguments, char const* usage, int positionals) {
  if (!parser.parse(arguments)) throw UsageError(parser.errorText());
  if (parser.isSet("help")) {
    // The parser's own first line has the path of the program in it.
    printText(QString("Usage: kelvane %1\n\n%2").arg(QLatin1String(usage), parser.helpText().section('\n', 1)));
    return false;
  }
  if (parser.isSet("version")) {
    printText(versionLine());
    return false;
  }
  QStringList const given = parser.positionalArguments();
  if (given.size() < positionals || (positionals > 0 && given.first().isEmpty())) throw UsageError("FILE is missing");
  if (given.size() > positionals) throw UsageError("too many arguments: " + given.at(positionals));
  return true;
}

template <typename Options>
Options commonOptions(QCommandLineParser const& parser) {
  Options options;
  options.json = parser.isSet("json");
  options.encoding = parser.value("encoding");
  if (parser.isSet("encoding") && options.encoding.isEmpty()) throw UsageError("--encoding needs a name");
  return options;
}

std::optional<double> numberOption(QCommandLineParser const& parser, QString const& name) {
  if (!parser.isSet(name)) return std::nullopt;
  bool isNumber = false;
  double const value = parser.value(name).toDouble(&isNumber);
  if (!isNumber || !std::isfinite(value)) {
    throw UsageError(QString("--%1 needs a number: %2").arg(name, parser.value(name)));
  }
  return value;
}

/// An a-priori error. It is kept as a float, so that it must be in range as a float.
std::optional<float> errorOption(QCommandLineParser const& parser, QString const& name, bool mayBeZero) {
  std::optional<double> const number = numberOption(parser, name);
  if (!number) return std::nullopt;
  auto const value = static_cast<float>(*number);
  if (!std::isfinite(value)) throw UsageError(QString("--%1 needs a number: %2").arg(name, parser.value(name)));
  if (value < 0.0F || (value == 0.0F && !mayBeZero)) {
    throw UsageError(QString("--%1 must be %2: %3").arg(name, mayBeZero ? "0 or more" : "above 0", parser.value(name)));
  }
  return value;
}

int methodOption(QCommandLineParser const& parser) {
  int number = 0;
  for (char const* method : kMethods) {
    if (parser.value("method") == QLatin1String(method)) return number;
    ++number;
  }
  throw UsageError("unknown method: " + parser.value("method"));
}

std::optional<bool> formOption(QCommandLineParser const& parser) {
  if (!parser.isSet("distance-error-form")) return std::nullopt;
  QString const form = parser.value("distance-error-form");
  if (form != "sum" && form != "root") throw UsageError("--distance-error-form is sum or root, not " + form);
  return form == "sum";
}

/// A number within bounds.
std::optional<double> boundedOption(QCommandLineParser const& parser, QString const& name, double least,
                                    double largest) {
  std::optional<double> const value = numberOption(parser, name);
  if (!value || (*value >= least && *value <= largest)) return value;
  throw UsageError(QString("--%1 goes from %2 to %3: %4").arg(name).arg(least).arg(largest).arg(parser.value(name)));
}

bool aPrioriOption(QCommandLineParser const& parser) {
  QString const form = parser.value("sigma0");
  if (form != "a-posteriori" && form != "a-priori") {
    throw UsageError("--sigma0 is a-posteriori or a-priori, not " + form);
  }
  return form == "a-priori";
}

/// What the literal road would take and not look at.
void refuseWithAsRead(QCommandLineParser const& parser, std::initializer_list<char const*> names) {
  for (char const* name : names) {
    if (parser.isSet(name)) throw UsageError(QString("--%1 does not go with --as-read").arg(QLatin1String(name)));
  }
}

/// What only an adjustment has in which every observation counts.
void requireFittingOptions(QCommandLineParser const& parser, AdjustOptions const& options) {
  for (char const* name : {"distance-error-form", "centring", "control-error", "free", "confidence", "sigma0",
                           "leave-out", "approximate", "robust"}) {
    if (!parser.isSet(name)) continue;
    bool const isOfTraverses = qstrcmp(name, "centring") == 0 || qstrcmp(name, "distance-error-form") == 0;
    if (options.method != 0 && !isOfTraverses) {
      throw UsageError(QString("--%1 is for least squares").arg(QLatin1String(name)));
    }
    bool const isLiteralToo = QLatin1String(name) == QLatin1String("distance-error-form");
    if (options.asRead && !isLiteralToo) refuseWithAsRead(parser, {name});
  }
  for (char const* name : {"allowed-angle", "allowed-relative", "force"}) {
    if (!parser.isSet(name) || (options.method != 0 && !options.asRead)) continue;
    throw UsageError(QString("--%1 is for a traverse, read with care").arg(QLatin1String(name)));
  }
  if (options.asRead) refuseWithAsRead(parser, {"refraction", "refraction-error", "zenith-error", "height-error"});
  if (options.isFree && options.controlError) throw UsageError("--control-error does not go with --free");
  if (options.leavesOut && options.weighsDown) throw UsageError("--robust does not go with --leave-out");
}

/// How observations are weighed, and what the results refer to.
void addWeightOptions(QCommandLineParser& parser) {
  parser.addOptions({
      {"angle-error", "Standard error of a direction in one round on both faces, seconds of arc, above 0.", "SECONDS"},
      {"fixed-error", "Fixed part of the standard error of a distance, millimetres.", "MM"},
      {"proportional-error", "Part of it that grows with the distance, parts per million.", "PPM"},
      {"centring", "Standard error of each coordinate of instrument and target about their marks, 0 to 1000.", "MM"},
      {"control-error",
       "Standard error of each coordinate of a known point, which is an observation then, 0 (the default) to 100000; 0 "
       "holds them.",
       "MM"},
      {"free", "Hold no known point: the shifts of them all have no translation and no rotation."},
      {"confidence", "Of the test of the whole and of the confidence ellipses, 0.5 to 0.9999 (default 0.95).", "P"},
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

void addHeightOptions(QCommandLineParser& parser) {
  parser.addOptions({
      {"refraction", "Refraction coefficient of heights; 1 takes neither curvature nor refraction (default 0.16).",
       "K"},
      {"refraction-error", "Standard error of the refraction coefficient, 0 to 10 (default 0.05).", "K"},
      {"zenith-error",
       "Standard error of a zenith angle, the mean of both faces of one round, above 0 (default: that of a direction).",
       "SECONDS"},
      {"height-error", "Standard error of each height of instrument and target, 0 to 1000 (default 1).", "MM"},
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
    throw UsageError("--size needs two numbers such as 1200x900: " + parser.value("size"));
  }
  auto const [least, largest] = std::minmax(options.width, options.height);
  if (least >= kLeastSize && largest <= kLargestSize) return;
  throw UsageError(
      QString("--size goes from %1 to %2 pixels: %3").arg(kLeastSize).arg(kLargestSize).arg(parser.value("size")));
}

/// How a map looks, beside its size.
void takeLook(QCommandLineParser const& parser, MapOptions& options) {
  constexpr double kScreen = 96.0;  // dots per inch
  constexpr double kMostScale = 1e9;
  options.magnification = boundedOption(parser, "dpi", 48.0, 1200.0).value_or(kScreen) / kScreen;
  bool const isVector = options.outFile.endsWith(".svg", Qt::CaseInsensitive);
  if (isVector && parser.isSet("dpi")) throw UsageError("--dpi is for a .png file");
  options.hasEllipses = parser.value("ellipses") != "none";
  if (options.hasEllipses) options.ellipseScale = boundedOption(parser, "ellipses", 1e-3, kMostScale);
  options.confidence = boundedOption(parser, "confidence", 0.5, 0.9999);
  options.title = parser.value("title");
}

QString fileOption(QCommandLineParser const& parser, QString const& name) {
  if (parser.isSet(name) && parser.value(name).isEmpty()) throw UsageError(QString("--%1 needs a file").arg(name));
  return parser.value(name);
}

/// What `adjust` and `report` have in common.
void addAdjustOptions(QCommandLineParser& parser) {
  parser.addOptions({
      {"method",
       "How to adjust: least-squares (the default), or one traverse: open, connect or closed, or traverse for all "
       "traverses of the file, whatever their kind. By the a-priori errors the misclosures are judged.",
       "METHOD", "least-squares"},
      {"distance-error-form",
       "How the two parts are joined: sum (the default), or root of the sum of squares. With --as-read for the unit "
       "weight error alone, and as the file says by default.",
       "sum|root"},
      {"leave-out", "Leave suspected observations out, one after the other, and tell what each of them moved."},
      {"robust",
       "Let observations that do not fit weigh less: fully up to 2.5 standard errors, not at all from 6 on (Yang's IGG "
       "III), and tell the weights."},
      {"approximate",
       "Coordinate file (.dat) to start from: it decides between two places that agree with the observations, as "
       "distances alone leave them, and serves where no search places a point. Without a known point --free lays the "
       "network on it.",
       "FILE"},
      {"sigma0", "Unit weight error of the errors and tests: that of the adjustment (the default), or 1.",
       "a-posteriori|a-priori", "a-posteriori"},
      {"allowed-angle", "Limit of the angular misclosure of a traverse, for the root of the number of its angles.",
       "SECONDS"},
      {"allowed-relative", "Limit of the relative misclosure of a traverse, 1 : N.", "N"},
      {"force", "Compute a traverse that misses by more than ten times what the a-priori errors allow."},
      {"as-read",
       "Take the file literally, as the library does by default: observations of one line count once, a distance alone "
       "is a direction of 0 as well, doubtful lines are taken in silence, distances between known points are left out, "
       "a field book is paired by the places of its sights, and a traverse gets distances to both sides as they are."},
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

QString languageOption(QCommandLineParser const& parser) {
  QString language = parser.value("language");
  if (!parser.isSet("language") || language == "en" || language == "zh") return language;
  throw UsageError("--language is en or zh, not " + language);
}

void addExchangeOptions(QCommandLineParser& parser) {
  parser.addOptions({
      {"crs", "Plane reference system of the coordinates, for .geojson: EPSG and its number, such as EPSG:25832.",
       "EPSG:N"},
      {"bom", "Begin .csv with a byte order mark, for spreadsheets that take it for another encoding without one."},
  });
}

ExchangeChoice exchangeOptions(QCommandLineParser const& parser, QString const& path) {
  QString const kind = path.section('.', -1).toLower();
  ExchangeChoice choice;
  choice.hasByteOrderMark = parser.isSet("bom");
  if (choice.hasByteOrderMark && kind != "csv") throw UsageError("--bom is for a .csv file");
  if (!parser.isSet("crs")) return choice;
  if (kind != "geojson") throw UsageError("--crs is for a .geojson file");
  QString const text = parser.value("crs");
  bool isNumber = false;
  if (text.startsWith("EPSG:", Qt::CaseInsensitive)) choice.epsg = text.mid(5).toInt(&isNumber);
  // Numbers of the registry have four and five digits; those of own systems six.
  if (isNumber && choice.epsg >= 1000 && choice.epsg <= 999999) return choice;
  throw UsageError("--crs needs a reference system such as EPSG:25832: " + text);
}

constexpr char const* kExchangeFiles = ".csv, .geojson, .dxf or .svg";

}  // namespace

char const* methodName(int method) { return kMethods[method]; }

QString programUsage() {
  return QStringLiteral(
      "Usage: kelvane SUBCOMMAND ...\n"
      "\n"
      "Field data of total stations to adjusted coordinates.\n"
      "\n"
      "Subcommands:\n"
      "  show FILE                            what a file holds\n"
      "  check FILE                           what is wrong with a file, or should not be trusted\n"
      "  adjust FILE                          adjusted coordinates with their errors\n"
      "  report FILE OUT.html                 the same as a page with map and tables, to print and to hand over\n"
      "  plan FILE --points FILE.dat          how good the network will be, before it is measured\n"
      "  heights FILE                         trigonometric heights with their errors\n"
      "  convert IN OUT                       the same job in another format\n"
      "  map FILE OUT.png|OUT.svg             a picture of the map, with error ellipses\n"
      "  exec [--open FILE] [--save FILE]     run the JSON commands of standard input\n"
      "\n"
      "Options of all subcommands:\n"
      "  --json                               print JSON instead of tables\n"
      "  --encoding NAME                      encoding of 8-bit texts, such as GBK\n"
      "  --help, --version\n"
      "\n"
      "FILE is a traverse file (.txt), an instrument job (.lqf), a COSA network (.in2),\n"
      "a coordinate file (.dat) or a project (.kvn). 'kelvane SUBCOMMAND --help' tells more.\n"
      "Exit code: 0 done, 1 data refused, 2 wrong usage.\n");
}

std::optional<ShowOptions> parseShow(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(parser, "Prints what a file holds.");
  parser.addPositionalArgument("FILE", kAnyFile);
  if (!goesOn(parser, arguments, "show FILE [options]", 1)) return std::nullopt;
  auto options = commonOptions<ShowOptions>(parser);
  options.file = parser.positionalArguments().first();
  return options;
}

std::optional<CheckOptions> parseCheck(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(parser,
          "Prints what is wrong with a file, and what computes but should not be trusted, a line each.\n"
          "The exit code is 1 when the file cannot be computed or a row check marks a row.");
  parser.addPositionalArgument("FILE", kAnyJob);
  if (!goesOn(parser, arguments, "check FILE [options]", 1)) return std::nullopt;
  auto options = commonOptions<CheckOptions>(parser);
  options.file = parser.positionalArguments().first();
  return options;
}

std::optional<ConvertOptions> parseConvert(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(parser,
          "Writes a job in another format, chosen by the suffix of OUT.\n"
          "Field books (.txt, .lqf) turn into each other and into a network (.in2); every kind turns into\n"
          "a project (.kvn) and into coordinates (.dat), a job or a network with its known points. For other\n"
          "programs these are written with the lines between them as a table (.csv), for geographic\n"
          "information systems (.geojson) and CAD (.dxf, release 12), and as a map (.svg).");
  parser.addPositionalArgument("IN", kAnyFile);
  parser.addPositionalArgument("OUT", QString("File to write: .kvn, .txt, .lqf, .in2, .dat, %1.").arg(kExchangeFiles));
  addExchangeOptions(parser);
  if (!goesOn(parser, arguments, "convert IN OUT [options]", 2)) return std::nullopt;
  auto options = commonOptions<ConvertOptions>(parser);
  options.file = parser.positionalArguments().at(0);
  options.outFile = parser.positionalArguments().at(1);
  options.exchange = exchangeOptions(parser, options.outFile);
  return options;
}

std::optional<AdjustOptions> parseAdjust(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(parser,
          "Adjusts the network of a file and prints coordinates with their errors, and the heights of a field book.\n"
          "The a-priori errors are those of the options, else those of the file, else the defaults.");
  parser.addPositionalArgument("FILE", kAnyJob);
  addAdjustOptions(parser);
  parser.addOption(
      {"save",
       "File to write: the adjusted coordinates (.dat), the project with them (.kvn), or the observations (.txt, .lqf, "
       ".in2); for other programs points, errors and lines (.csv, .geojson, .dxf), or the map (.svg).",
       "FILE"});
  addExchangeOptions(parser);
  parser.addOption(
      {"short", "Print only what is looked at first: the judgement, the figures of the whole, the findings."});
  if (!goesOn(parser, arguments, "adjust FILE [options]", 1)) return std::nullopt;
  auto options = commonOptions<AdjustOptions>(parser);
  takeAdjustOptions(parser, options);
  options.saveFile = fileOption(parser, "save");
  options.exchange = exchangeOptions(parser, options.saveFile);
  options.isShort = parser.isSet("short");
  if (options.isShort && options.json) throw UsageError("--short does not go with --json");
  if (options.isShort && options.asRead) throw UsageError("--short does not go with --as-read");
  return options;
}

std::optional<ReportPageOptions> parseReport(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(
      parser,
      "Adjusts the network of a file as adjust does, and writes a page: the judgement of the whole, what to look at\n"
      "first, a map, and tables of points, observations, traverses and heights. It needs no other file, and prints\n"
      "on A4. A coordinate file gives points and map.");
  parser.addPositionalArgument("FILE", kAnyFile);
  parser.addPositionalArgument("OUT.html", "Page to write.");
  addAdjustOptions(parser);
  parser.addOptions({
      {"heights", "Of a field book the heights alone, without the plane."},
      {"title", "Heading of the page (default: the name of the file).", "TEXT"},
      {"language", "Of the page: en or zh; that of the locale if not given.", "en|zh"},
  });
  if (!goesOn(parser, arguments, "report FILE OUT.html [options]", 2)) return std::nullopt;
  auto options = commonOptions<ReportPageOptions>(parser);
  takeAdjustOptions(parser, options);
  options.outFile = parser.positionalArguments().at(1);
  options.title = parser.value("title");
  options.isOfHeights = parser.isSet("heights");
  options.language = languageOption(parser);
  if (options.isOfHeights && options.method != 0) throw UsageError("--method does not go with --heights");
  if (options.isOfHeights && options.asRead) throw UsageError("--as-read does not go with --heights");
  return options;
}

std::optional<AdjustOptions> parsePlan(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(parser,
          "Tells how good the results of a network will be, before it is measured: standard errors, error ellipses,\n"
          "redundancy numbers, smallest detectable gross errors, and what nothing will check.\n"
          "Readings that FILE has do not count, and a network file may go without: TARGET,L is a direction,\n"
          "TARGET,S a distance, TARGET,LS both. Errors are those by the unit weight error 1.");
  parser.addPositionalArgument("FILE", kAnyJob);
  parser.addOption({"points", "Coordinate file (.dat) with all points of FILE; known points keep their own.", "FILE"});
  parser.addOption({"distance-error-form",
                    "How the two parts are joined: sum (the default), or root of the sum of squares.", "sum|root"});
  addWeightOptions(parser);
  if (!goesOn(parser, arguments, "plan FILE --points FILE.dat [options]", 1)) return std::nullopt;
  auto options = commonOptions<AdjustOptions>(parser);
  options.file = parser.positionalArguments().first();
  takeWeightOptions(parser, options);
  options.approximateFile = fileOption(parser, "points");
  if (options.approximateFile.isEmpty()) throw UsageError("--points is missing");
  options.isAPriori = true;
  if (options.isFree && options.controlError) throw UsageError("--control-error does not go with --free");
  return options;
}

std::optional<HeightsOptions> parseHeights(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(parser, "Computes trigonometric heights from vertical readings and slant distances.");
  parser.addPositionalArgument("FILE", "Field book (.txt, .lqf) or project (.kvn).");
  parser.addOptions({
      {"angle-error", "Standard error of a direction in one round on both faces, seconds of arc, above 0.", "SECONDS"},
      {"fixed-error", "Fixed part of the standard error of a distance, millimetres.", "MM"},
      {"proportional-error", "Part of it that grows with the distance, parts per million.", "PPM"},
      {"confidence", "Of the test of the whole, 0.5 to 0.9999 (default 0.95).", "P"},
      {"sigma0", "Unit weight error of the errors and tests: that of the adjustment (the default), or 1.",
       "a-posteriori|a-priori", "a-posteriori"},
      {"as-read",
       "Take the rows literally, as the library does by default: every target needs two faces with distances, and "
       "full-circle zenith readings give the index term of the circle instead of the elevation."},
      {"save", "File to write with the heights: .csv; of points with coordinates also .geojson, .dxf, .svg.", "FILE"},
  });
  addHeightOptions(parser);
  addExchangeOptions(parser);
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
  options.exchange = exchangeOptions(parser, options.saveFile);
  options.asRead = parser.isSet("as-read");
  if (options.asRead)
    refuseWithAsRead(parser, {"refraction-error", "angle-error", "zenith-error", "fixed-error", "proportional-error",
                              "height-error", "confidence", "sigma0", "save"});
  return options;
}

std::optional<MapOptions> parseMap(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(parser,
          "Draws the map of a job: lines, points and their names, north up, with a grid; where the job can be\n"
          "adjusted by least squares, with error ellipses, and with suspected observations in colour.\n"
          "No display is needed. What cannot be adjusted stands at approximate coordinates.");
  parser.addPositionalArgument("FILE", kAnyFile);
  parser.addPositionalArgument("OUT", "Picture to write: .png, or .svg.");
  parser.addOptions({
      {"size", "Width and height of the picture in pixels (default 1200x900).", "WxH"},
      {"dpi", "Dots per inch of a .png, 48 to 1200 (default 96): symbols, names and lines grow with them.", "N"},
      {"ellipses", "How many times as large as the map ellipses are drawn, or none; by their size if not given.",
       "SCALE|none"},
      {"confidence", "Of the ellipses, 0.5 to 0.9999 (default 0.95).", "P"},
      {"title", "Title of the picture; the name of FILE if not given.", "TEXT"},
  });
  if (!goesOn(parser, arguments, "map FILE OUT [options]", 2)) return std::nullopt;
  auto options = commonOptions<MapOptions>(parser);
  options.file = parser.positionalArguments().at(0);
  options.outFile = parser.positionalArguments().at(1);
  takeSize(parser, options);
  takeLook(parser, options);
  return options;
}

std::optional<ExecOptions> parseExec(QStringList const& arguments) {
  QCommandLineParser parser;
  prepare(parser,
          "Runs a JSON array of commands, each {\"name\", \"in\"}, on a project.\n"
          "Prints a JSON array of results, each {\"ok\", \"out\", \"messages\"}.");
  parser.addPositionalArgument("COMMANDS", "JSON array, on standard input.");
  parser.addOptions({
      {"open", "File to open before the first command.", "FILE"},
      {"save", QString("File to write after the last command: .kvn, .txt, .lqf, .in2, .dat, %1.").arg(kExchangeFiles),
       "FILE"},
  });
  addExchangeOptions(parser);
  if (!goesOn(parser, arguments, "exec [options] < COMMANDS", 0)) return std::nullopt;
  auto options = commonOptions<ExecOptions>(parser);
  options.openFile = fileOption(parser, "open");
  options.saveFile = fileOption(parser, "save");
  options.exchange = exchangeOptions(parser, options.saveFile);
  return options;
}

}  // namespace kvn::host
