// What the program prints with --json against the schema that stands beside its description.
#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <json/reader.h>
#include <functional>
#include <sstream>

namespace {

using test::Program;

class JsonSchema : public testing::Test {
 protected:
  /// What does not fit; empty where all does.
  std::string faultsOf(std::string const& definition, std::string const& json) const {
    program.write("printed.json", json);
    return program
        .shell(QString(KELVANE_PYTHON " " KELVANE_JSON_SCHEMA " " KELVANE_SOURCE_DIR
                                      "/docs/json-schema.json %1 printed.json")
                   .arg(QString::fromStdString(definition)))
        .out;
  }

  void expectFits(QStringList const& arguments, std::string const& definition, std::string const& input = {}) const {
    SCOPED_TRACE(arguments.join(' ').toStdString());
    test::Run const run = program.run(arguments, input);
    ASSERT_FALSE(run.json().isNull()) << run.out << run.err;
    EXPECT_EQ(faultsOf(definition, run.out), "\n");
  }

  Program program;
};

constexpr char const* kBook =
    "STA,A,1.60,,1000,1000,50\nSC,B,1.6,,0.0000,90.0000,100,0,0,0\nSC,P,1.6,,60.0000,90.0000,100,0,0,0\n"
    "SC,P,1.6,,240.0000,270.0000,100,0,0,0\nSC,B,1.6,,180.0000,270.0000,100,0,0,0\n"
    "STA,B,1.60,,1000,1100,50\nSC,P,1.6,,0.0000,90.0000,100.1,0,0,0\nSC,A,1.6,,60.0000,90.0000,100,0,0,0\n"
    "SC,A,1.6,,240.0000,270.0000,100,0,0,0\nSC,P,1.6,,180.0000,270.0000,100.1,0,0,0\n";

TEST_F(JsonSchema, HoldsWhatEverySubcommandPrints) {
  program.write("book.txt", kBook);
  program.write("points.dat", "C,m,1,2,3\n");
  program.write("one.in2", "3,5,0\nA,0,0\nA\nB,L,0\nP,L,45\n");
  QString const network = test::samplePath("net_niemeier2008.in2");
  QString const traverse = test::samplePath("trav_connecting_fr_5legs.txt");
  QString const heights = test::samplePath("trig_height_reciprocal.txt");
  for (QString const& file : {network, traverse, heights, QString("book.txt")}) {
    expectFits({"show", file, "--json"}, "show");
    expectFits({"check", file, "--json"}, "check");
  }
  expectFits({"show", "points.dat", "--json"}, "show");
  expectFits({"check", network, "none.in2", "--json"}, "checkOfSeveral");
  for (QStringList const& options :
       {QStringList(), {"--free"}, {"--control-error", "5"}, {"--robust"}, {"--leave-out"}}) {
    expectFits(QStringList{"adjust", network, "--json"} + options, "leastSquares");
    expectFits(QStringList{"adjust", "book.txt", "--json"} + options, "leastSquares");
  }
  expectFits({"adjust", network, "--as-read", "--json"}, "literalLeastSquares");
  expectFits({"adjust", traverse, "--method", "traverse", "--json"}, "traverses");
  expectFits(
      {"adjust", traverse, "--method", "connect", "--allowed-angle", "60", "--allowed-relative", "2000", "--json"},
      "traverses");
  expectFits({"adjust", "one.in2", "--json"}, "failure");
  EXPECT_EQ(program.run({"plan", network, "--points", "none.dat", "--json"}).json()["file"], Json::Value("none.dat"));
  program.run({"adjust", network, "--save", "all.dat"});
  expectFits({"plan", network, "--points", "all.dat", "--json"}, "plan");
  expectFits({"heights", heights, "--json"}, "carefulHeights");
  expectFits({"heights", "book.txt", "--json"}, "carefulHeights");
  expectFits({"heights", heights, "--as-read", "--json"}, "literalHeights");
  expectFits({"convert", network, "net.kvn", "--json"}, "convert");
  expectFits({"report", network, "net.html", "--json"}, "report");
  expectFits({"map", network, "net.svg", "--json"}, "map");
  expectFits({"exec", "--open", network}, "exec", R"([{"name": "list"}, {"name": "undo"}, {"name": "NoSuchCMD"},
      {"name": "AddNetworkDataCMD", "in": {"data": {"StartName": "A", "EndName": "Q"}}},
      {"name": "RemoveNetworkDataCMD", "in": {"data": {"ids": ["none"]}}}])");
}

TEST_F(JsonSchema, HasNoKeyThatTheDescriptionDoesNotTell) {
  std::string const description = test::fileBytes(KELVANE_SOURCE_DIR "/docs/json.md");
  Json::Value schema;
  std::istringstream(test::fileBytes(KELVANE_SOURCE_DIR "/docs/json-schema.json")) >> schema;
  std::function<void(Json::Value const&)> const look = [&](Json::Value const& part) {
    for (std::string const& key : part["properties"].getMemberNames()) {
      EXPECT_THAT(description, testing::ContainsRegex("[^A-Za-z_]" + key + "[^A-Za-z_]"));
      if (part["properties"][key].isObject()) look(part["properties"][key]);
    }
    if (part["items"].isObject()) look(part["items"]);
  };
  for (std::string const& name : schema["definitions"].getMemberNames()) look(schema["definitions"][name]);
}

TEST_F(JsonSchema, IsBrokenByAKeyThatIsMissingNewOrOfAnotherType) {
  for (auto const& [json, says] :
       {std::pair{R"({"version": 2, "file": "a", "ok": true})", "written: messages is missing\n"},
        {R"({"version": 2, "file": "a", "ok": true, "messages": [], "more": 1})", "written: more is not told of\n"},
        {R"({"version": 2, "file": "a", "ok": 1, "messages": []})", "written.ok: 1 is no boolean\n"},
        {R"({"version": 3, "file": "a", "ok": true, "messages": []})", "written.version: 3 is not 2\n"}}) {
    EXPECT_EQ(faultsOf("written", json), says);
  }
}

}  // namespace
