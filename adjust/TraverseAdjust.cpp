// The run of the literal adjustment, and its steps for derived classes.
#include "adjust/TraverseAdjust.h"

#include "adjust/engine/TraverseAdjustData.h"
#include "adjust/input/CalculationFailure.h"
#include "adjust/input/Missing.h"
#include "adjust/linalg/Index.h"
#include "core/AlgorithmException.h"
#include "records/detail/Messages.h"

#include <utils/QLogicError.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::PlaneEngine;

constexpr char const* kNotEnough = "No enough data";

}  // namespace

TraverseAdjust::TraverseAdjust() : TraverseAdjust(2.0, 0.003, 3e-6, true) {}

TraverseAdjust::TraverseAdjust(double directionError, double fixedError, double proportionError, bool expression)
    : own(std::make_unique<Data>()) {
  own->angleError = directionError;
  own->lineFixedError = fixedError;
  own->lineProportionError = proportionError;
  own->lineCalculateExpression = expression;
}

TraverseAdjust::TraverseAdjust(TraverseAdjust const& other)
    : Matrix(other), utils::IProcessCancel(other), own(std::make_unique<Data>(*other.own)) {}

TraverseAdjust& TraverseAdjust::operator=(TraverseAdjust const& other) {
  if (this == &other) return *this;
  auto copy = std::make_unique<Data>(*other.own);
  Matrix::operator=(other);
  utils::IProcessCancel::operator=(other);
  own = std::move(copy);
  return *this;
}

TraverseAdjust::~TraverseAdjust() = default;

std::size_t TraverseAdjust::ij(int i, int j) { return Matrix::ij(i, j); }

void TraverseAdjust::setIterationLimit(int rounds) { own->engine.iterationLimit = rounds; }
void TraverseAdjust::setCountControlDistances(bool count) { own->engine.countControlLines = count; }
void TraverseAdjust::setProgressCall(AdjustProgressCall call) { own->engine.progress = std::move(call); }
void TraverseAdjust::setTellFindings(bool tell) { own->tellFindings = tell; }

void TraverseAdjust::setSparseFrom(int unknowns) {
  own->engine.sparseFrom = unknowns;
  own->engine.normals.reset();
}

void TraverseAdjust::checkCancelAndThrow() const {
  if (isCancel()) throw QLogicError(Messages::tr("User Cancel"));
}

TraverseAdjust::Data& TraverseAdjust::ready() const {
  // Anew each time: the object may be a copy of the one that the calls were made for.
  own->engine.poll = [this] { checkCancelAndThrow(); };
  own->engine.tell = own->tellFindings ? Messages::send : nullptr;
  return *own;
}

void TraverseAdjust::requirePlaces(bool arePlaced, int failure) const {
  if (!arePlaced) throw AlgorithmException(static_cast<AlgorithmException::ErrorType>(failure), kNotEnough);
}

void TraverseAdjust::calculateX0Y0() {
  PlaneEngine& engine = ready().engine;
  detail::forgetUnknown(engine.network, engine.xy);
  requirePlaces(engine.placePoints(PlaneEngine::Walk::ByDistances), AlgorithmException::KnownPointNotEnough);
}

void TraverseAdjust::calculateX0Y0OnlyAngle() {
  PlaneEngine& engine = ready().engine;
  detail::forgetUnknown(engine.network, engine.xy);
  requirePlaces(engine.placePoints(PlaneEngine::Walk::ByTriangles), AlgorithmException::DataError);
}

void TraverseAdjust::calculateX0Y00910() {
  PlaneEngine& engine = ready().engine;
  requirePlaces(engine.network.points != engine.network.known, AlgorithmException::KnownPointNotEnough);
  detail::walkByNumbers(engine.network, engine.xy);
}

void TraverseAdjust::calculateApproximate() {
  PlaneEngine& engine = own->engine;
  if (!engine.network.lines.empty()) {
    calculateX0Y0();
  } else {
    calculateX0Y0OnlyAngle();
  }
  engine.x0y0 = engine.xy;
}

void TraverseAdjust::calculateAdjust() {
  calculateApproximate();
  PlaneEngine& engine = ready().engine;
  bool const settled = engine.tryToSettle();
  if (!settled) {
    engine.xy = engine.x0y0;
    engine.findSuspects(engine.xy, true);
    iterate();
  }
  if (!engine.invert()) fail();
  engine.tellProgress(AdjustProgress::Results);
  calculateResults();
  if (settled) ready().engine.judgeObservations();
}

void TraverseAdjust::Adjust(AlgorithmData const& input) {
  readAlgorithmData(input);
  calculateAdjust();
}

void TraverseAdjust::iterate() {
  PlaneEngine& engine = ready().engine;
  bool const isSolvable = engine.redundancy() >= 0;
  PlaneEngine::Outcome const outcome =
      isSolvable ? engine.iterateUpTo(engine.iterationLimit) : PlaneEngine::Outcome::Singular;
  if (outcome == PlaneEngine::Outcome::Singular) fail();
  if (outcome == PlaneEngine::Outcome::Unsettled) {
    throw detail::CalculationFailure(Messages::tr("total station data is error"));
  }
}

void TraverseAdjust::fail() const {
  ready().engine.explainFailure();
  throw AlgorithmException(AlgorithmException::DataError, "Calculate failed");
}

void TraverseAdjust::checkObservations() {
  PlaneEngine& engine = ready().engine;
  engine.findSuspects(engine.xy, false);
}

void TraverseAdjust::checkDetermination() { ready().engine.determine(false); }

// ---- Steps.

int TraverseAdjust::getPointNumber(std::string const& name) {
  NameIndex& names = own->engine.names;
  return names.size() < own->pointsCount() ? names.numberOf(name) : names.find(name);
}

bool TraverseAdjust::lineEqual(LineInfo const& a, LineInfo const& b) const {
  return (a.start_name == b.start_name && a.end_name == b.end_name) ||
         (a.start_name == b.end_name && a.end_name == b.start_name);
}

double TraverseAdjust::calculateAzimuth(int i, int j) const { return detail::azimuthBetween(own->engine.xy, i, j); }

double TraverseAdjust::getAzimuth(int, int) const { return detail::kMissing; }  // azimuth observations are refused

double TraverseAdjust::getLine(int i, int j) const { return detail::observedDistance(own->engine.network, i, j); }

double TraverseAdjust::getAngle(int station, int i, int j) const {
  return detail::observedAngle(own->engine.network, station, i, j);
}

void TraverseAdjust::calculateBTPB() { ready().engine.buildNormals(); }

void TraverseAdjust::requireUnknowns(int const* at, int n) const {
  int const unknowns = own->engine.unknowns();
  if (!std::all_of(at, at + n, [unknowns](int number) { return number >= 0 && number < unknowns; })) fail();
}

void TraverseAdjust::calculateBTPBi(double const* a, int const* at, double p, double l, int n) {
  PlaneEngine& engine = ready().engine;
  requireUnknowns(at, n);
  engine.needNormals();
  engine.normals->addAnyEquation(a, at, n, p, l);
}

double TraverseAdjust::calculateAB(int i, int j, double* a, int* at) const {
  return own->engine.azimuthFactors(i, j, a, at);
}

double TraverseAdjust::calculateCD(int i, int j, double* a, int* at) const {
  return own->engine.distanceFactors(i, j, a, at);
}

double TraverseAdjust::calculateDx() {
  PlaneEngine& engine = ready().engine;
  engine.needNormals();
  if (!engine.solve()) fail();
  engine.needInverse();
  return engine.largestMove;
}

double TraverseAdjust::calculateQQ(double const* a, int const* at) const {
  PlaneEngine& engine = ready().engine;
  requireUnknowns(at, 4);
  engine.needNormals();
  return Data::thresholded(engine.normals->anyCofactor(a, at, 4));
}

double TraverseAdjust::calculateV() {
  Data& state = ready();
  PlaneEngine& engine = state.engine;
  engine.calculateResiduals();
  double pvv = 0.0;
  double const directionWeight = 1.0 / (state.angleError * state.angleError);
  for (double const v : engine.directionResiduals) pvv += v * v * directionWeight;
  for (std::size_t e = 0; e < engine.lineResiduals.size(); ++e) {
    double const v = engine.lineResiduals[e];
    pvv += v * v / state.distanceVariance(engine.network.lines[e].value);
  }
  state.pvv = pvv;
  return pvv;
}

std::vector<UnplacedPoint> const& TraverseAdjust::getUnplacedPoints() const { return own->engine.unplacedPoints; }
std::vector<SuspectObservation> const& TraverseAdjust::getSuspects() const { return own->engine.suspects; }
std::vector<LooseMotion> const& TraverseAdjust::getLooseMotions() const { return own->engine.looseMotions; }
std::vector<std::pair<std::string, std::string>> const& TraverseAdjust::getCoincidentPoints() const {
  return own->engine.coincidentPoints;
}

}  // namespace kvn
