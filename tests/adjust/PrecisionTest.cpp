// Precision results: what exists without redundancy, ellipses, sexagesimal forms.
#include "adjust/Networks.h"
#include "support/Support.h"

#include <gtest/gtest.h>
#include <cmath>

namespace {

using kvn::AlgorithmData;
using kvn::TraverseAdjust;
using test::adjusted;
using test::line;

using utils::kPi;

/// A new point from one station; the other known point sights it too, 4" off.
kvn::Network polarPoint() {
  kvn::Network network;
  network.knownPoints = {{"K1", 0.0, 0.0, 0.0}, {"K2", 0.0, 100.0, 0.0}};
  network.lines = {line("K1", "K2", 0.0, 0.0), line("K1", "P", kPi / 2.0, 50.0)};
  network.lines.push_back(line("K2", "K1", 0.0, 0.0));
  network.lines.push_back(line("K2", "P", std::atan(0.5) + 4.0 / test::kSecondsPerRadian, 0.0));
  network.lines[1].horizontal_angle = 1.5 * kPi;  // north of K1, whose zero points east
  return network;
}

TEST(Precision, AStationWithOneDirectionHasNoResidual) {
  kvn::Network network = polarPoint();
  network.lines.push_back(line("P", "K1", 1.234, 0.0));
  // The coefficients are those of the final coordinates, the corrections those of the step before: second order.
  EXPECT_NEAR(adjusted(network).getDirrectionInfo()[2].residuals[0], 0.0, 1e-4);
}

TEST(Precision, OfAPolarPointIsThatOfItsObservations) {
  // P lies north of K1, so that the error of its x is the error of the distance; K1 itself does not move. P's adjusted
  // y of some micrometres turns the line by 1e-7.
  TraverseAdjust const result = adjusted(polarPoint());
  auto const summary = result.getSummary();
  auto const p = result.getPointErrorInfo()[2];
  EXPECT_GT(p.mx, 1e-3);
  EXPECT_NEAR(summary.distanceErrors[0], p.mx, 1e-9);
  EXPECT_NEAR(p.mp, std::hypot(p.mx, p.my), 1e-15);
  ASSERT_EQ(result.getErrorEllipsoid().ellipseList.size(), 1U);  // none for the known points
  auto const ellipse = result.getErrorEllipsoid().ellipseList[0];
  EXPECT_EQ(ellipse.name, "P");
  EXPECT_NEAR(ellipse.semiMajor * ellipse.semiMajor + ellipse.semiMinor * ellipse.semiMinor, p.mp * p.mp, 1e-15);
  EXPECT_EQ(result.getDirrectionInfo()[0].distances[1], result.getLineErrorInfo()[0].adjustedDistance);
}

TEST(Precision, KeepsDistanceErrorsThatTheLineResultsRoundToZero) {
  // A cofactor of a distance below 1e-8 m², an error of 0.1 mm, counts as zero there; instruments of 0.02 mm exist.
  TraverseAdjust fine(0.05, 0.00002, 0.0, true);
  fine.Adjust(test::loaded(polarPoint()));
  EXPECT_EQ(fine.getLineErrorInfo()[0].distanceError, 0.0);
  EXPECT_EQ(fine.getDirrectionInfo()[0].distanceErrors[1], 0.0);
  EXPECT_NEAR(fine.getSummary().distanceErrors[0], fine.getPointErrorInfo()[2].mx, 1e-9);
  EXPECT_NEAR(fine.getSummary().directionDistanceErrors[0][1], fine.getPointErrorInfo()[2].mx, 1e-9);
}

TEST(Precision, CountsControlDistancesOnlyWhenAsked) {
  kvn::Network network = polarPoint();
  network.lines[0].horizontal_distance = 100.01;  // K1 to K2 is 100 m: the observation is off by 10 mm
  AlgorithmData data;
  data.readNetworkData(network);
  TraverseAdjust without;
  without.Adjust(data);
  TraverseAdjust with;
  with.setCountControlDistances(true);
  with.Adjust(data);
  EXPECT_EQ(with.getPoints()[2].x, without.getPoints()[2].x);
  EXPECT_EQ(with.getSummary().redundancy, without.getSummary().redundancy + 1);
  ASSERT_EQ(with.getLineErrorInfo().size(), 2U);
  EXPECT_EQ(without.getLineErrorInfo().size(), 1U);
  EXPECT_NEAR(with.getLineErrorInfo()[1].residual, -0.01, 1e-9);
  // pvv grows by (10 mm / 3.30003 mm)²; 3 mm + 3 ppm of 100.01 m.
  double const r = without.getSummary().redundancy;
  double const before = std::pow(without.getSummary().unitError, 2) * r;
  double const after = std::pow(with.getSummary().unitError, 2) * (r + 1.0);
  EXPECT_NEAR(after - before, std::pow(0.01 / (0.003 + 3e-6 * 100.01), 2), 1e-6);
  network.lines[0].horizontal_distance = 101.5;  // all that is adjusted fits
  test::Host host;
  with.Adjust(test::loaded(network));
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(host.messages[0].second, kvn::Warning) << host.messages[0].first.toStdString();
}

class Results : public TraverseAdjust {
 public:
  using TraverseAdjust::rad_dms;
};

TEST(Precision, WritesAnglesAsDegreesMinutesSeconds) {
  struct Case {
    double degrees, dddmmss;
  };
  Case const cases[] = {
      {90.0, 900000.0},
      {-90.0, -900000.0},
      {0.0, 0.0},
      {123.0 + 45.0 / 60.0 + 30.25 / 3600.0, 1234530.25},
      // Just below a whole degree or minute the seconds come out as 60: the value is right, its reader must carry.
      {30.0 - 1e-13, 295960.0},
      {59.0 / 60.0 - 1e-13, 5860.0},
      {-1.0 / 3600.0, -1.0},
  };
  for (Case const& c : cases) EXPECT_NEAR(Results::rad_dms(c.degrees / 180.0 * kPi), c.dddmmss, 1e-7) << c.degrees;
}

TEST(Precision, NamesTheStationsWithTheirBackAndForePoints) {
  auto const stations = adjusted(polarPoint()).getStationInfo();
  ASSERT_EQ(stations.size(), 2U);
  EXPECT_EQ(stations[0].stationPoint.name, "K1");
  EXPECT_EQ(stations[0].backPoint.name, "K2");
  ASSERT_EQ(stations[0].forePoints.size(), 1U);
  EXPECT_EQ(stations[0].forePoints[0].name, "P");
  EXPECT_NEAR(stations[0].forePoints[0].x, 50.0, 0.01);
}

}  // namespace
