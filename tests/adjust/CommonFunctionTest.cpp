// Conversions between the angle forms, and tests and cuts of texts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <cmath>
#include <random>

#include "support/Support.h"

namespace {

using kvn::AlgorithmException;
using kvn::CommonFunction;
using testing::ElementsAre;
using testing::IsEmpty;

double const kPi = std::acos(-1.0);

double radians(double d, double m, double s) { return (d + m / 60.0 + s / 3600.0) / 180.0 * kPi; }

// The lift of 1e-10 in DD.MMSS is 1e-6", 4.85e-12 rad; rounding adds less than 1e-14. A minute lost to truncation costs
// 40", forty million times the bound.
constexpr double kDmsLiftRad = 5e-12;

struct DmsCase {
  char const* reason;
  double dms;
  double radians;
};

DmsCase const kDmsCases[] = {
    {"all fields", 123.453025, radians(123, 45, 30.25)},
    {"0.29 is stored a little too small", 0.29, radians(0, 29, 0)},
    {"so is 0.57", 0.57, radians(0, 57, 0)},
    {"rounded away from a minute", 30.29999999995, radians(30, 30, 0)},
    {"zero", 0.0, 0.0},
    {"60 minutes count", 10.6, radians(11, 0, 0)},
    {"60 seconds count", 10.006, radians(10, 1, 0)},
    {"full circle", 360.0, 2 * kPi},
    {"degrees 360 with minutes", 360.3, radians(360, 30, 0)},
};

TEST(DmsToRad, KeepsTheMinuteThatBinaryFractionsFallShortOf) {
  for (DmsCase const& c : kDmsCases) {
    SCOPED_TRACE(c.reason);
    EXPECT_NEAR(CommonFunction::dmsToRad(c.dms), c.radians, kDmsLiftRad);
    EXPECT_EQ(CommonFunction::dmsToRad(c.dms, 7), CommonFunction::dmsToRad(c.dms));
    EXPECT_EQ(std::abs(CommonFunction::dmsToRad(-c.dms)), CommonFunction::dmsToRad(c.dms));
    EXPECT_EQ(CommonFunction::dmsToRad(-c.dms) < 0.0, c.dms > 0.0);
  }
  EXPECT_NEAR(CommonFunction::dmsToRad(10.61), radians(11, 1, 0), kDmsLiftRad) << "without a row nothing is refused";
}

TEST(DmsToRad, RefusesFieldsOutOfRangeAndNamesTheRow) {
  double const nan = std::nan("");
  for (double const dms : {361.0, -361.0, 10.61, 10.0061, -0.9, 1e300, HUGE_VAL, nan}) {
    SCOPED_TRACE(dms);
    try {
      CommonFunction::dmsToRad(dms, 7);
      ADD_FAILURE() << "passed";
    } catch (AlgorithmException const& failure) {
      EXPECT_EQ(failure.index, 7);
      EXPECT_EQ(failure.errorType, AlgorithmException::DataError);
    }
  }
}

TEST(DmsToRad, PassesSixtySecondsThoughTheValueWasLifted) {
  for (int degree = 0; degree < 360; ++degree) {
    for (int minute = 0; minute < 60; ++minute) {
      double const dms = degree + minute / 100.0 + 0.006;
      ASSERT_NEAR(CommonFunction::dmsToRad(dms, 1), radians(degree, minute, 60), kDmsLiftRad) << dms;
    }
  }
}

TEST(RadToDms, GivesEveryFieldTheSign) {
  kvn::Degree const angle = CommonFunction::radToDms(-0.5);
  EXPECT_EQ(angle.degree, -28);
  EXPECT_EQ(angle.minute, -38);
  EXPECT_NEAR(angle.second, -52.4, 0.05);  // half a unit of the decimal that is written here

  constexpr unsigned kSeed = 77;
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> anywhere(-7.0, 7.0);
  for (int i = 0; i < 2000; ++i) {
    double const value = anywhere(random);
    kvn::Degree const fields = CommonFunction::radToDms(value);
    ASSERT_TRUE(std::abs(fields.minute) < 60 && std::abs(fields.second) <= 60.0) << value << " of seed " << kSeed;
    ASSERT_TRUE(fields.degree * value >= 0 && fields.minute * value >= 0 && fields.second * value >= 0) << value;
    // Degrees of up to 401 in doubles, and three products: below 1e-15 of the size, 7e-15 rad.
    ASSERT_NEAR(radians(fields.degree, fields.minute, fields.second), value, 7e-15);
  }
}

TEST(DmsTexts, AreCutFromTheirNumbersWithoutACarry) {
  struct Case {
    double dddmmss;
    char const* colons;
    char const* signs;
  };
  Case const cases[] = {
      {1234530.25, "123:45:30.25", "123°45′30.25″"},
      {5.0, "0:0:5.00", "0°0′5.00″"},
      {-1234530.25, "-123:-45:-30.25", "-123°-45′-30.25″"},
      {10059.996, "1:0:60.00", "1°0′60.00″"},
  };
  for (Case const& c : cases) {
    EXPECT_EQ(CommonFunction::getDmsFormat(c.dddmmss).toStdString(), c.colons);
    EXPECT_EQ(CommonFunction::getDmsStyle(c.dddmmss).toStdString(), c.signs);
  }
  EXPECT_EQ(CommonFunction::getDmsFormat(kvn::Degree{12, 3, 59.996}).toStdString(), "12:3:60.00");
  EXPECT_EQ(CommonFunction::getDmsString(kvn::Degree{12, 3, 4.5}).toStdString(), "12°3′4.50″");
}

TEST(DmsTexts, AreNormalisedWithACarry) {
  EXPECT_EQ(CommonFunction::getKVNDegereeFormat(10.6, 4), 11.0);
  EXPECT_EQ(CommonFunction::getKVNDegereeFormat(123.4567, 4), 123.461)
      << "six significant digits are read, 70\" carried";
  EXPECT_EQ(CommonFunction::getKVNDegereeFormat(-0.2995, 2), -0.31) << "29'95\" is 30'35\"";
  EXPECT_EQ(CommonFunction::getPLQDegreeeFormat(123.4567).toStdString(), "123:46:07.00");
}

TEST(NumberTests, TellTextsThatAreNumbers) {
  struct Case {
    char const* text;
    bool number;
    bool characters;
  };
  Case const cases[] = {
      {"12", true, true},    {"1.5", true, true},   {"", false, true},     {"1.2.3", false, true},
      {"12a", false, false}, {"-12a", false, true}, {"1e3", true, false},  {"-1.5", true, true},
      {"+1", true, false},   {"1,5", false, false}, {"1-2", false, false}, {"-", false, true},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(CommonFunction::judgeStringToDigital(c.text), c.number);
    EXPECT_EQ(CommonFunction::judgeStringToDouble(c.text), c.characters);
  }
}

TEST(Split, CutsAsLinesAreCut) {
  EXPECT_THAT(CommonFunction::split("a,,b", ',', true), ElementsAre("a", "b"));
  EXPECT_THAT(CommonFunction::split("a,,b", ',', false), ElementsAre("a", "", "b"));
  EXPECT_THAT(CommonFunction::split(",a,", ',', false), ElementsAre("", "a"));
  EXPECT_THAT(CommonFunction::split("a,,", ',', false), ElementsAre("a", ""));
  EXPECT_THAT(CommonFunction::split(",", ',', false), ElementsAre(""));
  EXPECT_THAT(CommonFunction::split(",,", ',', true), IsEmpty());
  EXPECT_THAT(CommonFunction::split("", ',', false), IsEmpty());
}

}  // namespace
