// The command lines of the subcommands.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace kvn::host {

struct CommonOptions {
  bool json = false;
  QString encoding;  ///< name of the local 8-bit codec; empty for that of the locale
  QString language;  ///< of the texts, en or zh; empty for that of the locale
  QString kind;      ///< suffix of the file on standard input
  QString to;        ///< suffix of the file on standard output
  bool quiet = false;
};

struct ShowOptions : CommonOptions {
  QString file;
};

struct CheckOptions : CommonOptions {
  QStringList files;
};

/// What a file for another program is told beside the job.
struct ExchangeChoice {
  bool hasByteOrderMark = false;
  int epsg = 0;  ///< 0: no reference system
};

struct ConvertOptions : CommonOptions {
  QString file;
  QString outFile;
  ExchangeChoice exchange;
};

/// How heights are weighed.
struct HeightWeights {
  std::optional<double> refraction;       ///< coefficient; empty for that of the settings
  std::optional<double> refractionError;  ///< standard error of it
  std::optional<double> zenithError;      ///< seconds of arc
  std::optional<double> heightError;      ///< millimetres
};

struct AdjustOptions : CommonOptions, HeightWeights {
  QString file;
  int method = 0;                          ///< as `Configure::AdjustMethod`
  std::optional<float> angleError;         ///< seconds of arc
  std::optional<float> fixedError;         ///< millimetres
  std::optional<float> proportionalError;  ///< parts per million
  std::optional<bool> sumForm;             ///< else the root form
  bool leavesOut = false;                  ///< suspected observations
  bool weighsDown = false;                 ///< the same
  std::optional<double> centring;          ///< millimetres
  std::optional<double> controlError;      ///< millimetres
  std::optional<double> confidence;        ///< of the test of the whole and of the ellipses
  bool isShort = false;                    ///< only what is looked at first
  bool isFree = false;                     ///< the known points are not held
  bool isAPriori = false;                  ///< results have errors by the a-priori unit weight error
  bool asRead = false;                     ///< the lines as the library takes them, without the host's care
  QString saveFile;                        ///< empty: nothing is written
  QString approximateFile;                 ///< coordinate file, of a plan that of all points; empty: none
  std::optional<double> allowedAngle;      ///< seconds of arc for the root of the number of angles
  std::optional<double> allowedRelative;   ///< 1 : this
  bool isForced = false;                   ///< a traverse is computed however much it misses
  ExchangeChoice exchange;
};

struct ReportPageOptions : AdjustOptions {
  QString outFile;
  QString title;             ///< empty: the name of the file
  bool isOfHeights = false;  ///< of the heights alone
};

struct HeightsOptions : CommonOptions, HeightWeights {
  QString file;
  std::optional<float> angleError;         ///< seconds of arc
  std::optional<float> fixedError;         ///< millimetres
  std::optional<float> proportionalError;  ///< parts per million
  std::optional<double> confidence;        ///< of the test of the whole
  bool isAPriori = false;                  ///< results have errors by the a-priori unit weight error
  bool asRead = false;                     ///< the rows as the library takes them, without the host's care
  QString saveFile;                        ///< empty: nothing is written
  ExchangeChoice exchange;
};

struct MapOptions : CommonOptions {
  QString file;
  QString outFile;
  int width = 1200;  ///< pixels
  int height = 900;
  double magnification = 1.0;  ///< of what has a size in pixels: 96 dots per inch are a screen's
  bool hasEllipses = true;
  std::optional<double> ellipseScale;  ///< empty: by the ellipses and the picture
  std::optional<double> confidence;    ///< of the ellipses
  QString title;                       ///< empty: the name of the file
};

struct ExecOptions : CommonOptions {
  QString openFile;  ///< empty: the commands run on an empty project
  QString saveFile;  ///< empty: nothing is written
  ExchangeChoice exchange;
};

/// The method by its name on the command line.
char const* methodName(int method);

// Each takes the program's name and what follows the subcommand. Empty when the help or the version was asked for and
// has been printed.
// @throws UsageError for anything that is not understood.

std::optional<ShowOptions> parseShow(QStringList const& arguments);
std::optional<CheckOptions> parseCheck(QStringList const& arguments);
std::optional<ConvertOptions> parseConvert(QStringList const& arguments);
std::optional<AdjustOptions> parseAdjust(QStringList const& arguments);
std::optional<ReportPageOptions> parseReport(QStringList const& arguments);
std::optional<AdjustOptions> parsePlan(QStringList const& arguments);
std::optional<HeightsOptions> parseHeights(QStringList const& arguments);
std::optional<MapOptions> parseMap(QStringList const& arguments);
std::optional<ExecOptions> parseExec(QStringList const& arguments);

}  // namespace kvn::host
