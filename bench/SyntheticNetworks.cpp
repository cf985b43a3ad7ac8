#include "SyntheticNetworks.h"

#include "SyntheticRandom.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

namespace bench {
namespace {

double const kPi = std::acos(-1.0);
double const kSecond = kPi / 180.0 / 3600.0;

// Away from 0, as the coordinates of a map are, and so that nothing is negative.
constexpr double kNorthOfOrigin = 10000.0;
constexpr double kEastOfOrigin = 50000.0;

constexpr double kSpacing = 100.0;
constexpr double kMove = 20.0;
constexpr std::size_t kRimPointsForOneKnown = 50;
constexpr std::size_t kLeastSights = 4;

constexpr std::size_t kLegsForOneKnown = 50;
constexpr double kShortLeg = 60.0;
constexpr double kLongLeg = 140.0;
double const kTurn = 40.0 / 180.0 * kPi;  // of a leg from the way of its row, to either side

double tenthsOfMm(double metres) { return std::round(metres * 1e4) / 1e4; }

TruePoint rounded(double x, double y, double z) { return {tenthsOfMm(x), tenthsOfMm(y), tenthsOfMm(z)}; }

double onCircle(double angle) {
  double const rest = std::fmod(angle, 2.0 * kPi);
  return rest < 0.0 ? rest + 2.0 * kPi : rest;
}

double azimuth(TruePoint const& from, TruePoint const& to) { return std::atan2(to.y - from.y, to.x - from.x); }

double planeDistance(TruePoint const& from, TruePoint const& to) { return std::hypot(to.x - from.x, to.y - from.y); }

double measuredDistance(double distance, Random& random) {
  double const error = kDistanceErrorMm * 1e-3 + kDistanceErrorPpm * 1e-6 * distance;
  return distance + error * random.normal();
}

double measuredDirection(double direction, Random& random) {
  return onCircle(direction + kDirectionErrorSeconds * kSecond * random.normal());
}

void requireSize(std::size_t points, std::size_t least) {
  if (points >= least && points <= kMostPoints) return;
  throw std::invalid_argument("the number of points must be " + std::to_string(least) + " to " +
                              std::to_string(kMostPoints));
}

void sight(SyntheticNetwork& network, std::size_t from, std::vector<std::size_t> const& targets, Random& random) {
  double const orientation = random.between(0.0, 2.0 * kPi);
  TruePoint const& station = network.points[from];
  for (std::size_t const to : targets) {
    TruePoint const& target = network.points[to];
    double const direction = measuredDirection(azimuth(station, target) - orientation, random);
    double const distance = measuredDistance(planeDistance(station, target), random);
    network.sights.push_back({static_cast<std::uint32_t>(from), static_cast<std::uint32_t>(to), direction, distance});
  }
}

/// Point `row * width + column`; the last row may be short.
class Grid {
 public:
  explicit Grid(std::size_t pointCount)
      : points(pointCount), width(static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(pointCount))))) {}

  std::vector<TruePoint> positions(Random& random) const;
  /// The neighbours that a point always sights, then a random choice of the others.
  std::vector<std::size_t> targetsOf(std::size_t point, Random& random) const;
  std::vector<std::size_t> knownPoints() const;

 private:
  struct Step {
    int row;
    int column;
  };

  bool isThere(std::size_t point, Step step) const;
  std::size_t at(std::size_t point, Step step) const;
  std::vector<std::size_t> rim() const;
  std::size_t lastOfColumn(std::size_t column) const;

  std::size_t points;
  std::size_t width;
};

std::vector<TruePoint> Grid::positions(Random& random) const {
  std::vector<TruePoint> result;
  result.reserve(points);
  for (std::size_t i = 0; i < points; ++i) {
    double const north = kSpacing * static_cast<double>(i / width) + random.between(-kMove, kMove);
    double const east = kSpacing * static_cast<double>(i % width) + random.between(-kMove, kMove);
    result.push_back(rounded(kNorthOfOrigin + north, kEastOfOrigin + east, 0.0));
  }
  return result;
}

bool Grid::isThere(std::size_t point, Step step) const {
  auto const row = static_cast<std::ptrdiff_t>(point / width) + step.row;
  auto const column = static_cast<std::ptrdiff_t>(point % width) + step.column;
  return row >= 0 && column >= 0 && column < static_cast<std::ptrdiff_t>(width) && at(point, step) < points;
}

std::size_t Grid::at(std::size_t point, Step step) const {
  auto const sideways = static_cast<std::ptrdiff_t>(point) + step.column;
  return static_cast<std::size_t>(sideways + step.row * static_cast<std::ptrdiff_t>(width));
}

std::vector<std::size_t> Grid::targetsOf(std::size_t point, Random& random) const {
  constexpr Step kAround[] = {{0, -1}, {0, 1}, {-1, 0}, {1, 0}, {-1, -1}, {-1, 1}, {1, -1}, {1, 1}};
  bool const isFirstOfRow = point % width == 0;
  std::vector<std::size_t> targets;
  std::size_t always = 0;
  for (Step const step : kAround) {
    if (!isThere(point, step)) continue;
    targets.push_back(at(point, step));
    if (step.row == 0 || (step.column == 0 && isFirstOfRow)) always = targets.size();
  }
  std::size_t const least = std::max(always, std::min(kLeastSights, targets.size()));
  std::size_t const count = least + random.below(targets.size() - least + 1);
  for (std::size_t i = always; i < count; ++i) {
    std::swap(targets[i], targets[i + random.below(targets.size() - i)]);
  }
  targets.resize(count);
  return targets;
}

std::size_t Grid::lastOfColumn(std::size_t column) const { return column + (points - 1 - column) / width * width; }

/// Once around, from the first point.
std::vector<std::size_t> Grid::rim() const {
  std::vector<std::size_t> result;
  for (std::size_t column = 0; column < width; ++column) result.push_back(column);
  for (std::size_t i = 2 * width - 1; i < points; i += width) result.push_back(i);
  for (std::size_t column = width; column-- > 0;) result.push_back(lastOfColumn(column));
  for (std::size_t i = lastOfColumn(0); i >= width; i -= width) result.push_back(i);
  return result;
}

std::vector<std::size_t> Grid::knownPoints() const {
  std::vector<std::size_t> known{0, width - 1, lastOfColumn(0), points - 1};
  std::vector<std::size_t> const around = rim();
  for (std::size_t i = 0; i < around.size(); i += kRimPointsForOneKnown) known.push_back(around[i]);
  std::sort(known.begin(), known.end());
  known.erase(std::unique(known.begin(), known.end()), known.end());
  return known;
}

/// Rows of about as many legs as there are rows, forth and back, two legs north between them.
std::vector<TruePoint> windingPath(std::size_t count, Random& random) {
  auto const row = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(count))));
  std::vector<TruePoint> path{rounded(kNorthOfOrigin, kEastOfOrigin, 100.0)};
  path.reserve(count);
  for (std::size_t i = 1; i < count; ++i) {
    bool const isNorth = i % (row + 2) >= row;
    double const east = i / (row + 2) % 2 == 0 ? kPi / 2.0 : -kPi / 2.0;
    double const way = (isNorth ? 0.0 : east) + random.between(-kTurn, kTurn);
    double const leg = random.between(kShortLeg, kLongLeg);
    TruePoint const& last = path.back();
    // The height is drawn back to 100 m, and stays within some metres of it.
    double const height = last.z + 0.1 * (100.0 - last.z) + random.between(-2.0, 2.0);
    path.push_back(rounded(last.x + leg * std::cos(way), last.y + leg * std::sin(way), height));
  }
  return path;
}

constexpr std::size_t kPointsOfStation = 4;
constexpr double kShortSideShot = 20.0;
constexpr double kLongSideShot = 120.0;
constexpr double kVerticalErrorSeconds = 3.0;
constexpr double kLargestCollimationSeconds = 5.0;
constexpr double kLargestIndexSeconds = 15.0;
// Of the back sight. A direction that noise takes below 0 would be one of nearly 360°.
constexpr double kCircleStartSeconds = 12.0;

/// Instrument and rod of one set-up.
struct SetUp {
  std::size_t station = 0;
  std::string groupId;
  double height = 0.0;
  double orientation = 0.0;
  double collimation = 0.0;
  double index = 0.0;
};

class JobMaker {
 public:
  JobMaker(SyntheticJob& target, std::uint64_t seed) : job(target), random(seed) {}

  void makePoints(std::size_t stations);
  void bookStations(std::size_t stations);

 private:
  double wholeMm(double least, double most) { return std::round(random.between(least, most) * 1e3) / 1e3; }
  TruePoint sideShotOf(TruePoint const& station);
  void bookPoint(std::size_t point, double height, bool isKnown);
  void bookSetUp(std::size_t station, bool isKnown);
  void bookSight(SetUp const& setUp, std::size_t target, double rod, bool isFirstFace);

  SyntheticJob& job;
  Random random;
};

void JobMaker::makePoints(std::size_t stations) {
  for (TruePoint const& station : windingPath(stations, random)) {
    job.points.push_back(station);
    for (std::size_t i = 1; i < kPointsOfStation; ++i) job.points.push_back(sideShotOf(station));
  }
}

TruePoint JobMaker::sideShotOf(TruePoint const& station) {
  double const way = random.between(0.0, 2.0 * kPi);
  double const distance = random.between(kShortSideShot, kLongSideShot);
  double const rise = random.between(-5.0, 5.0);
  return rounded(station.x + distance * std::cos(way), station.y + distance * std::sin(way), station.z + rise);
}

void JobMaker::bookStations(std::size_t stations) {
  std::size_t const last = stations - 1;
  job.rows.reserve(2 + (stations - 2) * (1 + 2 * (kPointsOfStation + 1)));
  bookPoint(0, 0.0, true);
  bookPoint(last * kPointsOfStation, 0.0, true);
  for (std::size_t s = 1; s < last; ++s) {
    bookSetUp(s * kPointsOfStation, s == 1 || s == last - 1 || s % kLegsForOneKnown == 0);
  }
}

void JobMaker::bookPoint(std::size_t point, double height, bool isKnown) {
  kvn::TraverseDataInfo row;
  row.pointType = kvn::TraversePointType::StationPoint;
  row.name = nameOf(point);
  row.instrument = height;
  row.isKnown = isKnown;
  if (isKnown) {
    row.N = job.points[point].x;
    row.E = job.points[point].y;
    row.Z = job.points[point].z;
  }
  job.rows.push_back(std::move(row));
}

void JobMaker::bookSetUp(std::size_t station, bool isKnown) {
  std::vector<std::size_t> targets{station - kPointsOfStation};
  for (std::size_t i = 1; i < kPointsOfStation; ++i) targets.push_back(station + i);
  targets.push_back(station + kPointsOfStation);

  SetUp setUp;
  setUp.station = station;
  setUp.height = wholeMm(1.4, 1.7);
  setUp.orientation = azimuth(job.points[station], job.points[targets.front()]) - kCircleStartSeconds * kSecond;
  setUp.collimation = random.between(-1.0, 1.0) * kLargestCollimationSeconds * kSecond;
  setUp.index = random.between(-1.0, 1.0) * kLargestIndexSeconds * kSecond;
  bookPoint(station, setUp.height, isKnown);
  setUp.groupId = job.rows.back().groupId;
  std::vector<double> rods;
  for (std::size_t i = 0; i < targets.size(); ++i) rods.push_back(wholeMm(1.3, 2.0));
  for (std::size_t i = 0; i < targets.size(); ++i) bookSight(setUp, targets[i], rods[i], true);
  for (std::size_t i = targets.size(); i-- > 0;) bookSight(setUp, targets[i], rods[i], false);
}

void JobMaker::bookSight(SetUp const& setUp, std::size_t target, double rod, bool isFirstFace) {
  TruePoint const& from = job.points[setUp.station];
  TruePoint const& to = job.points[target];
  double const rise = to.z + rod - from.z - setUp.height;
  double const horizontal = azimuth(from, to) - setUp.orientation;
  double const zenith = kPi / 2.0 - std::atan2(rise, planeDistance(from, to));
  kvn::TraverseDataInfo row;
  row.groupId = setUp.groupId;
  row.name = nameOf(target);
  row.instrument = rod;
  double const face = isFirstFace ? horizontal + setUp.collimation : horizontal + kPi - setUp.collimation;
  row.horizontal_angle = measuredDirection(face, random);
  // The circle runs on through 180°, so that the second face reads what is left of the full circle.
  double const vertical = setUp.index + kVerticalErrorSeconds * kSecond * random.normal();
  row.vertical_angle = isFirstFace ? zenith + vertical : 2.0 * kPi - zenith + vertical;
  row.slant_distance = measuredDistance(std::hypot(rise, planeDistance(from, to)), random);
  row.horizontal_distance = std::abs(row.slant_distance * std::sin(row.vertical_angle));
  job.rows.push_back(std::move(row));
}

}  // namespace

std::string nameOf(std::size_t point) { return "P" + std::to_string(point); }

kvn::Network SyntheticNetwork::network() const {
  kvn::Network result;
  for (std::size_t const point : known) {
    result.knownPoints.emplace_back(nameOf(point), points[point].x, points[point].y, 0.0);
  }
  result.lines.reserve(sights.size());
  for (Sight const& sight : sights) {
    kvn::NetworkDataInfo line;
    line.start_name = nameOf(sight.from);
    line.end_name = nameOf(sight.to);
    line.horizontal_angle = sight.direction;
    line.horizontal_distance = sight.distance;
    result.lines.push_back(std::move(line));
  }
  return result;
}

SyntheticNetwork gridNetwork(std::size_t points, std::uint64_t seed) {
  requireSize(points, kLeastPoints);
  Random random(seed);
  Grid const grid(points);
  SyntheticNetwork result;
  result.points = grid.positions(random);
  result.known = grid.knownPoints();
  for (std::size_t i = 0; i < points; ++i) sight(result, i, grid.targetsOf(i, random), random);
  return result;
}

SyntheticNetwork chainNetwork(std::size_t points, std::uint64_t seed) {
  requireSize(points, kLeastPoints);
  Random random(seed);
  SyntheticNetwork result;
  result.points = windingPath(points, random);
  std::size_t const last = points - 1;
  for (std::size_t i = 0; i < last; i += kLegsForOneKnown) result.known.push_back(i);
  result.known.push_back(last);
  for (std::size_t i = 0; i < points; ++i) {
    std::vector<std::size_t> targets;
    if (i > 0) targets.push_back(i - 1);
    if (i < last) targets.push_back(i + 1);
    sight(result, i, targets, random);
  }
  return result;
}

SyntheticJob traverseJob(std::size_t points, std::uint64_t seed) {
  requireSize(points, 4 * kPointsOfStation);
  std::size_t const stations = points / kPointsOfStation;
  SyntheticJob job;
  JobMaker maker(job, seed);
  maker.makePoints(stations);
  maker.bookStations(stations);
  return job;
}

double positionError(std::vector<kvn::PointErrorInfo> const& adjusted, std::vector<TruePoint> const& truth) {
  if (adjusted.empty()) return std::numeric_limits<double>::quiet_NaN();
  double sum = 0.0;
  for (kvn::PointErrorInfo const& point : adjusted) {
    TruePoint const& position = truth.at(std::stoul(point.name.substr(1)));
    double const dx = point.x - position.x;
    double const dy = point.y - position.y;
    sum += dx * dx + dy * dy;
  }
  return std::sqrt(sum / static_cast<double>(adjusted.size()));
}

}  // namespace bench
