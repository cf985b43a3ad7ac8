// Observations that do not fit the others.
#pragma once

#include "adjust/linalg/Poll.h"
#include "adjust/plane/NetworkEquations.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace kvn::detail {

struct GrossError {
  int observation;    ///< number of the direction or, behind all directions, of the distance
  double difference;  ///< what the others say less what was observed, radians or metres
};

struct GrossErrorSearch {
  std::vector<GrossError> errors;
  std::vector<Place> places;  ///< of all points, by the observations that are not suspected
};

/// What holds a network beside its known points: coordinates that are observations with errors of their own, or, of a
/// free network, as many as it leaves free. They are not tested.
struct HeldCoordinate {
  int unknown;   ///< as in `Equation`
  double value;  ///< metres
  double error;  ///< standard error, metres, above 0
};

/// An observation of whose errors a smaller share than this shows in its residual is not checked by the others.
constexpr double kUncheckedShare = 1e-4;

/// Errors whose tests have a correlation of this size and more cannot be told apart.
constexpr double kInseparable = 0.99;

/// Standard errors beyond which one of so many observations is suspected: 5, and more where that many good ones would
/// pass 5 by chance, so that fewer than one network in twenty has a good observation accused.
double criticalTest(std::size_t observations);

/// Suspected gross errors, in the order of the observations. An observation is suspected when it misses what the others
/// say by more than `criticalTest` standard errors of that difference (Baarda's test, one observation after the other,
/// behind a robust fit that gross errors pull little). The standard errors are the a-priori ones or, where
/// directions or distances are worse than these throughout, those that the tests of all of them show.
///
/// @param places       of all points, to begin with.
/// @param otherPlaces  gives places that were found in another way, or none; asked for when there are suspects. Itself
///                     none when the places can be trusted not to follow a gross error.
/// @param held         coordinates of points that are not among the known ones of `network`.
/// @return nothing when nothing can be said: the observations that are not suspected have no solution.
std::optional<GrossErrorSearch> grossErrors(NumberedNetwork const& network, std::vector<Place> const& places,
                                            std::function<std::vector<Place>()> const& otherPlaces,
                                            Poll const& poll = {}, std::vector<HeldCoordinate> const& held = {});

/// Rounds that an attempt to settle is worth: 200, and down to 20 where each takes long. What has not settled by then
/// swings to and fro or runs away.
int attemptRounds(int unknowns);

/// Whether plain least squares come from these places, within so many rounds, to one that moves no coordinate by more
/// than `smallestMove`, metres.
bool settles(NumberedNetwork const& network, std::vector<Place> const& places, double smallestMove,
             Poll const& poll = {}, std::vector<HeldCoordinate> const& held = {});

}  // namespace kvn::detail
