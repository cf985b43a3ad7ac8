// Approximate coordinates beyond the walks: resections, intersections, free stations, floating groups.
#include "adjust/Networks.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utils/QLogicError.h>
#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <complex>
#include <set>

namespace {

using kvn::Network;
using kvn::TraverseAdjust;
using kvn::UnplacedPoint;

using Place = std::complex<double>;  // x + i y
using Places = std::map<std::string, Place>;

/// "S: A B* C" is a station with directions to A, B and C and a distance to B; "S: =A" has a distance to A alone. The
/// circles' zeros lie anywhere.
Network networkOf(Places const& places, std::vector<std::string> const& known,
                  std::vector<std::string> const& stations) {
  Network network;
  for (std::string const& name : known) {
    network.knownPoints.emplace_back(name, places.at(name).real(), places.at(name).imag(), 0.0);
  }
  double zero = 0.3;
  for (std::string const& text : stations) {
    QStringList const parts = QString::fromStdString(text).split(' ');
    std::string const from = parts.front().chopped(1).toStdString();
    zero = std::fmod(zero + 1.1, 2.0 * std::acos(-1.0));
    for (QString part : parts.mid(1)) {
      bool const isMeasured = part.endsWith('*') || part.startsWith('=');
      bool const isSighted = !part.startsWith('=');
      std::string const to = part.remove('*').remove('=').toStdString();
      Place const sight = places.at(to) - places.at(from);
      double const direction = std::fmod(std::arg(sight) - zero + 8.0 * std::acos(-1.0), 2.0 * std::acos(-1.0));
      network.lines.push_back(test::line(from, to, isSighted ? direction : 0.0, isMeasured ? std::abs(sight) : 0.0));
      network.lines.back().horizontalAngleFlag = isSighted;
    }
  }
  return network;
}

/// Largest distance of an approximate place from the truth; -1 when the start fails.
double missBy(Network const& network, Places const& truth) {
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(network, kvn::MissingDirection::IsLeftOut));
  try {
    adjustment.calculateApproximate();
  } catch (kvn::AlgorithmException const&) {
    return -1.0;
  }
  double worst = 0.0;
  for (kvn::PointInfo const& point : adjustment.getPointX0Y0()) {
    worst = std::max(worst, std::abs(Place(point.x, point.y) - truth.at(point.name)));
  }
  return worst;
}

TEST(StartSearch, PlacesWhatFewObservationsDetermine) {
  Places const places{{"A", {1000.0, 1000.0}}, {"B", {1000.0, 2000.0}}, {"C", {1800.0, 1400.0}},
                      {"D", {300.0, 1500.0}},  {"P", {1300.0, 1450.0}}, {"Q", {1250.0, 1700.0}},
                      {"R", {1500.0, 1750.0}}, {"S", {1550.0, 1500.0}}, {"T", {1420.0, 1620.0}},
                      {"U", {800.0, 1600.0}},  {"V", {700.0, 1350.0}},  {"W", {850.0, 1250.0}}};
  struct Case {
    char const* what;
    std::vector<std::string> known;
    std::vector<std::string> stations;
  };
  Case const cases[] = {
      {"resection from three points", {"A", "B", "C"}, {"P: A B C"}},
      {"forward intersection", {"A", "B"}, {"A: B P", "B: A P"}},
      {"intersection whose point has a distance elsewhere", {"A", "B"}, {"A: B P", "B: A P", "P: A Q*", "Q: P"}},
      {"side intersection: one ray, and the angle at the point", {"A", "B", "C"}, {"A: B P", "P: B C"}},
      {"free station by two sights with distances", {"A", "B"}, {"P: A* B*"}},
      {"free station by one distance and three directions", {"A", "B", "C"}, {"P: A* B C"}},
      {"two distances, the side by the angle between", {"A", "B"}, {"P: A B =A =B"}},
      {"two distances, the side by a ray", {"A", "B", "C"}, {"C: A P", "P: =A =B C"}},
      {"a chain that begins at unknown stations", {"A", "B"}, {"P: Q* A*", "Q: P* R*", "R: Q* B*"}},
      {"orientation handed on between stations without places", {"A", "B", "C"}, {"A: B P", "P: A Q", "Q: P B C"}},
      {"a group that shares two points by rays", {"A", "B", "C"}, {"P: Q* A", "Q: P* R* B", "R: Q* P A B", "S: P* Q*"}},
      {"a group of directions alone, with the size from the known points",
       {"A", "B"},
       {"P: Q R A B", "Q: P R A B", "R: P Q"}},
      {"two groups that hang on each other",
       {"A", "B", "C"},
       {"P: Q* T* A*", "Q: P* T*", "R: S* T* B*", "S: R* T* C*", "U: V* W* A*", "V: U* W* D*", "D: V* B*", "W: A*"}},
      {"three known stations that see each other are no help: the point sees two, and is seen once",
       {"A", "B", "C"},
       {"A: B C P", "P: B C"}},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    // Exact observations: what is left is rounding, a thousandth of a millimetre at the most over 1 km.
    double const worst = missBy(networkOf(places, c.known, c.stations), places);
    EXPECT_GE(worst, 0.0);
    EXPECT_LT(worst, 1e-6);
  }
  // A group that is turned and moved as a body is solved from 25 starts, each of which asks whether to go on.
  Case const& body = cases[10];
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(networkOf(places, body.known, body.stations)));
  int asked = 0;
  adjustment.setCancelCall([&asked] { return ++asked == 30; });
  EXPECT_THROW(adjustment.calculateApproximate(), QLogicError);
}

/// The reasons of all points that are left, sorted by name: "P SeenOnce".
std::vector<std::string> reasonsOf(Network const& network) {
  char const* const names[] = {"NoConnection", "SeenOnce",    "OneDistance", "FewTargets", "OnUnplaced",
                               "TooFew",       "OnOneCircle", "TwoPlaces",   "NoStart"};
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(network, kvn::MissingDirection::IsLeftOut));
  std::string const failure = test::algorithmFailureOf([&] { adjustment.calculateApproximate(); });
  EXPECT_THAT(failure, testing::HasSubstr("No enough data"));
  std::vector<std::string> reasons;
  for (UnplacedPoint const& point : adjustment.getUnplacedPoints()) {
    reasons.push_back(point.name + " " + names[point.reason]);
  }
  std::sort(reasons.begin(), reasons.end());
  return reasons;
}

TEST(StartSearch, NamesThePointsThatItCannotPlaceAndWhy) {
  Places places{{"A", {0.0, 0.0}},     {"B", {0.0, 1000.0}},  {"C", {900.0, 500.0}}, {"P", {400.0, 300.0}},
                {"Q", {600.0, 700.0}}, {"R", {450.0, 600.0}}, {"S", {200.0, 800.0}}, {"N", {12.0, 500.0}}};
  // On the circle through A, B and C: its centre is at (x, 500) with x² + 500² = (900 - x)².
  double const x = (900.0 * 900.0 - 500.0 * 500.0) / 1800.0;
  places["O"] = Place(x, 500.0) + std::polar(900.0 - x, 2.2);
  struct Case {
    char const* what;
    std::vector<std::string> known;
    std::vector<std::string> stations;
    std::vector<std::string> reasons;
  };
  Case const cases[] = {
      {"one ray", {"A", "B"}, {"A: B P Q*"}, {"P SeenOnce"}},
      {"one distance", {"A", "B"}, {"A: B Q* =P"}, {"P OneDistance"}},
      {"a station that sees two points", {"A", "B"}, {"A: B Q*", "P: A B"}, {"P FewTargets"}},
      {"a group of its own", {"A", "B"}, {"A: B Q*", "P: R*", "R: P*"}, {"P NoConnection", "R NoConnection"}},
      {"a group that hangs on one point",
       {"A", "B"},
       {"A: B Q*", "Q: A", "P: R* Q*", "R: P*"},
       {"P TooFew", "R OnUnplaced"}},
      {"a point on the danger circle", {"A", "B", "C"}, {"O: A B C"}, {"O OnOneCircle"}},
      {"two distances and no direction", {"A", "B"}, {"A: B Q*", "Q: =P", "B: A =P"}, {"P TwoPlaces"}},
      // The two places are 24 m apart, 1 in 40 of the sights: a mirror is a mirror, however near.
      {"two distances close to the line between", {"A", "B"}, {"A: B =N", "B: A =N"}, {"N TwoPlaces"}},
      {"a point that hangs on a point that hangs", {"A", "B"}, {"A: B P", "P: A R"}, {"P TooFew", "R SeenOnce"}},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<std::string> const reasons = reasonsOf(networkOf(places, c.known, c.stations));
    EXPECT_EQ(reasons, c.reasons);
  }
}

TEST(StartSearch, TakesNoPlaceFromRepeatedSightsOfOneStation) {
  // Two readings to one target that differ by 0.01 rad meet at the station itself.
  Network network;
  network.knownPoints = {{"A", 0.0, 0.0, 0.0}, {"B", 0.0, 100.0, 0.0}};
  network.lines = {test::line("A", "B", 0.0, 0.0), test::line("A", "P", 1.0, 0.0), test::line("A", "P", 1.01, 0.0),
                   test::line("A", "Q", 2.0, 50.0)};
  EXPECT_THAT(reasonsOf(network), testing::ElementsAre("P TooFew"));
}

TEST(StartSearch, TellsTheUnplacedPointsInOneMessage) {
  test::Host host;
  std::vector<std::pair<QString, kvn::MessType>> messages;
  host.system.setSendMessageFunc([&](QString const& text, kvn::MessType type) { messages.emplace_back(text, type); });
  Places const places{
      {"A", {0.0, 0.0}}, {"B", {0.0, 100.0}}, {"P", {50.0, 50.0}}, {"Q", {70.0, 20.0}}, {"R", {90.0, 9.0}}};
  Network const network = networkOf(places, {"A", "B"}, {"A: B P R*", "B: A Q"});
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(network, kvn::MissingDirection::IsLeftOut));
  EXPECT_THROW(adjustment.calculateApproximate(), kvn::AlgorithmException);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].second, kvn::Error);
  EXPECT_EQ(messages[0].first, "No approximate coordinates: P, Q (seen once and without a distance)");
}

// ---- Random networks against the rank of their error equations at the truth.

struct Stripped {
  Network network;
  Places truth;
};

/// Points in a square, a part of them stations that see some of the nearest others; a part of the sights has a
/// distance.
Stripped stripped(int points, int known, double occupied, int sights, double distances, unsigned seed) {
  std::mt19937 random(seed);
  auto const uniform = [&random] { return static_cast<double>(random()) / 4294967296.0; };
  double const side = 100.0 * std::sqrt(points);
  std::vector<Place> places;
  while (static_cast<int>(places.size()) < points) {
    Place const next(side * uniform(), side * uniform());
    bool const apart = std::all_of(places.begin(), places.end(), [&](Place p) { return std::abs(p - next) > 20.0; });
    if (apart) places.push_back(next);
  }
  auto const nameOf = [](int point) { return "P" + std::to_string(point); };
  Places truth;
  for (int p = 0; p < points; ++p) truth[nameOf(p)] = places[static_cast<std::size_t>(p)];
  std::vector<std::string> stations;
  for (int s = 0; s < points; ++s) {
    if (uniform() > occupied) continue;
    std::vector<std::pair<double, int>> others;
    for (int t = 0; t < points; ++t) {
      double const away = std::abs(truth[nameOf(t)] - truth[nameOf(s)]);
      if (t != s) others.emplace_back(away * (0.7 + 0.6 * uniform()), t);
    }
    std::sort(others.begin(), others.end());
    std::string text = nameOf(s) + ":";
    for (int i = 0; i < sights && i < points - 1; ++i) {
      if (uniform() < 0.15) continue;
      text += " " + nameOf(others[static_cast<std::size_t>(i)].second) + (uniform() < distances ? "*" : "");
    }
    if (text.back() != ':') stations.push_back(text);
  }
  std::vector<std::string> names;
  names.reserve(static_cast<std::size_t>(known));
  for (int p = 0; p < known; ++p) names.push_back(nameOf(p));
  return {networkOf(truth, names, stations), truth};
}

/// The error equations of a network, dense, written down from their definition.
class Equations {
 public:
  explicit Equations(Network const& network) : lines(network.lines) {
    std::set<std::string> known;
    for (auto const& point : network.knownPoints) known.insert(point.name);
    for (auto const& line : lines) {
      stationOf.emplace(line.start_name, 0);
      for (std::string const& name : {line.start_name, line.end_name}) {
        if (known.count(name) == 0) pointOf.emplace(name, 0);
      }
    }
    for (auto& entry : pointOf) entry.second = unknowns, unknowns += 2;
    for (auto& entry : stationOf) entry.second = unknowns++;
  }

  /// Misclosures, in metres at 100 m, and derivatives.
  void at(Places const& places, std::map<std::string, double> const& zeros, Eigen::VectorXd& misclosures,
          Eigen::MatrixXd& factors) const {
    auto const rows = static_cast<Eigen::Index>(2 * lines.size());
    misclosures = Eigen::VectorXd::Zero(rows);
    factors = Eigen::MatrixXd::Zero(rows, unknowns);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      auto const& line = lines[i];
      Place const sight = places.at(line.end_name) - places.at(line.start_name);
      auto const row = static_cast<Eigen::Index>(2 * i);
      double const turn = std::arg(sight) - zeros.at(line.start_name) - line.horizontal_angle;
      misclosures[row] = 100.0 * std::remainder(turn, 2.0 * std::acos(-1.0));
      Place const across = 100.0 * sight * Place(0.0, 1.0) / std::norm(sight);
      add(line, across, row, factors);
      factors(row, stationOf.at(line.start_name)) -= 100.0;
      if (line.horizontal_distance == 0.0) continue;
      misclosures[row + 1] = std::abs(sight) - line.horizontal_distance;
      add(line, sight / std::abs(sight), row + 1, factors);
    }
  }

  /// Points that no vector of the null space moves.
  std::set<std::string> held(Places const& truth) const {
    std::map<std::string, double> zeros;
    for (auto const& entry : stationOf) zeros[entry.first] = 0.0;
    Eigen::VectorXd misclosures;
    Eigen::MatrixXd factors;
    at(truth, zeros, misclosures, factors);
    Eigen::MatrixXd const kernel = Eigen::FullPivLU<Eigen::MatrixXd>(factors).setThreshold(1e-9).kernel();
    std::set<std::string> names;
    for (auto const& [name, at] : pointOf) {
      if (kernel.middleRows(at, 2).cwiseAbs().maxCoeff() < 1e-6 * kernel.cwiseAbs().maxCoeff() || kernel.isZero()) {
        names.insert(name);
      }
    }
    return names;
  }

  /// Whether another place of the points fits all observations: Gauss and Newton from places at random.
  bool hasSecondSolution(Places const& truth, unsigned seed) const {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> anywhere(0.0, 400.0);
    for (int start = 0; start < 400; ++start) {
      Places places = truth;
      for (auto const& entry : pointOf) places[entry.first] = {anywhere(random), anywhere(random)};
      if (settlesElsewhere(places, truth)) return true;
    }
    return false;
  }

  std::map<std::string, int> pointOf;  // first unknown of each point

 private:
  void add(kvn::NetworkDataInfo const& line, Place factor, Eigen::Index row, Eigen::MatrixXd& factors) const {
    for (auto const& [name, sign] : {std::pair{line.end_name, 1.0}, {line.start_name, -1.0}}) {
      auto const entry = pointOf.find(name);
      if (entry == pointOf.end()) continue;
      factors(row, entry->second) += sign * factor.real();
      factors(row, entry->second + 1) += sign * factor.imag();
    }
  }

  bool settlesElsewhere(Places places, Places const& truth) const {
    std::map<std::string, double> zeros;
    for (auto const& line : lines) {
      Place const sight = places.at(line.end_name) - places.at(line.start_name);
      zeros.emplace(line.start_name, std::arg(sight) - line.horizontal_angle);
    }
    Eigen::VectorXd misclosures;
    Eigen::MatrixXd factors;
    double damping = 1e-2;
    double before = 1e300;
    for (int round = 0; round < 60; ++round) {
      at(places, zeros, misclosures, factors);
      damping = misclosures.norm() < before ? 0.3 * damping : 4.0 * damping;
      before = misclosures.norm();
      Eigen::MatrixXd normal = factors.transpose() * factors;
      normal.diagonal() *= 1.0 + damping;
      Eigen::VectorXd const step = normal.ldlt().solve(-factors.transpose() * misclosures);
      if (!step.allFinite()) return false;
      for (auto const& [name, at] : pointOf) places[name] += Place(step[at], step[at + 1]);
      for (auto const& [name, at] : stationOf) zeros[name] += step[at];
    }
    at(places, zeros, misclosures, factors);
    double apart = 0.0;
    for (auto const& [name, at] : pointOf) apart = std::max(apart, std::abs(places[name] - truth.at(name)));
    return misclosures.norm() < 1e-6 && apart > 0.01;
  }

  std::vector<kvn::NetworkDataInfo> lines;
  std::map<std::string, int> stationOf;
  int unknowns = 0;
};

/// Counts over random networks.
struct Rates {
  int solvable = 0;
  int solved = 0;
  int twoPlaces = 0;  ///< solvable, refused, and there is a second solution
  int refused = 0;    ///< not solvable
  int named = 0;      ///< of these, the points that are left are those that something moves
};

void judge(Stripped const& made, unsigned seed, Rates& rates) {
  Equations const equations(made.network);
  std::set<std::string> const held = equations.held(made.truth);
  TraverseAdjust adjustment;
  try {
    adjustment.readAlgorithmData(test::loaded(made.network, kvn::MissingDirection::IsLeftOut));
  } catch (kvn::AlgorithmException const&) {
    return;  // a point too few for any calculation
  }
  std::string const failure = test::algorithmFailureOf([&] { adjustment.calculateApproximate(); });
  if (failure == "no failure") {
    for (auto const& point : adjustment.getPointX0Y0()) {
      EXPECT_LT(std::abs(Place(point.x, point.y) - made.truth.at(point.name)), 0.01) << seed << ": " << point.name;
    }
  }
  if (held.size() == equations.pointOf.size()) {
    ++rates.solvable;
    if (failure == "no failure") {
      ++rates.solved;
    } else if (equations.hasSecondSolution(made.truth, seed)) {
      ++rates.twoPlaces;
    } else {
      ADD_FAILURE() << "solvable, refused: " << seed;
    }
    return;
  }
  ++rates.refused;
  EXPECT_NE(failure, "no failure") << seed;
  std::set<std::string> left;
  for (UnplacedPoint const& point : adjustment.getUnplacedPoints()) {
    if (point.reason != UnplacedPoint::TwoPlaces) left.insert(point.name);
  }
  std::set<std::string> loose;
  for (auto const& entry : equations.pointOf) {
    if (held.count(entry.first) == 0) loose.insert(entry.first);
  }
  rates.named += left == loose ? 1 : 0;
}

TEST(StartSearch, SolvesWhatHasFullRankAndNamesTheRest) {
  Rates rates;
  for (unsigned seed = 1; seed <= 60; ++seed) {
    judge(stripped(5 + static_cast<int>(seed % 4), 2, 0.8, 4, 0.6, seed), seed, rates);
    judge(stripped(8, 3, 0.7, 4, 0.4, seed), seed, rates);
    judge(stripped(8, 3, 0.9, 5, 0.0, seed), seed, rates);
  }
  // Each of the three outcomes has to turn up for the comparison to mean something.
  EXPECT_GT(rates.solved, 60);
  EXPECT_GT(rates.twoPlaces, 0);
  EXPECT_GT(rates.refused, 15);
  EXPECT_EQ(rates.solved + rates.twoPlaces, rates.solvable);
  EXPECT_EQ(rates.named, rates.refused);
}

TEST(StartSearch, GivesALargeNetworkAStartFromWhichTheIterationSettles) {
  // No known point is occupied, so that the walk cannot even begin.
  Stripped made = stripped(150, 6, 1.0, 6, 0.7, 5);
  auto& lines = made.network.lines;
  auto const isAtKnown = [&](kvn::NetworkDataInfo const& line) {
    auto const& known = made.network.knownPoints;
    return std::any_of(known.begin(), known.end(), [&](auto const& point) { return point.name == line.start_name; });
  };
  lines.erase(std::remove_if(lines.begin(), lines.end(), isAtKnown), lines.end());
  TraverseAdjust adjustment;
  adjustment.readAlgorithmData(test::loaded(made.network, kvn::MissingDirection::IsLeftOut));
  EXPECT_EQ(test::algorithmFailureOf([&] { adjustment.calculateAdjust(); }), "no failure");
  EXPECT_LE(adjustment.getSummary().iterations, 3);
  for (auto const& point : adjustment.getPoints()) {
    EXPECT_LT(std::abs(Place(point.x, point.y) - made.truth.at(point.name)), 1e-5) << point.name;
  }
}

}  // namespace
