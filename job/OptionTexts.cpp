// The options of a job in words: what a project file has no place for.
#include "job/detail/JobSteps.h"
#include "records/detail/Messages.h"

namespace kvn {
namespace {

QString number(double value) { return QString::number(value, 'g', 6); }

void addPlane(PlaneOptions const& options, QStringList& texts) {
  PlaneOptions const plain;
  auto const add = [&texts](bool differs, QString const& text) {
    if (differs) texts << text;
  };
  add(options.distanceForm != plain.distanceForm, Messages::tr("errors of distances as the root of both parts"));
  add(options.centring != plain.centring, Messages::tr("centring %1 mm").arg(number(1000.0 * options.centring)));
  add(options.controlError != plain.controlError,
      Messages::tr("errors of known coordinates %1 mm").arg(number(1000.0 * options.controlError)));
  add(options.datum == PlaneSettings::Datum::Free, Messages::tr("a free network"));
  add(options.unitWeight != plain.unitWeight, Messages::tr("errors and tests by the a-priori unit weight error"));
  add(options.confidence != plain.confidence, Messages::tr("confidence %1").arg(number(options.confidence)));
  add(options.leavesOutSuspects, Messages::tr("suspects left out"));
  add(options.weighsDownSuspects, Messages::tr("suspects weighed down"));
}

void addTraverse(TraverseOptions const& options, QStringList& texts) {
  if (options.allowedAngle > 0.0) texts << Messages::tr("limit of an angle %1\"").arg(number(options.allowedAngle));
  if (options.allowedRelative > 0.0) {
    texts << Messages::tr("limit of the closing error 1:%1").arg(number(options.allowedRelative));
  }
  if (options.isForced) texts << Messages::tr("a traverse computed whatever it misses by");
}

void addHeights(HeightOptions const& options, QStringList& texts) {
  HeightOptions const plain;
  if (options.zenithError) {
    texts << Messages::tr("errors of zenith angles %1\"").arg(number(*options.zenithError));
  }
  if (options.heightError != plain.heightError) {
    texts << Messages::tr("errors of heights of instrument and target %1 mm").arg(number(1000.0 * options.heightError));
  }
  if (options.refraction) texts << Messages::tr("refraction %1").arg(number(*options.refraction));
  if (options.refractionError != plain.refractionError) {
    texts << Messages::tr("error of the refraction %1").arg(number(options.refractionError));
  }
}

}  // namespace

QStringList detail::optionsBesideProject(JobState const& state) {
  QStringList texts;
  if (state.asRead) return texts;  // such a run follows the project alone
  addPlane(state.plane, texts);
  addTraverse(state.traverseOptions, texts);
  addHeights(state.heights, texts);
  if (!state.approximate.empty()) {
    texts << Messages::tr("%1 approximate coordinates").arg(state.approximate.size());
  }
  return texts;
}

}  // namespace kvn
