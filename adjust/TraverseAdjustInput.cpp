// Input of the adjustment: numbers for the points, flat arrays for the observations.
#include "adjust/TraverseAdjust.h"
#include "adjust/input/KnownEnds.h"
#include "adjust/input/MergeLines.h"
#include "adjust/input/Missing.h"
#include "adjust/input/Unobserved.h"
#include "adjust/linalg/Index.h"
#include "adjust/linalg/Poll.h"
#include "adjust/plane/PairTable.h"
#include "core/AlgorithmException.h"
#include "core/System.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <tuple>
#include <utility>

namespace kvn {
namespace {

using detail::index;
using detail::kMissing;

// Unknowns from which on the matrix is sparse: both take the same time there on a grid, and the full one grows with the
// cube of them.
constexpr int kSparseFrom = 200;

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

}  // namespace

TraverseAdjust::TraverseAdjust() : TraverseAdjust(2.0, 0.003, 3e-6, true) {}

TraverseAdjust::TraverseAdjust(double directionError, double fixedError, double proportionError, bool expression)
    : angleError(directionError),
      lineFixedError(fixedError),
      lineProportionError(proportionError),
      lineCalculateExpression(expression),
      m_PI(std::acos(-1.0)),
      rho(1.0 / m_PI * 180.0 * 3600.0),
      sparseFrom(kSparseFrom),
      largestMove(std::numeric_limits<double>::quiet_NaN()),
      linesOf(std::make_shared<detail::PairTable>()),
      directionsOf(linesOf) {}

TraverseAdjust::TraverseAdjust(TraverseAdjust const&) = default;
TraverseAdjust& TraverseAdjust::operator=(TraverseAdjust const&) = default;
TraverseAdjust::~TraverseAdjust() = default;

int TraverseAdjust::getPointNumber(std::string const& name) { return pointNames.numberOf(name); }

bool TraverseAdjust::lineEqual(LineInfo const& a, LineInfo const& b) const {
  return (a.start_name == b.start_name && a.end_name == b.end_name) ||
         (a.start_name == b.end_name && a.end_name == b.start_name);
}

void TraverseAdjust::readAlgorithmData(AlgorithmData const& input) {
  detail::Poll const poll = cancelPoll();
  NameIndex const observed = observedNames(input, poll);
  std::vector<PointInfo> const knownPoints = observedKnownPoints(input, observed);
  pointsCount = input.pointsCount;
  stationsCount = input.stationsCount;
  knPointsCount = static_cast<int>(knownPoints.size());
  directionsCount = input.directionsCount;
  if (input.azimuthCount != 0) throw AlgorithmException(AlgorithmException::DataError, "Data error");
  if (pointsCount == knPointsCount) throw AlgorithmException(AlgorithmException::AllStationKnown, std::string());

  if (!countsFit(input, observed)) throw AlgorithmException(AlgorithmException::DataError, "Data error");

  std::vector<LineInfo> const distances = collectDistances(input, false, poll);
  linesCount = static_cast<int>(distances.size());
  sizeArrays();
  numberPoints(knownPoints, input.stations);
  readDirections(input.stations);
  readDistances(distances);
  readControlDistances(collectDistances(input, true, poll));
  indexObservations();
  detail::warnOfUnobserved(input.knPoints, observed,
                           System::tr("Known points without an observation are left out: %1"));
}

/// The merged distances that have an end that is not known or, for `control`, those between two known points.
std::vector<LineInfo> TraverseAdjust::collectDistances(AlgorithmData const& input, bool control,
                                                       std::function<void()> const& poll) {
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

void TraverseAdjust::sizeArrays() {
  auto const unknowns = index(unknownsCount());
  pointNames = NameIndex();
  stationNames.clear();
  controlDistances.clear();
  forgetResults();
  stationPoint.assign(index(stationsCount), -1);
  directionStart.assign(index(stationsCount) + 1, -1);
  directionTarget.assign(index(directionsCount), -1);
  directionValue.assign(index(directionsCount), 0.0);
  directionV.assign(index(directionsCount), 0.0);
  lineStart.assign(index(linesCount), -1);
  lineEnd.assign(index(linesCount), -1);
  lineValue.assign(index(linesCount), 0.0);
  lineV.assign(index(linesCount), 0.0);
  XY.assign(2 * index(pointsCount), 0.0);
  X0Y0.assign(2 * index(pointsCount), 0.0);
  dX.assign(unknowns, 0.0);
  fittedPlaces.clear();
  blockOrder.clear();
  normals.reset();
}

void TraverseAdjust::forgetResults() {
  hasRedundancy = true;
  iterations = 0;
  errorEllipses = ErrorEllipseManage();
  directionResults.clear();
  lineErrorInfos.clear();
  directionLineErrors.clear();
  unplacedPoints.clear();
  suspects.clear();
  looseMotions.clear();
  coincidentPoints.clear();
  for (std::vector<double>* list : {&mx, &my, &mp, &lineErrors}) list->clear();
}

// Known points first: they hold the numbers 0 to knPointsCount - 1, on which the iteration relies.
void TraverseAdjust::numberPoints(std::vector<PointInfo> const& knownPoints, std::vector<StationInfo> const& stations) {
  for (PointInfo const& point : knownPoints) place(getPointNumber(point.name), {point.x, point.y});
  for (std::size_t i = 0; i < stations.size(); ++i) {
    stationPoint.at(i) = getPointNumber(stations[i].name);
    stationNames.push_back(stations[i].name);
  }
}

void TraverseAdjust::readDirections(std::vector<StationInfo> const& stations) {
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  int next = 0;
  directionStart[0] = 0;
  for (std::size_t i = 0; i < stations.size(); ++i) {
    StationInfo const& station = stations[i];
    if (station.directions.empty()) throw AlgorithmException(AlgorithmException::StationNotEnough, std::string());
    for (LineInfo const& direction : station.directions) {
      effort.step();
      directionTarget.at(index(next)) = getPointNumber(direction.end_name);
      directionValue.at(index(next)) = direction.value;
      ++next;
    }
    directionStart.at(i + 1) = next;
  }
}

void TraverseAdjust::readDistances(std::vector<LineInfo> const& distances) {
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  for (std::size_t e = 0; e < distances.size(); ++e) {
    effort.step();
    LineInfo const& line = distances[e];
    bool const isSameStation = e > 0 && distances[e - 1].start_name == line.start_name;
    lineStart[e] = isSameStation ? lineStart[e - 1] : getPointNumber(line.start_name);
    lineEnd[e] = getPointNumber(line.end_name);
    lineValue[e] = line.value / line.count;
  }
}

void TraverseAdjust::readControlDistances(std::vector<LineInfo> const& distances) {
  for (LineInfo const& line : distances) {
    controlDistances.push_back(
        {getPointNumber(line.start_name), getPointNumber(line.end_name), line.value / line.count});
  }
}

void TraverseAdjust::indexObservations() {
  stationsAt.assign(index(pointsCount), {});
  stationsSighting.assign(index(pointsCount), {});
  std::vector<std::size_t> sightings(index(pointsCount), 0);
  for (int const target : directionTarget) ++sightings[index(target)];
  for (std::size_t i = 0; i < sightings.size(); ++i) stationsSighting[i].reserve(sightings[i]);
  detail::Poll const poll = cancelPoll();
  detail::Effort effort(poll);
  std::vector<int> stationOf;
  stationOf.reserve(directionTarget.size());
  for (int s = 0; s < stationsCount; ++s) {
    stationsAt[index(stationPoint[index(s)])].push_back(s);
    for (int d = directionStart[index(s)]; d < directionStart[index(s) + 1]; ++d) {
      effort.step();
      stationsSighting[index(directionTarget[index(d)])].push_back(s);
      stationOf.push_back(s);
    }
  }
  directionsOf = std::make_shared<detail::PairTable>(stationsCount, stationOf, directionTarget, poll);
  std::vector<int> smaller(lineStart.size());
  std::vector<int> larger(lineStart.size());
  for (std::size_t e = 0; e < lineStart.size(); ++e) {
    std::tie(smaller[e], larger[e]) = std::minmax(lineStart[e], lineEnd[e]);
  }
  linesOf = std::make_shared<detail::PairTable>(pointsCount, smaller, larger, poll);
}

int TraverseAdjust::lastDirection(int station, int target) const { return directionsOf->lastOf(station, target); }

double TraverseAdjust::getLine(int i, int j) const {
  int const line = linesOf->firstOf(std::min(i, j), std::max(i, j));
  return line < 0 ? kMissing : lineValue[index(line)];
}

double TraverseAdjust::getAzimuth(int i, int j) const {
  for (std::size_t e = 0; e < azimuthValue.size(); ++e) {
    if (azimuthStart[e] == i && azimuthEnd[e] == j) return azimuthValue[e];
    if (azimuthStart[e] == j && azimuthEnd[e] == i) {
      double const reversed = azimuthValue[e] + m_PI;
      return reversed > 2.0 * m_PI ? reversed - 2.0 * m_PI : reversed;
    }
  }
  return kMissing;
}

double TraverseAdjust::getAngle(int point, int i, int j) const {
  for (int const s : stationsAt[index(point)]) {
    int const toI = lastDirection(s, i);
    int const toJ = lastDirection(s, j);
    if (toI < 0 || toJ < 0) continue;
    double const angle = directionValue[index(toJ)] - directionValue[index(toI)];
    return angle < 0.0 ? angle + 2.0 * m_PI : angle;
  }
  return -1.0;
}

}  // namespace kvn
