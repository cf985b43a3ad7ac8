#include "Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>

namespace {

using test::kNetworkFile;
using test::Program;
using testing::HasSubstr;

constexpr char const* kLine = R"({"name": "AddNetworkDataCMD", "in": {"data":
    {"index": 2, "StartName": "A", "EndName": "Q", "HorizontalAngle": 0.5, "horizontalDistance": 12.5}}})";

constexpr char const* kBook =
    "STA,A,1.5,,10,10,5\nSC,B,1.6,,1.0000,90.0000,7,0,0,0\nSC,B,1.6,,181.0000,270.0000,7,0,0,0\n";

std::string listOf(std::string const& commands) { return "[" + commands + "]"; }

TEST(ExecCommand, RunsEveryCommandAndTellsEachOutcome) {
  Program const program;
  std::string const commands = std::string(kLine) +
                               R"(, {"name": "NoSuchCMD", "in": {}},
      {"name": "AddTraverseDataCMD", "in": {"data": {"index": 0, "Name": "基点", "N": 1.5}}},
      {"name": "AddCoordinateDataCMD", "in": {"data": {"Index": 0, "Name": "C", "Mark": "m", "N": 1, "E": 2, "Z": 3}}})";
  program.write("net.in2", kNetworkFile);
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
  program.write("net.in2", kNetworkFile);
  test::Run const run = program.run({"exec", "--open", "net.in2", "--save", "new.in2"}, listOf(kLine));
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(program.read("new.in2"), testing::StartsWith("3,5,0\n")) << "the a-priori errors of the file";
  EXPECT_THAT(program.read("new.in2"), HasSubstr("Q,S,12.5000\n"));
  EXPECT_EQ(program.read("net.in2"), kNetworkFile);

  // A file cannot take the place of a folder; the results are told all the same.
  program.shell("mkdir folder.in2");
  test::Run const refused = program.run({"exec", "--open", "net.in2", "--save", "folder.in2"}, listOf(kLine));
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("successfully\nError: folder.in2 was not written: "));
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

TEST(ExecCommand, EveryKindOfFileIsOpenedEditedSavedAndOpenedAgain) {
  Program const program;
  std::string const row = R"({"name": "AddTraverseDataCMD", "in": {"data": {"index": 0, "Name": "New", "N": 1}}})";
  std::string const point =
      R"({"name": "AddCoordinateDataCMD", "in": {"data": {"Index": 0, "Name": "New", "Mark": ""}}})";
  program.write("job.txt", kBook);
  program.write("job.lqf", "JOB J1\nINST T2\nSTA A,1.5,\nXYZ 10,10,5\nSC B,1.6,\nHVD 3600,324000,7\n");
  program.write("job.in2", kNetworkFile);
  program.write("job.dat", "C,m,1,2,3");
  struct Case {
    char const* file;
    std::string edit;
    char const* list;  // that the edit makes longer
    unsigned size;
  };
  for (Case const& c : {Case{"job.txt", row, "rows", 4}, Case{"job.lqf", row, "rows", 3},
                        Case{"job.in2", kLine, "lines", 3}, Case{"job.dat", point, "coordinates", 2}}) {
    SCOPED_TRACE(c.file);
    std::string const saved = "new" + std::string(c.file).substr(3);
    for (std::string const& target : {std::string("new.kvn"), saved}) {
      test::Run const run = program.run({"exec", "--open", c.file, "--save", target.c_str()}, listOf(c.edit));
      ASSERT_EQ(run.exitCode, 0) << run.err;
      Json::Value const shown = program.run({"show", target.c_str(), "--json"}).json();
      EXPECT_EQ(shown[c.list].size(), c.size) << target;
      std::string const open = R"({"name": "OpenFileCMD", "in": {"file": ")" + target + "\"}}";
      EXPECT_EQ(program.run({"exec"}, listOf(open)).exitCode, 0) << target;
    }
  }
}

TEST(ExecCommand, EditsTheRecordsOfAProjectFileByTheirIds) {
  Program const program;
  program.write("net.in2", kNetworkFile);
  ASSERT_EQ(program.run({"convert", "net.in2", "net.kvn"}).exitCode, 0);
  std::string const id = program.run({"show", "net.kvn", "--json"}).json()["lines"][1]["id"].asString();
  std::string const edit = R"({"name": "ModifyNetworkDataCMD", "in": {"data": {"id": ")" + id +
                           R"(", "HorizontalDistance": 80, "StartName": "A", "StartE": -5}}})";
  EXPECT_EQ(program.run({"exec", "--open", "net.kvn", "--save", "net.kvn"}, listOf(edit)).exitCode, 0);
  Json::Value const shown = program.run({"show", "net.kvn", "--json"}).json();
  EXPECT_EQ(shown["lines"][1]["id"].asString(), id);
  EXPECT_EQ(shown["lines"][1]["horizontal_distance"].asDouble(), 80);
  EXPECT_EQ(shown["knownPoints"][0]["y"].asDouble(), -5);
}

TEST(ExecCommand, KeepsTheNetworkOfAFieldBookWhoseRowsACommandHasEmptied) {
  Program const program;
  program.write("job.txt", kBook);
  std::string const open = R"({"name": "OpenFileCMD", "in": {"file": "job.txt"}}, )";
  test::Run const run = program.run({"exec", "--save", "job.kvn"}, listOf(open + kLine));
  EXPECT_EQ(run.exitCode, 1) << "there is one line, so that none can stand at 2";
  std::string line = kLine;
  line.replace(line.find("\"index\": 2"), 10, "\"index\": 1");
  EXPECT_EQ(program.run({"exec", "--save", "job.kvn"}, listOf(open + line)).exitCode, 0);
  EXPECT_EQ(program.run({"show", "job.kvn", "--json"}).json()["lines"].size(), 2U);
}

TEST(ExecCommand, AJobThatACommandHasOpenedKeepsItsKnownStations) {
  Program const program;
  program.write("job.lqf", "JOB J1\nINST T2\nSTA A,1.5,\nXYZ 10,20,5\nSC B,1.6,\nHVD 3600,324000,7\n");
  std::string const open = R"({"name": "OpenFileCMD", "in": {"file": "job.lqf"}})";
  EXPECT_EQ(program.run({"exec", "--save", "job.in2"}, listOf(open)).exitCode, 0);
  EXPECT_THAT(program.read("job.in2"), HasSubstr("\nA,20.0000,10.0000\n"));
}

TEST(ExecCommand, TakesEditsBackAndMakesThemAgain) {
  Program const program;
  program.write("net.in2", kNetworkFile);
  test::Run const run = program.run(
      {"exec", "--open", "net.in2"},
      listOf(std::string(R"({"name": "undo"}, )") + kLine +
             R"(, {"name": "undo"}, {"name": "list"}, {"name": "redo"}, {"name": "list"}, {"name": "redo"})"));
  Json::Value const results = run.json();
  ASSERT_EQ(results.size(), 7U) << run.err;
  EXPECT_EQ(results[0]["out"]["code"].asInt(), 4) << "nothing to undo yet";
  EXPECT_EQ(results[3]["out"]["lines"].size(), 2U);
  ASSERT_EQ(results[5]["out"]["lines"].size(), 3U);
  EXPECT_EQ(results[5]["out"]["lines"][2]["id"], results[1]["ids"][0]) << "the id that the edit has told";
  EXPECT_EQ(results[6]["out"]["code"].asInt(), 3) << "nothing to redo any more";
}

TEST(ExecCommand, EveryCommandWorksBehindOpenAndTellsTheIdsThatItDoesNotKnow) {
  Program const program;
  program.write("points.dat", "C,m,1,2,3");
  program.write("job.txt", kBook);
  test::Run const run = program.run({"exec", "--open", "points.dat"},
                                    R"([{"name": "SwitchCoordinateDataCMD", "in": {"data": {"file": "points.dat"}}},
          {"name": "RemoveCoordinateDataCMD", "in": {"data": {"ids": ["none"]}}},
          {"name": "SwitchTraverseDataCMD", "in": {"data": {"file": "job.txt"}}},
          {"name": "ModifyCoordinateDataCMD", "in": {"data": {"id": "none", "Name": "Q"}}}])");
  Json::Value const results = run.json();
  EXPECT_TRUE(results[0]["ok"].asBool()) << run.out;
  EXPECT_TRUE(results[1]["ok"].asBool());
  EXPECT_EQ(results[1]["out"]["unknown"][0], Json::Value("none"));
  EXPECT_TRUE(results[2]["ok"].asBool()) << run.out;
  EXPECT_EQ(results[3]["out"]["message"], Json::Value("Can not find the Coordinate Point")) << "and no missing map";
}

TEST(ExecCommand, AnotherFileTakesThePlaceOfTheCoordinatesOfTheFirst) {
  Program const program;
  program.write("points.dat", "C,m,1,2,3");
  program.write("net.in2", kNetworkFile);
  std::string const open = R"({"name": "OpenFileCMD", "in": {"file": "%1"}})";
  std::string const good = std::string(open).replace(open.find("%1"), 2, "net.in2");
  std::string const bad = std::string(open).replace(open.find("%1"), 2, "a.b.in2");
  test::Run const run = program.run({"exec", "--open", "points.dat"},
                                    listOf(bad + R"(, {"name": "list"}, )" + good + R"(, {"name": "list"})"));
  Json::Value const results = run.json();
  EXPECT_EQ(results[1]["out"]["coordinates"].size(), 1U) << "what was there stays behind a file that cannot be opened";
  EXPECT_EQ(results[3]["out"]["coordinates"].size(), 0U);
  EXPECT_EQ(results[3]["out"]["lines"].size(), 2U);
}

TEST(ExecCommand, AnswersLineByLineSoThatIdsCanBeAskedForAndUsed) {
  Program const program;
  program.write("job.txt", kBook);
  // The row is changed by the id that the first answer has told; the line between the same points keeps its own.
  test::Run const run = program.shell(R"sh(mkfifo in; "$KELVANE" exec --open job.txt --save new.txt < in > out &
      exec 3> in; echo '{"name": "list"}' >&3
      while ! grep -q rows out; do sleep 0.05; done
      row=$(grep -o '"rows":.*' out | grep -o '"id": "[^"]*"' | head -n 1)
      printf '{"name": "ModifyTraverseDataCMD", "in": {"data": {%s, "Height": 1.75}}}\n' "$row" >&3
      echo '{"name": "list"}' >&3
      exec 3>&-; wait $! && cat out)sh");
  QStringList const answers = QString::fromStdString(run.out).split('\n');
  ASSERT_EQ(answers.size(), 4) << run.out << run.err;
  test::Run first;
  first.out = answers[0].toStdString();
  test::Run last;
  last.out = answers[2].toStdString();
  EXPECT_EQ(last.json()["out"]["rows"][0]["instrument"].asDouble(), 1.75) << run.out;
  EXPECT_EQ(last.json()["out"]["lines"][0]["id"], first.json()["out"]["lines"][0]["id"]);
  EXPECT_THAT(program.read("new.txt"), testing::StartsWith("STA,A,1.75,"));
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
