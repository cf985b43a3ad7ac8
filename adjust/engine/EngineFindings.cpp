// What stands in the way of an adjustment: gross errors, points that nothing holds.
#include "adjust/engine/PlaneEngine.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/LooseGroups.h"
#include "adjust/start/StartSearch.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <optional>
#include <set>
#include <utility>

namespace kvn::detail {
namespace {

using utils::kSecondsPerRadian;
// A distance between known points is suspected from here on, in its a-priori errors: as every observation of a network
// that is not very large.
constexpr double kCritical = 5.0;
// Pivots of the normal equations, in metres and with equal weights, as a share of their diagonal elements, below which
// a motion counts as not felt; the second when the system has failed and the first finds nothing.
constexpr double kWeakness = 1e-10;
constexpr double kWeaknessOfFailure = 1e-8;
// The centre of a turn is a point's place when it lies this near, as a share of the distance to what turns.
constexpr double kAtPoint = 1e-3;

}  // namespace

void PlaneEngine::say(QString const& text, MessType type) const {
  if (tell) tell(text, type);
}

std::vector<HeldCoordinate> PlaneEngine::heldCoordinates(std::vector<Place> const& places) const {
  // Far below what is observed, and not so far that its weight takes the digits of the others.
  constexpr double kFixed = 1e-6;  // metres
  std::vector<HeldCoordinate> held;
  for (int const unknown : heldUnknowns) {
    Place const place = places[index(unknown / 2)];
    held.push_back({unknown, unknown % 2 == 0 ? place.real() : place.imag(), kFixed});
  }
  bool const isWeighted =
      std::any_of(holdingWeights.begin(), holdingWeights.end(), [](double weight) { return weight < kFixedWeight; });
  for (int k = 0; heldUnknowns.empty() && isWeighted && k < 2 * network.known; ++k) {
    held.push_back({k, given[index(k)], std::max(kFixed, 1.0 / std::sqrt(holdingWeights[index(k / 2)]))});
  }
  return held;
}

/// Where plain least squares do not settle about the coordinates of the walk, a search from the known points alone may
/// give better ones: it weighs all that is observed to a point.
void PlaneEngine::findSuspects(Coordinates const& about, bool improveStart) {
  tellProgress(AdjustProgress::Check);
  std::vector<Place> const places = placesOf(about);
  auto const searched = [this, &places] {
    StartSearch search(network, poll);
    for (int n = 0; n < network.known; ++n) search.place(n, places[index(n)]);
    std::vector<Place> found;
    if (!search.run()) return found;
    for (int n = 0; n < network.points; ++n) found.push_back(search.at(n));
    return found;
  };
  std::vector<HeldCoordinate> const held = heldCoordinates(places);
  NumberedNetwork loosened;
  if (!held.empty()) {
    loosened = network;
    loosened.known = 0;
  }
  NumberedNetwork const& judged = held.empty() ? network : loosened;
  if (improveStart && !detail::settles(judged, places, kCalculatorMove, poll, held)) {
    std::vector<Place> const better = searched();
    if (!better.empty() && detail::settles(judged, better, kCalculatorMove, poll, held)) {
      for (int n = network.known; n < network.points; ++n) {
        place(xy, n, better[index(n)].real(), better[index(n)].imag());
      }
    }
  }
  suspects.clear();
  // The fit looks at all sights at once. A gross error hardly leads it astray, and no other start need be tried.
  std::optional<GrossErrorSearch> search;
  if (hasFit()) search = grossErrors(judged, fitted(), {}, poll, held);
  if (!search) search = grossErrors(judged, places, searched, poll, held);
  suspectNumbers.clear();
  trustedPlaces.clear();
  if (search) {
    trustedPlaces = std::move(search->places);
    for (GrossError const& error : search->errors) {
      suspectNumbers.push_back(error.observation);
      suspects.push_back(suspectOf(error.observation, error.difference));
    }
  }
  addControlSuspects();
  tellSuspects();
}

void PlaneEngine::judgeObservations() {
  if (hasMisfits()) {
    findSuspects(start, false);
    return;
  }
  suspects.clear();
  addControlSuspects();
  tellSuspects();
}

/// The test of `grossErrors`, with the residuals of all observations taken together.
bool PlaneEngine::hasMisfits() const {
  Effort effort(poll);
  std::size_t const directions = network.directions.size();
  std::size_t const count = directions + network.lines.size();
  double const critical = criticalTest(count);
  double a[5];
  int at[5];
  for (std::size_t i = 0; i < count; ++i) {
    effort.step();
    bool const isDirection = i < directions;
    double const error =
        isDirection ? network.directions[i].error * kSecondsPerRadian : network.lines[i - directions].error;
    double const residual = isDirection ? directionResiduals[i] : lineResiduals[i - directions];
    int const size = equationFactors(i, a, at);
    double const checked = 1.0 - cofactor(a, at, size) / (error * error);
    if (checked >= kUncheckedShare && !(std::abs(residual) <= critical * error * std::sqrt(checked))) return true;
  }
  return false;
}

void PlaneEngine::tellSuspects() const {
  if (!suspects.empty()) say(worded(suspects), Warning);
}

SuspectObservation PlaneEngine::suspectOf(int observation, double difference) const {
  SuspectObservation suspect;
  auto const directions = static_cast<int>(network.directions.size());
  suspect.isDirection = observation < directions;
  if (suspect.isDirection) {
    NumberedNetwork::Direction const& direction = network.direction(observation);
    suspect.from = nameOf(network.pointOf(direction.station));
    suspect.to = nameOf(direction.target);
    suspect.difference = -difference * kSecondsPerRadian;
  } else {
    NumberedNetwork::Line const& line = network.line(observation - directions);
    suspect.from = nameOf(line.start);
    suspect.to = nameOf(line.end);
    suspect.difference = -difference;
  }
  return suspect;
}

void PlaneEngine::addControlSuspects() {
  if (!countControlLines) return;
  double a[4];
  int at[4];
  for (NumberedNetwork::Line const& line : controlLines) {
    double const difference = line.value - distanceFactors(line.start, line.end, a, at);
    if (!(std::abs(difference) > kCritical * line.error)) continue;
    suspects.push_back({false, nameOf(line.start), nameOf(line.end), difference});
  }
}

/// What the points can do tells more than that the system has no solution.
void PlaneEngine::explainFailure() {
  determine(true);
  // Gross errors that have been told may be the reason.
  if (!coincidentPoints.empty() || !looseMotions.empty() || !suspects.empty()) return;
  say(Messages::tr("The normal equations lose their digits: the a-priori errors or the lengths of the sights are too "
                   "different in size"),
      Error);
}

void PlaneEngine::determine(bool hasFailed) {
  findCoincidentPoints();
  looseMotions.clear();
  if (coincidentPoints.empty()) findLooseMotions(hasFailed);
  if (!coincidentPoints.empty()) {
    QStringList pairs;
    for (auto const& [a, b] : coincidentPoints) {
      pairs << QStringLiteral("%1, %2").arg(QString::fromStdString(a), QString::fromStdString(b));
    }
    say(Messages::tr("Observations between points at one place: %1").arg(pairs.join(QStringLiteral("; "))), Error);
  }
  if (!looseMotions.empty()) say(worded(looseMotions), Error);
}

void PlaneEngine::findCoincidentPoints() {
  std::set<std::pair<std::string, std::string>> pairs;
  auto const look = [&](int a, int b) {
    bool const isOnePlace =
        x0y0[2 * index(a)] == x0y0[2 * index(b)] && x0y0[2 * index(a) + 1] == x0y0[2 * index(b) + 1];
    if (isOnePlace) pairs.insert(std::minmax(nameOf(a), nameOf(b)));
  };
  for (NumberedNetwork::Direction const& d : network.directions) look(network.pointOf(d.station), d.target);
  for (NumberedNetwork::Line const& line : network.lines) look(line.start, line.end);
  coincidentPoints.assign(pairs.begin(), pairs.end());
}

/// About the approximate coordinates, since those of a failed iteration may be anything.
void PlaneEngine::findLooseMotions(bool hasFailed) {
  std::vector<Place> const places = placesOf(x0y0);
  NetworkState const state = orientedState(network, places, poll);
  std::vector<LooseGroup> groups = looseGroups(network, state, kWeakness, poll);
  if (groups.empty() && hasFailed) groups = looseGroups(network, state, kWeaknessOfFailure, poll);
  for (LooseGroup const& group : groups) {
    LooseMotion motion;
    motion.kind = group.motion;
    motion.azimuth = group.azimuth;
    motion.x = group.centre.real();
    motion.y = group.centre.imag();
    bool const hasCentre = group.motion == LooseMotion::Turn || group.motion == LooseMotion::Scale;
    double nearest = kAtPoint * std::abs(places[index(group.points.front())] - group.centre);
    for (int n = 0; hasCentre && n < network.points; ++n) {
      if (std::abs(places[index(n)] - group.centre) >= nearest) continue;
      nearest = std::abs(places[index(n)] - group.centre);
      motion.centre = nameOf(n);
    }
    for (int const point : group.points) motion.names.push_back(nameOf(point));
    looseMotions.push_back(std::move(motion));
  }
}

}  // namespace kvn::detail
