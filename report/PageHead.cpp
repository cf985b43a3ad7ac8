// The head of a page: what it is about, the judgement of the whole, the figures, the settings.
#include "adjust/AlgorithmAdjust.h"
#include "adjust/HeightAdjustment.h"
#include "adjust/PlaneAdjustment.h"
#include "adjust/TraverseResult.h"
#include "adjust/plane/Quantiles.h"
#include "core/Configure.h"
#include "core/Project.h"
#include "job/Job.h"
#include "records/detail/Messages.h"
#include "report/Judgement.h"
#include "report/detail/PageNumbers.h"
#include "report/detail/ReportParts.h"

#include <utils/FileName.h>

#include <QDate>
#include <algorithm>
#include <cmath>
#include <string>
#include <unordered_set>
#include <utility>

namespace kvn::detail {
namespace {

QString told(std::string const& utf8) { return QString::fromStdString(utf8); }

QString fileName(QString const& path) { return utils::readablePath(path).section('/', -1); }

/// As the style of the page has it.
char const* levelName(Judgement::Level level) {
  if (level == Judgement::Good) return "good";
  return level == Judgement::Look ? "look" : "bad";
}

std::vector<Judgement> judgements(ReportParts const& parts) {
  bool const hasPlane = parts.hasPlane() || parts.literal != nullptr || !parts.traverses.empty();
  bool const hasRun = hasPlane || parts.heights != nullptr;
  bool const isRefused = !parts.options.refusal.isEmpty();
  std::vector<Judgement> list;
  if (hasRun || !isRefused) list = parts.judgements;
  if (isRefused) list.insert(list.begin(), {Judgement::Bad, parts.options.refusal});
  return list;
}

QString methodText(ReportParts const& parts) {
  if (parts.hasPlane()) return Messages::tr("Least-squares adjustment");
  if (parts.literal != nullptr) return Messages::tr("Least-squares adjustment to the letter of the file");
  if (parts.traverses.size() > 1) return Messages::tr("Traverses");
  if (parts.traverses.size() == 1) {
    int const method = parts.traverses.front().method;
    if (method == 1) return Messages::tr("Open traverse");
    return method == 2 ? Messages::tr("Connecting traverse") : Messages::tr("Closed traverse");
  }
  if (parts.heights != nullptr) return Messages::tr("Trigonometric heights");
  return Messages::tr("Coordinates");
}

/// A number that is looked at first.
void writeFigure(PageWriter& page, QString const& label, std::string const& value, QString const& below = {}) {
  page.markup("<div class=\"figure\"><dt>").text(label).markup("</dt><dd>").text(value);
  if (!below.isEmpty()) page.markup("<small>").text(below).markup("</small>");
  page.markup("</dd></div>\n");
}

std::size_t knownPoints(SiteDrawing const& drawing) {
  return static_cast<std::size_t>(std::count_if(drawing.points.begin(), drawing.points.end(),
                                                [](SitePoint const& point) { return point.isKnown; }));
}

/// The point with the largest error, and that error.
std::pair<SitePoint const*, double> weakest(SiteDrawing const& drawing) {
  SitePoint const* worst = nullptr;
  for (SitePoint const& point : drawing.points) {
    if (point.mp && std::isfinite(*point.mp) && (worst == nullptr || *point.mp > *worst->mp)) worst = &point;
  }
  return {worst, worst == nullptr ? 0.0 : *worst->mp};
}

void writePlaneFigures(PageWriter& page, ReportParts const& parts) {
  PlaneResult const& result = parts.plane->result();
  PlaneNetwork const& network = parts.plane->network();
  QString below =
      Messages::tr("directions %1, distances %2").arg(network.directions.size()).arg(network.distances.size());
  if (!result.leftOut.empty()) below += Messages::tr(", left out %1").arg(result.leftOut.size());
  writeFigure(page, Messages::tr("Observations"), std::to_string(network.directions.size() + network.distances.size()),
              below);
  writeFigure(page, Messages::tr("Redundancy"), std::to_string(result.redundancy));
  if (result.hasRedundancy) {
    writeFigure(page, Messages::tr("Unit weight error"), ratio(result.unitError),
                Messages::tr("%1 to %2 expected").arg(told(ratio(result.lowerBound)), told(ratio(result.upperBound))));
  }
}

void writeLiteralFigures(PageWriter& page, AdjustSummary const& summary) {
  writeFigure(page, Messages::tr("Observations"), std::to_string(summary.directions + summary.distances),
              Messages::tr("directions %1, distances %2").arg(summary.directions).arg(summary.distances));
  writeFigure(page, Messages::tr("Redundancy"), std::to_string(summary.redundancy));
  writeFigure(page, Messages::tr("Unit weight error"), ratio(summary.unitError));
}

void writeTraverseFigures(PageWriter& page, ReportParts const& parts) {
  // A loop comes back to its first station, and several traverses may meet in one.
  std::unordered_set<std::string> stations;
  double worst = 0.0;
  for (TraverseResult const& traverse : parts.traverses) {
    for (TraverseInfo const& station : traverse.stations) stations.insert(station.stationPoint.name);
    worst = std::max(worst, traverse.summary.relativeError);
  }
  writeFigure(page, Messages::tr("Stations"), std::to_string(stations.size()));
  if (worst > 0.0) writeFigure(page, Messages::tr("Relative misclosure"), oneTo(worst));
}

void writeFigures(PageWriter& page, ReportParts const& parts) {
  page.markup("<dl class=\"figures\">\n");
  bool const isOfHeights = !parts.hasPlane() && parts.literal == nullptr && parts.traverses.empty();
  if (parts.heights != nullptr && isOfHeights) {
    auto const& points = parts.heights->network().points;
    auto const known = std::count_if(points.begin(), points.end(), [](auto const& point) { return point.isKnown; });
    writeFigure(page, Messages::tr("Points"), std::to_string(points.size()),
                Messages::tr("%1 of them known").arg(known));
  } else if (!parts.drawing.points.empty()) {
    writeFigure(page, Messages::tr("Points"), std::to_string(parts.drawing.points.size()),
                Messages::tr("%1 of them known").arg(knownPoints(parts.drawing)));
  }
  if (parts.hasPlane()) writePlaneFigures(page, parts);
  if (parts.literal != nullptr) writeLiteralFigures(page, parts.literal->getSummary());
  if (!parts.traverses.empty()) writeTraverseFigures(page, parts);
  if (parts.heights != nullptr) {
    writeFigure(page, Messages::tr("Height differences"), std::to_string(parts.heights->network().sights.size()),
                Messages::tr("redundancy %1").arg(parts.heights->result().redundancy));
  }
  auto const [worst, error] = weakest(parts.drawing);
  if (worst != nullptr && error > 0.0) {
    writeFigure(page, Messages::tr("Largest point error"), length(error), Messages::tr("at %1").arg(told(worst->name)));
  }
  writeFigure(page, Messages::tr("To look at"), std::to_string(parts.content.findings.size()));
  page.markup("</dl>\n");
}

using Settings = std::vector<std::pair<QString, QString>>;

QString errorsText(ReportParts const& parts) {
  Configure const& configure = parts.content.configure;
  PlaneOptions const& options = parts.content.planeOptions;
  bool const isSum = parts.literal != nullptr ? configure.LineCalculateExpression
                                              : options.distanceForm == ObservationErrors::Form::Sum;
  QString text =
      Messages::tr("direction %1″, distance %2 mm + %3 ppm (%4)")
          .arg(told(shortest(double(configure.AngleError))), told(shortest(double(configure.LineFixedError))),
               told(shortest(double(configure.LineProportionError))),
               isSum ? Messages::tr("sum") : Messages::tr("root"));
  if (options.centring > 0.0) text += Messages::tr(", centring %1 mm").arg(told(shortest(1000.0 * options.centring)));
  if (options.controlError > 0.0) {
    text += Messages::tr(", known coordinates %1 mm").arg(told(shortest(1000.0 * options.controlError)));
  }
  return text;
}

QString datumText(ReportParts const& parts) {
  if (parts.drawing.isFree) return Messages::tr("free: the known points are not held");
  return parts.content.planeOptions.controlError > 0.0 ? Messages::tr("known points, each with its own error")
                                                       : Messages::tr("known points, held");
}

/// Of each kind its unit weight error, and the a-priori error with which it would be 1, unless something is wrong.
QString kindsText(ReportParts const& parts) {
  PlaneResult const& result = parts.plane->result();
  Configure const& configure = parts.content.configure;
  QStringList kinds;
  // A gross error is no reason to take the others for worse.
  bool const isClean = parts.plane->suspects().empty() && result.suspectedControl.empty();
  double const ofDirections = result.directionUnitError;
  if (std::isfinite(ofDirections)) {
    QString text = Messages::tr("directions %1").arg(told(ratio(ofDirections)));
    if (isClean && ofDirections <= kDoubtfulUnitError) {
      text += Messages::tr(" (%1″ would fit)").arg(told(ratio(ofDirections * double(configure.AngleError))));
    }
    kinds << text;
  }
  double const ofDistances = result.distanceUnitError;
  if (std::isfinite(ofDistances)) {
    QString text = Messages::tr("distances %1").arg(told(ratio(ofDistances)));
    if (isClean && ofDistances <= kDoubtfulUnitError) {
      text += Messages::tr(" (%1 mm + %2 ppm would fit)")
                  .arg(told(ratio(ofDistances * double(configure.LineFixedError))),
                       told(ratio(ofDistances * double(configure.LineProportionError))));
    }
    kinds << text;
  }
  return kinds.join("; ");
}

QString robustText(ReportParts const& parts) {
  std::size_t less = 0;
  std::size_t none = 0;
  for (auto const* list : {&parts.plane->result().directions, &parts.plane->result().distances}) {
    for (PlaneObservation const& observation : *list) {
      if (observation.weight < 1.0) ++less;
      if (observation.weight == 0.0) ++none;
    }
  }
  return Messages::tr("observations that weigh less: %1, of these nothing: %2").arg(less).arg(none);
}

void addPlaneSettings(ReportParts const& parts, Settings& settings) {
  PlaneOptions const& options = parts.content.planeOptions;
  settings.emplace_back(Messages::tr("Datum"), datumText(parts));
  settings.emplace_back(Messages::tr("A-priori errors"), errorsText(parts));
  QString errors = Messages::tr("by the unit weight error of this run");
  if (!parts.hasErrors()) errors = Messages::tr("none: nothing is redundant");
  if (options.unitWeight == PlaneSettings::UnitWeight::APriori) {
    errors = Messages::tr("by the a-priori unit weight error, 1");
  }
  settings.emplace_back(Messages::tr("Errors of results"), errors);
  settings.emplace_back(Messages::tr("Confidence"), told(percent(options.confidence)));
  QString const kinds = kindsText(parts);
  if (!kinds.isEmpty()) settings.emplace_back(Messages::tr("By kind"), kinds);
  if (options.weighsDownSuspects) settings.emplace_back(Messages::tr("Robust weights"), robustText(parts));
  if (options.leavesOutSuspects) {
    settings.emplace_back(Messages::tr("Left out"),
                          Messages::tr("observations: %1").arg(parts.plane->result().leftOut.size()));
  }
  settings.emplace_back(Messages::tr("Iterations"), QString::number(parts.plane->result().iterations));
}

void addHeightSettings(ReportParts const& parts, Settings& settings) {
  Configure const& configure = parts.content.configure;
  HeightOptions const& options = parts.content.heightOptions;
  settings.emplace_back(
      Messages::tr("A-priori errors of heights"),
      Messages::tr("zenith angle %1″, distance %2 mm + %3 ppm, instrument and target %4 mm")
          .arg(told(shortest(options.zenithError.value_or(double(configure.AngleError)))),
               told(shortest(double(configure.LineFixedError))), told(shortest(double(configure.LineProportionError))),
               told(shortest(1000.0 * options.heightError))));
  settings.emplace_back(
      Messages::tr("Refraction"),
      QString::fromUtf8("%1 ± %2").arg(told(shortest(options.refraction.value_or(double(configure.AtmosphericIndex)))),
                                       told(shortest(options.refractionError))));
}

void writeSettings(PageWriter& page, ReportParts const& parts) {
  Settings settings{{Messages::tr("File"), fileName(parts.content.file)}};
  std::string const instrument = utf8Of(parts.content.instrument);
  if (!instrument.empty()) settings.emplace_back(Messages::tr("Instrument"), told(instrument));
  settings.emplace_back(Messages::tr("Method"), methodText(parts));
  if (parts.hasPlane()) addPlaneSettings(parts, settings);
  if (!parts.traverses.empty() || parts.literal != nullptr) {
    settings.emplace_back(Messages::tr("Datum"), Messages::tr("known points, held"));
    settings.emplace_back(Messages::tr("A-priori errors"), errorsText(parts));
  }
  if (parts.heights != nullptr) addHeightSettings(parts, settings);
  page.markup("<dl class=\"settings\">\n");
  for (auto const& [label, text] : settings) {
    page.markup("<div><dt>").text(label).markup("</dt><dd>").text(text).markup("</dd></div>\n");
  }
  page.markup("</dl>\n");
}

}  // namespace

QString headingOf(ReportParts const& parts) {
  if (!parts.options.title.isEmpty()) return parts.options.title;
  QString const file = fileName(parts.content.file);
  return file.isEmpty() ? methodText(parts) : file;
}

void writeHead(PageWriter& page, ReportParts const& parts) {
  QString const date = parts.options.date.isEmpty() ? QDate::currentDate().toString(Qt::ISODate) : parts.options.date;
  page.markup("<header>\n<p class=\"over\">").text(methodText(parts)).markup("</p>\n");
  page.element("h1", headingOf(parts)).markup("\n<p class=\"date\">").text(date).markup("</p>\n</header>\n");
  for (Judgement const& judgement : judgements(parts)) {
    page.markup("<p class=\"verdict ").markup(levelName(judgement.level)).markup("\"><span class=\"dot\"></span>");
    page.element("span", judgement.sentence).markup("</p>\n");
  }
  writeFigures(page, parts);
  writeSettings(page, parts);
}

}  // namespace kvn::detail
