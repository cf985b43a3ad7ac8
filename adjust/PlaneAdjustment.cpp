#include "adjust/PlaneAdjustment.h"

#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/input/CalculationFailure.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"
#include "core/AlgorithmException.h"
#include "records/detail/Messages.h"

#include <utils/QLogicError.h>

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::NumberedNetwork;
using detail::PlaneEngine;

// No coordinate moves by more than this in the last round, metres.
constexpr double kSettledMove = 1e-5;

/// The middle one of the errors; 0 of none.
double medianError(std::vector<double> errors) {
  if (errors.empty()) return 0.0;
  auto const middle = errors.begin() + static_cast<std::ptrdiff_t>(errors.size() / 2);
  std::nth_element(errors.begin(), middle, errors.end());
  return *middle;
}

bool isNumber(std::size_t size, int number) { return number >= 0 && index(number) < size; }

/// A record that a program filled may hold anything.
class SoundnessCheck {
 public:
  SoundnessCheck(PlaneNetwork const& checked, bool hasReadings) : network(checked), readsValues(hasReadings) {}

  void run() const {
    if (network.points.size() < 2 || network.directions.size() + network.distances.size() == 0) {
      throw AlgorithmException(AlgorithmException::StationNotEnough, std::string());
    }
    for (PlaneNetwork::Point const& point : network.points) {
      bool const isSound =
          point.error >= 0.0 && std::isfinite(point.error) && (!point.isKnown || std::isfinite(point.x + point.y));
      if (!isSound) throw AlgorithmException(AlgorithmException::DataError, point.name);
    }
    for (PlaneNetwork::SetUp const& setUp : network.setUps) requireNumbers(setUp.station, setUp.station);
    for (PlaneNetwork::Direction const& d : network.directions) {
      if (!isNumber(network.setUps.size(), d.setUp))
        throw AlgorithmException(AlgorithmException::DataError, "Data error");
      requireUsable(network.setUps[index(d.setUp)].station, d.target, !readsValues || std::isfinite(d.value), d.error,
                    d.origin);
    }
    for (PlaneNetwork::Distance const& d : network.distances) {
      bool const hasValue = d.value > 0.0 && std::isfinite(d.value);
      requireUsable(d.from, d.to, !readsValues || hasValue, d.error, d.origin);
    }
  }

 private:
  void requireNumbers(int from, int to) const {
    bool const areThere = isNumber(network.points.size(), from) && isNumber(network.points.size(), to);
    if (!areThere) throw AlgorithmException(AlgorithmException::DataError, "Data error");
  }

  void requireUsable(int from, int to, bool hasValue, double error, PlaneNetwork::Origin const& origin) const {
    requireNumbers(from, to);
    if (from != to && hasValue && error > 0.0 && std::isfinite(error)) return;
    QString text = Messages::tr("The observation from %1 to %2 has no usable value or a-priori error");
    text = text.arg(QString::fromStdString(network.points[index(from)].name),
                    QString::fromStdString(network.points[index(to)].name));
    throw origin.line > 0 ? detail::CalculationFailure(Messages::tr("Line %1: %2").arg(origin.line).arg(text))
                          : detail::CalculationFailure(text);
  }

  PlaneNetwork const& network;
  bool readsValues;
};

void requireSound(PlaneSettings const& settings) {
  if (!(settings.confidence > 0.0 && settings.confidence < 1.0)) {
    throw std::invalid_argument("the confidence lies between 0 and 1");
  }
  if (!(settings.centring >= 0.0 && std::isfinite(settings.centring))) {
    throw std::invalid_argument("the centring error is 0 or more");
  }
  if (settings.leavesOutSuspects && settings.weighsDownSuspects) {
    throw std::invalid_argument("suspects are left out or weighed down, not both");
  }
}

}  // namespace

PlaneAdjustment::PlaneAdjustment(PlaneNetwork network, PlaneSettings settings)
    : PlaneAdjustment(std::make_shared<PlaneNetwork const>(std::move(network)), settings) {}

PlaneAdjustment::PlaneAdjustment(std::shared_ptr<PlaneNetwork const> network, PlaneSettings settings) {
  if (network == nullptr) throw std::invalid_argument("there is no network to adjust");
  own = std::make_unique<Data>(std::move(network), settings);
}

PlaneAdjustment::PlaneAdjustment(PlaneAdjustment&&) noexcept = default;
PlaneAdjustment& PlaneAdjustment::operator=(PlaneAdjustment&&) noexcept = default;
PlaneAdjustment::~PlaneAdjustment() = default;

void PlaneAdjustment::setCancelCall(std::function<bool()> call) { own->cancelCall = std::move(call); }
void PlaneAdjustment::setProgressCall(AdjustProgressCall call) { own->engine.progress = std::move(call); }
void PlaneAdjustment::setTellFindings(bool tell) { own->tellFindings = tell; }

PlaneNetwork const& PlaneAdjustment::network() const { return own->network; }
PlaneResult const& PlaneAdjustment::result() const { return own->result; }
std::vector<UnplacedPoint> const& PlaneAdjustment::unplacedPoints() const { return own->engine.unplacedPoints; }
std::vector<SuspectObservation> const& PlaneAdjustment::suspects() const { return own->engine.suspects; }
std::vector<LooseMotion> const& PlaneAdjustment::looseMotions() const { return own->engine.looseMotions; }
std::vector<std::pair<std::string, std::string>> const& PlaneAdjustment::coincidentPoints() const {
  return own->engine.coincidentPoints;
}

void PlaneAdjustment::setDirectionUsed(std::size_t direction, bool isUsed) {
  own->isDirectionOut.resize(own->network.directions.size(), false);
  own->isDirectionOut.at(direction) = !isUsed;
}

void PlaneAdjustment::setDistanceUsed(std::size_t distance, bool isUsed) {
  own->isDistanceOut.resize(own->network.distances.size(), false);
  own->isDistanceOut.at(distance) = !isUsed;
}

PlaneResult const& PlaneAdjustment::adjust() {
  own->begin(true);
  own->run();
  return own->result;
}

PlaneResult const& PlaneAdjustment::adjustAgain() {
  if (!own->isAdjusted) return adjust();
  own->isAdjusted = false;
  own->result = PlaneResult();
  own->takeCalls();
  if (own->iterateAgain()) {
    own->finish();
  } else {
    own->run();
  }
  return own->result;
}

void PlaneAdjustment::Data::takeCalls() {
  engine.poll = [call = cancelCall] {
    if (call && call()) throw QLogicError(Messages::tr("User Cancel"));
  };
  engine.tell = tellFindings ? Messages::send : nullptr;
}

void PlaneAdjustment::Data::run() {
  solve();
  finish();
}

void PlaneAdjustment::Data::solve() {
  if (isFree()) {
    runFree();
  } else {
    number();
    place();
    iterate();
  }
}

void PlaneAdjustment::Data::finish() {
  takeResults();
  if (!settings.weighsDownSuspects) judge();
  if (settings.weighsDownSuspects || settings.leavesOutSuspects) treatSuspects();
  findCommonControl();
  findTwins();
  isAdjusted = settings.keepsSystem;
  if (!settings.keepsSystem) keepResultsOnly();
}

/// Beside the results, what the host can ask for.
void PlaneAdjustment::Data::keepResultsOnly() {
  PlaneEngine rest;
  rest.progress = std::move(engine.progress);
  rest.unplacedPoints = std::move(engine.unplacedPoints);
  rest.suspects = std::move(engine.suspects);
  rest.looseMotions = std::move(engine.looseMotions);
  rest.coincidentPoints = std::move(engine.coincidentPoints);
  engine = std::move(rest);
  numberOfPoint = {};
  pointOfNumber = {};
  directionOf = {};
  setUpOfStation = {};
  isLeftOut = {};
  robustWeights = {};
  datum = {};
  datumPlaces = {};
}

/// Where the network does not settle so, the result is that without it.
void PlaneAdjustment::Data::treatSuspects() {
  try {
    return settings.weighsDownSuspects ? weighDown() : leaveOutSuspects();
  } catch (AlgorithmException const&) {          // NOLINT(bugprone-empty-catch): told below
  } catch (detail::CalculationFailure const&) {  // NOLINT(bugprone-empty-catch)
  }
  solve();
  result = PlaneResult();
  result.untreated =
      settings.weighsDownSuspects
          ? Messages::tr("The adjustment does not settle with robust weights: its results are those without them")
          : Messages::tr("The adjustment does not settle when suspects are left out: its results are those with all");
  if (engine.tell) engine.tell(result.untreated, Warning);
  takeResults();
  judge();
}

void PlaneAdjustment::Data::begin(bool readsValues) {
  requireSound(settings);
  SoundnessCheck(network, readsValues).run();
  result = PlaneResult();
  isAdjusted = false;
  takeCalls();
}

/// Known points first, then the others, each in the order of the network. A set-up without a direction has no unknown.
void PlaneAdjustment::Data::number() {
  engine.network = NumberedNetwork();
  engine.names = NameIndex();
  engine.heldUnknowns.clear();
  engine.holdingWeights.clear();
  engine.hints.clear();
  engine.isDamped = false;
  engine.hasCommonOrientations = true;
  engine.fitsByOrientations = true;
  engine.ownerDirections = &directionOf;
  engine.smallestMove = kSettledMove;
  engine.iterationLimit = settings.iterationLimit;
  engine.sparseFrom = settings.sparseFrom;
  engine.keepsNormals = settings.keepsSystem;
  numberPoints();
  numberDirections();
  numberDistances();
  engine.prepare();
  takeOut();
}

/// A known point that nothing observes says nothing, and would stand in the way of a free network.
std::vector<bool> PlaneAdjustment::Data::observedPoints() const {
  std::vector<bool> isObserved(network.points.size(), false);
  for (PlaneNetwork::Direction const& d : network.directions) {
    isObserved[index(d.target)] = isObserved[index(network.setUps[index(d.setUp)].station)] = true;
  }
  for (PlaneNetwork::Distance const& d : network.distances) isObserved[index(d.from)] = isObserved[index(d.to)] = true;
  return isObserved;
}

void PlaneAdjustment::Data::numberPoints() {
  std::vector<bool> const isObserved = observedPoints();
  NumberedNetwork& numbered = engine.network;
  numberOfPoint.assign(network.points.size(), -1);
  pointOfNumber.clear();
  QStringList unobserved;
  for (bool const isKnown : {true, false}) {
    for (std::size_t p = 0; p < network.points.size(); ++p) {
      if (network.points[p].isKnown != isKnown) continue;
      if (isKnown && !isObserved[p]) {
        unobserved << QString::fromStdString(network.points[p].name);
        continue;
      }
      numberOfPoint[p] = static_cast<int>(pointOfNumber.size());
      pointOfNumber.push_back(p);
    }
    if (isKnown) numbered.known = static_cast<int>(pointOfNumber.size());
  }
  numbered.points = static_cast<int>(pointOfNumber.size());
  if (!unobserved.isEmpty() && engine.tell) {
    engine.tell(Messages::tr("Known points without an observation are left out: %1").arg(listedNames(unobserved)),
                Warning);
  }
  engine.xy.clear();
  for (std::size_t const p : pointOfNumber) {
    PlaneNetwork::Point const& point = network.points[p];
    if (engine.names.contains(point.name)) {
      throw detail::CalculationFailure(
          Messages::tr("Two points have the name %1").arg(QString::fromStdString(point.name)));
    }
    engine.names.numberOf(point.name);
    bool const hasPlace = std::isfinite(point.x + point.y);
    engine.xy.push_back(hasPlace ? point.x : detail::kMissing);
    engine.xy.push_back(hasPlace ? point.y : 0.0);
    if (!point.isKnown) continue;
    constexpr double kFixed = 1e-9;  // metres; a smaller error is none
    engine.holdingWeights.push_back(point.error < kFixed ? PlaneEngine::kFixedWeight
                                                         : 1.0 / (point.error * point.error));
  }
}

void PlaneAdjustment::Data::numberDirections() {
  NumberedNetwork& numbered = engine.network;
  std::vector<int> setUps;
  setUps.reserve(network.directions.size());
  for (PlaneNetwork::Direction const& direction : network.directions) setUps.push_back(direction.setUp);
  detail::NumberLists const ofSetUp(static_cast<int>(network.setUps.size()), setUps);
  engine.directionWeights.clear();
  engine.directionWeights.reserve(setUps.size());
  directionOf.clear();
  directionOf.reserve(setUps.size());
  setUpOfStation.clear();
  numbered.directionStart = {0};
  numbered.directions.reserve(setUps.size());
  std::vector<double> errors;
  errors.reserve(setUps.size());
  for (std::size_t s = 0; s < network.setUps.size(); ++s) {
    if (ofSetUp.of(static_cast<int>(s)).empty()) continue;
    auto const station = static_cast<int>(setUpOfStation.size());
    setUpOfStation.push_back(s);
    numbered.stationPoint.push_back(numberOfPoint[index(network.setUps[s].station)]);
    for (int const d : ofSetUp.of(static_cast<int>(s))) {
      PlaneNetwork::Direction const& direction = network.directions[index(d)];
      numbered.directions.push_back(
          {station, numberOfPoint[index(direction.target)], direction.value, direction.error});
      double const seconds = direction.error * kSecondsPerRadian;
      engine.directionWeights.push_back(1.0 / (seconds * seconds));
      directionOf.push_back(index(d));
      errors.push_back(direction.error);
    }
    numbered.directionStart.push_back(static_cast<int>(numbered.directions.size()));
  }
  numbered.directionError = medianError(std::move(errors));
}

void PlaneAdjustment::Data::numberDistances() {
  engine.lineWeights.clear();
  engine.lineWeights.reserve(network.distances.size());
  engine.network.lines.reserve(network.distances.size());
  std::vector<double> errors;
  errors.reserve(network.distances.size());
  for (PlaneNetwork::Distance const& d : network.distances) {
    engine.network.lines.push_back({numberOfPoint[index(d.from)], numberOfPoint[index(d.to)], d.value, d.error});
    engine.lineWeights.push_back(1.0 / (d.error * d.error));
    errors.push_back(d.error);
  }
  engine.network.distanceFixed = medianError(std::move(errors));
}

/// Approximate coordinates serve where the observations leave a choice, and where no search places a point. A free
/// network without two known points is laid on them.
void PlaneAdjustment::Data::place() {
  NumberedNetwork const& numbered = engine.network;
  bool const hasDistances = !numbered.lines.empty();
  if (isFree() && numbered.known < 2) {
    placeFirstPoints();
  } else {
    takeHints();
    detail::forgetUnknown(numbered, engine.xy);
  }
  bool const isPlaced =
      engine.placePoints(hasDistances ? PlaneEngine::Walk::ByDistances : PlaneEngine::Walk::ByTriangles);
  if (!isPlaced) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No enough data");
  engine.x0y0 = engine.xy;
  datumPlaces = engine.xy;
  addCentring();
}

void PlaneAdjustment::Data::takeHints() {
  NumberedNetwork const& numbered = engine.network;
  bool hasAny = false;
  for (int n = 0; n < numbered.points; ++n) {
    bool const isHint = n >= numbered.known && detail::isPlaced(engine.xy, n);
    hasAny = hasAny || isHint;
    engine.hints.push_back(isHint ? detail::Place(engine.xy[2 * index(n)], engine.xy[2 * index(n) + 1])
                                  : detail::kNoPlace);
  }
  if (!hasAny) engine.hints.clear();
}

/// A network that nothing holds lies anywhere: on its first line, along the x axis from 0, 0 or from the one point that
/// has a place.
void PlaneAdjustment::Data::placeFirstPoints() {
  NumberedNetwork const& numbered = engine.network;
  int first = -1;
  int placed = 0;
  for (int n = 0; n < numbered.points; ++n) {
    if (!detail::isPlaced(engine.xy, n)) continue;
    first = n;
    ++placed;
  }
  if (placed >= 2) return;
  auto const lay = [&](int a, int b, double length) {
    if (first >= 0 && a != first && b != first) return false;
    int const from = b == first ? b : a;
    if (first < 0) detail::place(engine.xy, from, 0.0, 0.0);
    detail::place(engine.xy, from == a ? b : a, engine.xy[2 * index(from)] + length, engine.xy[2 * index(from) + 1]);
    return true;
  };
  for (NumberedNetwork::Line const& line : numbered.lines) {
    if (lay(line.start, line.end, line.value)) return;
  }
  constexpr double kAnyLength = 100.0;
  for (NumberedNetwork::Direction const& direction : numbered.directions) {
    if (lay(numbered.pointOf(direction.station), direction.target, kAnyLength)) return;
  }
}

/// From the current lengths of the sights. One that is left out stays without weight. @return the largest change of an
/// error, as a share of it.
double PlaneAdjustment::Data::addCentring(double leastChange) {
  double const variance = 2.0 * settings.centring * settings.centring;
  if (!(variance > 0.0)) return 0.0;
  double largest = 0.0;
  double a[4];
  int at[4];
  std::size_t const directions = engine.network.directions.size();
  std::vector<double> errors(directions);
  for (std::size_t d = 0; d < directions; ++d) {
    NumberedNetwork::Direction const& direction = engine.network.directions[d];
    double const length = engine.distanceFactors(engine.network.pointOf(direction.station), direction.target, a, at);
    errors[d] = std::hypot(network.directions[directionOf[d]].error, std::sqrt(variance) / length);
    if (!isLeftOut[d]) largest = std::max(largest, std::abs(errors[d] - direction.error) / errors[d]);
  }
  if (largest < leastChange) return largest;
  for (std::size_t d = 0; d < directions; ++d) {
    engine.network.directions[d].error = isLeftOut[d] ? kLeftOutFactor * errors[d] : errors[d];
    double const seconds = errors[d] * kSecondsPerRadian;
    engine.directionWeights[d] = isLeftOut[d] ? 0.0 : 1.0 / (seconds * seconds);
  }
  for (std::size_t e = 0; e < engine.network.lines.size(); ++e) {
    NumberedNetwork::Line& line = engine.network.lines[e];
    line.error = std::hypot(network.distances[e].error, std::sqrt(variance));
    engine.lineWeights[e] = isLeftOut[directions + e] ? 0.0 : 1.0 / (line.error * line.error);
    if (isLeftOut[directions + e]) line.error *= kLeftOutFactor;
  }
  return largest;
}

void PlaneAdjustment::Data::iterate() {
  if (isFree()) chooseHeldUnknowns();
  if (engine.redundancy() - leftOutCount() < 0) fail();
  if (!engine.tryToSettle()) iterateDamped();
  // Lengths from poor approximate coordinates have given poor weights to short sights.
  constexpr double kSameErrors = 1e-3;
  if (addCentring(kSameErrors) >= kSameErrors) settle();
  if (isFree()) layOnDatum();
  if (!engine.invert()) fail();
}

/// Further rounds from where the network is.
void PlaneAdjustment::Data::settle() {
  PlaneEngine::Outcome const outcome = engine.iterateUpTo(engine.iterationLimit);
  if (outcome == PlaneEngine::Outcome::Singular) fail();
  if (outcome == PlaneEngine::Outcome::Unsettled) {
    throw detail::CalculationFailure(Messages::tr("total station data is error"));
  }
}

/// Where plain rounds do not settle: from the places that the observations say which are not suspected, with steps that
/// do not make the sum of squares larger. When the suspects still pull the network about they lose their weight.
void PlaneAdjustment::Data::iterateDamped() {
  engine.xy = engine.x0y0;
  engine.findSuspects(engine.xy, true);
  useTrustedPlaces();
  engine.start = engine.xy;
  engine.isDamped = true;
  PlaneEngine::Outcome const outcome = engine.iterateUpTo(engine.iterationLimit);
  if (outcome == PlaneEngine::Outcome::Settled) return;
  if (engine.suspectNumbers.empty()) settle();  // tells why
  for (int const suspect : engine.suspectNumbers) leaveOut(suspect);
  hasLostSuspects = true;
  if (engine.tell) {
    engine.tell(
        Messages::tr("The adjustment does not settle with the suspected observations: they have no weight in it"),
        Warning);
  }
  useTrustedPlaces();
  settle();
}

void PlaneAdjustment::Data::useTrustedPlaces() {
  for (int n = engine.network.known; n < static_cast<int>(engine.trustedPlaces.size()); ++n) {
    detail::Place const place = engine.trustedPlaces[index(n)];
    detail::place(engine.xy, n, place.real(), place.imag());
  }
}

/// What can move is told of the network without the observations that are out.
void PlaneAdjustment::Data::fail() {
  if (leftOutCount() > 0) forgetLeftOut();
  engine.explainFailure();
  throw AlgorithmException(AlgorithmException::DataError, "Calculate failed");
}

}  // namespace kvn
