// Texts of angles: reading DD.MMSS, and rounding with carry.
#include <gtest/gtest.h>
#include <utils/Degree.h>
#include <utils/Formater.h>
#include <QString>
#include <QStringList>
#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace {

using utils::Degree;

double const kPi = std::acos(-1.0);

double degrees(double d, double m, double s) { return (d * 3600.0 + m * 60.0 + s) / 3600.0; }

TEST(AngleReading, TakesTheFieldsFromTheDigits) {
  struct Case {
    char const* reason;
    char const* text;
    double degrees;
  };
  Case const cases[] = {
      {"all fields", "123.4530", degrees(123, 45, 30)},
      {"fraction of a second", "123.45302575", degrees(123, 45, 30.2575)},
      {"binary fraction just below 29 minutes", "0.29", degrees(0, 29, 0)},
      {"binary fraction just below 57 minutes", "0.57", degrees(0, 57, 0)},
      {"one decimal stands for tens of minutes", "30.3", degrees(30, 30, 0)},
      {"three decimals end in tens of seconds", "30.303", degrees(30, 30, 30)},
      {"sign of the whole angle", "-30.3030", -degrees(30, 30, 30)},
      {"sign with zero degrees", "-0.30", -0.5},
      {"plus sign and blanks", " +1.3000\r", 1.5},
      {"no degrees", ".5", degrees(0, 50, 0)},
      {"no decimals", "7", 7.0},
      {"point at the end", "7.", 7.0},
      {"60 minutes count", "10.60", 11.0},
      {"99 seconds count", "10.0099", degrees(10, 1, 39)},
      {"exponent", "1.233e2", degrees(123, 30, 0)},
      {"small exponent", "3e-1", 0.5},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.reason);
    bool valid = false;
    // DOUBLE_EQ allows 4 units in the last place; the sum of the fields and the sum here round once or twice each.
    EXPECT_DOUBLE_EQ(Degree::stringtoDouble(c.text, utils::DegreeToDDPMMSS, &valid), c.degrees);
    EXPECT_TRUE(valid);
    EXPECT_DOUBLE_EQ(Degree::stringtoDouble(c.text, utils::DDPMMSSToRadian), c.degrees / 180.0 * kPi);
  }
}

TEST(AngleReading, GivesZeroForWhatIsNoNumber) {
  std::string const tooLarge = "1" + std::string(400, '0');
  char const* const texts[] = {"",    " ",   "-",    ".",   "12a", "1.2.3",         "1,30",
                               "--5", "+-5", "0x10", "nan", "inf", tooLarge.c_str()};
  for (char const* text : texts) {
    for (utils::DMSFormat const format : {utils::DegreeToDDPMMSS, utils::DDPMMSSToRadian, utils::DEGREE}) {
      SCOPED_TRACE(std::string(text) + " format " + std::to_string(format));
      bool valid = true;
      EXPECT_EQ(Degree::stringtoDouble(text, format, &valid), 0.0);
      EXPECT_FALSE(valid);
    }
  }
}

TEST(AngleText, HasEveryForm) {
  EXPECT_EQ(Degree::stringtoDouble(" 30.3 ", utils::Gon), 30.3) << "all but DD.MMSS are read as plain numbers";
  Degree const angle(degrees(123, 45, 30.26));
  struct Case {
    utils::DMSFormat format;
    char const* text;
  };
  Case const cases[] = {
      {utils::DMS, "123°45′30.26″"},      {utils::DMSFix1, "123°45′30.3″"},  {utils::RADIAN, "2.15999165"},
      {utils::DEGREE, "123.758406"},      {utils::DDCMMCSS, "123:45:30.26"}, {utils::DDCMM, "123:45.5043"},
      {utils::DDRMMRSS, "123°45′30.26″"}, {utils::DDRMMR, "123°45.5043′"},   {utils::DDMMSS, "1234530.26"},
      {utils::DDPMMSS, "123.453026"},     {utils::DDPMM, "123.455043"},      {utils::DDSMMSSS, "123 45 30.26"},
      {utils::Gon, "137.509340"},         {utils::Honey, "2062.6401"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.format);
    EXPECT_EQ(angle.toString(c.format, 0, 2).toStdString(), c.text);
  }
  EXPECT_EQ(angle.toString(utils::DegreeToDDPMMSS, 6).toStdString(), "123.453026");
}

TEST(AngleText, CarriesSoThatNoFieldShowsSixty) {
  struct Case {
    double degrees;
    utils::DMSFormat format;
    int decimals;
    char const* text;
  };
  Case const cases[] = {
      {degrees(0, 59, 59.996), utils::DDCMMCSS, 2, "1:00:00.00"},
      {degrees(0, 59, 59.994), utils::DDCMMCSS, 2, "0:59:59.99"},
      {degrees(10, 29, 59.6), utils::DMS, 0, "10°30′00″"},
      {-degrees(0, 59, 59.996), utils::DDSMMSSS, 2, "-1 00 00.00"},
      {-degrees(0, 0, 0.004), utils::DDCMMCSS, 2, "0:00:00.00"},
      {-degrees(0, 0, 0.006), utils::DDCMMCSS, 2, "-0:00:00.01"},
      {degrees(9, 59, 59.999), utils::DDCMM, 0, "10:00.00"},
      {degrees(9, 59, 59.999), utils::DDPMM, 0, "10.0000"},
      {degrees(359, 59, 59.97), utils::DMSFix1, 5, "360°00′00.0″"},
      {degrees(10, 59, 59.6), utils::DegreeToDDPMMSS, 4, "11.0000"},
      {degrees(10, 59, 56), utils::DegreeToDDPMMSS, 3, "11.000"},
      {degrees(10, 59, 40), utils::DegreeToDDPMMSS, 2, "11.00"},
      {degrees(10, 56, 0), utils::DegreeToDDPMMSS, 1, "11.0"},
      {-degrees(10, 36, 0), utils::DegreeToDDPMMSS, 0, "-11"},
      {-degrees(0, 20, 0), utils::DegreeToDDPMMSS, 0, "0"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(Degree(c.degrees).toString(c.format, c.decimals).toStdString(), c.text);
  }
}

TEST(AngleText, DdMmssReadsBackWithinHalfAUnitOfTheLastPlace) {
  constexpr unsigned kSeed = 20180517;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  std::uniform_real_distribution<double> anywhere(-360.0, 360.0);
  std::uniform_int_distribution<int> minute(-360 * 60, 360 * 60);
  std::uniform_real_distribution<double> closeBy(-1e-3, 1e-3);
  // Text and reading round a handful of times in doubles of at most 360: 8 units in the last place of those.
  double const rounding = 8.0 * 360.0 * std::numeric_limits<double>::epsilon();
  for (int i = 0; i < 4000; ++i) {
    // Half of the angles stand within 4" of a whole minute, where a missing carry shows.
    double const value = i % 2 == 0 ? anywhere(random) : minute(random) / 60.0 + closeBy(random) * std::pow(10, -i % 9);
    for (int decimals = 4; decimals <= 13; ++decimals) {
      QString const text = Degree(value).toString(utils::DegreeToDDPMMSS, decimals);
      QString const fields = text.section('.', 1);
      ASSERT_EQ(fields.size(), decimals) << text.toStdString();
      ASSERT_TRUE(fields.left(2).toInt() < 60 && fields.mid(2, 2).toInt() < 60) << text.toStdString();
      double const halfUnit = 0.5 * std::pow(10.0, 4 - decimals) / 3600.0;
      ASSERT_NEAR(Degree::stringtoDouble(text, utils::DegreeToDDPMMSS), value, halfUnit + rounding)
          << text.toStdString();
    }
  }
}

TEST(Formater, TakesFormAndDecimalsFromItsConfiguration) {
  Json::Value configuration;
  configuration["AngleFormat"] = int(utils::DDRMMRSS);
  configuration["AngleDecimals"] = 1;
  EXPECT_EQ(utils::Formater(configuration).toString(Degree(1.5)).toStdString(), "1°30′00.0″");
  configuration["AngleFormat"] = int(utils::DDPMMSSToRadian);  // a form for reading only
  configuration["AngleDecimals"] = "3";
  EXPECT_EQ(utils::Formater(configuration).toString(Degree(1.5)).toStdString(), "1:30:00.00");
  EXPECT_EQ(utils::Formater(Json::Value("DMS")).toString(Degree(1.5)).toStdString(), "1:30:00.00");
}

}  // namespace
