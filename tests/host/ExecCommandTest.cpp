#include "Program.h"
#include "support/OpenCount.h"
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

constexpr char const* kLocalBook =  // in GBK
    "STA,A,1.5,,10,10,5\nSC,\xB5\xE3,1.6,,1.0000,90.0000,7,0,0,0\nSC,\xB5\xE3,1.6,,181.0000,270.0000,7,0,0,0\n";

std::string listOf(std::string const& commands) { return "[" + commands + "]"; }

TEST(ExecCommand, RunsEveryCommandAndTellsEachOutcome) {
  Program const program;
  std::string const commands = std::string(kLine) +
                               R"(, {"name": "NoSuchCMD", "in": {}},
      {"name": "AddCoordinateDataCMD", "in": {"data": {"Index": 0, "Name": "基点", "Mark": ""}}},
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
  EXPECT_EQ(message["text"].asString(), "Coordinate Point [基点] insert successfully");
  EXPECT_THAT(run.out, HasSubstr("[基点]")) << "texts stand as they are, not as escapes";
  EXPECT_THAT(run.err, HasSubstr("Info: Coordinate Point [基点] insert successfully\n"));
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

TEST(ExecCommand, KeepsTheObservationsOfLinesThatNoCommandHasEdited) {
  Program const program;
  std::string const text =
      "2,3,2\nA,0.0000,0.0000\nB,0.0000,100.0000\nA\nB,L,0.000000\nP,L,300.000000\nP,S,100.0000\nP,S,100.0020\n"
      "A\nC,L,10.000000\nQ,L,20.000000\n";
  program.write("net.in2", text);
  std::string const add =
      R"({"name": "AddNetworkDataCMD", "in": {"data": {"index": 0, "StartName": "B", "EndName": "A", "HorizontalAngle": 0}}})";
  test::Run const run = program.run({"exec", "--open", "net.in2", "--save", "net.in2"}, listOf(add));
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(program.read("net.in2"), text + "B\nA,L,0.000000\n");
  EXPECT_THAT(program.run({"exec", "--open", "net.in2", "--save", "net.kvn", "-q"}, "[]").err,
              HasSubstr("those of A cannot be one"));
  EXPECT_EQ(program.shell("test -e net.kvn").exitCode, 1);
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

std::string openingOf(std::string const& file) { return R"({"name": "OpenFileCMD", "in": {"file": ")" + file + "\"}}"; }

// The library reads no a-priori errors, keeps what the file before has brought, and knows UTF-8 alone.
TEST(ExecCommand, ACommandOpensAFileAsTheOptionDoesWhateverWasOpenBefore) {
  Program const program;
  program.write("before.in2", kNetworkFile);
  program.write("before.txt", kBook);
  program.write("errors.in2", "10,11,12\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45\nP,S,70.71\n");
  program.write("local.in2", "2,3,3\nA,0,0\nB,0,100\nA\nB,L,0\n\xB5\xE3,L,45\n\xB5\xE3,S,70.71\n");
  program.write("local.txt", kLocalBook);
  program.write("points.dat", "C,m,1,2,3\n");
  for (std::string const& file : {std::string("errors.in2"), std::string("local.in2"), std::string("local.txt"),
                                  std::string("points.dat"), std::string("before.txt")}) {
    QString const kind = QString::fromStdString(file).section('.', 1);
    QStringList const ends{"--save", "option." + kind, "--encoding", "GBK"};
    ASSERT_EQ(program.run(QStringList{"exec", "--open", file.c_str()} + ends, "[]").exitCode, 0) << file;
    for (char const* before : {"before.in2", "before.txt", "points.dat"}) {
      SCOPED_TRACE(file + " behind " + before);
      test::Run const run = program.run({"exec", "--open", before, "--save", "command." + kind, "--encoding", "GBK"},
                                        listOf(openingOf(file) + R"(, {"name": "list"})"));
      EXPECT_EQ(run.exitCode, 0) << run.err;
      EXPECT_EQ(program.read("command." + kind), program.read("option." + kind));
      Json::Value const all = run.json()[1]["out"];
      EXPECT_EQ(all["coordinates"].size(), file == "points.dat" ? 1U : 0U);
      EXPECT_EQ(all["rows"].empty(), kind != "txt") << "rows of the file before";
      EXPECT_EQ(all["lines"].empty(), file == "points.dat");
    }
  }
  ASSERT_EQ(
      program.run({"exec", "--open", "errors.in2", "--save", "later.kvn"}, listOf(openingOf("before.txt"))).exitCode,
      0);
  EXPECT_THAT(program.read("later.kvn"), HasSubstr("AngleError=\"2\"")) << "a field book does not take over errors";
}

TEST(ExecCommand, SwitchesToAFileInTheEncodingOfTheOptionAndRefusesItInAnother) {
  Program const program;
  program.write("local.txt", kLocalBook);
  program.write("local.dat", "\xB5\xE3,m,1,2,3\n");
  std::string const commands =
      R"([{"name": "SwitchTraverseDataCMD", "in": {"data": {"file": "local.txt"}}},
          {"name": "SwitchCoordinateDataCMD", "in": {"data": {"file": "local.dat"}}}, {"name": "list"}])";
  Json::Value const results = program.run({"exec", "--encoding", "GBK"}, commands).json();
  EXPECT_EQ(results[2]["out"]["rows"][1]["name"].asString(), "点");
  EXPECT_EQ(results[2]["out"]["coordinates"][0]["name"].asString(), "点");
  Json::Value const refused = program.run({"exec", "--encoding", "UTF-8"}, commands).json();
  EXPECT_EQ(refused[0]["out"]["message"].asString(),
            "local.txt: the file is no text in the encoding UTF-8; --encoding names another one");
  EXPECT_FALSE(refused[1]["ok"].asBool());
  EXPECT_EQ(refused[2]["out"]["rows"].size() + refused[2]["out"]["coordinates"].size(), 0U);
}

// A file that somebody writes anew would be judged by one reading and taken from another.
TEST(ExecCommand, ReadsTheFileOfACommandOnce) {
  Program const program;
  QString const folder = QString::fromStdString(program.shell("pwd").out).trimmed();
  program.write("job.txt", kBook);
  program.write("local.txt", kLocalBook);
  program.write("net.in2", kNetworkFile);
  program.write("points.dat", "C,m,1,2,3\n");
  program.write("points.foo", "C,m,1,2,3\n");
  program.write("bad.in2", "2,3,3\nA,zero\n");
  program.write("one-face.txt", "STA,A,1.5,,10,10,5\nSC,B,1.6,,1.0000,90.0000,7,0,0,0\n");
  ASSERT_EQ(program.run({"convert", "job.txt", "job.kvn"}).exitCode, 0);
  for (char const* file :
       {"job.txt", "local.txt", "net.in2", "points.dat", "bad.in2", "one-face.txt", "job.kvn", "points.foo"}) {
    for (char const* command : {"OpenFileCMD", "SwitchTraverseDataCMD", "SwitchCoordinateDataCMD"}) {
      SCOPED_TRACE(std::string(command) + " " + file);
      test::OpenCount const opened(folder + '/' + file);
      std::string const in = std::string(R"({"file": ")") + file + "\"}";
      bool const isOpening = *command == 'O';
      program.run({"exec", "--encoding", "GBK"}, listOf(std::string(R"({"name": ")") + command + R"(", "in": )" +
                                                        (isOpening ? in : R"({"data": )" + in + "}") + "}"));
      EXPECT_EQ(opened.take(), 1);
    }
  }
}

TEST(ExecCommand, AFileThatCannotBeOpenedLeavesAllAsItWasAndIsNamedWithTheReason) {
  Program const program;
  program.write("job.txt", kBook);
  program.write("points.foo", "C,m,1,2,3\n");
  program.write("bad.in2", "2,3,3\nA,zero\n");
  program.write("bad.dat", "C,m,1,2,3\nD,m,1,x,3\n");
  program.write("bad.kvn", "<Kelvane");
  program.write("one-face.txt", "STA,A,1.5,,10,10,5\nSC,B,1.6,,1.0000,90.0000,7,0,0,0\n");
  std::string const point =
      R"({"name": "AddCoordinateDataCMD", "in": {"data": {"Index": 0, "Name": "K", "Mark": "m"}}}, )";
  for (auto const& [file, says] : {std::pair{"points.foo", "points.foo: unknown kind of file"},
                                   {"none.in2", "none.in2: no such file"},
                                   {"bad.in2", "bad.in2: "},
                                   {"bad.dat", "bad.dat: "},
                                   {"one-face.txt", "one-face.txt can be read with care, by --open"},
                                   {"bad.kvn", "bad.kvn: "}}) {
    SCOPED_TRACE(file);
    test::Run const run = program.run(
        {"exec", "--open", "job.txt"},
        listOf(point + R"({"name": "list"}, )" + openingOf(file) + R"(, {"name": "list"}, {"name": "undo"})"));
    Json::Value const results = run.json();
    ASSERT_EQ(results.size(), 5U) << run.err;
    EXPECT_FALSE(results[2]["ok"].asBool());
    EXPECT_EQ(results[3]["out"], results[1]["out"]);
    EXPECT_TRUE(results[4]["ok"].asBool()) << "the edit before can still be taken back";
    EXPECT_THAT(run.out, HasSubstr(says));
  }
}

TEST(ExecCommand, ARowIsNotPutInThePlaceOfANetwork) {
  Program const program;
  program.write("net.in2", kNetworkFile);
  std::string const row = R"({"name": "AddTraverseDataCMD", "in": {"data": {"Name": "K1", "N": 1000, "E": 2000}}})";
  test::Run const run = program.run({"exec", "--open", "net.in2", "--save", "net.in2"}, listOf(row));
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.json()[0]["out"]["message"].asString(), HasSubstr("AddNetworkDataCMD"));
  EXPECT_EQ(program.read("net.in2"), kNetworkFile);
  // Rows that have gone take their lines along, so that others can be put in their place.
  program.write("job.txt", kBook);
  program.run({"convert", "job.txt", "job.kvn"});
  std::string const id = program.run({"show", "job.kvn", "--json"}).json()["rows"][0]["id"].asString();
  std::string const remove = R"({"name": "RemoveTraverseDataCMD", "in": {"data": {"ids": [")" + id + R"("]}}}, )";
  Json::Value const results =
      program.run({"exec", "--open", "job.kvn"}, listOf(remove + R"({"name": "list"}, )" + row)).json();
  EXPECT_EQ(results[1]["out"]["lines"].size(), 0U);
  EXPECT_TRUE(results[2]["ok"].asBool());
}

TEST(ExecCommand, AKnownPointThatIsMovedKeepsItsId) {
  Program const program;
  program.write("net.in2", kNetworkFile);
  ASSERT_EQ(program.run({"convert", "net.in2", "net.kvn"}).exitCode, 0);
  Json::Value const shown = program.run({"show", "net.kvn", "--json"}).json();
  std::string const edit = R"({"name": "ModifyNetworkDataCMD", "in": {"data": {"id": ")" +
                           shown["lines"][0]["id"].asString() + R"(", "StartName": "A", "StartN": 5.25}}})";
  Json::Value const results =
      program.run({"exec", "--open", "net.kvn"}, listOf(R"({"name": "list"}, )" + edit + R"(, {"name": "list"})"))
          .json();
  Json::Value const id = results[0]["out"]["knownPoints"][0]["id"];
  EXPECT_NE(id.asString(), "");
  EXPECT_EQ(results[2]["out"]["knownPoints"][0]["id"], id);
  EXPECT_EQ(results[2]["out"]["knownPoints"][0]["x"].asDouble(), 5.25);
  EXPECT_EQ(results[1]["messages"][0]["text"].asString(), "A: with \"StartN\" alone \"StartE\" is 0 now");
}

TEST(ExecCommand, SaysWhichMemberIsWrongAndWhatWasMeant) {
  Program const program;
  program.write("job.txt", kBook);
  auto const coordinate = [](std::string const& data) {
    return R"({"name": "AddCoordinateDataCMD", "in": {"data": )" + data + "}}";
  };
  struct Case {
    std::string command;
    char const* says;
  };
  for (Case const& c :
       {Case{R"({"name": "lst"})", "Error: unknown command: lst; did you mean list?\n"},
        Case{R"({"name": "Undo"})", "Error: unknown command: Undo; did you mean undo?\n"},
        Case{R"({"name": "undo"})", "Error: there is nothing to undo\n"},
        Case{R"({"name": "OpenFileCMD"})", "Error: OpenFileCMD: \"file\" is missing\n"},
        Case{coordinate(R"({"Name": "K"})"), "Error: AddCoordinateDataCMD: \"Mark\" is missing\n"},
        Case{coordinate(R"({"Name": 7, "Mark": ""})"), "Error: AddCoordinateDataCMD: \"Name\" must be a text\n"},
        Case{coordinate(R"({"Name": "K", "Mark": "", "N": "1"})"),
             "Error: AddCoordinateDataCMD: \"N\" must be a number\n"},
        Case{coordinate("[]"), "Error: AddCoordinateDataCMD: \"data\" must be an object\n"},
        Case{R"({"name": "AddTraverseDataCMD", "in": {"Name": "K", "N": 1}})",
             "Warning: AddTraverseDataCMD: \"data\" is missing\n"},
        Case{R"({"name": "RemoveCoordinateDataCMD", "in": {"data": {"ids": [7]}}})",
             "Error: RemoveCoordinateDataCMD: \"ids\" must be an array of texts\n"},
        Case{R"({"name": "AddNetworkDataCMD", "in": {"data": {"HorizontalDistance": 80}}})",
             "Warning: AddNetworkDataCMD: nothing reads \"HorizontalDistance\"; did you mean horizontalDistance?\n"},
        Case{R"({"name": "AddNetworkDataCMD", "in": {"data": {"StartName": "A"}}})",
             "Warning: The 3 rows are no longer in the job: the network does not follow from them any more\n"}}) {
    SCOPED_TRACE(c.command);
    EXPECT_THAT(program.run({"exec", "--open", "job.txt"}, listOf(c.command)).err, HasSubstr(c.says));
  }
}

TEST(ExecCommand, AnswersALineThatIsNoCommandAndGoesOn) {
  Program const program;
  program.write("job.dat", "C,m,1,2,3\n");
  test::Run const run =
      program.run({"exec", "--open", "job.dat", "--save", "new.dat"},
                  "{\"name\": \"list\"}\n{bad\n[1]\n" + std::string(5000, '[') + "\n{\"name\": \"list\"}\n");
  QStringList const answers = QString::fromStdString(run.out).trimmed().split('\n');
  ASSERT_EQ(answers.size(), 5) << run.out << run.err;
  for (int i : {1, 2, 3}) EXPECT_TRUE(answers[i].contains("\"ok\": false")) << i;
  EXPECT_TRUE(answers[1].contains("line 2 of standard input is not JSON: line 1, column 2"));
  EXPECT_EQ(answers[4], answers[0]);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(program.read("new.dat"), "") << "not written, since a command failed";
}

TEST(ExecCommand, RefusesInputThatIsNoListOfCommands) {
  Program const program;
  EXPECT_THAT(program.run({"exec"}, " \n").err, testing::StartsWith("kelvane: standard input is empty: "));
  EXPECT_THAT(program.run({"exec"}, "[\n{]").err, HasSubstr("not JSON: line 2, column 2\n"));
  for (std::string const& input :
       {std::string(), std::string("[1]"), std::string(R"([{"in": {}}])"), std::string(R"([{"name": "X", "in": 3}])"),
        std::string("[] []"), std::string(5000, '[')}) {
    SCOPED_TRACE(input.substr(0, 30));
    test::Run const run = program.run({"exec"}, input);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, testing::StartsWith("kelvane: "));
    EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
  }
}

}  // namespace
