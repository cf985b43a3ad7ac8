// Networks whose results are published, and what is published of them. Sources: samples/README.md.
#pragma once

#include <vector>

namespace test {

struct PublishedPoint {
  char const* name;
  double x, y, mx, my, semiMajor, semiMinor, bearing;  ///< metres and degrees; 0 where nothing is published
};

struct Published {
  char const* file;    ///< in samples/
  char const* source;  ///< author and year
  int redundancy;
  double unitError;
  double lastDigit;       ///< of the published coordinates, metres
  double lastErrorDigit;  ///< of the published errors, metres
  std::vector<PublishedPoint> points;
};

inline std::vector<Published> const& publishedNetworks() {
  static std::vector<Published> const networks = {
      {"net_charamza1990_p238.in2",
       "Charamza 1990",
       37,
       0.9636082,
       1e-6,
       1e-6,
       {{"403", 1054612.595217, 644373.608482, 0.003717, 0.004261, 0.004329, 0.003638, 70.966},
        {"407", 1054821.163144, 644025.975421, 0.002648, 0.002327, 0.002648, 0.002327, 0.161},
        {"409", 1054703.6703, 643769.618153, 0.002666, 0.002926, 0.002935, 0.002657, 79.433},
        {"411", 1054614.588716, 643487.045497, 0.003118, 0.004078, 0.004304, 0.002797, 114.901},
        {"413", 1054700.743544, 643249.947256, 0.005582, 0.004233, 0.006066, 0.003505, 151.338},
        {"416", 1054931.433693, 643315.193515, 0.004179, 0.00285, 0.004183, 0.002844, 3.385},
        {"418", 1055216.472347, 643580.486995, 0.002856, 0.003567, 0.003621, 0.002787, 74.284},
        {"420", 1055139.898861, 643814.894551, 0.002489, 0.002833, 0.002847, 0.002473, 78.617},
        {"422", 1055167.222373, 644041.461419, 0.002655, 0.002502, 0.002662, 0.002495, 168.275},
        {"424", 1055205.411422, 644318.242998, 0.003122, 0.003564, 0.003736, 0.002914, 118.641}}},
      {"net_lother_strehle2007_directions.in2",
       "Lother and Strehle 2007",
       4,
       1.26753,  // not printed by the source; from its residuals
       1e-4,
       1e-5,
       {{"30", 999.9831, 1497.3769, 0.01107, 0.01211, 0, 0, 0},
        {"40", 640.2582, 1439.7453, 0.01344, 0.01664, 0, 0, 0}}},
      // No known point is occupied. The errors and coordinates are the source's; it prints no ellipses and no unit
      // weight error, which follow here from its observations by an independent computation.
      {"net_niemeier2008.in2",
       "Niemeier 2008",
       8,
       0.966403,
       1e-4,
       1e-5,
       {{"Z108", 27816.1166, 40759.3769, 0.00301, 0.00313, 0.00327, 0.00286, 53.3084},
        {"Z110", 27904.0042, 41373.0193, 0.00289, 0.00312, 0.00324, 0.00275, 120.94119}}},
  };
  return networks;
}

}  // namespace test
