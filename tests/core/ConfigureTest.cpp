// The settings of a project in their two stored forms.
#include <gtest/gtest.h>
#include <tinyxml2.h>

#include "support/Support.h"

namespace {

using kvn::Configure;

/// All seven fields as text, to compare and to show.
std::string text(Configure const& c) {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out.precision(9);  // tells every float from its neighbours
  out << c.AngleError << ' ' << c.LineFixedError << ' ' << c.LineProportionError << ' ' << c.LineCalculateExpression
      << ' ' << c.AdjustMethod << ' ' << c.TraversePointAdjust << ' ' << c.AtmosphericIndex;
  return out.str();
}

TEST(Configure, StandsInXmlWithAPointAndKeepsWhatAnElementDoesNotTell) {
  char const* const all =
      R"(<Config AngleError="0.69999999" LineFixedError="1.25" LineProportionError="0.001" )"
      R"(LineCalculateExpression="true" AdjustMethod="-3" TraversePointAdjust="2147483647" AtmosphericIndex="0.13"/>)";
  std::pair<char const*, char const*> const cases[] = {
      {R"(<C AngleError="x" LineFixedError="4.5" AdjustMethod="y" LineCalculateExpression="z"/>)",
       "2 4.5 3 0 0 0 0.159999996"},
      {all, "0.699999988 1.25 0.00100000005 1 -3 2147483647 0.129999995"}};
  tinyxml2::XMLDocument document;
  for (auto const& [element, fields] : cases) {
    document.Parse(element);
    EXPECT_EQ(text(Configure(document.RootElement())), fields) << element;
  }
  Configure const read(document.RootElement());
  document.Parse("<Config/>");
  read.write(document.RootElement());
  tinyxml2::XMLPrinter printer(nullptr, true);
  document.Print(&printer);
  EXPECT_STREQ(printer.CStr(), all);
}

TEST(Configure, TakesFromJsonWhatHasTheRightType) {
  std::pair<char const*, char const*> const cases[] = {
      {R"({"AdjustMethod": true, "AngleError": "7", "LineFixedError": null})", "2 3 3 0 0 0 0.159999996"},
      {R"({"AdjustMethod": 3, "AngleError": 7, "TraversePointAdjust": 2, "AtmosphericIndex": 0.5})", "7 3 3 0 3 2 0.5"},
      {R"({"AdjustMethod": 1e12, "LineCalculateExpression": 1})", "2 3 3 1 0 0 0.159999996"},
      {R"({"LineCalculateExpression": "true", "LineProportionError": 4})", "2 3 4 0 0 0 0.159999996"}};
  for (auto const& [document, fields] : cases) {
    Configure const read(test::json(document));
    EXPECT_EQ(text(read), fields) << document;
    Json::Value value;
    read.write(value);
    EXPECT_EQ(text(Configure(value)), fields) << document;
  }
}

}  // namespace
