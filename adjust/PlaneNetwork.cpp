#include "adjust/PlaneNetwork.h"

#include <cmath>

namespace kvn {
namespace {

constexpr double kSecondsPerRadian = 206264.80624709636;

double distanceError(double distance, ObservationErrors const& errors) {
  double const proportional = errors.distanceProportional * distance;
  return errors.form == ObservationErrors::Form::Sum ? errors.distanceFixed + proportional
                                                     : std::hypot(errors.distanceFixed, proportional);
}

}  // namespace

void setErrors(PlaneNetwork& network, ObservationErrors const& errors) {
  for (PlaneNetwork::Point& point : network.points) point.error = point.isKnown ? errors.control : 0.0;
  for (PlaneNetwork::Direction& direction : network.directions) {
    direction.error = errors.directionSeconds / kSecondsPerRadian * std::sqrt(2.0 / direction.readings);
  }
  for (PlaneNetwork::Distance& distance : network.distances) {
    distance.error = distanceError(distance.value, errors) / std::sqrt(double(distance.rounds));
  }
}

}  // namespace kvn
