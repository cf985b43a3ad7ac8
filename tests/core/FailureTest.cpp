// Texts and fields of the failures, and the way out of a cancelled operation.
#include <gtest/gtest.h>
#include <utils/QLogicError.h>

#include "support/Support.h"

namespace {

using namespace kvn;

TEST(DataException, NamesLineAndPoint) {
  EXPECT_STREQ(DataException(std::string("text")).what(), "text");
  EXPECT_STREQ(DataException(5, "text").what(), "line 5 text");
  EXPECT_STREQ(DataException(0, "text").what(), "line 0 text");
  EXPECT_STREQ(DataException(-1, "text").what(), " text");
  DataException const named(std::string("P1"), "text");
  EXPECT_STREQ(named.what(), "line 0 text name:P1");
  EXPECT_EQ(named.line, 0);
  EXPECT_EQ(named.name, "P1");
  EXPECT_EQ(named.message, "text");
  EXPECT_EQ(DataException::toString(-1, "", "P1"), "  name:P1");
}

TEST(AlgorithmException, HasATextForEveryKindWithAnIndexAndWithAName) {
  struct Case {
    AlgorithmException::ErrorType type;
    char const* withIndex;
    char const* withName;
  };
  Case const cases[] = {
      {AlgorithmException::DataError, "Data error", "Data error"},
      {AlgorithmException::KnownPointNotEnough, "Know point is not enough", "Known points are not enough"},
      {AlgorithmException::StationNotEnough, "Station point is not enough", "Station point is not enough"},
      {AlgorithmException::KnownPointNameRepeat, "Know point name repeat", "Know point name repeat"},
      {AlgorithmException::StationNameRepeat, "Station Point Name  Repeat", "Station Point Name Ü Repeat"},
      {AlgorithmException::SightNameRepeat, "Sight point name repeat", "Sight point name repeat"},
      {AlgorithmException::NoText, "", ""},
      {AlgorithmException::AllStationKnown, "All Station Point is known", "All Station Point is known"},
      {AlgorithmException::HorizontalAngleRepeat, "Horizontal Angle repeat", "Horizontal Angle repeat"},
      {static_cast<AlgorithmException::ErrorType>(9), "", ""},
  };
  int value = 0;
  for (Case const& c : cases) {
    SCOPED_TRACE(c.withIndex);
    EXPECT_EQ(c.type, value++) << "the number is part of the interface";
    AlgorithmException const indexed(3, c.type);
    EXPECT_STREQ(indexed.what(), c.withIndex);
    EXPECT_EQ(indexed.index, 3);
    EXPECT_EQ(indexed.name, "");
    AlgorithmException const named(c.type, "Ü");
    EXPECT_STREQ(named.what(), c.withName);
    EXPECT_EQ(named.index, -1);
    EXPECT_EQ(named.errorType, c.type);
  }
  AlgorithmException const station(AlgorithmException::StationNameRepeat, "S");
  EXPECT_EQ(station.getErrorString(AlgorithmException::StationNameRepeat), "Station Point Name S Repeat");
  EXPECT_EQ(station.getErrorString(AlgorithmException::StationNameRepeat, "T"), "Station Point Name T Repeat");
}

TEST(Cancel, EndsByException) {
  Project project;
  EXPECT_FALSE(project.isCancel());
  EXPECT_NO_THROW(project.checkCancelAndThrow());
  bool cancelled = false;
  project.setCancelCall([&cancelled] { return cancelled; });
  EXPECT_NO_THROW(project.checkCancelAndThrow());
  cancelled = true;
  EXPECT_EQ(test::failureOf<QLogicError>([&] { project.checkCancelAndThrow(); }), "User Cancel");
}

}  // namespace
