// Conversions between the angle forms, and tests and cuts of texts.
#include <gmock/gmock.h>
#include <cmath>
#include <random>

#include "support/Support.h"

namespace {

using kvn::CommonFunction;
using testing::ElementsAre;

double radians(double d, double m, double s) { return (d + m / 60.0 + s / 3600.0) / 180.0 * std::acos(-1.0); }

// The lift of 1e-10 in DD.MMSS is 1e-6", 4.85e-12 rad; rounding adds less than 1e-14. A minute lost to truncation costs
// 40", forty million times the bound.
constexpr double kDmsLiftRad = 5e-12;

TEST(DmsToRad, KeepsTheMinuteThatBinaryFractionsFallShortOf) {
  std::pair<double, double> const cases[] = {
      {123.453025, radians(123, 45, 30.25)}, {0.29, radians(0, 29, 0)}, {0.57, radians(0, 57, 0)},
      {30.29999999995, radians(30, 30, 0)},  {10.6, radians(11, 0, 0)}, {10.006, radians(10, 1, 0)},
      {360.3, radians(360, 30, 0)}};  // 60' and 60" count
  for (auto const& [dms, expected] : cases) {
    EXPECT_NEAR(CommonFunction::dmsToRad(dms), expected, kDmsLiftRad);
    EXPECT_EQ(CommonFunction::dmsToRad(dms, 7), CommonFunction::dmsToRad(dms));
    EXPECT_EQ(CommonFunction::dmsToRad(-dms), -CommonFunction::dmsToRad(dms));
  }
  EXPECT_NEAR(CommonFunction::dmsToRad(10.61), radians(11, 1, 0), kDmsLiftRad) << "without a row nothing is refused";
  for (int minutes = 0; minutes < 360 * 60; ++minutes) {
    int const degrees = minutes / 60;
    double const dms = degrees + minutes % 60 / 100.0 + 0.006;
    ASSERT_NEAR(CommonFunction::dmsToRad(dms, 1), radians(0, minutes, 60), kDmsLiftRad) << "lifted sixty seconds pass";
  }
}

TEST(DmsToRad, RefusesFieldsOutOfRangeAndNamesTheRow) {
  for (double const dms : {361.0, -361.0, 10.61, 10.0061, -0.9, HUGE_VAL, std::nan("")}) {
    try {
      CommonFunction::dmsToRad(dms, 7);
      ADD_FAILURE() << dms << " passed";
    } catch (kvn::AlgorithmException const& failure) {
      EXPECT_TRUE(failure.index == 7 && failure.errorType == failure.DataError) << dms;
    }
  }
}

TEST(RadToDms, GivesEveryFieldTheSign) {
  std::mt19937 random(77);
  std::uniform_real_distribution<double> anywhere(-7.0, 7.0);
  for (int i = 0; i < 2000; ++i) {
    double const value = anywhere(random);
    kvn::Degree const fields = CommonFunction::radToDms(value);
    ASSERT_TRUE(std::abs(fields.minute) < 60 && std::abs(fields.second) <= 60.0) << value;
    ASSERT_TRUE(fields.degree * value >= 0 && fields.minute * value >= 0 && fields.second * value >= 0) << value;
    // Degrees of up to 401 in doubles, and three products: below 1e-15 of the size, 7e-15 rad.
    ASSERT_NEAR(radians(fields.degree, fields.minute, fields.second), value, 7e-15);
  }
}

TEST(DmsTexts, AreCutWithoutACarryOrNormalisedWithOne) {
  EXPECT_EQ(CommonFunction::getDmsFormat(-1234530.25).toStdString(), "-123:-45:-30.25");
  EXPECT_EQ(CommonFunction::getDmsFormat(10059.996).toStdString(), "1:0:60.00");
  EXPECT_EQ(CommonFunction::getKVNDegereeFormat(123.4567, 4), 123.461) << "six digits are read, 70\" carried";
  EXPECT_EQ(CommonFunction::getPLQDegreeeFormat(123.4567).toStdString(), "123:46:07.00");
}

TEST(NumberTests, TellTextsThatAreNumbers) {
  for (char const* text : {"1.5", "1e3", "-1.5", "+1"}) EXPECT_TRUE(CommonFunction::judgeStringToDigital(text)) << text;
  for (char const* text : {"", "1.2.3", "12a", "1,5", "-"}) EXPECT_FALSE(CommonFunction::judgeStringToDigital(text));
  for (char const* text : {"", "1.2.3", "-12a", "-1.5"}) EXPECT_TRUE(CommonFunction::judgeStringToDouble(text)) << text;
  for (char const* text : {"12a", "1e3", "+1", "1,5"}) EXPECT_FALSE(CommonFunction::judgeStringToDouble(text)) << text;
}

TEST(Split, CutsAsLinesAreCut) {
  EXPECT_THAT(CommonFunction::split(",a,,b", ',', true), ElementsAre("a", "b"));
  EXPECT_THAT(CommonFunction::split(",a,,", ',', false), ElementsAre("", "a", "")) << "nothing after the last one";
  EXPECT_THAT(CommonFunction::split("", ',', false), ElementsAre());
}

}  // namespace
