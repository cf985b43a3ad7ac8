#include "formats/CarefulCosaCollection.h"

#include "adjust/CommonFunction.h"
#include "adjust/input/PointNumbers.h"
#include "core/DataException.h"
#include "formats/detail/CarefulCosaData.h"
#include "formats/detail/CarefulText.h"
#include "formats/detail/CosaReading.h"
#include "formats/detail/CosaText.h"
#include "formats/detail/LineSource.h"
#include "records/detail/Messages.h"

#include <utils/Circle.h>
#include <utils/Number.h>
#include <utils/QLogicError.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

using detail::hasFullField;
using Observation = detail::CosaReading::Observation;
using detail::quoted;

// Readings that differ by less are the same one, written twice: a ten-thousandth of a second, a hundredth of a
// millimetre.
constexpr double kSameAngle = 5e-10;
constexpr double kSameDistance = 1e-5;

void warn(QString const& text) { Messages::send(text, Warning); }

/// Of an observation that is given more than once the first counts; what it lacks comes from the later one, and a
/// contradiction is told.
class Joining {
 public:
  Joining(detail::CosaReading const& observations, bool tells) : reading(observations), tellsRepeats(tells) {}

  void operator()(Observation& first, Observation const& later) const {
    if (!first.hasAngle && later.hasAngle) {
      first.angle = later.angle;
      first.hasAngle = true;
    } else if (later.hasAngle && std::abs(first.angle - later.angle) > kSameAngle) {
      warnOfRepeat(Messages::tr("The direction from %1 to %2 is given more than once; the first one counts"), first);
    }
    if (first.distance == 0.0) {
      first.distance = later.distance;
    } else if (later.distance != 0.0 && std::abs(first.distance - later.distance) > kSameDistance) {
      warnOfRepeat(Messages::tr("The distance from %1 to %2 is given more than once; the first one counts"), first);
    }
  }

 private:
  void warnOfRepeat(QString const& text, Observation const& observation) const {
    if (tellsRepeats) warn(text.arg(quoted(reading.stationOf(observation)), quoted(reading.targetOf(observation))));
  }

  detail::CosaReading const& reading;
  bool tellsRepeats;
};

bool holdsNothing(Observation const& observation) { return !observation.hasAngle && observation.distance == 0.0; }

bool isPlanned(Observation const& observation) { return observation.planned != detail::CosaReading::Kind::None; }

/// An observation without a value; false for what is none.
bool readPlanned(detail::CosaReading& reading, utils::Pieces const& fields) {
  bool const isBoth = fields[1] == "LS";
  bool const hasDirection = isBoth || fields[1] == "L";
  bool const hasDistance = isBoth || fields[1] == "S";
  if (fields[0].empty()) return false;
  if (hasDirection) reading.add(fields[0]).planned = detail::CosaReading::Kind::Direction;
  if (hasDistance) reading.add(fields[0]).planned = detail::CosaReading::Kind::Distance;
  return hasDirection || hasDistance;
}

}  // namespace

CarefulCosaCollection::CarefulCosaCollection() : own(std::make_unique<Data>()) {}
CarefulCosaCollection::CarefulCosaCollection(CarefulCosaCollection const& other)
    : CosaCollection(other), own(std::make_unique<Data>(*other.own)) {}
CarefulCosaCollection& CarefulCosaCollection::operator=(CarefulCosaCollection const& other) {
  CosaCollection::operator=(other);
  *own = *other.own;
  return *this;
}
CarefulCosaCollection::~CarefulCosaCollection() = default;

/// @param message  with the number of the line in it; @param text without.
void CarefulCosaCollection::tell(int number, QString const& message, QString const& text) {
  if (own->tellsFindings) warn(message);
  FieldFinding finding;
  finding.text = text;
  finding.line = number;
  own->findings.push_back(std::move(finding));
}

void CarefulCosaCollection::tellPassedOver(int number, std::string const& line) {
  tell(number, Messages::tr("Line %1 is passed over: %2").arg(number).arg(quoted(line)),
       Messages::tr("the line is passed over: %1").arg(quoted(line)));
  own->findings.back().isNotTaken = true;
}

/// @param first  the first field that is a number
void CarefulCosaCollection::checkNumbers(int number, std::string const& line, utils::Pieces const& fields,
                                         std::ptrdiff_t first) {
  auto const isNumber = [](std::string_view text) { return utils::fullNumber(text).has_value(); };
  auto const wrong = std::find_if_not(fields.begin() + first, fields.end(), isNumber);
  if (wrong == fields.end()) return;
  tell(number, Messages::tr("Line %1 has something behind a number: %2").arg(number).arg(quoted(line)),
       Messages::tr("something stands behind the number: %1").arg(quoted(*wrong)));
  own->findings.back().isNotTaken = true;
}

void CarefulCosaCollection::checkAngle(int number, std::string_view text, detail::CosaReading& reading) {
  Observation& direction = reading.observations.back();
  // An angle of 400° may be one in gon, or have lost its point. A whole circle may come of rounding.
  constexpr double kCircle = utils::kFullCircle + 1e-9;
  bool const isBeyond = direction.hasAngle && std::abs(direction.angle) > kCircle;
  direction.angle = utils::onCircle(direction.angle);
  auto const tellAngle = [&](QString const& message, QString const& what) {
    tell(number, message, what.arg(quoted(text)));
    own->findings.back().station = reading.stationOf(direction);
    own->findings.back().targets = {std::string(reading.targetOf(direction))};
  };
  if (!direction.hasAngle) {
    tellAngle(Messages::tr("Line %1: the direction from %2 to %3 is no angle: %4")
                  .arg(number)
                  .arg(quoted(reading.stationOf(direction)), quoted(reading.targetOf(direction)), quoted(text)),
              Messages::tr("the angle is no number: %1"));
    own->findings.back().isNotTaken = true;
  } else if (hasFullField(text)) {
    tellAngle(Messages::tr("Line %1: minutes or seconds of 60 and above in %2").arg(number).arg(quoted(text)),
              Messages::tr("minutes or seconds of 60 and above: %1"));
  } else if (isBeyond) {
    tellAngle(Messages::tr("Line %1: the angle is larger than 360 degrees: %2").arg(number).arg(quoted(text)),
              Messages::tr("the angle is larger than 360 degrees: %1"));
  }
}

/// An observation or a known point that the reader has taken.
void CarefulCosaCollection::checkTaken(int number, std::string const& line, utils::Pieces const& fields,
                                       detail::CosaReading& reading) {
  bool const isDistance = fields[1] == "S";
  bool const isKnown = fields[1] != "L" && !isDistance;
  int const before = static_cast<int>(reading.knownNames.names().size());
  if (isKnown && own->keepsObservations && reading.knownNames.numberOf(fields[0]) < before) {
    throw QLogicError(Messages::tr("the known point %1 is given twice").arg(quoted(fields[0])));
  }
  if (fields[1] == "L") {
    checkAngle(number, fields[2], reading);
  } else if (isDistance && reading.observations.back().distance == 0.0) {
    tellPassedOver(number, line);
  } else {
    checkNumbers(number, line, fields, isDistance ? 2 : 1);
  }
}

void CarefulCosaCollection::read(std::istream& stream) {
  knownPointList.clear();
  networkDataList.clear();
  own->findings.clear();
  detail::CosaReading reading;
  try {
    readLines(stream, reading);
  } catch (...) {
    networkDataList = reading.lines();
    throw;
  }
  if (own->keepsObservations) takeObservations(reading);
  reading.join(holdsNothing, Joining(reading, !own->keepsObservations));  // a line without an observation has been told
  networkDataList = reading.lines();
}

void CarefulCosaCollection::setTellFindings(bool tell) { own->tellsFindings = tell; }
void CarefulCosaCollection::setKeepObservations(bool keep) { own->keepsObservations = keep; }
void CarefulCosaCollection::setTakePlanned(bool take) { own->takesPlanned = take; }
PlaneNetwork const& CarefulCosaCollection::getObservations() const { return own->observed; }
PlaneNetwork CarefulCosaCollection::takeObservations() { return std::exchange(own->observed, {}); }
std::vector<FieldFinding> const& CarefulCosaCollection::getFindings() const { return own->findings; }

void CarefulCosaCollection::takeObservations(detail::CosaReading const& reading) {
  own->observed = PlaneNetwork();
  detail::PointNumbers numbers(own->observed.points);
  numbers.addDistinct(knownPointList);
  int block = -2;
  for (Observation const& observation : reading.observations) {
    if (holdsNothing(observation) && !isPlanned(observation)) continue;
    int const station = numbers[reading.stationOf(observation)];
    int const target = numbers[reading.targetOf(observation)];
    if (observation.block != block) own->observed.setUps.push_back({station, {observation.line, -1}});
    block = observation.block;
    PlaneNetwork::Origin const origin{observation.line, -1};
    double const noValue = std::numeric_limits<double>::quiet_NaN();
    if (observation.hasAngle || observation.planned == detail::CosaReading::Kind::Direction) {
      auto const setUp = static_cast<int>(own->observed.setUps.size()) - 1;
      double const value = isPlanned(observation) ? noValue : observation.angle;
      own->observed.directions.push_back({setUp, target, value, 0.0, 2, origin});
    } else {
      double const value = isPlanned(observation) ? noValue : observation.distance;
      own->observed.distances.push_back({station, target, value, 0.0, 1, origin});
    }
  }
}

void CarefulCosaCollection::readLines(std::istream& stream, detail::CosaReading& reading) {
  std::string line;
  utils::Pieces fields;
  detail::LineSource source(stream);
  for (bool isFirst = true; source.next(line); isFirst = false) {
    if (isFirst && source.lineNumber() > 1) {
      tell(1, Messages::tr("Line 1 is empty: the a-priori errors that stand there are not read"),
           Messages::tr("the line is empty: the a-priori errors that stand there are not read"));
    }
    try {
      if (detail::hasLostBytes(line)) throw QLogicError(Messages::tr("the line is no UTF-8"));
      fields.cut(line, ',', false);
      readLine(source.lineNumber(), line, fields, reading);
    } catch (std::bad_alloc const&) {
      throw;
    } catch (std::exception const& failure) {
      throw DataException(source.lineNumber(), failure.what());
    }
  }
}

void CarefulCosaCollection::readLine(int number, std::string const& line, utils::Pieces const& fields,
                                     detail::CosaReading& reading) {
  reading.beginLine(number);
  bool const isDistance = number > 1 && fields.size() == 3 && fields[1] == "S" && utils::isLikeNumber(fields[2]);
  if (isDistance && utils::fullNumber(fields[2]).value_or(0.0) < 0.0) {
    throw QLogicError(Messages::tr("the distance is negative: %1").arg(quoted(line)));
  }
  if (number == 1) {
    readHeadWithCare(line, fields);
    checkNumbers(number, line, fields, 0);
  } else if (fields.size() == 1) {
    reading.beginStation(fields[0]);
  } else if (fields.size() == 3 && readObservation(reading, fields)) {
    checkTaken(number, line, fields, reading);
  } else if (!(own->takesPlanned && fields.size() == 2 && readPlanned(reading, fields))) {
    tellPassedOver(number, line);
  }
}

/// Most often the line is missing, and a known point or a station stands in its place.
void CarefulCosaCollection::readHeadWithCare(std::string const& line, utils::Pieces const& fields) {
  try {
    readHead(fields);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::logic_error const&) {
    QString const text = Messages::tr("three a-priori errors are to stand here, such as 2,3,2, and not: %1");
    throw QLogicError(text.arg(quoted(line)));
  }
}

void CarefulCosaCollection::requireReadable() const {
  for (KnownPoint const& point : knownPointList) {
    detail::requireReadableName(point.name);
    detail::requireFinite(point.name, point.x + point.y);
  }
  if (own->writesObservations) return;
  for (NetworkDataInfo const& line : networkDataList) {
    detail::requireReadableName(line.start_name);
    detail::requireReadableName(line.end_name);
    detail::requireFinite(line.start_name, line.horizontal_angle + line.horizontal_distance);
    detail::requireNotNegative(line.start_name, line.end_name, line.horizontal_distance);
  }
}

void CarefulCosaCollection::write(std::ostream& stream) {
  requireReadable();
  if (own->writesObservations) requireReadableObservations();
  writeHead(stream);
  if (own->writesObservations) return writeObservations(stream);
  for (std::size_t begin = 0; begin < networkDataList.size();) {
    std::size_t end = begin;
    while (end < networkDataList.size() && networkDataList[end].start_name == networkDataList[begin].start_name) ++end;
    stream << networkDataList[begin].start_name << '\n';
    for (std::size_t i = begin; i < end; ++i) {
      NetworkDataInfo const& line = networkDataList[i];
      if (line.horizontalAngleFlag) writeDirection(stream, line.end_name, line.horizontal_angle);
    }
    for (std::size_t i = begin; i < end; ++i) {
      writeDistance(stream, networkDataList[i].end_name, networkDataList[i].horizontal_distance);
    }
    begin = end;
  }
}

}  // namespace kvn
