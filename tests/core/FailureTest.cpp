// Texts and fields of the failures, and the way out of a cancelled operation.
#include <gtest/gtest.h>
#include <utils/QLogicError.h>

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
  std::pair<char const*, char const*> const texts[] = {// by the number of the kind, which is part of the interface
                                                       {"Data error", "Data error"},
                                                       {"Know point is not enough", "Known points are not enough"},
                                                       {"Station point is not enough", "Station point is not enough"},
                                                       {"Know point name repeat", "Know point name repeat"},
                                                       {"Station Point Name  Repeat", "Station Point Name Ü Repeat"},
                                                       {"Sight point name repeat", "Sight point name repeat"},
                                                       {"", ""},
                                                       {"All Station Point is known", "All Station Point is known"},
                                                       {"Horizontal Angle repeat", "Horizontal Angle repeat"},
                                                       {"", ""}};
  int kind = 0;
  for (auto const& [withIndex, withName] : texts) {
    auto const type = static_cast<AlgorithmException::ErrorType>(kind++);
    AlgorithmException const indexed(3, type);
    AlgorithmException const named(type, "Ü");
    EXPECT_STREQ(indexed.what(), withIndex);
    EXPECT_STREQ(named.what(), withName);
    EXPECT_TRUE(indexed.index == 3 && indexed.name.empty() && named.index == -1 && named.errorType == type);
  }
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
