#include "adjust/HeightNetwork.h"

#include "adjust/NameIndex.h"
#include "adjust/heights/Elevations.h"
#include "adjust/input/DistanceError.h"
#include "adjust/input/IndexError.h"
#include "adjust/linalg/Index.h"

#include <utils/Circle.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <utility>

namespace kvn {
namespace {

using detail::index;

constexpr double kEarthRadius = 6371393.0;  // metres

/// The readings of a sight, while rows are added to it.
struct Readings {
  double elevations = 0.0;
  int count = 0;
  double slopes = 0.0;
  int distances = 0;
  int ofFace[2] = {0, 0};  ///< distances
  std::vector<std::size_t> rows;
};

class SightList {
 public:
  explicit SightList(std::vector<TraverseDataInfo> const& list) : rows(list), indexErrors(detail::indexErrors(list)) {}

  HeightReduction run() {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i].pointType == TraversePointType::StationPoint) {
        closeSetUp();
        openSetUp(i);
      } else if (rows[i].pointType == TraversePointType::PrismPoint) {
        addRow(i);
      }
    }
    closeSetUp();
    leaveOutUnsighted();
    std::sort(result.leftOut.begin(), result.leftOut.end(),
              [](LeftOutSight const& a, LeftOutSight const& b) { return a.row < b.row; });
    return std::move(result);
  }

 private:
  int numberOf(std::string const& name) {
    int const number = names.numberOf(name);
    if (index(number) == result.network.points.size()) result.network.points.push_back({name});
    return number;
  }

  void openSetUp(std::size_t i) {
    TraverseDataInfo const& row = rows[i];
    HeightNetwork::Origin const origin{0, static_cast<int>(i)};
    int const station = numberOf(row.name);
    HeightNetwork::Point& point = result.network.points[index(station)];
    if (row.isKnown && !point.isKnown) {
      point.isKnown = true;
      point.height = row.Z;
      point.origin = origin;
    } else if (row.isKnown && row.Z != point.height && !contradicted.contains(row.name)) {
      contradicted.numberOf(row.name);
      result.contradicted.push_back(row.name);
    }
    result.network.setUps.push_back({station, row.instrument, origin});
  }

  /// A station that took part in the plane alone would keep the others from having heights.
  void leaveOutUnsighted() {
    HeightNetwork& network = result.network;
    constexpr int kOut = -1;
    std::vector<int> placeOf(network.points.size(), kOut);
    std::vector<int> setUpOf(network.setUps.size(), kOut);
    for (HeightNetwork::Sight const& sight : network.sights) {
      placeOf[index(sight.target)] = placeOf[index(network.setUps[index(sight.setUp)].station)] = 0;
    }
    std::vector<HeightNetwork::Point> points;
    for (std::size_t p = 0; p < placeOf.size(); ++p) {
      bool const isOut = placeOf[p] == kOut && !network.points[p].isKnown;
      if (isOut) result.withoutSights.push_back(network.points[p].name);
      placeOf[p] = isOut ? kOut : static_cast<int>(points.size());
      if (!isOut) points.push_back(network.points[p]);
    }
    if (result.withoutSights.empty()) return;
    std::vector<HeightNetwork::SetUp> setUps;
    for (std::size_t s = 0; s < setUpOf.size(); ++s) {
      HeightNetwork::SetUp setUp = network.setUps[s];
      setUp.station = placeOf[index(setUp.station)];
      if (setUp.station == kOut) continue;
      setUpOf[s] = static_cast<int>(setUps.size());
      setUps.push_back(setUp);
    }
    for (HeightNetwork::Sight& sight : network.sights) {
      sight.setUp = setUpOf[index(sight.setUp)];
      sight.target = placeOf[index(sight.target)];
    }
    network.points = std::move(points);
    network.setUps = std::move(setUps);
  }

  void leaveOut(std::size_t i, LeftOutSight::Reason reason) {
    std::string station;
    if (!result.network.setUps.empty()) station = stationName();
    result.leftOut.push_back({station, rows[i].name, i, reason});
  }

  std::string const& stationName() const {
    return result.network.points[index(result.network.setUps.back().station)].name;
  }

  void addRow(std::size_t i) {
    TraverseDataInfo row = rows[i];
    if (result.network.setUps.empty()) return leaveOut(i, LeftOutSight::NoStation);
    if (row.name == stationName()) return leaveOut(i, LeftOutSight::SightsItself);
    bool const isSecondFace = row.verticalAngleType == FullCircleZenith && row.vertical_angle > utils::kPi;
    row.vertical_angle -= indexErrors[i];
    std::optional<double> const elevation = detail::elevationOf(row);
    if (!elevation) return leaveOut(i, LeftOutSight::NoAngle);
    if (detail::isAlongVertical(row, *elevation)) return leaveOut(i, LeftOutSight::AlongVertical);
    auto const [place, isNew] = sightOf.try_emplace({row.name, row.instrument}, readings.size());
    if (isNew) {
      HeightNetwork::Sight sight;
      sight.setUp = static_cast<int>(result.network.setUps.size()) - 1;
      sight.targetHeight = row.instrument;
      sight.origin.row = static_cast<int>(i);
      open.push_back(sight);
      readings.emplace_back();
      targetNames.push_back(row.name);
    }
    Readings& sum = readings[place->second];
    sum.elevations += *elevation;
    ++sum.count;
    sum.rows.push_back(i);
    if (!detail::hasDistance(row)) return;
    sum.slopes += row.slant_distance;
    ++sum.distances;
    ++sum.ofFace[isSecondFace ? 1 : 0];
    auto& [horizontal, count] = horizontalOf[row.name];
    horizontal += row.slant_distance * std::cos(*elevation);
    ++count;
  }

  /// Means of the sights; those that lack a distance take the horizontal one, since the slope depends on the height of
  /// the target.
  void closeSetUp() {
    for (std::size_t s = 0; s < open.size(); ++s) {
      Readings const& sum = readings[s];
      HeightNetwork::Sight& sight = open[s];
      double const elevation = sum.elevations / sum.count;
      sight.zenith = utils::kRightAngle - elevation;
      sight.readings = sum.count;
      if (sum.distances > 0) {
        sight.slope = sum.slopes / sum.distances;
        sight.rounds = std::max(sum.ofFace[0], sum.ofFace[1]);
      } else {
        auto const other = horizontalOf.find(targetNames[s]);
        if (other == horizontalOf.end()) {
          for (std::size_t const row : sum.rows) leaveOut(row, LeftOutSight::NoDistance);
          continue;
        }
        sight.slope = other->second.first / other->second.second / std::cos(elevation);
      }
      sight.target = numberOf(targetNames[s]);
      result.network.sights.push_back(sight);
    }
    open.clear();
    readings.clear();
    targetNames.clear();
    sightOf.clear();
    horizontalOf.clear();
  }

  std::vector<TraverseDataInfo> const& rows;
  std::vector<double> indexErrors;
  NameIndex names;
  NameIndex contradicted;
  HeightReduction result;
  // Of the set-up that is open.
  std::vector<HeightNetwork::Sight> open;
  std::vector<Readings> readings;
  std::vector<std::string> targetNames;
  std::map<std::pair<std::string, double>, std::size_t> sightOf;  // by target and its height
  std::map<std::string, std::pair<double, int>> horizontalOf;     // sum and count of distances to a target
};

}  // namespace

HeightReduction heightNetworkOf(std::vector<TraverseDataInfo> const& rows) { return SightList(rows).run(); }

void reduceSights(HeightNetwork& network, HeightErrors const& errors) {
  double const zenithError = errors.zenithSeconds / utils::kSecondsPerRadian;
  ObservationErrors distances;
  distances.distanceFixed = errors.distanceFixed;
  distances.distanceProportional = errors.distanceProportional;
  distances.form = errors.form;
  for (HeightNetwork::Sight& sight : network.sights) {
    double const instrumentHeight = network.setUps[index(sight.setUp)].instrumentHeight;
    sight.distance = sight.slope * std::sin(sight.zenith);
    double const rise = sight.slope * std::cos(sight.zenith);
    double const curvature = sight.distance * sight.distance / (2.0 * kEarthRadius);
    sight.difference = rise + instrumentHeight - sight.targetHeight + (1.0 - errors.refraction) * curvature;
    double const distanceError = detail::distanceError(distances, sight.slope);
    double const ofZenith = sight.distance * zenithError * std::sqrt(2.0 / sight.readings);
    double const ofDistance = distanceError * std::cos(sight.zenith) / std::sqrt(static_cast<double>(sight.rounds));
    double const ofRefraction = curvature * errors.refractionError;
    sight.error = std::sqrt(ofZenith * ofZenith + ofDistance * ofDistance + 2.0 * errors.height * errors.height +
                            ofRefraction * ofRefraction);
  }
}

}  // namespace kvn
