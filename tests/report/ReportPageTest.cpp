// The page of a job: taken apart by a strict XML reader, as no browser would.
#include "host/Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <QCoreApplication>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTranslator>
#include <QXmlStreamReader>
#include <algorithm>
#include <map>
#include <sstream>

namespace {

using testing::HasSubstr;

struct Row {
  QString id;
  QString classes;
  QString line;  ///< data-l
  QStringList cells;
};

/// A page as its reader has it: rows by their tables, links, texts.
struct Page {
  QString fault;  ///< what the XML reader says; empty: well-formed
  QString verdict;
  QStringList ids;
  QStringList links;  ///< targets of all links, without the sign
  std::map<QString, std::vector<Row>> tables;
  QStringList findings;
  QStringList texts;  ///< all texts and titles but those of style and script
  std::string bytes;

  std::vector<Row> const& rows(char const* table) const {
    static std::vector<Row> const none;
    auto const found = tables.find(table);
    return found == tables.end() ? none : found->second;
  }
  Row row(char const* table, QString const& firstCell) const {
    for (Row const& one : rows(table)) {
      if (one.cells.value(0) == firstCell) return one;
    }
    return {};
  }
};

Page parsed(std::string const& bytes) {
  Page page;
  page.bytes = bytes;
  QXmlStreamReader xml(QByteArray::fromStdString(bytes));
  QString table;
  QStringList open;
  bool isInBody = false;
  while (!xml.atEnd()) {
    xml.readNext();
    if (xml.isStartElement()) {
      QString const name = xml.name().toString();
      auto const attribute = [&xml](char const* key) { return xml.attributes().value(QLatin1String(key)).toString(); };
      open << name;
      if (!attribute("id").isEmpty()) page.ids << attribute("id");
      if (name == "a") page.links << attribute("href").mid(1);
      if (name == "table") table = attribute("id").mid(2);
      if (name == "tbody") isInBody = true;
      if (name == "tr" && isInBody) {
        page.tables[table].push_back({attribute("id"), attribute("class"), attribute("data-l"), {}});
      }
      if (name == "td") page.tables[table].back().cells << QString();
      if (name == "p" && attribute("class").startsWith("verdict")) page.verdict = attribute("class") + ": ";
      if (name == "li") page.findings << QString();
      for (char const* key : {"title", "data-back", "data-larger", "aria-label"}) {
        if (!attribute(key).isEmpty()) page.texts << attribute(key);
      }
    } else if (xml.isEndElement()) {
      open.removeLast();
      if (xml.name() == QLatin1String("tbody")) isInBody = false;
    } else if (xml.isCharacters() && !open.contains("style") && !open.contains("script")) {
      QString const text = xml.text().toString();
      if (!text.trimmed().isEmpty()) page.texts << text;
      if (open.contains("td")) page.tables[table].back().cells.last() += text;
      if (open.contains("li")) page.findings.last() += text;
      if (open.contains("p") && page.verdict.endsWith(": ") && !text.trimmed().isEmpty()) page.verdict += text;
    }
  }
  if (xml.hasError()) page.fault = xml.errorString();
  return page;
}

/// Without the whole page in the failure.
bool has(std::string const& bytes, std::string const& text) { return bytes.find(text) != std::string::npos; }

Page pageOf(kvn::Job const& job, kvn::ReportOptions const& options = {}) {
  std::ostringstream text;
  kvn::writeReport(text, job, options);
  return parsed(text.str());
}

class ReportPage : public testing::Test {
 protected:
  Page adjusted(QString const& path, int method = 0) {
    job.open(path);
    job.project()->getConfigure().AdjustMethod = method;
    job.adjust();
    return pageOf(job);
  }
  QString written(QString const& name, std::string const& bytes) const {
    test::writeFile(folder.filePath(name), bytes);
    return folder.filePath(name);
  }

  test::Host host;
  QTemporaryDir folder;
  kvn::Job job;
};

/// Links lead somewhere, ids stand once, nothing is loaded.
void expectSound(Page const& page) {
  EXPECT_EQ(page.fault, QString());
  QSet<QString> ids;
  for (QString const& id : page.ids) {
    EXPECT_FALSE(ids.contains(id)) << "twice: " << id.toStdString();
    ids.insert(id);
  }
  for (QString const& link : page.links) {
    EXPECT_TRUE(ids.contains(link)) << "a link to nothing: " << link.toStdString();
  }
  EXPECT_FALSE(has(page.bytes, " src="));
  EXPECT_FALSE(has(page.bytes, "url(http"));
  EXPECT_FALSE(has(page.bytes, "href=\"http"));
}

/// The sample with a direction that is 2' off, and its line in the file.
std::string withGrossError() {
  std::string text = test::fileBytes(test::samplePath("net_charamza1990_p238.in2"));
  std::string const good = "424,L,54.2629544";
  text.replace(text.find(good), good.size(), "424,L,54.2829544");
  return text;
}
constexpr int kLineOfGrossError = 7;

TEST_F(ReportPage, HasTheTablesOfWhateverWasComputed) {
  struct Case {
    char const* sample;
    int method;
    char const* verdict;
    QStringList tables;
  };
  Case const cases[] = {
      {"net_charamza1990_p238.in2",
       0,
       "verdict good: The observations agree with their a-priori errors: unit weight "
       "error 0.96, expected between 0.77 and 1.23 at 95 %.",
       {"directions", "distances", "lines", "points", "setups"}},
      {"net_lother_strehle2007_directions.in2", 0, "verdict", {"directions", "lines", "points", "setups"}},
      {"trav_connecting_fr_5legs.txt",
       2,
       "verdict bad: A misclosure is larger than the a-priori errors allow",
       {"misclosures1", "points", "traverse1"}},
      {"trav_closed_5sides.in2", 3, "verdict", {"misclosures1", "points", "traverse1"}},
      {"trav_open_2legs.in2", 1, "verdict look: Nothing checks an open traverse", {"points", "traverse1"}},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.sample);
    Page const page = adjusted(test::samplePath(c.sample), c.method);
    expectSound(page);
    EXPECT_THAT(page.verdict.toStdString(), testing::StartsWith(c.verdict));
    QStringList tables;
    for (auto const& table : page.tables) tables << table.first;
    EXPECT_EQ(tables, c.tables);
    EXPECT_TRUE(has(page.bytes, "class=\"site-map\""));
  }
}

TEST_F(ReportPage, HasTheResidualsOfARunToTheLetter) {
  job.open(test::samplePath("net_charamza1990_p238.in2"), kvn::Job::Reading::AsRead);
  job.adjust();
  Page const page = pageOf(job);
  expectSound(page);
  EXPECT_THAT(page.verdict.toStdString(), testing::StartsWith("verdict look: Adjusted to the letter of the file"));
  EXPECT_EQ(page.row("points", "403").cells.mid(0, 3), QStringList({"403", "1054612.5952", "644373.6085"}));
  EXPECT_EQ(page.rows("directions").size(), 46U);
  EXPECT_FALSE(page.rows("distances").empty());
}

TEST_F(ReportPage, HasThePublishedResultsAndEveryObservation) {
  Page const page = adjusted(test::samplePath("net_charamza1990_p238.in2"));
  // The coordinates are those that were published with the network; errors and ellipse follow from it.
  EXPECT_EQ(page.row("points", "403").cells,
            QStringList({"403", "1054612.5952", "644373.6085", "3.7", "4.3", "5.7", "4.3", "3.6", "70°58′", ""}));
  EXPECT_EQ(page.rows("points").size(), 12U);
  EXPECT_EQ(page.rows("directions").size(), 46U);
  EXPECT_EQ(page.rows("distances").size(), 23U);
  EXPECT_EQ(page.rows("setups").size(), 12U);
  EXPECT_EQ(page.row("points", "1").cells.value(9), "known");
}

TEST_F(ReportPage, HasHeightsOfAFieldBookBesideThePlaneAndAlone) {
  Page const both = adjusted(written("book.txt", test::kFieldBook));
  expectSound(both);
  ASSERT_EQ(both.rows("heights").size(), 3U);
  EXPECT_TRUE(both.row("points", "P").cells.last().endsWith("unchecked"));
  EXPECT_EQ(both.row("heights", "P").cells.value(1), both.row("points", "P").cells.value(3));
  job.open(test::samplePath("trig_height_reciprocal.txt"));
  job.adjustHeights();
  Page const alone = pageOf(job);
  expectSound(alone);
  EXPECT_FALSE(alone.rows("sights").empty());
  EXPECT_TRUE(alone.rows("directions").empty());
}

TEST_F(ReportPage, ShowsCoordinatesThatWereGivenButNoneThatWereOnlyGuessed) {
  job.open(written("points.dat", "P,,2000.5,1000.25,30.125\nQ,,2100,1000,0\nR,,nan,1,0\n"));
  Page const list = pageOf(job);
  expectSound(list);
  EXPECT_EQ(list.verdict.toStdString(), "verdict look: Coordinates as they were given: nothing was adjusted.");
  EXPECT_EQ(list.row("points", "P").cells.mid(0, 3), QStringList({"P", "1000.2500", "2000.5000"}));
  EXPECT_TRUE(list.texts.contains("Without coordinates: R"));
  job.open(written("net.in2", test::kNetworkFile));
  Page const unadjusted = pageOf(job);
  expectSound(unadjusted);
  EXPECT_EQ(unadjusted.rows("points").size(), 2U)
      << "approximate coordinates stand in the table as if they were results";
}

TEST_F(ReportPage, LeadsFromAFindingToItsRowAndItsLineOfTheMap) {
  Page const page = adjusted(written("gross.in2", withGrossError()));
  expectSound(page);
  EXPECT_THAT(page.verdict.toStdString(), testing::StartsWith("verdict bad: The observations do not agree"));
  ASSERT_FALSE(page.findings.isEmpty());
  std::string const first = page.findings.first().toStdString();
  EXPECT_THAT(first, HasSubstr("1 → 424"));
  EXPECT_THAT(first, HasSubstr("line 7"));
  auto const& rows = page.rows("directions");
  auto const isMarked = [](Row const& row) { return row.classes == "bad"; };
  ASSERT_EQ(std::count_if(rows.begin(), rows.end(), isMarked), 1);
  Row const& marked = *std::find_if(rows.begin(), rows.end(), isMarked);
  EXPECT_EQ(marked.cells.mid(0, 2), QStringList({"1", "424"}));
  EXPECT_EQ(marked.cells.value(10), QString::number(kLineOfGrossError));
  EXPECT_TRUE(marked.cells.last().endsWith("too large")) << marked.cells.last().toStdString();
  EXPECT_TRUE(page.links.contains(marked.id));
  EXPECT_TRUE(has(page.bytes, "<a class=\"to-map\" href=\"#map\" data-l=\"" + marked.line.toStdString() + '"'));
}

TEST_F(ReportPage, LeadsFromAnyKindOfFindingToItsRow) {
  // Misclosures are judged by the limits of the user as well.
  kvn::TraverseOptions limits;
  limits.allowedAngle = 1.0;
  limits.allowedRelative = 1000.0;
  job.setTraverseOptions(limits);
  Page const traverse = adjusted(test::samplePath("trav_connecting_fr_5legs.in2"), 2);
  expectSound(traverse);
  EXPECT_TRUE(traverse.links.contains("rm1"));
  Row const angles = traverse.row("misclosures1", "angles");
  EXPECT_EQ(angles.id, "rm1");
  EXPECT_EQ(angles.classes, "bad");
  // 1" times the root of six angles.
  EXPECT_EQ(angles.cells.mid(3).join('|').toStdString(), "2.4″|beyond");
  EXPECT_EQ(traverse.row("misclosures1", "relative").cells.value(3), "1 : 1000");

  // Heights have rows of their own, and points without coordinates no other.
  Page const heights = adjusted(written("book.txt", test::kFieldBook));
  expectSound(heights);
  EXPECT_TRUE(heights.links.contains(heights.row("heights", "P").id));

  job.open(written("ends.in2",
                   "5,2,2\nA,0,0\nB,100,0\nA\nB,L,0\nB,S,100.01\nP,L,45\nP,S,70.71\nB\nA,L,0\nP,L,315\n"
                   "P,S,70.71\nP\nA,L,0\nA,S,70.73\nB,L,90\n"),
           kvn::Job::Reading::AsRead);
  job.project()->getConfigure().AdjustMethod = 0;
  job.adjust();
  Page const literal = pageOf(job);
  expectSound(literal);
  ASSERT_EQ(literal.findings.size(), 1);
  auto const& rows = literal.rows("directions");
  auto const ofLine = std::find_if(rows.begin(), rows.end(), [](Row const& row) {
    return row.cells.mid(0, 2) == QStringList({"P", "A"});
  });
  ASSERT_NE(ofLine, rows.end());
  EXPECT_TRUE(literal.links.contains(ofLine->id));
}

TEST_F(ReportPage, KeepsNamesWhateverTheyAre) {
  std::string const names[] = {
      "<script>alert(1)</script>", "\"]]>", "a&amp;b", "</style><b>", "'\"", "%1%2", "\xC4\x8D"};
  std::string text = "3,3,2\nA,0,0\nB,0,100\nA\nB,L,0\n";
  int angle = 20;
  for (std::string const& name : names) {
    text.append(name).append(",L,").append(std::to_string(angle += 10)).append(".0\n");
    text.append(name).append(",S,50\n");
  }
  Page const page = adjusted(written("names.in2", text));
  expectSound(page);
  for (std::string const& name : names) {
    EXPECT_EQ(page.row("points", QString::fromStdString(name)).cells.size(), page.rows("points").front().cells.size())
        << name;
  }
}

TEST_F(ReportPage, TurnsBytesThatAreNoTextIntoTextOfSomeKind) {
  struct Case {
    char const* name;
    char const* shown;
  };
  // In GBK the ideograph of a point; a lone continuation byte, a control character, an encoded surrogate, U+FFFE, none
  // of which XML holds. A host may put any bytes into a network.
  Case const cases[] = {
      {"\xB5\xE3", "点"}, {"P\x01", "P\uFFFD"}, {"P\xEF\xBF\xBE", "P\uFFFD"}, {"P\xFF", "P"}, {"P\xED\xA0\x80", "P"}};
  test::LocalEncoding const gbk("GBK");
  for (Case const& c : cases) {
    SCOPED_TRACE(c.shown);
    job.open(written("net.in2", test::kNetworkFile));
    kvn::Network network = job.project()->getNetwork();
    for (kvn::NetworkDataInfo& line : network.lines) {
      if (line.end_name == "P") line.end_name = c.name;
    }
    job.project()->setNetwork(network);
    job.adjust();
    Page const page = pageOf(job);
    expectSound(page);
    EXPECT_TRUE(page.rows("points").back().cells.first().startsWith(QString::fromUtf8(c.shown)))
        << page.rows("points").back().cells.first().toStdString();
  }
}

TEST_F(ReportPage, LeavesOutWhatMattersLeastAndSaysSo) {
  job.open(written("gross.in2", withGrossError()));
  job.adjust();
  kvn::ReportOptions options;
  options.rowsAtMost = 5;
  Page const page = pageOf(job, options);
  expectSound(page);
  auto const& rows = page.rows("directions");
  ASSERT_EQ(rows.size(), 5U);
  EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](Row const& row) { return row.classes == "bad"; }), 1);
  EXPECT_TRUE(page.texts.contains("This table has 5 of 46 rows: those that matter most. The result files have all."));
}

TEST_F(ReportPage, SpeaksChineseThroughout) {
#ifndef KELVANE_HAS_TRANSLATIONS
  GTEST_SKIP() << "built without lrelease";
#endif
  QLocale const before;
  QLocale::setDefault(QLocale("zh_CN"));
  host.system.init();
  QLocale::setDefault(before);
  // What no language translates: units, symbols, names of points and files, formats.
  static QRegularExpression const words("[A-Za-z]{3,}");
  QSet<QString> const own{"ppm", "net",     "trav",  "charamza", "closed", "sides",      "connecting", "legs",
                          "txt", "kelvane", "gross", "trig",     "height", "reciprocal", "book",       "niemeier"};
  auto const expectChinese = [&](Page const& page) {
    expectSound(page);
    EXPECT_TRUE(has(page.bytes, "<html lang=\"zh-CN\">"));
    for (QString const& text : page.texts) {
      QSet<QString> english;
      for (auto found = words.globalMatch(text); found.hasNext();) english << found.next().captured();
      EXPECT_TRUE(own.contains(english)) << "no Chinese: " << text.toStdString();
    }
  };
  expectChinese(adjusted(test::samplePath("net_charamza1990_p238.in2")));
  expectChinese(adjusted(test::samplePath("trav_closed_5sides.in2"), 3));
  expectChinese(adjusted(test::samplePath("trav_connecting_fr_5legs.txt"), 2));
  expectChinese(adjusted(written("gross.in2", withGrossError())));
  job.open(test::samplePath("trig_height_reciprocal.txt"));
  job.adjustHeights();
  expectChinese(pageOf(job));
  for (QTranslator* const table : QCoreApplication::instance()->findChildren<QTranslator*>()) {
    QCoreApplication::removeTranslator(table);
  }
}

// A host that has its own runs and no Job gets the same tables.
TEST_F(ReportPage, HasTheResultsOfRunsThatAHostHasMadeItself) {
  Page const ofJob = adjusted(test::samplePath("net_niemeier2008.in2"));
  kvn::ReportContent content;
  content.file = "net_niemeier2008.in2";
  content.plane = job.planeAdjustment();
  content.configure = job.project()->getConfigure();
  auto const pageOfContent = [&content] {
    std::ostringstream text;
    kvn::writeReport(text, content);
    return parsed(text.str());
  };
  Page const page = pageOfContent();
  EXPECT_EQ(page.fault, "");
  EXPECT_EQ(page.verdict, ofJob.verdict);
  EXPECT_EQ(page.texts, ofJob.texts);

  job.open(test::samplePath("trav_connecting_fr_5legs.txt"));
  job.project()->getConfigure().AdjustMethod = 2;
  job.adjust();
  content.plane = nullptr;
  content.traverses = job.traverses();
  content.network = job.adjustedNetwork();
  EXPECT_EQ(pageOfContent().rows("points").size(), pageOf(job).rows("points").size());

  job.open(test::samplePath("trig_height_reciprocal.txt"));
  job.adjustHeights();
  content = kvn::ReportContent();
  content.heights = job.heightAdjustment();
  Page const heights = pageOfContent();
  EXPECT_EQ(heights.fault, "");
  EXPECT_EQ(heights.verdict, pageOf(job).verdict);
}

TEST_F(ReportPage, ReplacesAFileOnlyByAWholePage) {
  job.open(test::samplePath("net_charamza1990_p238.in2"));
  job.adjust();
  QString const page = folder.filePath("new/page.html");
  kvn::saveReport(job, page);
  EXPECT_EQ(parsed(test::fileBytes(page)).fault, QString());
  QString const below = page + "/other.html";  // a file is no folder
  EXPECT_THAT(test::failureOf<kvn::JobException>([&] { kvn::saveReport(job, below); }), HasSubstr("other.html: "));
  EXPECT_EQ(parsed(test::fileBytes(page)).fault, QString());
}

TEST(ReportCommand, WritesThePageOrSaysWhyNot) {
  test::Program const program;
  program.write("net.in2", test::kNetworkFile);
  program.write("book.txt", test::kFieldBook);
  program.write("points.dat", "P,,2000.5,1000.25,30.125\n");
  program.write("far.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nC,L,0\nC,S,9\nP\nQ,L,0\nQ,S,5\n");
  struct Case {
    QStringList arguments;
    int exitCode;
    char const* says;  ///< on standard error
    char const* has;   ///< the page
  };
  QString const heights = test::samplePath("trig_height_reciprocal.txt");
  Case const cases[] = {
      {{"report", "net.in2", "out.html", "--title", "Bridge <3>"}, 0, "", "<h1>Bridge &lt;3&gt;</h1>"},
      {{"report", test::samplePath("net_charamza1990_p238.in2"), "out.html", "--free", "--confidence", "0.9"},
       0,
       "",
       "free: the known points"},
      {{"report", "book.txt", "out.html", "--heights"}, 0, "", "id=\"t-heights\""},
      {{"report", "points.dat", "out.html"}, 0, "", "id=\"t-points\""},
      {{"report", heights, "out.html"}, 0, "The plane cannot be adjusted", "<p class=\"verdict bad\">"},
      {{"report", "net.in2", "out.html", "--json"}, 0, "", "id=\"t-points\""},
      // All its known heights are 0, which is no reason for a page of heights.
      {{"report", test::samplePath("trav_connecting_fr_5legs.txt"), "out.html", "--method", "open"}, 1, "", nullptr},
      {{"report", "far.in2", "out.html"}, 1, "kelvane: far.in2: ", nullptr},
      // A second file of data is no page to write.
      {{"report", "net.in2", "book.txt"}, 1, "book.txt", nullptr},
      {{"report", "net.in2", "net.in2/out.html"}, 1, "net.in2 is no folder", nullptr},
      {{"report", "net.in2"}, 2, "FILE is missing", nullptr},
      {{"report", "net.in2", "out.html", "--language", "fr"}, 2, "--language is en or zh, not fr", nullptr},
      {{"report", "book.txt", "out.html", "--heights", "--method", "open"}, 2, "--method does not go with", nullptr},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.arguments.join(' ').toStdString());
    program.write("out.html", "old");
    test::Run const run = program.run(c.arguments);
    EXPECT_EQ(run.exitCode, c.exitCode) << run.err;
    EXPECT_THAT(run.err, HasSubstr(c.says));
    if (c.has == nullptr) {
      EXPECT_EQ(program.read("out.html"), "old");
    } else {
      EXPECT_TRUE(has(program.read("out.html"), c.has));
    }
    if (c.arguments.contains("--json")) {
      EXPECT_EQ(run.json()["ok"], Json::Value(true));
    }
  }
}

}  // namespace
