// Field-book readings on a full circle become elevations that the height reduction can take, or sights.
#include "adjust/heights/HeightRows.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using namespace kvn;
using namespace test;

std::vector<LeftOutSight::Reason> reasonsOf(std::vector<LeftOutSight> const& sights) {
  std::vector<LeftOutSight::Reason> reasons;
  reasons.reserve(sights.size());
  for (LeftOutSight const& sight : sights) reasons.push_back(sight.reason);
  return reasons;
}

TEST(ElevationRows, TurnsReadingsOfBothFacesAndOfAllKindsIntoElevations) {
  struct Case {
    VerticalAngleType type;
    double reading, elevation;  // degrees
  };
  for (Case const& c : {Case{FullCircleZenith, 85, 5}, Case{FullCircleZenith, 275, 5}, Case{FullCircleZenith, 95, -5},
                        Case{FullCircleZenith, 265, -5}, Case{ZenithAngle, 95, -5}, Case{ElevationAngle, -5, -5}}) {
    SCOPED_TRACE(c.reading);
    Rows rows{stationRow("A", 1.5), sightRow("B", degrees(c.reading), 100)};
    rows[1].verticalAngleType = c.type;
    Rows const converted = elevationRows(rows).rows;
    ASSERT_EQ(converted.size(), 3U);  // one face is enough: it stands for both
    EXPECT_NE(converted[1].id, converted[2].id);
    for (std::size_t i : {1U, 2U}) {
      EXPECT_NEAR(converted[i].vertical_angle, degrees(c.elevation), 1e-14);
      EXPECT_EQ(converted[i].verticalAngleType, ElevationAngle);
    }
  }
}

TEST(ElevationRows, TellsWhatGivesNoHeight) {
  Rows rows{sightRow("B", degrees(85), 100),
            stationRow("A", 1.5),
            sightRow("A", degrees(85), 100),
            sightRow("B", degrees(85), 0),
            sightRow("B", degrees(400), 100),
            sightRow("C", degrees(85), 0),
            sightRow("D", 0.0, 100),
            sightRow("E", std::nan(""), 100),
            sightRow("F", degrees(85), 100),
            sightRow("B", degrees(85), 100),
            stationRow("A", 1.5),
            sightRow("C", degrees(85), 100)};
  rows[8].angleMark = 0.0;
  ElevationRows const converted = elevationRows(rows);
  using R = LeftOutSight;
  std::vector<R::Reason> const reasons{R::NoStation,     R::SightsItself, R::NoAngle, R::NoDistance,
                                       R::AlongVertical, R::NoAngle,      R::NoAngle};
  EXPECT_EQ(reasonsOf(converted.leftOut), reasons);
  HeightReduction const sights = heightNetworkOf(rows);
  EXPECT_EQ(reasonsOf(sights.leftOut), reasons);
  ASSERT_EQ(sights.network.sights.size(), 2U);  // B once, as the mean of both
  EXPECT_EQ(sights.network.sights[0].readings, 2);
  EXPECT_EQ(sights.network.sights[0].rounds, 1);
  EXPECT_EQ(sights.network.sights[1].origin.row, 11);
  // What is left is in order: B with the distance of its other sight, C from the second occupation.
  ASSERT_EQ(converted.rows.size(), 6U);
  EXPECT_EQ(converted.rows[1].name, "B");
  EXPECT_NEAR(converted.rows[1].slant_distance, 100, 1e-12);
  EXPECT_EQ(reduced(converted.rows).size(), 2U);
  // Where no sight is alone on its line the rows stay in their list, and move up in it.
  Rows const moved = elevationRows(Rows{stationRow("A", 1.5), sightRow("A", degrees(85), 100),
                                        sightRow("B", degrees(85), 100), sightRow("B", degrees(275), 200)})
                         .rows;
  ASSERT_EQ(moved.size(), 3U);
  EXPECT_EQ(moved[1].name, "B");
  EXPECT_EQ(moved[2].slant_distance, 200);
}

TEST(ElevationRows, GivesTheTrueHeightsOfAnyFieldBook) {
  // Points in space; readings with an index error, other heights of instrument and target at each occupation and sight,
  // single faces, distances on one face only. Without noise every height comes out.
  for (unsigned seed = 0; seed < 50; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> place(0.0, 500.0), height(0.0, 40.0), stand(1.0, 2.0);
    auto const chance = [&random](double p) { return std::bernoulli_distribution(p)(random); };
    struct Point {
      double x, y, z;
    };
    std::vector<Point> points(8);
    for (Point& point : points) point = {place(random), place(random), height(random)};
    double const indexError = degrees(0, 0, 20);
    Rows rows{knownRow("0", stand(random), points[0].z)};
    for (int n = 0; n < 14; ++n) {
      std::size_t const from = std::size_t(n) % 7;
      double const instrument = stand(random);
      rows.push_back(stationRow(std::to_string(from), instrument));
      // One circle, one error: sights on one face are right when the other target tells it, or when there is none.
      bool const hasBoth[2] = {chance(0.7), chance(0.7)};
      double const error = hasBoth[0] || hasBoth[1] ? indexError : 0.0;
      std::size_t const targets[2] = {from + 1, (from + 3) % 8};
      for (int k = 0; k < 2; ++k) {
        std::size_t const to = targets[k];
        double const target = stand(random);
        double const flat = std::hypot(points[to].x - points[from].x, points[to].y - points[from].y);
        double const rise = points[to].z + target - points[from].z - instrument;
        double const zenith = std::atan2(flat, rise);
        double const slant = std::hypot(flat, rise);
        bool const bothFaces = hasBoth[k];
        bool const ownDistance = !bothFaces || chance(0.7);
        rows.push_back(sightRow(std::to_string(to), zenith + error, ownDistance ? slant : 0.0, target));
        if (!bothFaces) continue;
        rows.push_back(sightRow(std::to_string(to), degrees(360) - zenith + error, slant, target));
      }
    }
    // A list that is no longer needed becomes the result: half of the books have no sight on one face alone.
    bool const isTaken = chance(0.5);
    ElevationRows const elevations = isTaken ? elevationRows(Rows(rows)) : elevationRows(rows);
    EXPECT_TRUE(elevations.leftOut.empty());
    HeightNetwork network = heightNetworkOf(rows).network;
    HeightErrors errors;
    errors.refraction = kNoCurvature;
    reduceSights(network, errors);
    EXPECT_EQ(network.sights.size(), 28U);
    HeightAdjustment adjustment(network);
    HeightResult const& result = adjustment.adjust();
    for (std::size_t n = 0; n < network.points.size(); ++n) {
      EXPECT_NEAR(result.points[n].height, points[std::stoul(network.points[n].name)].z, 1e-6) << n;
    }
    TriangleHeightAdjust run;
    run.setTriangleHeightDataConvert(converted(elevations.rows));
    run.heightLSAdjust();
    for (std::size_t n = 0; n < points.size(); ++n) {
      // The mean of the faces' distances, S cos(a + e) and S cos(a - e), is e² / 2 = 5e-9 of itself too short, and the
      // heights with it. The largest difference seen is 2e-7.
      EXPECT_NEAR(heightOf(run, std::to_string(n)), points[n].z, 1e-6) << n;
    }
  }
}

TEST(ElevationRows, FillsADistanceOverTheGroundAndTakesOffTheIndexError) {
  // B stands 100 m away and level: the prism 40 m up, sighted with a distance, and then the ground without one. C is
  // sighted on one face, 45° up; the faces of B tell the index error of 20".
  double const error = degrees(0, 0, 20);
  double const up = std::atan(0.4);
  Rows rows{stationRow("A", 0.0),
            sightRow("B", degrees(90) - up + error, 100 / std::cos(up)),
            sightRow("B", degrees(270) + up + error, 0),
            sightRow("B", degrees(90) + error, 0),
            sightRow("B", degrees(270) + error, 0),
            sightRow("C", degrees(45) + error, 100)};
  rows[1].instrument = rows[2].instrument = 40.0;
  Rows const converted = elevationRows(rows).rows;
  for (std::size_t i = 1; i <= 4; ++i) {
    EXPECT_NEAR(converted[i].slant_distance * std::cos(converted[i].vertical_angle), 100.0, 1e-9) << i;
    EXPECT_NEAR(std::tan(converted[i].vertical_angle) * 100 - converted[i].instrument, 0.0, 1e-9) << i;
  }
  EXPECT_NEAR(converted[5].vertical_angle, degrees(45), 1e-12);
}

TEST(ElevationRows, CarriesTheHeightsOfTheFirstOccupationAndSight) {
  Rows const rows{stationRow("A", 1.5), sightRow("B", degrees(90), 100, 1.6), stationRow("A", 1.7),
                  sightRow("B", degrees(90), 100, 1.6)};
  Rows const converted = elevationRows(rows).rows;
  ASSERT_EQ(converted.size(), 4U);
  EXPECT_EQ(converted[2].instrument, 1.5);
  EXPECT_EQ(converted[3].instrument, 1.6);
  EXPECT_NEAR(converted[3].vertical_angle, std::atan(0.2 / 100), 1e-15);
}

}  // namespace
