// The angle that several observations share.
#pragma once

#include <cstddef>
#include <vector>

namespace kvn::detail {

/// Up to `most` of the items, evenly spread over the list.
template <typename Item>
std::vector<Item> spread(std::vector<Item> const& items, std::size_t most) {
  if (items.size() <= most) return items;
  std::vector<Item> chosen;
  for (std::size_t i = 0; i < most; ++i) chosen.push_back(items[i * items.size() / most]);
  return chosen;
}

/// An angle in radians and the distance over which it was seen.
struct SeenAngle {
  double angle;
  double distance;
};

/// The angle with which most of the others agree, radians.
double commonAngle(std::vector<SeenAngle> const& angles);

}  // namespace kvn::detail
