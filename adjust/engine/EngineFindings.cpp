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
    if (ownerDirections != nullptr) suspect.number = static_cast<int>((*ownerDirections)[index(observation)]);
  } else {
    NumberedNetwork::Line const& line = network.line(observation - directions);
    suspect.from = nameOf(line.start);
    suspect.to = nameOf(line.end);
    suspect.difference = -difference;
    if (ownerDirections != nullptr) suspect.number = observation - directions;
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

/// Two points to hold a free network by, so that all other motions are those of points against them: they have a
/// distance between them, unless none is measured and the scale is free, and most observations.
std::pair<int, int> PlaneEngine::firmPair() const {
  std::vector<int> observations(index(network.points), 0);
  auto const count = [&](int a, int b) {
    ++observations[index(a)];
    ++observations[index(b)];
  };
  for (NumberedNetwork::Line const& line : network.lines) count(line.start, line.end);
  for (NumberedNetwork::Direction const& d : network.directions) count(network.pointOf(d.station), d.target);
  std::pair<int, int> firm{0, 1};
  int most = 0;
  auto const look = [&](int a, int b) {
    int const least = std::min(observations[index(a)], observations[index(b)]);
    if (least > most) firm = {a, b};
    most = std::max(most, least);
  };
  for (NumberedNetwork::Line const& line : network.lines) look(line.start, line.end);
  if (!network.lines.empty()) return firm;
  for (NumberedNetwork::Direction const& d : network.directions) look(network.pointOf(d.station), d.target);
  return firm;
}

/// The network with two points in front, as known ones.
///
/// @param numberOf  becomes the new number of each point.
NumberedNetwork PlaneEngine::heldInFront(std::pair<int, int> const& firm, std::vector<int>& numberOf) const {
  numberOf.assign(index(network.points), -1);
  NumberedNetwork held = network;
  held.known = 2;
  numberOf[index(firm.first)] = 0;
  numberOf[index(firm.second)] = 1;
  int next = held.known;
  for (int& number : numberOf) {
    if (number < 0) number = next++;
  }
  for (int& point : held.stationPoint) point = numberOf[index(point)];
  for (NumberedNetwork::Direction& direction : held.directions) direction.target = numberOf[index(direction.target)];
  for (NumberedNetwork::Line& line : held.lines) {
    line.start = numberOf[index(line.start)];
    line.end = numberOf[index(line.end)];
  }
  held.blockOrder.clear();
  held.buildLookups(poll);
  return held;
}

/// About the approximate coordinates, since those of a failed iteration may be anything. Of a free network the motions
/// against two points of it.
void PlaneEngine::findLooseMotions(bool hasFailed) {
  std::vector<Place> const places = placesOf(x0y0);
  auto const groupsOf = [&](NumberedNetwork const& net, std::vector<Place> const& at) {
    NetworkState const state = orientedState(net, at, poll);
    std::vector<LooseGroup> found = looseGroups(net, state, kWeakness, poll);
    if (found.empty() && hasFailed) found = looseGroups(net, state, kWeaknessOfFailure, poll);
    return found;
  };
  std::vector<LooseGroup> groups;
  if (heldUnknowns.empty()) {
    groups = groupsOf(network, places);
  } else {
    std::vector<int> numberOf;
    NumberedNetwork const held = heldInFront(firmPair(), numberOf);
    std::vector<Place> at(places.size());
    std::vector<int> pointOf(places.size());
    for (std::size_t p = 0; p < places.size(); ++p) {
      at[index(numberOf[p])] = places[p];
      pointOf[index(numberOf[p])] = static_cast<int>(p);
    }
    groups = groupsOf(held, at);
    for (LooseGroup& group : groups) {
      for (int& point : group.points) point = pointOf[index(point)];
    }
  }
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
