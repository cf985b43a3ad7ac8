// Open, connecting and closed traverse: published cases, known truth, and what they refuse.
#include "adjust/Networks.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <cmath>

namespace {

using kvn::Network;
using kvn::PointInfo;
using test::kSecondsPerRadian;
using test::line;

enum Method { Open = 1, Connect, Closed };
constexpr Method kMethods[] = {Open, Connect, Closed};
using utils::kPi;
// Coordinates of a kilometre carry 1e-13 m, and some dozens of them are added up.
constexpr double kExact = 1e-9;

kvn::AlgorithmAdjust adjusted(Method method, Network const& network) {
  kvn::Configure configure;
  configure.AdjustMethod = method;
  kvn::AlgorithmAdjust driver;
  driver.setConfigure(configure);
  driver.setNetworkData(network);
  driver.calculateAdjust();
  return driver;
}

PointInfo point(std::string const& name, double x, double y) {
  PointInfo result;
  result.name = name;
  result.x = x;
  result.y = y;
  return result;
}

/// The lines of a station in the middle of three points, its circle as it happens to lie.
std::vector<kvn::NetworkDataInfo> station(PointInfo const& back, PointInfo const& at, PointInfo const& fore,
                                          double reading = 0.0, double angleError = 0.0) {
  double angle = test::azimuth(at, fore) - test::azimuth(at, back);
  if (angle < 0.0) angle += 2.0 * kPi;
  double const backReading = reading * (2.0 * kPi - angle);  // below the one forward, wherever it lies
  return {line(at.name, back.name, backReading, 0.0),
          line(at.name, fore.name, backReading + angle + angleError, std::hypot(fore.x - at.x, fore.y - at.y))};
}

void shuffleInto(Network& network, std::vector<std::vector<kvn::NetworkDataInfo>> stations, std::mt19937& random) {
  std::shuffle(stations.begin(), stations.end(), random);
  for (auto& lines : stations) {
    std::shuffle(lines.begin(), lines.end(), random);
    network.lines.insert(network.lines.end(), lines.begin(), lines.end());
  }
}

void know(Network& network, std::vector<PointInfo> const& points) {
  for (PointInfo const& p : points) network.knownPoints.emplace_back(p.name, p.x, p.y, 0.0);
}

void expectPoints(std::vector<PointInfo> const& found, std::vector<PointInfo> const& expected, double tolerance) {
  ASSERT_EQ(found.size(), expected.size());
  for (std::size_t i = 0; i < found.size(); ++i) {
    SCOPED_TRACE(expected[i].name);
    EXPECT_EQ(found[i].name, expected[i].name);
    EXPECT_NEAR(found[i].x, expected[i].x, tolerance);
    EXPECT_NEAR(found[i].y, expected[i].y, tolerance);
  }
}

Network readSample(char const* name) {
  kvn::CosaCollection file;
  file.read(test::samplePath(name).toStdString());
  return {file.getKnownPointList(), file.getNetworkDataList()};
}

// Source: samples/README.md. It rounds every coordinate difference and every correction to 1 mm, which makes up to 1 mm
// in the misclosures, and prints coordinates to 1 cm.
TEST(ConnectTraverse, AgreesWithThePublishedTraverse) {
  auto const result = adjusted(Connect, readSample("trav_connecting_fr_5legs.in2"));
  kvn::TraverseSummary const& summary = result.getTraverseSummary();
  ASSERT_TRUE(summary.hasMisclosure);
  EXPECT_NEAR(-6.0 * summary.angleCorrection * kSecondsPerRadian, -77.76, 0.005);
  EXPECT_NEAR(summary.fx, 0.016, 0.001);
  EXPECT_NEAR(summary.fy, -0.039, 0.001);
  EXPECT_NEAR(summary.sumDistance, 365.86, 1e-9);
  EXPECT_NEAR(summary.relativeError, std::hypot(0.016, 0.039) / 365.86, 2e-6);
  ASSERT_EQ(summary.azimuths.size(), 8U);
  EXPECT_NEAR(summary.azimuths[1], 90.76 * kPi / 200.0, 0.0005 * kPi / 200.0);  // printed in gon to three decimals
  EXPECT_NEAR(summary.azimuths[6], summary.azimuths[7], 1e-12);
  std::vector<PointInfo> published{point("1", 215331.76, 782952.43), point("2", 215316.81, 783040.90),
                                   point("3", 215323.97, 783103.92), point("4", 215301.10, 783169.75),
                                   point("C", 215327.80, 783228.94)};
  auto const& points = result.getPointList();
  ASSERT_EQ(points.size(), 8U);
  expectPoints({points.begin() + 2, points.end() - 1}, published, 0.005);
}

// Source: samples/README.md. It rounds azimuths to a second, half of which is 0.2 mm in each leg, and coordinate
// differences to 1 mm; 1.1 mm is the largest difference.
TEST(OpenTraverse, AgreesWithThePublishedTraverse) {
  auto const result = adjusted(Open, readSample("trav_open_2legs.in2"));
  expectPoints(result.getPointList(),
               {point("A", 223.456, 234.567), point("B", 154.147, 274.567), point("1", 89.416, 212.037),
                point("2", 49.969, 299.982)},
               0.0011);
  EXPECT_FALSE(result.getTraverseSummary().hasMisclosure);
  kvn::Degree const last = result.getDegreeInfoList().back();
  EXPECT_EQ(last.degree * 100 + last.minute, 11409);
  EXPECT_NEAR(last.second, 30.0, 0.5);
}

/// Points in some order of a walk; a polygon goes around counter-clockwise, seen with x north and y east.
std::vector<PointInfo> walk(int count, bool isPolygon, std::mt19937& random) {
  std::uniform_real_distribution<double> share(0.0, 1.0);
  std::vector<PointInfo> points;
  for (int i = 0; i < count; ++i) {
    std::string const name = "P" + std::to_string(i);
    double const azimuth = -2.0 * kPi * (i + 0.8 * share(random)) / count;
    double const radius = 100.0 + 900.0 * share(random);
    points.push_back(isPolygon ? point(name, radius * std::cos(azimuth), radius * std::sin(azimuth))
                               : point(name, 1000.0 * share(random), 1000.0 * share(random)));
  }
  return points;
}

/// Stations on a walk, in random order, with an error of one angle; a known point that nothing sights stands first.
Network onWalk(Method method, std::vector<PointInfo> const& p, double angleError, std::mt19937& random) {
  std::uniform_real_distribution<double> reading(0.0, 1.0);
  std::size_t const n = p.size();
  std::vector<std::vector<kvn::NetworkDataInfo>> stations;
  for (std::size_t i = 1; i + 1 < n; ++i) {
    stations.push_back(station(p[i - 1], p[i], p[i + 1], reading(random), i == 1 ? angleError : 0.0));
  }
  Network network;
  network.knownPoints.emplace_back("elsewhere", 5.0, 5.0, 0.0);
  know(network, {p[1], p[0]});
  if (method == Connect) know(network, {p[n - 1], p[n - 2]});
  if (method == Closed) {
    stations.push_back(station(p[n - 2], p[n - 1], p[0], reading(random)));
    stations.push_back(station(p[n - 1], p[0], p[1], reading(random)));
  }
  shuffleInto(network, stations, random);
  return network;
}

TEST(SingleTraverses, ReproduceThePointsAndShareTheAngularMisclosureInAnyOrderOfStations) {
  for (unsigned seed = 0; seed < 600; ++seed) {
    std::mt19937 random(seed);
    Method const method = kMethods[seed % 3];
    SCOPED_TRACE(seed);
    int const count = 5 + static_cast<int>(seed / 20);
    std::vector<PointInfo> truth = walk(count, method == Closed, random);
    // A connecting traverse adds full circles of its own, as many as it turns: both signs must come out small.
    double const error = method == Open || seed % 2 == 0 ? 0.0 : (seed % 4 < 2 ? -30.0 : 30.0) / kSecondsPerRadian;
    auto const result = adjusted(method, onWalk(method, truth, error, random));
    int const angles = method == Closed ? count : count - 2;
    EXPECT_NEAR(result.getTraverseSummary().angleCorrection, -error / angles, 1e-12);
    if (method != Open) {
      kvn::TraverseInfo const& first = result.getTraverseAdjustInfoList().front();
      EXPECT_NEAR(first.adjustedAngle - first.angle, -error / angles, 1e-12);
    }
    if (error != 0.0) continue;
    // Around the polygon the chain begins at P1, whose back point is known too, and ends at P0.
    if (method == Closed) std::rotate(truth.begin(), truth.begin() + 1, truth.end());
    expectPoints(result.getPointList(), truth, kExact);
    EXPECT_NEAR(result.getTraverseSummary().fs, 0.0, kExact);
  }
}

/// K1, K2, P, K3, K4 on a line to the east; the legs K2-P and P-K3 measured as told.
Network straight(double first, double second) {
  std::vector<PointInfo> const p{point("K1", 0, -100), point("K2", 0, 0), point("P", 0, 50), point("K3", 0, 200),
                                 point("K4", 0, 300)};
  Network network;
  know(network, {p[0], p[1], p[3], p[4]});
  for (std::size_t i = 1; i < 4; ++i) {
    auto const lines = station(p[i - 1], p[i], p[i + 1]);
    network.lines.insert(network.lines.end(), lines.begin(), lines.end());
  }
  network.lines[1].horizontal_distance = first;
  network.lines[3].horizontal_distance = second;
  return network;
}

TEST(ConnectTraverse, SharesTheCoordinateMisclosureByLength) {
  // 0.1 mm in a metre too short: fy is -0.02, of which the legs take 0.005 and 0.015.
  Network network = straight(50.0 * (1.0 - 1e-4), 150.0 * (1.0 - 1e-4));
  network.lines[2].horizontal_distance = 77.0;  // back from P: of two distances of a station the second counts
  auto const result = adjusted(Connect, network);
  EXPECT_NEAR(result.getTraverseSummary().fy, -0.02, kExact);
  auto const& stations = result.getTraverseAdjustInfoList();
  EXPECT_NEAR(stations[0].adjustedDeltaY - stations[0].deltaY, 0.005, kExact);
  EXPECT_NEAR(stations[1].adjustedDeltaY - stations[1].deltaY, 0.015, kExact);
  EXPECT_NEAR(result.getPointList()[2].y, 50.0, kExact);
  EXPECT_EQ(result.getPointList()[3].y, 200.0);
}

/// The straight traverse, or for the closed one the polygon K2, P, K3 with the same lines but for its ends.
Network chainFor(Method method) {
  Network network = straight(50.0, 150.0);
  if (method == Closed) {
    network.lines[0].end_name = "K3";
    network.lines[5].end_name = "K2";
  }
  return network;
}

/// What a run on the changed traverse says: failure as "text|name|index" or the text of another type.
std::string refusal(Method method, std::function<void(Network&)> const& change) {
  Network network = chainFor(method);
  change(network);
  try {
    return test::algorithmFailureOf([&] { adjusted(method, network); });
  } catch (kvn::DataException const& failure) {
    return failure.what();
  }
}

TEST(SingleTraverses, RefuseWhatTheyCannotCompute) {
  auto const asItIs = [](Network&) {};
  auto const third = [](Network& n) { n.lines.insert(n.lines.begin() + 4, line("P", "Q", 1.0, 0.0)); };
  auto const equal = [](Network& n) { n.lines[3].horizontal_angle = n.lines[2].horizontal_angle; };
  auto const single = [](Network& n) { n.lines.pop_back(); };
  auto const noBack = [](Network& n) { n.lines[0].end_name = "Q"; };
  auto const noEnd = [](Network& n) { n.knownPoints[2].name = "Q"; };
  auto const noFore = [](Network& n) { n.knownPoints[3].name = "Q"; };
  auto const noKnown = [](Network& n) { n.knownPoints = {{"Q", 0, 0, 0}, {"R", 1, 1, 0}}; };
  auto const allKnown = [](Network& n) { n.knownPoints.emplace_back("P", 0.0, 50.0, 0.0); };
  auto const comesBack = [](Network& n) { n.lines[5].end_name = "P"; };
  auto const passesBy = [](Network& n) { n.lines[5].end_name = "K4"; };
  auto const onePlace = [](Network& n) { n.knownPoints[0].y = n.knownPoints[2].y = 0.0; };
  auto const noLegs = [](Network& n) { n.lines[1].horizontal_distance = n.lines[3].horizontal_distance = 0.0; };
  auto const bothWays = [](Network& n) { n.lines[2].horizontal_distance = 50.0; };
  struct Case {
    char const* what;
    std::function<void(Network&)> change;
    std::string says[3];  ///< open, connecting, closed
  };
  std::string const fewStations = "Station point is not enough|";
  std::string const fewKnown = "Known points are not enough|";
  Case const cases[] = {
      {"all well", asItIs, {"no failure", "no failure", "no failure"}},
      {"three directions", third, {fewStations + "P|-1", "Station Point Name P Repeat|P|-1", "no failure"}},
      {"equal directions", equal, {fewStations + "P|-1", fewStations + "P|-1", fewStations + "P|-1"}},
      {"one direction", single, {fewStations + "K3|-1", "Station Point Name K3 Repeat|K3|-1", fewStations + "K3|-1"}},
      {"no known back point", noBack, {fewKnown + "No start data|-1", fewStations + "|-1", fewKnown + "|-1"}},
      {"end not known", noEnd, {"no failure", fewKnown + "|-1", fewKnown + "K3|-1"}},
      {"fore point not known", noFore, {"no failure", fewKnown + "|-1", "no failure"}},
      {"known, but not the first corner", passesBy, {"no failure", "no failure", fewKnown + "K4|-1"}},
      {"every corner known", allKnown, {"no failure", "no failure", fewKnown + "|-1"}},
      {"no station known",
       noKnown,
       {fewKnown + "No start data|-1", fewStations + "|-1", fewKnown + "No start data|-1"}},
      {"chain comes back", comesBack, {"Data error|Data error|-1", "Data error|Data error|-1", fewKnown + "P|-1"}},
      {"start and back point at one place", onePlace, {"Data error|K2|-1", "Data error|K2|-1", "Data error|K2|-1"}},
      {"no distances",
       noLegs,
       {"Station name [K2] distance is 0", "Station name [K2] distance is 0", "Station name [K2] distance is 0"}},
      {"two distances", bothWays, {"Station name [P] distance is 0", "no failure", "no failure"}},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    for (Method const method : kMethods) EXPECT_EQ(refusal(method, c.change), c.says[method - 1]) << method;
  }
}

TEST(SingleTraverses, EndAtTheUsersWishInEveryMethod) {
  for (Method const method : kMethods) {
    kvn::AlgorithmAdjust driver = adjusted(method, chainFor(method));
    std::size_t const before = driver.getPointList().size();
    driver.setCancelCall([] { return true; });
    EXPECT_EQ(test::failureOf<QLogicError>([&] { driver.calculateAdjust(); }), "User Cancel") << method;
    EXPECT_EQ(driver.getPointList().size(), before);
  }
}

TEST(SingleTraverses, AppendPointsAndAzimuthsOfASecondRun) {
  kvn::AlgorithmAdjust driver = adjusted(Open, straight(50.0, 150.0));
  driver.calculateAdjust();
  EXPECT_EQ(driver.getPointList().size(), 10U);
  EXPECT_EQ(driver.getDegreeInfoList().size(), 8U);
  EXPECT_EQ(driver.getTraverseAdjustInfoList().size(), 3U);
  EXPECT_EQ(driver.getKnPointInfoList().size(), 4U);
}

TEST(ConnectTraverse, ChecksAnAngleBetweenKnownPointsWithoutALeg) {
  std::vector<PointInfo> const p{point("K1", 0, -100), point("K2", 0, 0), point("K3", 80, 60)};
  kvn::AlgorithmData data;
  Network network;
  know(network, p);
  network.lines = station(p[0], p[1], p[2], 0.5, 20.0 / kSecondsPerRadian);
  data.readNetworkData(network);
  kvn::ConnectTraverse traverse;
  traverse.readAlgorithmData(data);
  traverse.calculateAdjust();
  double values[7] = {1, 1, 0, 1, 1, 1, 1};
  auto const read = [&] {
    return traverse.getErrorInfo(values[0], values[1], values[2], values[3], values[4], values[5], values[6]);
  };
  EXPECT_FALSE(read());
  EXPECT_EQ(values[0], 1.0);
  values[2] = 1.0;
  EXPECT_TRUE(read());
  EXPECT_NEAR(values[0] * kSecondsPerRadian, -20.0, 1e-8);
  for (int i = 1; i < 7; ++i) EXPECT_EQ(values[i], 0.0) << i;
}

// ---- Preparing a network.

std::string described(Network const& network) {
  std::string text;
  for (kvn::NetworkDataInfo const& l : network.lines) {
    text += l.start_name + l.end_name + " " + QString::number(l.horizontal_distance, 'f', 2).toStdString() + "; ";
  }
  return text;
}

TEST(WithForwardDistances, LeavesTheMeanOfBothWaysOnTheLineForward) {
  Network network;
  auto alone = line("Q", "P", 0.0, 10.6);
  auto onlyDistance = line("T", "R", 0.0, 7.2);
  alone.horizontalAngleFlag = onlyDistance.horizontalAngleFlag = false;
  network.lines = {line("P", "Q", 2.0, 10.2),
                   line("P", "O", 1.0, 5.0),  // forward first
                   line("Q", "P", 0.0, 10.4),
                   line("Q", "R", 3.0, 0.0),
                   alone,  // one way only
                   line("R", "Q", 1.0, 20.0),
                   line("R", "S", 2.0, 30.0),
                   line("R", "T", 1.5, 7.0),  // three directions
                   line("S", "R", 1.0, 31.0),
                   onlyDistance,  // one direction
                   line("U", "V", 1.0, 8.0),
                   line("U", "W", 1.0, 9.0),  // equal directions
                   line("X", "Y", 1.0, -3.0),
                   line("X", "Z", 2.0, -4.0)};  // to be refused
  // P-Q: mean of 10.2 and the mean of 10.4 and 10.6.
  EXPECT_EQ(described(kvn::withForwardDistances(network)),
            "PQ 10.35; PO 0.00; QP 0.00; QR 20.00; RQ 0.00; RS 30.50; RT 0.00; SR 31.00; UV 8.00; UW 9.00; "
            "XY -3.00; XZ -4.00; ");
}

template <typename Traverse>
void expectNoChain() {
  Network network = straight(50.0, 150.0);
  network.lines[5].end_name = "P";  // comes back to its middle
  kvn::AlgorithmData data;
  data.readNetworkData(network);
  Traverse traverse;
  for (int failed = 0; failed < 2; ++failed) {
    std::vector<PointInfo> points;
    EXPECT_FALSE(traverse.getPoints(points));
    EXPECT_EQ(test::algorithmFailureOf([&] { traverse.calculateAdjust(); }),
              "Known points are not enough|No start data|-1");
    EXPECT_NE(test::algorithmFailureOf([&] { traverse.readAlgorithmData(data); }), "no failure");
  }
}

TEST(SingleTraverses, HaveNoChainBeforeReadingAndAfterAReadingThatFailed) {
  expectNoChain<kvn::OpenTraverse>();
  expectNoChain<kvn::ConnectTraverse>();
  expectNoChain<kvn::CloseTraverse>();
}

TEST(SingleTraverses, KeepKnownPointsThatNobodyObserves) {
  for (Method const method : kMethods) {
    SCOPED_TRACE(method);
    test::Host const host;
    Network network = chainFor(method);
    if (method == Closed) network.knownPoints = {network.knownPoints[1], network.knownPoints[2]};
    network.knownPoints.insert(network.knownPoints.begin(), {"far", 1, 2, 0});
    network.knownPoints.emplace_back("away", 3, 4, 0);
    auto const result = adjusted(method, network);
    std::vector<PointInfo> const& known = result.getKnPointInfoList();
    ASSERT_EQ(known.size(), network.knownPoints.size());
    for (std::size_t i = 0; i < known.size(); ++i) {
      EXPECT_EQ(known[i].name, network.knownPoints[i].name);
      EXPECT_EQ(known[i].number, static_cast<int>(i));
    }
    std::set<int> numbers;
    for (PointInfo const& p : result.getPointList()) numbers.insert(p.number);
    EXPECT_EQ(numbers.size(), result.getPointList().size()) << "each name has a number of its own";
    EXPECT_EQ(host.messages,
              (decltype(host.messages){{"Known points without an observation: far, away", kvn::Warning}}));
  }
}

}  // namespace
