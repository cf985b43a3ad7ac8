// The settings of a project in their two stored forms.
#include <gtest/gtest.h>
#include <json/reader.h>
#include <tinyxml2.h>
#include <sstream>

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

Configure other() {
  Configure c;
  c.AngleError = 0.7F;
  c.LineFixedError = 1.25F;
  c.LineProportionError = 1e-3F;
  c.LineCalculateExpression = true;
  c.AdjustMethod = -3;
  c.TraversePointAdjust = 2147483647;
  c.AtmosphericIndex = 0.13F;
  return c;
}

Json::Value json(std::string const& document) {
  Json::Value value;
  std::istringstream(document) >> value;
  return value;
}

TEST(Configure, StandsInXmlWithAPointAndReadsBack) {
  tinyxml2::XMLDocument document;
  tinyxml2::XMLElement* const element = document.NewElement("Config");
  document.InsertEndChild(element);
  other().write(element);
  tinyxml2::XMLPrinter printer(nullptr, true);
  document.Print(&printer);
  EXPECT_STREQ(printer.CStr(), R"(<Config AngleError="0.69999999" LineFixedError="1.25" LineProportionError="0.001" )"
                               R"(LineCalculateExpression="true" AdjustMethod="-3" TraversePointAdjust="2147483647" )"
                               R"(AtmosphericIndex="0.13"/>)");
  EXPECT_EQ(text(Configure(element)), text(other()));
}

TEST(Configure, KeepsWhatAnElementDoesNotTell) {
  struct Case {
    char const* element;
    char const* fields;
  };
  Case const cases[] = {
      {"<C/>", "2 3 3 0 0 0 0.159999996"},
      {R"(<C AngleError="1.5"/>)", "1.5 3 3 0 0 0 0.159999996"},
      {R"(<C angleerror="1.5" AngleError=""/>)", "2 3 3 0 0 0 0.159999996"},
      {R"(<C AngleError="x" LineFixedError="4.5" AdjustMethod="y" LineCalculateExpression="z"/>)",
       "2 4.5 3 0 0 0 0.159999996"},
      {R"(<C LineCalculateExpression="true" AdjustMethod="2" TraversePointAdjust="1" AtmosphericIndex="0"/>)",
       "2 3 3 1 2 1 0"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.element);
    tinyxml2::XMLDocument document;
    ASSERT_EQ(document.Parse(c.element), tinyxml2::XML_SUCCESS);
    EXPECT_EQ(text(Configure(document.RootElement())), c.fields);
  }
  tinyxml2::XMLElement const* const none = nullptr;
  EXPECT_EQ(text(Configure(none)), text(Configure()));
  other().write(static_cast<tinyxml2::XMLElement*>(nullptr));
}

TEST(Configure, StandsInJsonByTypeAndReadsBack) {
  Json::Value value;
  other().write(value);
  EXPECT_EQ(value.size(), 7U);
  EXPECT_EQ(value["AngleError"].type(), Json::realValue);
  EXPECT_EQ(value["LineCalculateExpression"].type(), Json::booleanValue);
  EXPECT_EQ(value["AdjustMethod"].type(), Json::intValue);
  EXPECT_EQ(text(Configure(value)), text(other()));
}

TEST(Configure, TakesFromJsonWhatHasTheRightType) {
  struct Case {
    char const* document;
    char const* fields;
  };
  Case const cases[] = {
      {"null", "2 3 3 0 0 0 0.159999996"},
      {"[1, 2]", "2 3 3 0 0 0 0.159999996"},
      {R"({"AdjustMethod": "1", "AngleError": "7", "LineFixedError": null})", "2 3 3 0 0 0 0.159999996"},
      {R"({"AdjustMethod": 3, "AngleError": 7, "AtmosphericIndex": 0.5})", "7 3 3 0 3 0 0.5"},
      {R"({"AdjustMethod": true, "AngleError": false, "LineProportionError": {}})", "2 3 3 0 0 0 0.159999996"},
      {R"({"AdjustMethod": 1e12})", "2 3 3 0 0 0 0.159999996"},
      {R"({"LineCalculateExpression": 1})", "2 3 3 1 0 0 0.159999996"},
      {R"({"LineCalculateExpression": "true"})", "2 3 3 0 0 0 0.159999996"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.document);
    EXPECT_EQ(text(Configure(json(c.document))), c.fields);
  }
  Configure set = other();
  set.read(json(R"({"LineCalculateExpression": null, "AdjustMethod": "0"})"));
  EXPECT_EQ(text(set), text(other()));
  set.read(json(R"({"LineCalculateExpression": 0})"));
  EXPECT_FALSE(set.LineCalculateExpression);
}

}  // namespace
