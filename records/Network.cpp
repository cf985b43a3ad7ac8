#include "records/Network.h"

#include "records/NewId.h"

namespace kvn {

NetworkDataInfo::NetworkDataInfo() : id(newId()) {}

bool NetworkDataInfo::operator<(NetworkDataInfo const& other) const {
  return horizontal_angle < other.horizontal_angle;
}

bool NetworkDataInfo::operator==(NetworkDataInfo const& other) const {
  return start_name == other.start_name && end_name == other.end_name;
}

bool NetworkDataInfo::operator==(std::string const& otherId) const { return id == otherId; }

KnownPoint::KnownPoint() : id(newId()) {}

KnownPoint::KnownPoint(std::string const& pointName, double const& north, double const& east, double const& height) {
  name = pointName;
  x = north;
  y = east;
  z = height;
}

bool Network::isEmpty() const { return lines.empty(); }

void Network::clear() {
  knownPoints.clear();
  lines.clear();
}

}  // namespace kvn
