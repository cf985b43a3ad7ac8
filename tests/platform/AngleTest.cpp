// Texts of angles: reading DD.MMSS, and rounding with carry.
#include <gtest/gtest.h>
#include <utils/Degree.h>
#include <utils/Formater.h>
#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace {

using utils::Degree;

TEST(AngleReading, TakesTheFieldsFromTheDigits) {
  std::pair<char const*, double> const cases[] = {
      {"123.45302575", 445530.2575},
      {"0.29", 1740.0},
      {"0.57", 3420.0},
      {"30.3", 109800.0},
      {"30.303", 109830.0},
      {"-30.3030", -109830.0},
      {"-0.30", -1800.0},
      {" +1.3000\r", 5400.0},
      {".5", 3000.0},
      {"7.", 25200.0},
      {"10.60", 39600.0},
      {"10.0099", 36099.0},
      {"1.233e2", 444600.0},
  };
  for (auto const& [text, seconds] : cases) {
    SCOPED_TRACE(text);
    bool valid = false;
    // DOUBLE_EQ allows 4 units in the last place; the sum of the fields and the quotient here round once or twice each.
    EXPECT_DOUBLE_EQ(Degree::stringtoDouble(text, utils::DegreeToDDPMMSS, &valid), seconds / 3600.0);
    EXPECT_TRUE(valid);
    EXPECT_DOUBLE_EQ(Degree::stringtoDouble(text, utils::DDPMMSSToRadian), seconds / 648000.0 * std::acos(-1.0));
  }
  EXPECT_EQ(Degree::stringtoDouble(" 30.3 ", utils::Gon), 30.3) << "all but DD.MMSS are read as plain numbers";
}

TEST(AngleReading, GivesZeroForWhatIsNoNumber) {
  QString const tooLarge = "1" + QString(400, '0');
  for (QString const& text :
       {QString(), QString("12a"), QString("1.2.3"), QString("1,30"), QString("0x10"), tooLarge}) {
    for (utils::DMSFormat const format : {utils::DegreeToDDPMMSS, utils::DDPMMSSToRadian, utils::DEGREE}) {
      bool valid = true;
      EXPECT_EQ(Degree::stringtoDouble(text, format, &valid), 0.0);
      EXPECT_FALSE(valid) << text.toStdString() << " format " << format;
    }
  }
}

TEST(AngleText, HasEveryFormAndCarriesSoThatNoFieldShowsSixty) {
  using namespace utils;
  std::tuple<double, DMSFormat, int, char const*> const cases[] = {
      {445530.26, DMS, 2, "123°45′30.26″"},    {445530.26, RADIAN, 2, "2.15999165"},
      {445530.26, DEGREE, 2, "123.758406"},    {445530.26, DDRMMR, 2, "123°45.5043′"},
      {445530.26, DDMMSS, 2, "1234530.26"},    {445530.26, DDPMMSS, 2, "123.453026"},
      {445530.26, Gon, 2, "137.509340"},       {445530.26, Honey, 2, "2062.6401"},
      {3599.996, DDCMMCSS, 2, "1:00:00.00"},   {3599.994, DDCMMCSS, 2, "0:59:59.99"},
      {-3599.996, DDSMMSSS, 2, "-1 00 00.00"}, {-0.004, DDCMMCSS, 2, "0:00:00.00"},
      {-0.006, DDCMMCSS, 2, "-0:00:00.01"},    {35999.999, DDCMM, 0, "10:00.00"},
      {35999.999, DDPMM, 0, "10.0000"},        {1295999.97, DMSFix1, 5, "360°00′00.0″"},
      {39596.0, DegreeToDDPMMSS, 3, "11.000"}, {39580.0, DegreeToDDPMMSS, 2, "11.00"},
      {39360.0, DegreeToDDPMMSS, 1, "11.0"},   {-38160.0, DegreeToDDPMMSS, 0, "-11"},
      {-1200.0, DegreeToDDPMMSS, 0, "0"}};
  for (auto const& [seconds, format, decimals, text] : cases) {
    EXPECT_EQ(Degree(seconds / 3600.0).toString(format, decimals).toStdString(), text) << format;
  }
}

TEST(AngleText, DdMmssReadsBackWithinHalfAUnitOfTheLastPlace) {
  std::mt19937 random(20180517);
  std::uniform_real_distribution<double> anywhere(-360.0, 360.0);
  std::uniform_int_distribution<int> minute(-360 * 60, 360 * 60);
  std::uniform_real_distribution<double> closeBy(-1e-3, 1e-3);
  // Text and reading round a handful of times in doubles of at most 360: 8 units in the last place of those.
  double const rounding = 8.0 * 360.0 * std::numeric_limits<double>::epsilon();
  for (int i = 0; i < 40000; ++i) {
    // Half of the angles stand within 4" of a whole minute, where a missing carry shows.
    double const value = i % 2 == 0 ? anywhere(random) : minute(random) / 60.0 + closeBy(random) * std::pow(10, -i % 9);
    int const decimals = 4 + i / 10 % 10;
    QString const text = Degree(value).toString(utils::DegreeToDDPMMSS, decimals);
    QString const fields = text.section('.', 1);
    ASSERT_EQ(fields.size(), decimals) << text.toStdString();
    ASSERT_TRUE(fields.left(2).toInt() < 60 && fields.mid(2, 2).toInt() < 60) << text.toStdString();
    double const halfUnit = 0.5 * std::pow(10.0, 4 - decimals) / 3600.0;
    ASSERT_NEAR(Degree::stringtoDouble(text, utils::DegreeToDDPMMSS), value, halfUnit + rounding) << text.toStdString();
  }
}

TEST(Formater, TakesFormAndDecimalsFromItsConfiguration) {
  Json::Value configuration;
  configuration["AngleFormat"] = int(utils::DDRMMRSS);
  configuration["AngleDecimals"] = 1;
  EXPECT_EQ(utils::Formater(configuration).toString(Degree(1.5)).toStdString(), "1°30′00.0″");
}

}  // namespace
