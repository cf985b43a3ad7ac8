// The driver: methods, results kept for the host, results back into rows.
#include "adjust/Networks.h"
#include "support/Support.h"

#include <gtest/gtest.h>

namespace {

using kvn::AlgorithmAdjust;
using kvn::Configure;

test::SyntheticNetwork noisyNetwork() {
  std::mt19937 random(21);
  test::NetworkPlan plan;
  plan.directionNoise = 2.0;
  plan.distanceFixed = 0.003;
  return test::makeNetwork(plan, random);
}

AlgorithmAdjust adjustedDriver() {
  AlgorithmAdjust driver;
  driver.setNetworkData(noisyNetwork().network);
  driver.calculateAdjust();
  return driver;
}

TEST(AlgorithmAdjust, HandsTheSettingsOverInTheUnitsOfTheCalculator) {
  kvn::Network const network = noisyNetwork().network;
  Configure configure;
  configure.AngleError = 2.5F;
  configure.LineFixedError = 4.0F;
  configure.LineProportionError = 7.0F;
  configure.LineCalculateExpression = true;
  AlgorithmAdjust driver;
  driver.setConfigure(configure);
  driver.setNetworkData(network);
  driver.calculateAdjust();

  kvn::TraverseAdjust calculator(2.5, 0.004, 0.000007, true);
  calculator.Adjust(test::loaded(network));
  EXPECT_EQ(driver.getPointList().back().x, calculator.getPoints().back().x);
  EXPECT_EQ(driver.getSummary().unitError, calculator.getSummary().unitError);
  EXPECT_EQ(driver.getPointX0Y0List().back().x, calculator.getPointX0Y0().back().x);
  EXPECT_EQ(driver.getDirectionResultList().size(), calculator.getDirrectionInfo().size());
  EXPECT_EQ(driver.getLineErrorInfoList().size(), calculator.getLineErrorInfo().size());
  EXPECT_EQ(driver.getTraverseAdjustInfoList().size(), calculator.getStationInfo().size());
}

TEST(AlgorithmAdjust, DoesNothingForAnUnknownMethodAndRefusesWithoutANetwork) {
  Configure configure;
  configure.AdjustMethod = 4;
  AlgorithmAdjust driver;
  driver.setConfigure(configure);
  driver.setNetworkData(noisyNetwork().network);
  driver.calculateAdjust();
  EXPECT_TRUE(driver.getPointList().empty());
  EXPECT_EQ(test::failureOf<kvn::AlgorithmException>([] { AlgorithmAdjust().calculateAdjust(); }),
            "All Station Point is known");
}

TEST(AlgorithmAdjust, WritesBackToTheRowsThatAreNotKnown) {
  AlgorithmAdjust const driver = adjustedDriver();
  kvn::PointInfo const last = driver.getPointList().back();
  std::vector<kvn::TraverseDataInfo> rows(4);
  rows[0].name = rows[1].name = rows[2].name = last.name;
  rows[0].pointType = kvn::TraversePointType::StationPoint;
  rows[2].isKnown = true;
  rows[3].name = "elsewhere";
  driver.adjustTraverseList(rows);
  EXPECT_EQ(rows[0].N, last.x);
  EXPECT_EQ(rows[1].E, last.y);
  EXPECT_EQ(rows[2].N, 0.0);
  EXPECT_EQ(rows[3].N, 0.0);
}

TEST(AlgorithmAdjust, GivesCoordinatesWithNewIdentitiesEachTime) {
  AlgorithmAdjust const driver = adjustedDriver();
  auto const first = driver.getCoordinatePointXYList();
  auto const second = driver.getCoordinatePointXYList();
  ASSERT_EQ(first.size(), driver.getPointList().size());
  EXPECT_EQ(first[3].name, driver.getPointList()[3].name);
  EXPECT_EQ(first[3].E, driver.getPointList()[3].y);
  EXPECT_EQ(first[3].Z, 0.0);
  EXPECT_NE(first[3].id, second[3].id);
}

}  // namespace
