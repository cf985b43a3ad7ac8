#include "Program.h"

#include <gmock/gmock.h>

namespace {

using test::Program;
using testing::HasSubstr;

constexpr char const* kNetwork = "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45.0\nP,S,70.71\n";
constexpr char const* kLine = R"({"name": "AddNetworkDataCMD", "in": {"data":
    {"index": 2, "StartName": "A", "EndName": "Q", "HorizontalAngle": 0.5, "horizontalDistance": 12.5}}})";

std::string listOf(std::string const& commands) { return "[" + commands + "]"; }

TEST(ExecCommand, RunsEveryCommandAndTellsEachOutcome) {
  Program const program;
  std::string const commands = std::string(kLine) +
                               R"(, {"name": "NoSuchCMD", "in": {}},
      {"name": "AddTraverseDataCMD", "in": {"data": {"index": 0, "Name": "基点", "N": 1.5}}},
      {"name": "AddCoordinateDataCMD", "in": {"data": {"Index": 0, "Name": "C", "Mark": "m", "N": 1, "E": 2, "Z": 3}}})";
  program.write("net.in2", kNetwork);
  test::Run const run = program.run({"exec", "--open", "net.in2"}, listOf(commands));
  EXPECT_EQ(run.exitCode, 1) << "one command failed";
  Json::Value const results = run.json();
  ASSERT_EQ(results.size(), 4U) << run.out << run.err;
  EXPECT_TRUE(results[0]["ok"].asBool());
  EXPECT_FALSE(results[1]["ok"].asBool());
  EXPECT_EQ(results[1]["out"]["code"].asInt(), 2);
  EXPECT_TRUE(results[1]["messages"].isArray());
  EXPECT_TRUE(results[3]["ok"].asBool()) << "a failed command must not stop those behind it";
  Json::Value const message = results[2]["messages"][0];
  EXPECT_EQ(message["type"].asString(), "Info");
  EXPECT_EQ(message["text"].asString(), "Know Point [基点] insert successfully");
  EXPECT_THAT(run.out, HasSubstr("[基点]")) << "texts stand as they are, not as escapes";
  EXPECT_THAT(run.err, HasSubstr("Info: Know Point [基点] insert successfully\n"));
}

TEST(ExecCommand, SavesWhatTheProjectHolds) {
  Program const program;
  program.write("net.in2", kNetwork);
  test::Run const run = program.run({"exec", "--open", "net.in2", "--save", "new.in2"}, listOf(kLine));
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(program.read("new.in2"), testing::StartsWith("3,5,0\n")) << "the a-priori errors of the file";
  EXPECT_THAT(program.read("new.in2"), HasSubstr("Q,S,12.5000\n"));
  EXPECT_EQ(program.read("net.in2"), kNetwork);

  // A file cannot become a directory, so that nothing can be written below it; the results are told all the same.
  test::Run const refused = program.run({"exec", "--open", "net.in2", "--save", "net.in2/new.in2"}, listOf(kLine));
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("kelvane: net.in2/new.in2: the file was not written\n"));
  EXPECT_TRUE(refused.json()[0]["ok"].asBool());
}

TEST(ExecCommand, SavesNoDirectionThatWasNotObservedAndNothingAfterAFailure) {
  Program const program;
  program.write("net.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,-315.0\nP,S,70.71\nB\nA,L,0\nP,S,70.71\n");
  EXPECT_EQ(program.run({"exec", "--open", "net.in2", "--save", "new.in2"}, "[]").exitCode, 0);
  EXPECT_EQ(program.read("new.in2"),
            "3,5,0\nA,0.0000,0.0000\nB,0.0000,100.0000\n"
            "A\nB,L,0.000000\nP,L,45.000000\nP,S,70.7100\nB\nA,L,0.000000\nP,S,70.7100\n");
  test::Run const failed = program.run({"exec", "--open", "net.in2", "--save", "new.in2"},
                                       listOf(std::string(kLine) + R"(, {"name": "X"})"));
  EXPECT_EQ(failed.exitCode, 1);
  EXPECT_THAT(failed.err, HasSubstr("kelvane: new.in2: not written, since a command failed\n"));
  EXPECT_EQ(program.read("new.in2").find("Q,"), std::string::npos);
}

TEST(ExecCommand, RefusesInputThatIsNoListOfCommands) {
  Program const program;
  for (std::string const& input :
       {std::string(), std::string("{}"), std::string("[1]"), std::string(R"([{"in": {}}])"),
        std::string(R"([{"name": "X", "in": 3}])"), std::string("[] []"), std::string(5000, '[')}) {
    SCOPED_TRACE(input.substr(0, 30));
    test::Run const run = program.run({"exec"}, input);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, testing::StartsWith("kelvane: "));
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  }
}

}  // namespace
