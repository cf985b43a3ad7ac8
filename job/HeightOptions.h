// HeightOptions: how careful heights are weighed.
#pragma once

#include <optional>

namespace kvn {

/// Beside the a-priori errors of distances, which are in the project's `Configure`, and what `PlaneOptions` say of the
/// form of these, of the unit weight error and of the confidence.
struct HeightOptions {
  /// Standard error of a zenith angle, the mean of both faces of one round, seconds of arc, above 0 and up to 10000;
  /// without it that of a direction.
  std::optional<double> zenithError;
  /// Standard error of each height of instrument and target, metres, 0 to 1.
  double heightError = 0.001;
  /// Refraction coefficient, -10 to 10; without it `Configure::AtmosphericIndex`. 1 takes neither curvature nor
  /// refraction.
  std::optional<double> refraction;
  /// Standard error of the refraction coefficient, 0 to 10.
  double refractionError = 0.05;
  /// False for a program that wants the heights of a very large field book and nothing else of it: `adjustHeights`
  /// gives rows, network and observations of the job back once it has the sights, also where it fails afterwards. The
  /// heights, their findings and the settings stay; for anything else the file is to be opened again.
  bool keepsObservations = true;
};

}  // namespace kvn
