// Reading and writing instrument job files.
#include <gtest/gtest.h>
#include <regex>

#include "formats/Rows.h"

namespace {

using Job = kvn::LQFTraverseDataCollection;
using test::described;
using test::Rows;

Rows readJob(std::string const& text) { return test::rowsOf<Job>(text); }

TEST(JobReader, TakesEachRecord) {
  test::TextCase const cases[] = {
      {"a blank alone is not an empty file", " ", ""},
      {"a station with all", "STA     A1,1.5,C1\nXYZ     2000,1000,50\n",
       "0 sta [A1] 1.5 (1000,2000,50) coordinate code C1\n"},
      {"a station without a comma has no name", "STA A1", "0 sta [] 0 (0,0,0)\n"},
      {"no last line end, a carriage return, a rest", "STA A1,1.5m, code\r", "0 sta [A1] 1.5 (0,0,0)\n"},
      {"a text without a blank, a label alone, lower case", "STAA1,1\nSTA\nnez 1,2,3\n", ""},
      {"a tab is no blank", "STA\tA1,1\nSTA A\t1,1", "0 sta [A\t1] 1 (0,0,0)\n"},
      // 256 m at 45 degrees from the zenith: 181.0193.
      {"readings", "STA A,1\nSC B,2,X\nHVD 445812.0,162000.0,256\n",
       "0 sta [A] 1 (0,0,0)\n0 fore [B] 2 445812.00 162000.00 256 181.0193 (0,0,0) code X\n"},
      {"readings without a distance", "SC B,2\nHVD 1,2\n", "0 fore [B] 2 1.00 2.00 - (0,0,0)\n"},
      {"a comma behind them", "SC B,2\nHVD 1,2,\n", "0 fore [B] 2 1.00 2.00 - (0,0,0)\n"},
      {"a single reading is none", "SC B,2\nHVD 1\n", "0 fore [B] 2 - - (0,0,0)\n"},
      {"no readings at all", "SC B,2\n", "0 fore [B] 2 0.00 0.00 0 0 (0,0,0)\n"},
      {"readings ahead of any station make a row", "HVD 1,2\nSTA A,1",
       "0 fore [] 0 1.00 2.00 - (0,0,0)\n1 sta [A] 1 (0,0,0)\n"},
      {"letters at their places",
       "STA A,1\nNEZ 1,2,3\nSTA A,1\nNZE 1,2,3\nSTA A,1\nENZ 1,2,3\nSTA A,1\nEZN 1,2,3\nSTA "
       "A,1\nZNE 1,2,3\nSTA A,1\nZEN 1,2,3",
       "0 sta [A] 1 (1,2,3) coordinate\n1 sta [A] 1 (1,3,2) coordinate\n2 sta [A] 1 (2,1,3) coordinate\n"
       "3 sta [A] 1 (3,1,2) coordinate\n4 sta [A] 1 (2,3,1) coordinate\n5 sta [A] 1 (3,2,1) coordinate\n"},
      {"the axes have their fields whatever the order of the letters",
       "STA A,1\nXYZ 1,2,3\nSTA A,1\nYXZ 1,2,3\nSTA A,1\nYZX 1,2,3\nSTA A,1\nXZY 1,2,3\nSTA A,1\nZXY 1,2,3\nSTA "
       "A,1\nZYX 1,2,3",
       "0 sta [A] 1 (2,1,3) coordinate\n1 sta [A] 1 (2,1,3) coordinate\n2 sta [A] 1 (2,1,3) coordinate\n"
       "3 sta [A] 1 (2,1,3) coordinate\n4 sta [A] 1 (2,1,3) coordinate\n5 sta [A] 1 (2,1,3) coordinate\n"},
      {"two values are no coordinates and take the mark away", "STA A,1\nNEZ 1,2,3\nXYZ 4,5\n",
       "0 sta [A] 1 (1,2,3)\n"},
      {"two values by letters", "STA A,1\nXYZ 1,2,3\nNEZ 4,5,\n", "0 sta [A] 1 (2,1,3)\n"},
  };
  for (test::TextCase const& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(described(readJob(c.text)), c.result);
  }
}

/// "station: targets in order, back sights in brackets", a mark before those that belong to no station.
std::string sights(std::string const& records) {
  std::string text;
  std::string job;
  for (char const c : records) job += c == '|' ? '\n' : c;
  std::string group;
  for (kvn::TraverseDataInfo const& row : readJob(job)) {
    bool const isStation = row.pointType == kvn::TraversePointType::StationPoint;
    if (isStation) group = row.groupId;
    if (row.groupId != group) text += "!";
    text += isStation ? row.name + ":" : row.sightType == kvn::BackSight ? "(" + row.name + ")" : row.name + " ";
  }
  return text;
}

TEST(JobReader, LetsAForeSightTakeThePlaceOfTheSameBackSight) {
  test::TextCase const cases[] = {
      {"the same point", "STA S,1|BS K1,1|HVD 1,2|NEZ 0,0,0|SC K1,1|HVD 3,4|NEZ 0,0,0|SC B2,1|HVD 5,6", "S:K1 B2 "},
      {"another point", "STA S,1|BS K1,1|HVD 1,2|SC K2,1", "S:(K1)K2 "},
      {"the back sight's point at the end", "STA S,1|BS K1,1|SC B,1|SC K1,1", "S:(K1)B K1 "},
      {"numbered", "STA S,1|BS K1_2,1|SC K1,1", "S:K1 "},
      {"two digits", "STA S,1|BS K1_22,1|SC K1,1", "S:(K1_22)K1 "},
      {"no digit", "STA S,1|BS K1_x,1|SC K1,1", "S:(K1_x)K1 "},
      {"no underscore", "STA S,1|BS K1-2,1|SC K1,1", "S:(K1-2)K1 "},
      {"the fore sight numbered", "STA S,1|BS K1,1|SC K1_2,1", "S:(K1)K1_2 "},
      {"a name as a pattern", "STA S,1|BS PA1_2,1|SC P.1,1", "S:P.1 "},
      {"a pattern that has to match as a whole", "STA S,1|BS PA1_23,1|SC P.1,1", "S:(PA1_23)P.1 "},
      {"a back reference", "STA S,1|BS aa_1,1|SC (a)\\1,1", "S:(a)\\1 "},
      {"the pattern does not look at itself", "STA S,1|BS [K_1,1|SC [K,1|SC B,1", "malformed"},
      {"a number that is beyond all groups", "STA S,1|BS B_1,1|SC B\\99999999999999999999,1", "malformed"},
      {"a malformed name without a back sight", "STA S,1|SC (K,1", "S:(K "},
      {"equal names are no pattern", "STA S,1|BS (K,1|SC (K,1", "S:(K "},
      {"twice the back sight's point", "STA S,1|BS K1,1|SC K1,1|SC K1,1|SC B,1", "S:K1 B "},
      {"back sight on back sight", "STA S,1|BS K1,1|BS K2,1|SC B,1", "S:(K1)(K2)B "},
      {"a back sight at the start is no row without readings", "BS K1,1|STA S,1", "S:"},
      {"a station leaves the back sight in wait", "STA S,1|BS K1,1|SC K1,1|STA T,1|SC K1,1", "S:K1 !K1 "},
  };
  for (test::TextCase const& c : cases) {
    SCOPED_TRACE(c.what);
    try {
      EXPECT_EQ(sights(c.text), c.result);
    } catch (std::regex_error const&) {
      EXPECT_STREQ("malformed", c.result);
    }
  }
}

TEST(JobReader, IsNotKeptBusyByNamesThatArePatterns) {
  // By backtracking: hours for the first, a recursion as deep as the name is long for the second.
  std::string const many(60, 'a');
  EXPECT_EQ(sights("STA S,1|BS " + many + ",1|SC (a+a+)+,1"), "S:(" + many + ")(a+a+)+ ");
  std::string const longName(1 << 20, 'a');
  EXPECT_EQ(sights("STA S,1|BS " + longName + "_1,1|SC .*,1"), "S:(" + longName + "_1).* ");
  EXPECT_EQ(sights("STA S,1|BS ." + longName + "_1,1|SC ." + longName + ",1"), "S:." + longName + " ");
}

TEST(JobReader, SaysWhatIsWrong) {
  std::pair<char const*, char const*> const cases[] = {
      {"", "The file is empty"},
      {"STA A,", ""},
      {"STA A,,", "invalid stod argument"},
      {"BS A,m", "invalid stod argument"},
      {"SC A,1e999", "stod argument out of range"},
      {"HVD ,,", "invalid stod argument"},
      {"HVD 1,x", "invalid stod argument"},
      {"HVD 1,2,x", "invalid stod argument"},
      {"NEZ 1,,3", "invalid stod argument"},
      {"XYZ 1,2,1e-999", "stod argument out of range"},
  };
  for (auto const& [text, says] : cases) {
    std::string const failure = test::failureOf<std::exception>([text = text] { readJob(text); });
    EXPECT_EQ(failure, *says == '\0' ? "no failure" : says) << text;
  }
  Job job;
  std::istringstream stream("STA A,1\nSTA B,1\nSC C,m");
  EXPECT_THROW(job.read(stream), std::invalid_argument);
  EXPECT_EQ(described(job.getTraverseDataList()), "0 sta [A] 1 (0,0,0)\n1 sta [B] 1 (0,0,0)\n");
  EXPECT_EQ(test::failureOf<kvn::DataException>([] { Job().kvn::ITraverseDataCollcetion::read("/no/such"); }),
            "The file is empty");
}

TEST(JobFile, WritesWhatReadsBackTheSame) {
  std::string const text =
      "JOB     J01\nINST    T1\n"
      "STA     A1,1.5000,\nXYZ     2000.0000,1000.0000,50.0000\n"
      "BS      K1,1.6000,\nHVD     0.0,324000.0,120.1234\nNEZ     0.0000,0.0000,0.0000\n"
      "SC      \xB5\xE3,1.6000,C\nHVD     445812.5,325800.0,\nNEZ     1.0000,2.0000,-3.0000\n";
  Job job;
  std::istringstream stream("INST x,V2\nINST T0\nINST T1,V3.2,x\nJOB J01\n" + text.substr(text.find("STA")));
  job.read(stream);
  EXPECT_EQ(job.getJobName() + job.getInstrumentName() + job.getVersion(), "J01T1V3.2");
  Rows const rows = job.getTraverseDataList();
  EXPECT_EQ(rows[2].name, "\xB5\xE3") << "bytes stay as they are";
  EXPECT_EQ(rows[2].reduced_horizontal_angle, rows[2].horizontal_angle);
  std::ostringstream again;
  job.write(again);
  EXPECT_EQ(again.str(), text);
  job.readInstrument("T2");
  EXPECT_EQ(job.getInstrumentName() + job.getVersion(), "T2V1.0");
}

TEST(JobWriter, PutsACommaForEachMissingValue) {
  kvn::TraverseDataInfo row;
  row.slant_distance = 5.0;
  std::string lines;
  for (int i = 0; i < 4; ++i) {
    row.angleMark = i < 2 ? 1.0 : 0.0;
    row.isSlantDistanceHave = i % 2 == 0;
    std::ostringstream stream;
    Job().writeHVD(stream, row);
    lines += stream.str();
  }
  EXPECT_EQ(lines, "HVD     0.0,0.0,5.0000\nHVD     0.0,0.0,\nHVD     ,,5.0000\nHVD     ,,\n");
  kvn::TraverseDataInfo other;
  other.pointType = kvn::TraversePointType::CosaAzimuth;
  EXPECT_EQ(test::textOf<Job>({row, other}),
            "JOB     \nINST    \nSC      ,0.0000,\nHVD     ,,\nNEZ     0.0000,0.0000,0.0000\n");
  Job named;
  named.setJobName("J2");
  named.setInstrumentName("T5");
  named.setVersion("V2");
  std::ostringstream head;
  named.write(head);
  EXPECT_EQ(head.str() + named.getVersion(), "JOB     J2\nINST    T5\nV2");
}

}  // namespace
