// Numbers of files: a point for the decimals, whatever the locale of the process is.
#include <gtest/gtest.h>
#include <utils/Number.h>
#include <QByteArray>
#include <cmath>
#include <random>

#include "support/Support.h"

namespace {

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

TEST(LeadingNumber, ReadsSeventeenDigitsBackExactly) {
  std::mt19937_64 random(4711);
  std::uniform_real_distribution<double> logarithm(-300.0, 300.0);
  for (int i = 0; i < 5000; ++i) {
    double const value = std::pow(10.0, logarithm(random));
    std::string const text = " -" + QByteArray::number(value, 'g', 17).toStdString() + ";";
    ASSERT_EQ(utils::leadingNumber(text), -value) << text;
  }
}

}  // namespace
