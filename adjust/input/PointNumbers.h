// Points of a plane network under construction, by their names.
#pragma once

#include "adjust/NameIndex.h"
#include "adjust/PlaneNetwork.h"
#include "core/AlgorithmException.h"
#include "records/Network.h"

#include <string>
#include <string_view>
#include <vector>

namespace kvn::detail {

/// Numbers points in the order in which they are first named. The known ones are named first, so that they have the
/// first numbers.
class PointNumbers {
 public:
  /// @param points  of the network, empty; the object adds to them, and must not outlive them.
  explicit PointNumbers(std::vector<PlaneNetwork::Point>& points) : list(points) {}

  /// Number of the name. A new name is a new point.
  int operator[](std::string_view name) {
    int const number = names.numberOf(name);
    if (number == static_cast<int>(list.size())) list.push_back({std::string(name)});
    return number;
  }

  /// Of two known points of one name the second counts.
  /// @return false for the second.
  bool addKnown(KnownPoint const& known) {
    PlaneNetwork::Point& point = list[static_cast<std::size_t>((*this)[known.name])];
    bool const isFirst = !point.isKnown;
    point.x = known.x;
    point.y = known.y;
    point.isKnown = true;
    return isFirst;
  }

  /// @throws AlgorithmException KnownPointNameRepeat for a name that comes twice.
  void addDistinct(std::vector<KnownPoint> const& knownPoints) {
    for (KnownPoint const& known : knownPoints) {
      if (!addKnown(known)) throw AlgorithmException(AlgorithmException::KnownPointNameRepeat, known.name);
    }
  }

 private:
  std::vector<PlaneNetwork::Point>& list;
  NameIndex names;
};

}  // namespace kvn::detail
