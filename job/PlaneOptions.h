// PlaneOptions: how a careful run by least squares weighs and judges.
#pragma once

#include "adjust/PlaneAdjustment.h"
#include "adjust/PlaneNetwork.h"

namespace kvn {

/// Beside the a-priori errors, which are in the project's `Configure`.
struct PlaneOptions {
  /// How the parts of a distance's error are joined, in the weights as in the unit weight error. What `Configure` says
  /// of the form is for the literal adjustment alone.
  ObservationErrors::Form distanceForm = ObservationErrors::Form::Sum;
  /// Standard error of each coordinate of instrument and target about their marks, metres, 0 to 1.
  double centring = 0.0;
  /// Standard error of each given coordinate of a known point, metres, 0 to 100; 0 holds them.
  double controlError = 0.0;
  PlaneSettings::Datum datum = PlaneSettings::Datum::Known;
  PlaneSettings::UnitWeight unitWeight = PlaneSettings::UnitWeight::APosteriori;
  /// Of the test of the whole and of the confidence ellipses, 0.5 to 0.9999.
  double confidence = 0.95;
  /// Whether suspected observations are left out, one after the other.
  bool leavesOutSuspects = false;
  /// Whether observations that do not fit weigh less, as `PlaneSettings::weighsDownSuspects`; not with the former.
  bool weighsDownSuspects = false;
};

}  // namespace kvn
