#include "PlaneReport.h"

#include <algorithm>
#include <unordered_map>

namespace kvn::host {
namespace {

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

}  // namespace

PlaneReport::PlaneReport(QString path, Configure const& settings, PlaneOptions const& planeOptions,
                         PlaneAdjustment const& adjustment, Kind reportKind)
    : file(std::move(path)),
      configure(settings),
      options(planeOptions),
      run(adjustment),
      kind(reportKind),
      network(adjustment.network()),
      result(adjustment.result()),
      circlesOfPoint(network.points.size(), 0) {
  // What the run did, whatever the settings of the project say of the literal adjustment.
  configure.LineCalculateExpression = options.distanceForm == ObservationErrors::Form::Sum;
  controlOfPoint.assign(network.points.size(), nullptr);
  for (PlaneControl const& control : result.control) controlOfPoint[control.point] = &control;
  std::vector<std::size_t> circleOf(network.setUps.size(), kNowhere);
  for (PlaneNetwork::Direction const& direction : network.directions) {
    circleOf[static_cast<std::size_t>(direction.setUp)] = 0;
  }
  for (std::size_t s = 0; s < circleOf.size(); ++s) {
    if (circleOf[s] == kNowhere) continue;
    circleOf[s] = circles.size();
    auto const station = static_cast<std::size_t>(network.setUps[s].station);
    circles.push_back({s, ++circlesOfPoint[station], {}});
  }
  for (std::size_t d = 0; d < network.directions.size(); ++d) {
    circles[circleOf[static_cast<std::size_t>(network.directions[d].setUp)]].directions.push_back(d);
  }
}

bool PlaneReport::isFixed(std::size_t point) const {
  return network.points[point].isKnown && !isFree() && options.controlError == 0.0;
}

bool PlaneReport::hasErrors() const {
  return result.hasRedundancy || options.unitWeight == PlaneSettings::UnitWeight::APriori;
}

PlaneControl const* PlaneReport::controlOf(std::size_t point) const { return controlOfPoint[point]; }

bool PlaneReport::isSuspectedControl(std::size_t point) const {
  bool const isTooLarge = result.hasRedundancy && result.unitError > result.upperBound;
  return isTooLarge && controlOf(point) != nullptr && controlOf(point)->test > 1.0;
}

std::size_t PlaneReport::countKnown() const {
  return static_cast<std::size_t>(std::count_if(network.points.begin(), network.points.end(),
                                                [](PlaneNetwork::Point const& point) { return point.isKnown; }));
}

std::size_t PlaneReport::countStations() const {
  return static_cast<std::size_t>(
      std::count_if(circlesOfPoint.begin(), circlesOfPoint.end(), [](int count) { return count > 0; }));
}

PlaneReport::Named PlaneReport::named(bool isDirection, std::size_t observation) const {
  if (!isDirection) {
    PlaneNetwork::Distance const& distance = network.distances[observation];
    return {nameOf(distance.from), nameOf(distance.to), distance.origin.line};
  }
  PlaneNetwork::Direction const& direction = network.directions[observation];
  int const station = network.setUps[static_cast<std::size_t>(direction.setUp)].station;
  return {nameOf(station), nameOf(direction.target), direction.origin.line};
}

int PlaneReport::lineOf(SuspectObservation const& suspect) const {
  return suspect.number < 0 ? 0 : named(suspect.isDirection, static_cast<std::size_t>(suspect.number)).line;
}

void PlaneReport::setHeights(HeightAdjustment const* adjustment) { heights = PointHeights(adjustment); }

}  // namespace kvn::host
