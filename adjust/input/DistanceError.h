// The a-priori standard error of one distance.
#pragma once

#include "adjust/PlaneNetwork.h"

#include <cmath>

namespace kvn::detail {

/// a + b S, or the root of a² + (b S)², metres.
inline double distanceError(ObservationErrors const& errors, double distance) {
  double const grows = errors.distanceProportional * distance;
  return errors.form == ObservationErrors::Form::Sum ? errors.distanceFixed + grows
                                                     : std::hypot(errors.distanceFixed, grows);
}

}  // namespace kvn::detail
