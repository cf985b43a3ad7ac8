// Texts of angles and numbers: DD.MMSS, rounding with carry, and a decimal point whatever the locale is.
#include <gtest/gtest.h>
#include <utils/Degree.h>
#include <utils/Formater.h>
#include <utils/Number.h>
#include <QByteArray>
#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include "support/Support.h"

namespace {

using utils::Degree;

TEST(AngleReading, TakesTheFieldsFromTheDigits) {
  std::pair<char const*, double> const cases[] = {
      {"3.4530257", 13530.257}, {"0.29", 1740},      {"0.57", 3420}, {"30.303", 109830}, {"-30.3030", -109830},
      {"-0.30", -1800},         {" +1.30\r", 5400},  {".5", 3000},   {"7.", 25200},      {"10.60", 39600},
      {"10.0099", 36099},       {"1.233e2", 444600},
  };
  for (auto const& [text, seconds] : cases) {
    // DOUBLE_EQ allows 4 units in the last place; the sum of the fields and the quotient here round once or twice each.
    EXPECT_DOUBLE_EQ(Degree::stringtoDouble(text, utils::DegreeToDDPMMSS), seconds / 3600.0) << text;
    EXPECT_DOUBLE_EQ(Degree::stringtoDouble(text, utils::DDPMMSSToRadian), seconds / 648000.0 * std::acos(-1.0));
  }
  EXPECT_EQ(Degree::stringtoDouble(" 30.3 ", utils::Gon), 30.3) << "all but DD.MMSS are read as plain numbers";
  for (char const* text : {"", "-", "12a", "1.2.3", "1,30", "+-5", "0x10", "nan"}) {
    bool valid = true;
    EXPECT_EQ(Degree::stringtoDouble(text, utils::DegreeToDDPMMSS, &valid), 0.0) << text;
    EXPECT_FALSE(valid) << text;
  }
}

TEST(NumberText, HasNoSignWhereItIsZero) {
  for (auto const& [text, told] : {std::pair{"-0.0000", "0.0000"},
                                   {"-0", "0"},
                                   {"-0.0001", "-0.0001"},
                                   {"-10", "-10"},
                                   {"-0e-5", "-0e-5"},
                                   {"0.00", "0.00"},
                                   {"-", "-"},
                                   {"", ""}}) {
    EXPECT_EQ(utils::withoutSignOfZero(text), told);
  }
}

TEST(AngleText, HasEveryFormAndCarriesSoThatNoFieldShowsSixty) {
  using namespace utils;
  std::tuple<double, DMSFormat, int, char const*> const cases[] = {
      {445530.26, DMS, 2, "123°45′30.26″"},    {445530.26, RADIAN, 2, "2.15999165"},
      {445530.26, DDMMSS, 2, "1234530.26"},    {445530.26, DDPMMSS, 2, "123.453026"},
      {445530.26, Gon, 2, "137.509340"},       {445530.26, Honey, 2, "2062.6401"},
      {3599.996, DDCMMCSS, 2, "1:00:00.00"},   {3599.994, DDCMMCSS, 2, "0:59:59.99"},
      {-3599.996, DDSMMSSS, 2, "-1 00 00.00"}, {-0.004, DDCMMCSS, 2, "0:00:00.00"},
      {-0.006, DDCMMCSS, 2, "-0:00:00.01"},    {35999.999, DDCMM, 0, "10:00.00"},
      {35999.999, DDPMM, 0, "10.0000"},        {1295999.97, DMSFix1, 5, "360°00′00.0″"},
      {39596.0, DegreeToDDPMMSS, 3, "11.000"}, {39360.0, DegreeToDDPMMSS, 1, "11.0"},
      {-38160.0, DegreeToDDPMMSS, 0, "-11"},   {-1200.0, DegreeToDDPMMSS, 0, "0"}};
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
    double const bound = 0.5 * std::pow(10.0, 4 - decimals) / 3600.0 + rounding;
    ASSERT_NEAR(Degree::stringtoDouble(text, utils::DegreeToDDPMMSS), value, bound) << text.toStdString();
  }
}

TEST(LeadingNumber, ReadsAsStrtodOfTheCLocale) {
  std::pair<char const*, double> const cases[] = {
      {"1,5", 1.0}, {" \t-1.5e2x", -150.0}, {"+.25", 0.25},      {"0x1.8p3", 12.0}, {"0xg", 0.0},
      {"1e+", 1.0}, {"-0", -0.0},           {"-inf", -HUGE_VAL}, {"0e999", 0.0},
  };
  for (auto const& [text, expected] : cases) {
    double const value = utils::leadingNumber(text);
    EXPECT_EQ(value, expected) << text;
    EXPECT_EQ(std::signbit(value), std::signbit(expected)) << text;
  }
  for (char const* text : {"", " ", "abc", "-", ".", "e5", ",5", "+-1", "\u00A01"}) {
    EXPECT_EQ(test::failureOf<std::invalid_argument>([text] { utils::leadingNumber(text); }), "invalid stod argument");
  }
  for (char const* text : {"-1e400", "1e-400", "1e-310"}) {
    EXPECT_EQ(test::failureOf<std::out_of_range>([text] { utils::leadingNumber(text); }), "stod argument out of range");
  }
}

TEST(PlainDecimal, IsTheNearestDoubleOrNothing) {
  std::mt19937_64 random(15);
  for (int i = 0; i < 50000; ++i) {
    std::string text = std::to_string(random() % 1000000000000000);
    if (random() % 4 != 0) text.insert(random() % text.size() + 1, ".");
    if (random() % 4 == 0) text.insert(0, "-");
    std::optional<double> const number = utils::plainDecimal(text);
    ASSERT_TRUE(number.has_value()) << text;
    ASSERT_EQ(*number, QByteArray::fromStdString(text).toDouble()) << text;
  }
  EXPECT_TRUE(std::signbit(*utils::plainDecimal("-0")));
  EXPECT_EQ(utils::plainDecimal("0000000000000000000123456789012345"), 123456789012345.0);
  for (char const* text :
       {"", "-", ".5", "+1", "1e3", " 1", "1 ", "1.2.3", "0x1", "1234567890123456", "0.0000000000000001"}) {
    EXPECT_FALSE(utils::plainDecimal(text).has_value()) << text;
  }
}

TEST(FullNumber, ReadsAsQStringDoes) {
  QStringList const pieces =
      QString("0|7|12345678901234567|.|-|+|e|E-3|e400|e-320| |\t|inf|nan|x|a|1,5|\u00A0|_").split('|')
      << QString(QChar(0));
  std::mt19937 random(99);
  std::uniform_int_distribution<int> piece(0, pieces.size() - 1);
  int good = 0;
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (int k = i % 5; k > 0; --k) text += pieces[piece(random)].toStdString();
    bool valid = false;
    double const expected = QString::fromStdString(text).toDouble(&valid);
    std::optional<double> const value = utils::fullNumber(text);
    ASSERT_EQ(value.has_value(), valid) << text;
    if (!valid) continue;
    ++good;
    ASSERT_TRUE(*value == expected || (std::isnan(*value) && std::isnan(expected))) << text;
    ASSERT_EQ(std::signbit(*value), std::signbit(expected)) << text;
  }
  EXPECT_GT(good, 5000);
}

TEST(NumberText, IsPlainDecimalWithAPoint) {
  EXPECT_EQ(utils::Formater().toString(-1234567.891, 1), "-1234567.9");
  EXPECT_EQ(utils::Formater().toString(1e21, 4), "1000000000000000000000.0000");
  EXPECT_EQ(utils::Formater().toString(2.4, -1), "2");
}

}  // namespace
