#include "records/CoordinatePointInfo.h"

#include "records/NewId.h"

#include <tuple>

namespace kvn {

CoordinatePointInfo::CoordinatePointInfo() : id(newId()) {}

bool CoordinatePointInfo::operator==(std::string const& otherId) const { return id == otherId; }

bool CoordinatePointInfo::operator==(CoordinatePointInfo const& other) const {
  return std::tie(id, name, signal, N, E, Z) == std::tie(other.id, other.name, other.signal, other.N, other.E, other.Z);
}

}  // namespace kvn
