#include "PlaneSetup.h"

namespace kvn::host {
namespace {

void takeOptions(AdjustOptions const& options, Configure& configure) {
  configure.AdjustMethod = options.method;
  configure.AngleError = options.angleError.value_or(configure.AngleError);
  configure.LineFixedError = options.fixedError.value_or(configure.LineFixedError);
  configure.LineProportionError = options.proportionalError.value_or(configure.LineProportionError);
  if (options.asRead) {
    configure.LineCalculateExpression = options.sumForm.value_or(configure.LineCalculateExpression);
  }
}

PlaneOptions planeOptions(AdjustOptions const& options) {
  PlaneOptions plane;
  if (!options.sumForm.value_or(true)) plane.distanceForm = ObservationErrors::Form::Root;
  plane.centring = options.centring.value_or(0.0) / 1000.0;
  plane.leavesOutSuspects = options.leavesOut;
  plane.weighsDownSuspects = options.weighsDown;
  plane.controlError = options.controlError.value_or(0.0) / 1000.0;
  if (options.isFree) plane.datum = PlaneSettings::Datum::Free;
  if (options.isAPriori) plane.unitWeight = PlaneSettings::UnitWeight::APriori;
  plane.confidence = options.confidence.value_or(plane.confidence);
  return plane;
}

TraverseOptions traverseOptions(AdjustOptions const& options) {
  return {options.allowedAngle.value_or(0.0), options.allowedRelative.value_or(0.0), options.isForced};
}

}  // namespace

HeightOptions heightOptions(HeightWeights const& options) {
  HeightOptions heights;
  heights.zenithError = options.zenithError;
  heights.heightError = options.heightError.value_or(1000.0 * heights.heightError) / 1000.0;
  heights.refraction = options.refraction;
  heights.refractionError = options.refractionError.value_or(heights.refractionError);
  return heights;
}

void useOptions(Session& session, AdjustOptions const& options) {
  takeOptions(options, session.project().getConfigure());
  session.job().setPlaneOptions(planeOptions(options));
  session.job().setTraverseOptions(traverseOptions(options));
  session.job().setHeightOptions(heightOptions(options));
  if (!options.approximateFile.isEmpty()) session.job().openApproximate(options.approximateFile);
}

}  // namespace kvn::host
