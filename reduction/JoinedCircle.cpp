// Joining the positions of a circle by the targets that they have in common.
#include "reduction/detail/JoinedCircle.h"

#include <cmath>
#include <queue>

namespace kvn::detail {
namespace {

class Joining {
 public:
  Joining(std::vector<CirclePart> const& all, std::size_t targets,
          std::function<void(std::size_t, std::size_t)> const& differs)
      : parts(all), tell(differs), partsOf(targets) {
    result.means.resize(targets);
    result.isJoined.resize(parts.size(), false);
  }

  JoinedCircle run() {
    for (std::size_t p = 0; p < parts.size(); ++p) {
      if (ready.empty() && !parts[p].directions.empty()) ready.push(p);
      for (CirclePart::Direction const& d : parts[p].directions) partsOf[d.target].push_back(p);
    }
    for (bool isFirst = true; !ready.empty(); isFirst = false) {
      std::size_t const next = ready.top();
      ready.pop();
      if (result.isJoined[next]) continue;
      result.isJoined[next] = true;
      join(next, isFirst);
    }
    return std::move(result);
  }

 private:
  void join(std::size_t p, bool isFirst) {
    CirclePart const& part = parts[p];
    CircleMean turn;
    if (isFirst) turn.add(0.0);
    for (CirclePart::Direction const& d : part.directions) {
      CircleMean const& mean = result.means[d.target];
      if (!mean.isEmpty()) turn.add(mean.value() - d.value, weightOfDifference(mean.weight(), d.readings));
    }
    for (std::size_t i = 0; i < part.directions.size(); ++i) {
      CircleMean& mean = result.means[part.directions[i].target];
      double const direction = part.directions[i].value + turn.value();
      if (!mean.isEmpty() && std::abs(utils::foldedAngle(direction - mean.value())) > kRoundTolerance) tell(p, i);
      mean.add(direction, part.directions[i].readings);
    }
    for (CirclePart::Direction const& d : part.directions) {
      for (std::size_t const other : partsOf[d.target]) ready.push(other);
      partsOf[d.target].clear();
    }
  }

  std::vector<CirclePart> const& parts;
  std::function<void(std::size_t, std::size_t)> const& tell;
  // Parts by target, so that each is looked at again only when one of its targets has been placed.
  std::vector<std::vector<std::size_t>> partsOf;
  std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>> ready;
  JoinedCircle result;
};

}  // namespace

JoinedCircle joinedCircle(std::vector<CirclePart> const& parts, std::size_t targets,
                          std::function<void(std::size_t part, std::size_t place)> const& tell) {
  return Joining(parts, targets, tell).run();
}

}  // namespace kvn::detail
