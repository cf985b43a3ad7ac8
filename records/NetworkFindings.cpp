#include "records/NetworkFindings.h"

#include "records/detail/Messages.h"

#include <utils/Circle.h>

#include <QStringList>
#include <array>
#include <cmath>

namespace kvn {
namespace {

constexpr int kNamedPoints = 100;
constexpr std::size_t kNamedObservations = 20;

QString nameOf(std::string const& name) { return QString::fromStdString(name); }

QString listed(std::vector<std::string> const& names) {
  QStringList list;
  for (std::string const& name : names) list << nameOf(name);
  return listedNames(list);
}

QString degreesOf(double radians) { return QString::number(radians * 180.0 / utils::kPi, 'f', 1); }

QString worded(SuspectObservation const& observation) {
  QString const text = observation.isDirection ? Messages::tr("direction from %1 to %2, %3")
                                               : Messages::tr("distance from %1 to %2, %3");
  return text.arg(nameOf(observation.from), nameOf(observation.to), wordedSize(observation));
}

QString centreOf(LooseMotion const& motion) {
  if (!motion.centre.empty()) return nameOf(motion.centre);
  return QStringLiteral("(%1, %2)").arg(QString::number(motion.x, 'f', 1), QString::number(motion.y, 'f', 1));
}

QString worded(LooseMotion const& motion) {
  QString const names = listed(motion.names);
  switch (motion.kind) {
    case LooseMotion::Anywhere:
      return Messages::tr("%1 can move in any direction").arg(names);
    case LooseMotion::Along:
      return Messages::tr("%1 can move along the azimuth %2 degrees").arg(names, degreesOf(motion.azimuth));
    case LooseMotion::Shift:
      return Messages::tr("%1 can move together along the azimuth %2 degrees").arg(names, degreesOf(motion.azimuth));
    case LooseMotion::Turn:
      return Messages::tr("%1 can turn about %2").arg(names, centreOf(motion));
    case LooseMotion::Scale:
      return Messages::tr("%1 can spread from %2").arg(names, centreOf(motion));
    case LooseMotion::Several:
      break;
  }
  return Messages::tr("%1 can move against the known points").arg(names);
}

}  // namespace

QString listedNames(QStringList const& names) {
  if (names.size() <= kNamedPoints) return names.join(QStringLiteral(", "));
  return Messages::tr("%1 and %2 more")
      .arg(names.mid(0, kNamedPoints).join(QStringLiteral(", ")), QString::number(names.size() - kNamedPoints));
}

QString worded(UnplacedPoint::Reason reason) {
  switch (reason) {
    case UnplacedPoint::NoConnection:
      return Messages::tr("no connection to the known points");
    case UnplacedPoint::SeenOnce:
      return Messages::tr("seen once and without a distance");
    case UnplacedPoint::OneDistance:
      return Messages::tr("one distance and no direction");
    case UnplacedPoint::FewTargets:
      return Messages::tr("sees fewer than three points and is not seen");
    case UnplacedPoint::OnUnplaced:
      return Messages::tr("observed only with points that are not placed themselves");
    case UnplacedPoint::TooFew:
      return Messages::tr("too few observations to the placed points");
    case UnplacedPoint::OnOneCircle:
      return Messages::tr("all placed targets on one circle with the station");
    case UnplacedPoint::TwoPlaces:
      return Messages::tr("different places agree with the observations");
    case UnplacedPoint::NoStart:
      break;
  }
  return Messages::tr("held weakly by the observations, or no approximate place found");
}

QString wordedSize(SuspectObservation const& observation) {
  QString const size = QString::number(std::abs(observation.difference), 'f', observation.isDirection ? 1 : 4);
  if (observation.isDirection) {
    return (observation.difference > 0.0 ? Messages::tr("observed %1\" too large")
                                         : Messages::tr("observed %1\" too small"))
        .arg(size);
  }
  return (observation.difference > 0.0 ? Messages::tr("observed %1 m too long")
                                       : Messages::tr("observed %1 m too short"))
      .arg(size);
}

QString worded(std::vector<UnplacedPoint> const& points) {
  std::array<QStringList, UnplacedPoint::NoStart + 1> namesOf;
  for (UnplacedPoint const& point : points) namesOf.at(point.reason) << nameOf(point.name);
  QStringList parts;
  for (std::size_t i = 0; i < namesOf.size(); ++i) {
    if (namesOf.at(i).isEmpty()) continue;
    parts << QStringLiteral("%1 (%2)").arg(listedNames(namesOf.at(i)), worded(static_cast<UnplacedPoint::Reason>(i)));
  }
  return Messages::tr("No approximate coordinates: %1").arg(parts.join(QStringLiteral("; ")));
}

QString worded(std::vector<SuspectObservation> const& observations) {
  QStringList parts;
  for (std::size_t i = 0; i < observations.size() && i < kNamedObservations; ++i) parts << worded(observations[i]);
  QString list = parts.join(QStringLiteral("; "));
  if (observations.size() > kNamedObservations) {
    list = Messages::tr("%1 and %2 more").arg(list, QString::number(observations.size() - kNamedObservations));
  }
  return Messages::tr("Suspected gross errors: %1").arg(list);
}

QString worded(std::vector<LooseMotion> const& motions) {
  QStringList parts;
  for (LooseMotion const& motion : motions) parts << worded(motion);
  return Messages::tr("The observations do not hold all points: %1").arg(parts.join(QStringLiteral("; ")));
}

}  // namespace kvn
