// A network before it is measured.
#include "adjust/engine/PlaneAdjustmentData.h"
#include "adjust/input/CalculationFailure.h"
#include "adjust/linalg/Index.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <limits>

namespace kvn {
namespace {

using detail::index;
using detail::NumberedNetwork;

constexpr double kUnmeasured = std::numeric_limits<double>::quiet_NaN();

void requireNone(QStringList const& names) {
  if (names.isEmpty()) return;
  throw detail::CalculationFailure(Messages::tr("Points without coordinates: %1").arg(listedNames(names)));
}

}  // namespace

PlaneResult const& PlaneAdjustment::plan() {
  own->begin(false);
  own->number();
  own->takeGivenPlaces();
  own->addCentring();
  if (own->isFree()) own->chooseHeldUnknowns();
  detail::PlaneEngine& engine = own->engine;
  if (engine.redundancy() < 0) own->fail();
  engine.tellProgress(AdjustProgress::Equations);
  engine.buildNormals();
  engine.holdKnownPoints();
  bool const isSolved = engine.solve() && engine.invert();
  if (!isSolved) own->fail();
  // What rounding left of the misclosures has moved the points by next to nothing.
  engine.xy = engine.x0y0;
  auto const unitWeight = own->settings.unitWeight;
  own->settings.unitWeight = PlaneSettings::UnitWeight::APriori;
  own->takeResults();
  own->settings.unitWeight = unitWeight;
  own->forgetReadings();
  return own->result;
}

/// Every point where it was given, and every observation as it is between them.
void PlaneAdjustment::Data::takeGivenPlaces() {
  QStringList missing;
  for (int n = 0; n < engine.network.points; ++n) {
    if (!detail::isPlaced(engine.xy, n)) missing << QString::fromStdString(engine.nameOf(n));
  }
  requireNone(missing);
  engine.x0y0 = engine.start = engine.xy;
  double a[4];
  int at[4];
  for (NumberedNetwork::Direction& d : engine.network.directions) {
    d.value = engine.azimuthFactors(engine.network.pointOf(d.station), d.target, a, at);
  }
  for (NumberedNetwork::Line& line : engine.network.lines) {
    line.value = engine.distanceFactors(line.start, line.end, a, at);
  }
}

void PlaneAdjustment::Data::forgetReadings() {
  result.iterations = 0;
  result.unitError = result.directionUnitError = result.distanceUnitError = kUnmeasured;
  std::fill(result.orientations.begin(), result.orientations.end(), kUnmeasured);
  for (auto* list : {&result.directions, &result.distances}) {
    for (PlaneObservation& observation : *list) {
      observation.residual = observation.standardised = observation.test = observation.gross = kUnmeasured;
    }
  }
}

void setPlannedValues(PlaneNetwork& network) {
  auto const at = [&network](int point) -> PlaneNetwork::Point const& { return network.points.at(index(point)); };
  std::vector<bool> isMissing(network.points.size(), false);
  auto const look = [&](int point) { isMissing.at(index(point)) = !std::isfinite(at(point).x + at(point).y); };
  for (PlaneNetwork::Direction const& d : network.directions) {
    look(network.setUps.at(index(d.setUp)).station);
    look(d.target);
  }
  for (PlaneNetwork::Distance const& d : network.distances) {
    look(d.from);
    look(d.to);
  }
  QStringList missing;
  for (std::size_t p = 0; p < network.points.size(); ++p) {
    if (isMissing[p]) missing << QString::fromStdString(network.points[p].name);
  }
  requireNone(missing);
  for (PlaneNetwork::Direction& d : network.directions) {
    PlaneNetwork::Point const& from = at(network.setUps[index(d.setUp)].station);
    d.value = utils::onCircle(std::atan2(at(d.target).y - from.y, at(d.target).x - from.x));
  }
  for (PlaneNetwork::Distance& d : network.distances) {
    d.value = std::hypot(at(d.to).x - at(d.from).x, at(d.to).y - at(d.from).y);
  }
}

}  // namespace kvn
