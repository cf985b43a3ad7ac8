// What the misclosures of a single traverse tell.
#include "core/Project.h"
#include "job/FindingTexts.h"
#include "job/JobException.h"
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"
#include "records/detail/Recorded.h"

#include <utils/Circle.h>
#include <utils/Degree.h>

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kvn {
namespace {

// Observations that miss by that much are no errors of observing.
constexpr double kFarBeyond = 10.0;
// What the two ends of a leg differ by is no cause of a closing error that is larger than that many of its halves.
constexpr double kShareOfClosing = 0.1;

QString angleText(double radians) {
  constexpr double kDegree = utils::kPi / 180.0;
  if (std::abs(radians) < kDegree) {
    return QString::number(radians * utils::kSecondsPerRadian, 'f', 1) + QString::fromUtf8("″");
  }
  return QString::fromStdString(utils::Degree(radians / kDegree).toUtf8(utils::DDRMMRSS, 1));
}

QString lengthText(double metres) {
  if (std::abs(metres) < 1.0) return QString::number(metres * 1000.0, 'f', 1) + " mm";
  return QString::number(metres, 'f', 3) + " m";
}

QString textOf(TraverseSuspect const& suspect, std::vector<TraverseInfo> const& stations) {
  TraverseInfo const& at = stations[suspect.station];
  bool const isSmall = suspect.gross < 0.0;
  if (suspect.kind == TraverseSuspect::Angle) {
    QString const text =
        isSmall ? Messages::tr("the angle at %1, %2 too small") : Messages::tr("the angle at %1, %2 too large");
    return text.arg(recordText(at.stationPoint.name), angleText(std::abs(suspect.gross)));
  }
  QString const text = isSmall ? Messages::tr("the leg from %1 to %2, %3 too small")
                               : Messages::tr("the leg from %1 to %2, %3 too large");
  return text.arg(recordText(at.stationPoint.name), recordText(at.forePoints.front().name),
                  lengthText(std::abs(suspect.gross)));
}

/// ": what explains it", where something does.
QString explanation(TraverseResult const& result) {
  constexpr int kListed = 10;
  QStringList names;
  for (TraverseSuspect const& suspect : result.judgement->suspects) names << textOf(suspect, result.stations);
  if (names.isEmpty()) return {};
  if (names.size() == 1) return Messages::tr(": it would be explained by %1").arg(names.first());
  QString const more = names.size() > kListed ? Messages::tr("; and %1 more").arg(names.size() - kListed) : QString();
  return Messages::tr(": it would be explained by one of: %1")
      .arg(QStringList(names.mid(0, kListed)).join("; ") + more);
}

/// What misses by more than some times what the a-priori errors allow.
QStringList beyondAllowed(TraverseJudgement const& judged, double times) {
  QStringList list;
  auto const tell = [&](QString const& what, double size, double allowed, QString (*text)(double)) {
    if (std::abs(size) > times * allowed) list << what.arg(text(size), text(allowed));
  };
  tell(Messages::tr("The angular misclosure is %1, where the a-priori errors allow %2"), judged.angle,
       judged.angleAllowed, angleText);
  if (judged.isLoop()) {
    tell(Messages::tr("The closing error is %1, where the a-priori errors allow %2"), judged.fs, judged.fsAllowed,
         lengthText);
  } else {
    tell(Messages::tr("The misclosure along the traverse is %1, where the a-priori errors allow %2"), judged.along,
         judged.alongAllowed, lengthText);
    tell(Messages::tr("The misclosure across the traverse is %1, where the a-priori errors allow %2"), judged.across,
         judged.acrossAllowed, lengthText);
  }
  return list;
}

QStringList beyondLimits(TraverseJudgement const& judged, TraverseOptions const& options) {
  QStringList list;
  double const allowed = options.angleLimit(judged.angles);
  if (options.allowedAngle > 0.0 && std::abs(judged.angle) > allowed) {
    list << Messages::tr("The angular misclosure is %1, beyond the limit of %2")
                .arg(angleText(judged.angle), angleText(allowed));
  }
  if (options.isBeyondRelative(judged.relative)) {
    list << Messages::tr("The relative misclosure is 1 : %1, beyond the limit of 1 : %2")
                .arg(1.0 / judged.relative, 0, 'f', 0)
                .arg(options.allowedRelative, 0, 'f', 0);
  }
  return list;
}

}  // namespace

std::string const& detail::lastPointOf(TraverseResult const& result) {
  TraverseInfo const& last = result.stations.back();
  return result.closing == TraverseClosing::AtForePoint ? last.forePoints.front().name : last.stationPoint.name;
}

void detail::nameWays(std::vector<FieldFinding>& findings, TraverseResult const& result) {
  std::string const& way = result.stations.front().forePoints.front().name;
  for (FieldFinding& finding : findings) {
    bool const isOfWhole = finding.station == result.stations.front().stationPoint.name && finding.targets.size() == 1;
    if (isOfWhole && finding.targets.front() != way) finding.targets.insert(finding.targets.begin(), way);
  }
}

void detail::judge(TraverseResult& result, JobState const& state, ObservedRounds const& observed) {
  Project const& project = *state.project;
  if (!result.summary.hasMisclosure || !faultOfErrors(project.getConfigure(), project.getNetwork()).isEmpty()) return;
  TraverseErrors const errors = traverseErrors(state, result.stations, observed);
  result.judgement = judgedTraverse(result.stations, result.summary, result.closing, errors);
  // What is missing is known, and needs no explanation.
  if (!legsWithoutDistance(result).empty()) result.judgement->suspects.clear();
}

namespace {

/// Legs of the chain of which both ends have other distances, by enough to be what it misses by.
QStringList contradictedLegs(TraverseResult const& result, std::vector<FieldFinding> const& ofNetwork) {
  std::set<std::pair<std::string, std::string>> legs;
  for (TraverseInfo const& station : result.stations) {
    std::string const& from = station.stationPoint.name;
    std::string const& to = station.forePoints.front().name;
    legs.insert({from, to});
    legs.insert({to, from});
  }
  QStringList list;
  for (FieldFinding const& finding : ofNetwork) {
    bool const isNone = !finding.isOfDistance || finding.targets.size() != 1;
    if (isNone || !(finding.cost > kShareOfClosing * result.summary.fs)) continue;
    if (legs.count({finding.station, finding.targets.front()}) != 0) list << worded(finding);
  }
  return list;
}

}  // namespace

QString detail::farBeyond(TraverseResult const& result, JobState const& state,
                          std::vector<FieldFinding> const& ofNetwork) {
  if (!result.judgement || state.traverseOptions.isForced) return {};
  QStringList const far = beyondAllowed(*result.judgement, kFarBeyond);
  if (far.isEmpty()) return {};
  QStringList parts;
  for (FieldFinding const& finding : findingsOnLegs(result, FieldFinding::kNoRow)) parts << finding.text;
  parts << contradictedLegs(result, ofNetwork) << far;
  return parts.join(". ") + explanation(result);
}

namespace {

/// Of 100 faultless positions 99 are within this many standard errors of the difference: the root of χ²(0.99; 2).
constexpr double kWithinShots = 3.035;
constexpr double kShotsWithoutErrors = 0.02;  // where nothing tells the errors, metres

/// A point that is shot from several stations, or is one of the chain, has several positions, of which the first stays.
class RepeatedPoints {
 public:
  explicit RepeatedPoints(TraverseResult const& result) {
    for (TraverseInfo const& station : result.stations) add(station.stationPoint, 0.0);
    for (PointInfo const& point : result.points) add(point, 0.0);
  }

  void compare(TraverseSidePoint const& side, std::vector<FieldFinding>& findings) {
    auto const [found, isFirst] = first.try_emplace(side.point.name, Position{side.point.x, side.point.y, side.mp});
    if (isFirst || side.isKnown) return;
    Position const& at = found->second;
    double const off = std::hypot(side.point.x - at.x, side.point.y - at.y);
    double const error = std::hypot(side.mp, at.error);
    double const allowed = std::isfinite(error) && error > 0.0 ? kWithinShots * error : kShotsWithoutErrors;
    if (!(off > allowed)) return;
    QString const text = Messages::tr(
        "the shot puts the point %1 from its other position, which stays; the a-priori "
        "errors allow %2");
    findings.push_back(
        {FieldFinding::Warning, side.station, {side.point.name}, text.arg(lengthText(off), lengthText(allowed))});
    findings.back().cost = off;
  }

 private:
  struct Position {
    double x;
    double y;
    double error;
  };

  void add(PointInfo const& point, double error) { first.try_emplace(point.name, Position{point.x, point.y, error}); }

  std::unordered_map<std::string, Position> first;
};

}  // namespace

namespace {

/// What a wrong mark moves the farthest point of the chain by; of a station within nothing tells it.
double costOfTurn(TraverseResult const& result, TraverseCheck const& check) {
  if (check.mark.empty()) return 0.0;
  auto const isThere = [&check](TraverseInfo const& station) { return station.stationPoint.name == check.station; };
  auto const station = std::find_if(result.stations.begin(), result.stations.end(), isThere);
  if (station == result.stations.end()) return 0.0;
  double farthest = 0.0;
  for (TraverseInfo const& other : result.stations) {
    farthest = std::max(farthest, std::hypot(other.stationPoint.x - station->stationPoint.x,
                                             other.stationPoint.y - station->stationPoint.y));
  }
  return std::abs(check.off) * farthest;
}

}  // namespace

std::vector<FieldFinding> detail::findingsOnSidePoints(TraverseResult const& result) {
  std::vector<FieldFinding> findings;
  RepeatedPoints repeated(result);
  for (TraverseSidePoint const& side : result.sidePoints) {
    repeated.compare(side, findings);
    double const off = std::hypot(side.offNorth, side.offEast);
    if (!(off > side.offAllowed)) continue;
    QString const text = Messages::tr("the side shot misses the known point by %1, where the a-priori errors allow %2");
    findings.push_back({FieldFinding::Warning,
                        side.station,
                        {side.point.name},
                        text.arg(lengthText(off), lengthText(side.offAllowed))});
    findings.back().cost = off;
  }
  return findings;
}

std::vector<FieldFinding> detail::findingsOnChecks(TraverseResult const& result) {
  std::vector<FieldFinding> findings;
  for (TraverseCheck const& check : result.checks) {
    if (!check.isBeyond()) continue;
    bool const isDistance = check.kind == TraverseCheck::Distance;
    double const size = std::abs(check.off);
    QString const off = isDistance ? lengthText(size) : angleText(size);
    QString const allowed = isDistance ? lengthText(check.allowed) : angleText(check.allowed);
    QString text =
        isDistance
            ? Messages::tr("the distance differs from the known coordinates by %1, where the a-priori errors allow %2")
            : Messages::tr("the direction misses the known point by %1, where the a-priori errors allow %2");
    if (!check.mark.empty()) {
      text = Messages::tr(
          "the known point and the mark %3 contradict each other by %1, where the a-priori errors allow %2; one "
          "of the two is wrong");
    }
    text = text.arg(off, allowed);
    if (!check.mark.empty()) text = text.arg(recordText(check.mark));
    findings.push_back({FieldFinding::Warning, check.station, {check.target}, text});
    findings.back().isOfDistance = isDistance;
    findings.back().cost = isDistance ? std::abs(check.off) : costOfTurn(result, check);
  }
  return findings;
}

std::vector<FieldFinding> detail::findingsOnMisclosures(JobState const& state, TraverseResult const& result,
                                                        std::size_t traverse) {
  std::vector<FieldFinding> findings;
  auto const tell = [&](QString const& text) {
    findings.push_back({FieldFinding::Warning, result.stations.front().stationPoint.name, {lastPointOf(result)}, text});
    findings.back().traverse = traverse;
  };
  if (!result.summary.hasMisclosure || state.asRead) return findings;
  if (!result.judgement) {
    tell(Messages::tr("The misclosures are not judged: %1")
             .arg(faultOfErrors(state.project->getConfigure(), state.project->getNetwork())));
    return findings;
  }
  QStringList const beyond = beyondAllowed(*result.judgement, 1.0);
  double const closing = std::hypot(result.summary.fx, result.summary.fy);
  for (QString const& text : beyond) {
    tell(text + (&text == &beyond.last() ? explanation(result) : QString()));
    findings.back().cost = std::isfinite(closing) ? closing : 0.0;
  }
  for (QString const& text : beyondLimits(*result.judgement, state.traverseOptions)) tell(text);
  return findings;
}

}  // namespace kvn
