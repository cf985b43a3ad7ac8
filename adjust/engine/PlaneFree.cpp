// Free networks: where they are laid, and from where their iteration begins.
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/input/CalculationFailure.h"
#include "adjust/linalg/Index.h"
#include "adjust/plane/Quantiles.h"
#include "core/AlgorithmException.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <numeric>
#include <tuple>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::NumberedNetwork;

// Datum points that lie this near to where they are wanted have not led the start astray, metres.
constexpr double kNearEnough = 0.1;

/// Keeps what an engine has to tell until it is known whether it counts.
class HeldMessages {
 public:
  explicit HeldMessages(detail::PlaneEngine& of) : engine(of), tell(of.tell) {
    if (tell) engine.tell = [this](QString const& text, MessType type) { held.emplace_back(text, type); };
  }
  HeldMessages(HeldMessages const&) = delete;
  HeldMessages& operator=(HeldMessages const&) = delete;
  ~HeldMessages() { engine.tell = tell; }

  void forget() { held.clear(); }
  void pass() const {
    for (auto const& [text, type] : held) tell(text, type);
  }

 private:
  detail::PlaneEngine& engine;
  std::function<void(QString const&, MessType)> tell;
  std::vector<std::pair<QString, MessType>> held;
};

}  // namespace

/// One known point alone turns with the rest, so that it holds no more than none.
std::vector<int> PlaneAdjustment::Data::datumPoints() const {
  std::vector<int> points;
  int const count = engine.network.known >= 2 ? engine.network.known : engine.network.points;
  points.resize(index(count));
  std::iota(points.begin(), points.end(), 0);
  return points;
}

void PlaneAdjustment::Data::chooseHeldUnknowns() {
  int const freedoms = engine.network.lines.empty() ? 4 : 3;
  engine.heldUnknowns = detail::minimalConstraints(engine.x0y0, datumPoints(), freedoms);
}

/// The last round began and ended within 0.01 mm of the same figure, so that one more, at the place where the network
/// comes to lie, moves nothing that shows.
void PlaneAdjustment::Data::layOnDatum() {
  detail::layOn(engine.xy, datumPlaces, datumPoints(), engine.network.lines.empty());
  engine.buildNormals();
  engine.holdKnownPoints();
  if (!engine.solve()) fail();
}

/// The places that points are given lead the search as they would that of a network they hold. They need not fit: then
/// the figure is built from the observations alone, and what fits these better counts.
void PlaneAdjustment::Data::runFree() {
  HeldMessages messages(engine);
  auto const attempt = [&](void (Data::*placing)()) -> std::exception_ptr {
    messages.forget();
    try {
      number();
      (this->*placing)();
      iterate();
    } catch (AlgorithmException const&) {
      return std::current_exception();
    } catch (detail::CalculationFailure const&) {
      return std::current_exception();
    }
    return nullptr;
  };
  // Less is better: without suspects first, then the sum of squares.
  auto const fit = [this](std::exception_ptr const& failure) {
    bool const hasFailed = failure != nullptr;
    return std::make_tuple(hasFailed, hasLostSuspects,
                           hasFailed ? std::numeric_limits<double>::infinity() : engine.sumOfSquares(engine.xy));
  };
  std::exception_ptr failure = attempt(&Data::place);
  if (mayBeLedAstray(failure != nullptr)) {
    auto const asLed = fit(failure);
    std::exception_ptr const again = attempt(&Data::placeByGeometry);
    // Where both fail, that of the given places is told.
    failure = fit(again) < asLed ? nullptr : attempt(&Data::place);
  }
  messages.pass();
  if (failure) std::rethrow_exception(failure);
}

/// Whether given places may have spoilt the start.
bool PlaneAdjustment::Data::mayBeLedAstray(bool hasFailed) const {
  auto const hasPlace = [](PlaneNetwork::Point const& point) { return std::isfinite(point.x + point.y); };
  if (std::count_if(network.points.begin(), network.points.end(), hasPlace) < 2) return false;
  if (hasFailed) return engine.looseMotions.empty() && engine.coincidentPoints.empty();
  if (hasLostSuspects) return true;  // what is left may have settled on a mirror image
  int const redundancy = engine.redundancy() - leftOutCount();
  double const most = std::pow(detail::kDoubtfulUnitError, 2) * std::max(redundancy, 1);
  if (engine.sumOfSquares(engine.xy) <= most) return false;
  for (int const n : datumPoints()) {
    double const north = engine.xy[2 * index(n)] - datumPlaces[2 * index(n)];
    double const east = engine.xy[2 * index(n) + 1] - datumPlaces[2 * index(n) + 1];
    if (std::hypot(north, east) > kNearEnough) return true;
  }
  return false;
}

/// As if no point were known: the figure of the observations, which is laid onto the given places at last.
void PlaneAdjustment::Data::placeByGeometry() {
  NumberedNetwork& numbered = engine.network;
  detail::Coordinates const wanted = engine.xy;
  int const known = std::exchange(numbered.known, 0);
  detail::forgetUnknown(numbered, engine.xy);
  placeFirstPoints();
  bool const hasDistances = !numbered.lines.empty();
  bool const isPlaced = engine.placePoints(hasDistances ? detail::PlaneEngine::Walk::ByDistances
                                                        : detail::PlaneEngine::Walk::ByTriangles);
  numbered.known = known;
  if (!isPlaced) throw AlgorithmException(AlgorithmException::KnownPointNotEnough, "No enough data");
  std::vector<int> given;
  for (int const n : datumPoints()) {
    if (detail::isPlaced(wanted, n)) given.push_back(n);
  }
  detail::layOn(engine.xy, wanted, given, !hasDistances);
  engine.x0y0 = engine.xy;
  datumPlaces = engine.xy;
  for (int const n : given) detail::place(datumPlaces, n, wanted[2 * index(n)], wanted[2 * index(n) + 1]);
  addCentring();
}

}  // namespace kvn
