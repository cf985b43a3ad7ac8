// Input of the adjustment: numbers for the points, flat arrays for the observations.
#include "adjust/CommonFunction.h"
#include "adjust/engine/TraverseAdjustData.h"
#include "adjust/input/KnownEnds.h"
#include "adjust/input/MergeLines.h"
#include "adjust/input/Missing.h"
#include "adjust/input/Unobserved.h"
#include "adjust/linalg/Index.h"
#include "adjust/linalg/Poll.h"
#include "core/AlgorithmException.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>

namespace kvn {
namespace {

using detail::index;
using detail::NumberedNetwork;
using detail::PlaneEngine;

// Keeps the weight of a distance finite when both parts of its error are 0; square metres.
constexpr double kSmallestVariance = 1e-15;
// The smallest a-priori errors that a test can divide by: 1e-6" and 0.1 nm.
constexpr double kSmallestSeconds = 1e-6;
constexpr double kSmallestDistanceError = 1e-10;
using utils::kSecondsPerRadian;

std::vector<PointInfo> observedKnownPoints(AlgorithmData const& input, NameIndex const& observed) {
  std::vector<PointInfo> points;
  for (PointInfo const& point : input.knPoints) {
    if (observed.contains(point.name)) points.push_back(point);
  }
  return points;
}

/// The counts of an input that was filled by hand may not be those of its lists.
bool countsFit(AlgorithmData const& input, NameIndex const& observed) {
  std::size_t directions = 0;
  for (StationInfo const& station : input.stations) directions += station.directions.size();
  return index(input.stationsCount) == input.stations.size() && index(input.directionsCount) == directions &&
         input.pointsCount == observed.size();
}

/// The merged distances that have an end that is not known or, for `control`, those between two known points.
std::vector<LineInfo> collectDistances(AlgorithmData const& input, bool control, detail::Poll const& poll) {
  detail::Effort effort(poll);
  std::vector<LineInfo> distances;
  if (!control && input.linesCount < 1) return distances;
  std::size_t all = 0;
  for (StationInfo const& station : input.stations) all += station.lines.size();
  if (!control) distances.reserve(all);
  detail::KnownEnds known(input.knPoints);
  for (StationInfo const& station : input.stations) {
    for (LineInfo const& line : station.lines) {
      effort.step();
      if (known.areBoth(line) == control) distances.push_back(line);
    }
  }
  detail::mergeRepeatedLines(distances, poll);
  return distances;
}

/// Known points first: they hold the numbers 0 to known - 1, on which the iteration relies.
void numberPoints(PlaneEngine& engine, std::vector<PointInfo> const& knownPoints,
                  std::vector<StationInfo> const& stations) {
  engine.xy.assign(2 * index(engine.network.points), 0.0);
  engine.x0y0 = engine.xy;
  for (PointInfo const& point : knownPoints) {
    detail::place(engine.xy, engine.names.numberOf(point.name), point.x, point.y);
  }
  for (StationInfo const& station : stations) {
    engine.network.stationPoint.push_back(engine.names.numberOf(station.name));
  }
  engine.network.known = static_cast<int>(knownPoints.size());
  engine.holdingWeights.assign(knownPoints.size(), PlaneEngine::kFixedWeight);
}

/// @param seconds  standard error of each.
void readDirections(PlaneEngine& engine, std::vector<StationInfo> const& stations, double seconds) {
  detail::Effort effort(engine.poll);
  NumberedNetwork& network = engine.network;
  double const error = std::max(seconds, kSmallestSeconds) / kSecondsPerRadian;
  network.directionStart = {0};
  int number = 0;
  for (StationInfo const& station : stations) {
    if (station.directions.empty()) throw AlgorithmException(AlgorithmException::StationNotEnough, std::string());
    for (LineInfo const& direction : station.directions) {
      effort.step();
      network.directions.push_back({number, engine.names.numberOf(direction.end_name), direction.value, error});
    }
    network.directionStart.push_back(static_cast<int>(network.directions.size()));
    ++number;
  }
  network.directionError = error;
  engine.directionWeights.assign(network.directions.size(), 1.0 / (seconds * seconds));
}

}  // namespace

/// The mean of a merged distance.
NumberedNetwork::Line TraverseAdjust::Data::numbered(LineInfo const& line) {
  int const start = engine.names.numberOf(line.start_name);
  double const value = line.value / line.count;
  double const error = std::max(lineFixedError, kSmallestDistanceError) + lineProportionError * value;
  return {start, engine.names.numberOf(line.end_name), value, error};
}

void TraverseAdjust::Data::readDistances(std::vector<LineInfo> const& distances) {
  detail::Effort effort(engine.poll);
  engine.network.lines.reserve(distances.size());
  engine.lineWeights.clear();
  for (LineInfo const& line : distances) {
    effort.step();
    engine.network.lines.push_back(numbered(line));
    // Always the sum of the two parts, whatever the form in which residuals are judged.
    double const m = lineFixedError + lineProportionError * engine.network.lines.back().value;
    engine.lineWeights.push_back(1.0 / (m * m + kSmallestVariance));
  }
  engine.network.distanceFixed = std::max(lineFixedError, kSmallestDistanceError);
  engine.network.distanceProportion = lineProportionError;
}

double TraverseAdjust::Data::distanceVariance(double s) const {
  double const m = lineCalculateExpression ? lineFixedError + lineProportionError * s
                                           : std::hypot(lineFixedError, lineProportionError * s);
  return m * m;
}

void TraverseAdjust::Data::forgetResults() {
  hasRedundancy = true;
  errorEllipses = ErrorEllipseManage();
  directionResults.clear();
  lineErrorInfos.clear();
  directionLineErrors.clear();
  for (std::vector<double>* list : {&mx, &my, &mp, &lineErrors}) list->clear();
}

void TraverseAdjust::readAlgorithmData(AlgorithmData const& input) {
  Data& state = ready();
  PlaneEngine& engine = state.engine;
  NameIndex const observed = observedNames(input, engine.poll);
  std::vector<PointInfo> const knownPoints = observedKnownPoints(input, observed);
  if (input.azimuthCount != 0) throw AlgorithmException(AlgorithmException::DataError, "Data error");
  if (index(input.pointsCount) == knownPoints.size()) {
    throw AlgorithmException(AlgorithmException::AllStationKnown, std::string());
  }
  if (!countsFit(input, observed)) throw AlgorithmException(AlgorithmException::DataError, "Data error");

  std::vector<LineInfo> const distances = collectDistances(input, false, engine.poll);
  state.forgetResults();
  engine.network = NumberedNetwork();
  engine.network.points = input.pointsCount;
  engine.names = NameIndex();
  numberPoints(engine, knownPoints, input.stations);
  readDirections(engine, input.stations, state.angleError);
  state.readDistances(distances);
  engine.controlLines.clear();
  for (LineInfo const& line : collectDistances(input, true, engine.poll)) {
    engine.controlLines.push_back(state.numbered(line));
  }
  engine.prepare();
  detail::warnOfLeftOut(input.knPoints, observed);
}

}  // namespace kvn
