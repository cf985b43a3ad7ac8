// Texts and fields of the failures, and the way out of a cancelled operation.
#include <gtest/gtest.h>
#include <utils/QLogicError.h>
#include <QStringList>

#include "support/Support.h"

namespace {

using namespace kvn;

TEST(DataException, NamesLineAndPoint) {
  EXPECT_STREQ(DataException(std::string("text")).what(), "text");
  EXPECT_STREQ(DataException(0, "text").what(), "line 0 text");
  EXPECT_STREQ(DataException(-1, "text").what(), " text");
  EXPECT_STREQ(DataException(std::string("P1"), "text").what(), "line 0 text name:P1");
  EXPECT_EQ(DataException::toString(-1, "", "P1"), "  name:P1");
}

TEST(AlgorithmException, HasATextForEveryKindWithAnIndexAndWithAName) {
  char const* const texts =
      "Data error|Know point is not enough|Station point is not enough|Know point name repeat|"
      "Station Point Name  Repeat|Sight point name repeat||All Station Point is known|Horizontal Angle repeat|";
  int kind = 0;  // its number is part of the interface
  for (QString const& text : QString(texts).split('|')) {
    auto const type = static_cast<AlgorithmException::ErrorType>(kind++);
    AlgorithmException const indexed(3, type);
    EXPECT_EQ(indexed.what(), text.toStdString());
    EXPECT_TRUE(indexed.index == 3 && indexed.errorType == type && AlgorithmException(type, "Ü").index == -1);
  }
  AlgorithmException const named(AlgorithmException::StationNameRepeat, "Ü");
  EXPECT_STREQ(named.what(), "Station Point Name Ü Repeat");
  EXPECT_STREQ(AlgorithmException(AlgorithmException::KnownPointNotEnough, "").what(), "Known points are not enough");
}

TEST(Cancel, EndsByException) {
  Project project;
  EXPECT_NO_THROW(project.checkCancelAndThrow());
  bool cancelled = false;
  project.setCancelCall([&cancelled] { return cancelled; });
  EXPECT_NO_THROW(project.checkCancelAndThrow());
  cancelled = true;
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project.checkCancelAndThrow(); }), "User Cancel");
}

}  // namespace
