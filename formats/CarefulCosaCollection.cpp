#include "formats/CarefulCosaCollection.h"

#include "adjust/CommonFunction.h"
#include "core/DataException.h"
#include "core/System.h"
#include "formats/detail/CarefulText.h"
#include "formats/detail/LinePlaces.h"
#include "formats/detail/LineSource.h"

#include <utils/Number.h>
#include <utils/QLogicError.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace kvn {
namespace {

using detail::hasFullField;
using detail::quoted;

// Readings that differ by less are the same one, written twice: a ten-thousandth of a second, a hundredth of a
// millimetre.
constexpr double kSameAngle = 5e-10;
constexpr double kSameDistance = 1e-5;

void warn(QString const& text) {
  System const* const system = System::Instance();
  if (system != nullptr) system->sendMessage(text, Warning);
}

double ontoCircle(double angle) {
  double const fullCircle = 2.0 * CommonFunction::m_PI;
  double const rest = std::fmod(angle, fullCircle);
  return rest < 0.0 ? rest + fullCircle : rest;
}

bool isReadableName(std::string const& name) {
  return !name.empty() && name.find(',') == std::string::npos && detail::simplifiedUtf8(name) == name;
}

void warnOfRepeat(QString const& text, NetworkDataInfo const& line) {
  warn(text.arg(quoted(line.start_name), quoted(line.end_name)));
}

/// What the later line has and the first lacks; a contradiction is told.
void takeWhatIsMissing(NetworkDataInfo& first, NetworkDataInfo const& later) {
  if (!first.horizontalAngleFlag && later.horizontalAngleFlag) {
    first.horizontal_angle = later.horizontal_angle;
    first.horizontalAngleFlag = true;
  } else if (later.horizontalAngleFlag && std::abs(first.horizontal_angle - later.horizontal_angle) > kSameAngle) {
    warnOfRepeat(System::tr("The direction from %1 to %2 is given more than once; the first one counts"), first);
  }
  if (first.horizontal_distance == 0.0) {
    first.horizontal_distance = later.horizontal_distance;
  } else if (later.horizontal_distance != 0.0 &&
             std::abs(first.horizontal_distance - later.horizontal_distance) > kSameDistance) {
    warnOfRepeat(System::tr("The distance from %1 to %2 is given more than once; the first one counts"), first);
  }
}

}  // namespace

void CarefulCosaCollection::read(std::istream& stream) {
  knownPointList.clear();
  networkDataList.clear();
  std::string station;
  std::string line;
  utils::Pieces fields;
  detail::LineSource source(stream);
  for (bool isFirst = true; source.next(line); isFirst = false) {
    if (isFirst && source.lineNumber() > 1) {
      warn(System::tr("Line 1 is empty: the a-priori errors that stand there are not read"));
    }
    try {
      if (detail::hasLostBytes(line)) throw QLogicError(System::tr("the line is no UTF-8"));
      fields.cut(line, ',', false);
      readLine(source.lineNumber(), line, fields, station);
    } catch (std::exception const& failure) {
      throw DataException(source.lineNumber(), failure.what());
    }
  }
  joinRepeats();
}

void CarefulCosaCollection::readLine(int number, std::string const& line, utils::Pieces const& fields,
                                     std::string& station) {
  if (number == 1) {
    readHead(fields);
    checkTaken(number, line, fields);
  } else if (fields.size() == 1) {
    station = fields[0];
  } else if (fields.size() == 3 && readObservation(station, fields)) {
    checkTaken(number, line, fields);
  } else {
    warn(System::tr("Line %1 is passed over: %2").arg(number).arg(quoted(line)));
  }
}

void CarefulCosaCollection::checkTaken(int number, std::string const& line, utils::Pieces const& fields) {
  bool const isDirection = number > 1 && fields[1] == "L";
  bool const isDistance = number > 1 && fields[1] == "S";
  if (isDirection) {
    checkAngle(number, fields[2], networkDataList.back());
    return;
  }
  if (isDistance && networkDataList.back().horizontal_distance == 0.0) {
    warn(System::tr("Line %1 is passed over: %2").arg(number).arg(quoted(line)));
    return;
  }
  auto const firstNumber = fields.begin() + (number == 1 ? 0 : isDistance ? 2 : 1);
  auto const isNumber = [](std::string_view text) { return utils::fullNumber(text).has_value(); };
  if (std::all_of(firstNumber, fields.end(), isNumber)) return;
  warn(System::tr("Line %1 has something behind a number: %2").arg(number).arg(quoted(line)));
}

void CarefulCosaCollection::checkAngle(int number, std::string_view text, NetworkDataInfo& observation) {
  observation.horizontal_angle = ontoCircle(observation.horizontal_angle);
  if (!observation.horizontalAngleFlag) {
    warn(System::tr("Line %1: the direction from %2 to %3 is no angle: %4")
             .arg(number)
             .arg(quoted(observation.start_name), quoted(observation.end_name), quoted(text)));
  } else if (hasFullField(text)) {
    warn(System::tr("Line %1: minutes or seconds of 60 and above in %2").arg(number).arg(quoted(text)));
  }
}

void CarefulCosaCollection::joinRepeats() {
  std::vector<NetworkDataInfo> joined;
  joined.reserve(networkDataList.size());
  detail::LinePlaces places(joined);
  for (NetworkDataInfo& line : networkDataList) {
    bool const holdsNothing = !line.horizontalAngleFlag && line.horizontal_distance == 0.0;
    if (holdsNothing) continue;  // has been told
    std::size_t const place = places.placeOf(line, joined.size());
    if (place == joined.size()) {
      joined.push_back(std::move(line));
    } else {
      takeWhatIsMissing(joined[place], line);
    }
  }
  networkDataList = std::move(joined);
}

void CarefulCosaCollection::requireReadable() const {
  auto const requireName = [](std::string const& name) {
    if (isReadableName(name)) return;
    throw DataException(System::tr("The name cannot stand in a network file: %1").arg(quoted(name)).toStdString());
  };
  auto const requireNumber = [](std::string const& name, double value) {
    if (std::isfinite(value)) return;
    throw DataException(System::tr("A number of %1 is not finite").arg(quoted(name)).toStdString());
  };
  for (KnownPoint const& point : knownPointList) {
    requireName(point.name);
    requireNumber(point.name, point.x + point.y);
  }
  for (NetworkDataInfo const& line : networkDataList) {
    requireName(line.start_name);
    requireName(line.end_name);
    requireNumber(line.start_name, line.horizontal_angle + line.horizontal_distance);
    if (line.horizontal_distance >= 0.0) continue;
    QString const text = System::tr("The distance from %1 to %2 is negative");
    throw DataException(text.arg(quoted(line.start_name), quoted(line.end_name)).toStdString());
  }
}

void CarefulCosaCollection::write(std::ostream& stream) {
  requireReadable();
  writeHead(stream);
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
