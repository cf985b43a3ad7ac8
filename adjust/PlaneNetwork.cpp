#include "adjust/PlaneNetwork.h"

#include "adjust/input/DistanceError.h"
#include "adjust/input/PointNumbers.h"
#include "core/AlgorithmException.h"
#include "records/detail/Recorded.h"

#include <utils/Circle.h>

#include <cmath>

namespace kvn {
namespace {

using utils::kSecondsPerRadian;

}  // namespace

void setErrors(PlaneNetwork& network, ObservationErrors const& errors) {
  for (PlaneNetwork::Point& point : network.points) point.error = point.isKnown ? errors.control : 0.0;
  for (PlaneNetwork::Direction& direction : network.directions) {
    direction.error = errors.directionSeconds / kSecondsPerRadian * std::sqrt(2.0 / direction.readings);
  }
  for (PlaneNetwork::Distance& distance : network.distances) {
    distance.error = detail::distanceError(errors, distance.value) / std::sqrt(double(distance.rounds));
  }
}

PlaneNetwork planeNetworkOf(Network const& network) {
  PlaneNetwork result;
  detail::PointNumbers numbers(result.points);
  numbers.addDistinct(network.knownPoints);
  std::string const* station = nullptr;
  for (NetworkDataInfo const& line : network.lines) {
    int const from = numbers[line.start_name];
    int const target = numbers[line.end_name];
    if (station == nullptr || *station != line.start_name) result.setUps.push_back({from});
    station = &line.start_name;
    auto const setUp = static_cast<int>(result.setUps.size()) - 1;
    if (line.horizontalAngleFlag) result.directions.push_back({setUp, target, line.horizontal_angle});
    if (line.horizontal_distance < -detail::kNotRecorded || std::isnan(line.horizontal_distance)) {
      throw AlgorithmException(AlgorithmException::DataError, line.start_name);
    }
    if (line.horizontal_distance > detail::kNotRecorded)
      result.distances.push_back({from, target, line.horizontal_distance});
  }
  return result;
}

}  // namespace kvn
