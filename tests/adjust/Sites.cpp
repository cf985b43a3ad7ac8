#include "Sites.h"

#include <cmath>
#include <string>
#include <tuple>

namespace test {

Site makeSite(int points, int known, unsigned seed, bool hasDistances) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> place(0.0, 400.0);
  Site site;
  for (int p = 0; p < points; ++p) {
    site.truth.emplace_back(place(random), place(random));
    kvn::PlaneNetwork::Point point{"P" + std::to_string(p)};
    point.isKnown = p < known;
    if (point.isKnown) std::tie(point.x, point.y) = site.truth.back();
    site.network.points.push_back(point);
    site.network.setUps.push_back({p});
  }
  for (int s = 0; s < points; ++s) {
    for (int t = 0; t < points; ++t) {
      if (s == t) continue;
      double const dx = site.truth[std::size_t(t)].first - site.truth[std::size_t(s)].first;
      double const dy = site.truth[std::size_t(t)].second - site.truth[std::size_t(s)].second;
      site.network.directions.push_back({s, t, std::atan2(dy, dx) + 0.1 * s});
      if (hasDistances) site.network.distances.push_back({s, t, std::hypot(dx, dy)});
    }
  }
  kvn::setErrors(site.network, kvn::ObservationErrors());
  return site;
}

kvn::PlaneNetwork disturbed(kvn::PlaneNetwork network, std::mt19937& random) {
  std::normal_distribution<double> normal;
  for (auto& d : network.directions) d.value += d.error * normal(random);
  for (auto& d : network.distances) d.value += d.error * normal(random);
  for (auto& p : network.points) {
    if (!p.isKnown) continue;
    p.x += p.error * normal(random);
    p.y += p.error * normal(random);
  }
  return network;
}

kvn::PlaneSettings aPriori() {
  kvn::PlaneSettings settings;
  settings.unitWeight = kvn::PlaneSettings::UnitWeight::APriori;
  return settings;
}

}  // namespace test
