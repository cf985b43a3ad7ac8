// The table of Chinese texts: every key of the sources stands in it, and the built library speaks it.
#include "host/Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <reduction/CheckData.h>
#include <tinyxml2.h>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QTranslator>
#include <map>
#include <set>

namespace {

using Key = std::pair<QString, QString>;  // context, source text

/// The text of one string literal or of several that stand side by side.
QString textOf(QString const& literals) {
  static QRegularExpression const piece(R"("((?:[^"\\]|\\.)*)\")");
  QString text;
  for (auto found = piece.globalMatch(literals); found.hasNext();) text += found.next().captured(1);
  return text.replace(QRegularExpression(R"(\\(["'\\]))"), R"(\1)");
}

void collectKeys(QString const& file, std::set<Key>& keys) {
  static QRegularExpression const use(
      R"re((?:\b(?:(\w+)::)?tr\(|QT_TRANSLATE_NOOP\(\s*"([\w:]+)"\s*,)\s*((?:"(?:[^"\\]|\\.)*"\s*)+))re");
  QString const source = QString::fromStdString(test::fileBytes(file));
  for (auto found = use.globalMatch(source); found.hasNext();) {
    QRegularExpressionMatch const match = found.next();
    QString owner = match.captured(1).isEmpty() ? QFileInfo(file).baseName() : match.captured(1);
    if (owner == "Messages") owner = "System";  // the context that it declares
    keys.emplace(match.captured(2).isEmpty() ? "kvn::" + owner : match.captured(2), textOf(match.captured(3)));
  }
}

/// What a source says to people and no table can have: sentences that stand outside of `tr`.
QStringList sentencesWithoutKey(QString const& file) {
  static QRegularExpression const comment(R"((?m)(^|\s)//[^\n]*$|^#include[^\n]*$)");
  static QRegularExpression const use(
      R"re((?:\btr\(|QT_TRANSLATE_NOOP\(\s*"[\w:]+"\s*,)\s*(?:"(?:[^"\\]|\\.)*"\s*)+)re");
  static QRegularExpression const literal(R"re("((?:[^"\\\n]|\\.)*)")re");
  static QRegularExpression const words("[A-Za-z]{2,} [a-z]{2,}");
  // Command lines, which are the same in every language, and the stand-ins of files.
  static QRegularExpression const command("^(kelvane |--|standard (in|out)put\\.$)");
  QString source = QString::fromStdString(test::fileBytes(file)).remove(comment).remove(use);
  QStringList found;
  for (auto match = literal.globalMatch(source); match.hasNext();) {
    QString const text = match.next().captured(1);
    if (text.contains(words) && !text.contains(command)) found << text;
  }
  return found;
}

std::set<Key> keysOfTheSources() {
  std::set<Key> keys;
  for (char const* folder : {"records", "core", "formats", "reduction", "adjust", "job", "report", "map", "legend",
                             "commands", "platform", "host"}) {
    QDirIterator files(QStringLiteral(KELVANE_SOURCE_DIR "/") + folder, {"*.cpp", "*.h"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) collectKeys(files.next(), keys);
  }
  return keys;
}

std::map<Key, QString> finishedTranslations() {
  tinyxml2::XMLDocument document;
  document.LoadFile(KELVANE_SOURCE_DIR "/translations/Kelvane_zh_CN.ts");
  std::map<Key, QString> table;
  tinyxml2::XMLConstHandle const root(document.RootElement());
  for (auto const* context = root.FirstChildElement("context").ToElement(); context != nullptr;
       context = context->NextSiblingElement("context")) {
    QString const name = context->FirstChildElement("name")->GetText();
    for (auto const* message = context->FirstChildElement("message"); message != nullptr;
         message = message->NextSiblingElement("message")) {
      auto const* const text = message->FirstChildElement("translation");
      bool const finished = text->Attribute("type") == nullptr && text->GetText() != nullptr;
      if (finished) table[{name, message->FirstChildElement("source")->GetText()}] = text->GetText();
    }
  }
  return table;
}

QStringList placeholders(QString const& text) {
  QStringList all;
  static QRegularExpression const place("%\\d");
  for (auto found = place.globalMatch(text); found.hasNext();) all << found.next().captured();
  all.sort();
  return all;
}

TEST(Translations, TheTableHasEveryKeyOfTheSourcesWithItsPlaceholders) {
  std::map<Key, QString> const table = finishedTranslations();
  std::set<Key> const keys = keysOfTheSources();
  // One of each form: through another class, the class itself, a table of texts, literals side by side.
  EXPECT_THAT(keys, testing::IsSupersetOf({Key("kvn::System", "User Cancel"),
                                           Key("kvn::System", "The configuration was not written: %1"),
                                           Key("kvn::System", "The Staion %1 of Back View isn't existed"),
                                           Key("kvn::CheckData", "The data is error")}));
  for (auto const& key : keys) {
    EXPECT_EQ(table.count(key), 1U) << key.first.toStdString() << " lacks: " << key.second.toStdString();
  }
  for (auto const& [key, text] : table) {
    EXPECT_EQ(placeholders(text), placeholders(key.second)) << text.toStdString();
    EXPECT_EQ(keys.count(key), 1U) << "no source has the key any more: " << key.second.toStdString();
  }
}

TEST(Translations, NoSentenceOfTheProgramStandsOutsideOfTheTable) {
  // Want of memory is told without a string of Qt. The names of the calculators' failures are compared with.
  std::set<QString> const allowed{"kelvane: not enough memory\\n", "Data error", "No start data"};
  for (char const* folder : {"job", "host"}) {
    QDirIterator files(QStringLiteral(KELVANE_SOURCE_DIR "/") + folder, {"*.cpp", "*.h"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
      QString const file = files.next();
      for (QString const& text : sentencesWithoutKey(file)) {
        EXPECT_EQ(allowed.count(text), 1U) << file.toStdString() << ": " << text.toStdString();
      }
    }
  }
}

/// Two Latin words side by side, which no unit, name or file name is.
QStringList latinPhrases(std::string const& text) {
  static QRegularExpression const phrase("[A-Za-z]{3,} [a-z]{2,}[a-z ]*");
  static QRegularExpression const commands("kelvane [a-z]+|IGG III");
  QString const told = QString::fromStdString(text).remove(commands);
  QStringList found;
  for (auto match = phrase.globalMatch(told); match.hasNext();) found << match.next().captured();
  return found;
}

TEST(Translations, TheProgramMixesNoLanguages) {
#ifndef KELVANE_HAS_TRANSLATIONS
  GTEST_SKIP() << "built without lrelease";
#endif
  test::Program const program;
  program.write("one.in2", "3,5,0\nA,0,0\nA\nB,L,0\nP,L,45\nP,S,7\n");
  program.write("loose.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45\nP,S,7\nR\nB,L,0\nQ,L,90\nQ,S,5\n");
  program.write("book.txt", "STA,A,1.6,,1000,1000,50\nSC,B,1.6m,,0,90,100,0,0,0\nSC,P,1.6,,60,90,-7,0,0,0\n");
  QStringList files{"one.in2", "loose.in2", "book.txt"};
  for (QFileInfo const& sample : QDir(KELVANE_SOURCE_DIR "/samples").entryInfoList({"*.in2", "*.txt", "*.lqf"})) {
    files << sample.filePath();
  }
  QList<QStringList> const commands{{"show"},
                                    {"check"},
                                    {"adjust"},
                                    {"adjust", "--as-read"},
                                    {"adjust", "--free", "--robust"},
                                    {"adjust", "--method", "traverse"},
                                    {"adjust", "--method", "closed"},
                                    {"adjust", "--method", "connect"},
                                    {"heights"},
                                    {"heights", "--as-read"},
                                    {"adjust", "--save", "x.dat"}};
  for (QString const& file : files) {
    for (QStringList command : commands) {
      command.insert(1, file);
      SCOPED_TRACE(command.join(' ').toStdString());
      test::Run const run = program.run(command + QStringList{"--language", "zh"});
      EXPECT_EQ(latinPhrases(run.out + run.err).join("; ").toStdString(), "");
    }
  }
  for (char const* subcommand : {"show", "check", "adjust", "report", "plan", "heights", "convert", "map", "exec"}) {
    EXPECT_EQ(latinPhrases(program.run({"help", subcommand, "--language", "zh"}).out).join("; ").toStdString(), "");
  }
  EXPECT_THAT(program.run({"adjust", "--angel-error", "2", "--language", "zh"}).err,
              testing::StartsWith("kelvane: 未知的选项“angel-error”；是否指 --angle-error？"));
  EXPECT_EQ(program.run({"help", "--language", "en"}).out.find("用法"), std::string::npos);
}

TEST(Translations, PicturesAndDrawingsSpeakTheLanguageOfTheProgramAndKeepTheNamesOfTheirLayers) {
#ifndef KELVANE_HAS_TRANSLATIONS
  GTEST_SKIP() << "built without lrelease";
#endif
  test::Program const program;
  QString const network = test::samplePath("net_niemeier2008.in2");
  for (QStringList const& command : {QStringList{"map", network, "map.svg"},
                                     {"adjust", network, "--save", "a.svg"},
                                     {"convert", network, "c.svg"},
                                     {"adjust", network, "--save", "a.dxf"}}) {
    ASSERT_EQ(program.run(command + QStringList{"--language", "zh"}).exitCode, 0) << command.join(' ').toStdString();
  }
  for (char const* file : {"map.svg", "a.svg", "c.svg"}) {
    QString text = QString::fromStdString(program.read(file));
    text.remove(QRegularExpression("<style>[^<]*</style>")).replace(QRegularExpression("<[^>]*>"), "\n");
    EXPECT_EQ(latinPhrases(text.toStdString()).join("; ").toStdString(), "") << file;
    EXPECT_TRUE(text.contains(QString::fromUtf8("已知点"))) << file;
  }
  std::string const drawing = program.read("a.dxf");
  EXPECT_THAT(drawing, testing::HasSubstr("\\U+7F6E\\U+4FE1\\U+692D\\U+5706, 95 %, x "));  // confidence ellipses
  EXPECT_THAT(drawing, testing::HasSubstr("POINTS_KNOWN"));
}

TEST(Translations, TheLibrarySpeaksTheLanguageOfTheLocale) {
#ifndef KELVANE_HAS_TRANSLATIONS
  GTEST_SKIP() << "built without lrelease";
#endif
  QLocale const before;
  QLocale::setDefault(QLocale("zh_TW"));
  test::Host host;
  host.system.setConfigFile(QString());
  host.system.init();
  EXPECT_EQ(kvn::System::tr("User Cancel"), "User Cancel") << "there is no table for this one";
  QLocale::setDefault(QLocale("zh_CN"));
  host.system.init();
  QLocale::setDefault(before);
  EXPECT_EQ(kvn::System::tr("User Cancel"), QString::fromUtf8("用户取消"));
  EXPECT_EQ(kvn::CheckData::tr("The data is error"), QString::fromUtf8("数据有误"));
  EXPECT_STREQ(kvn::DataException("P1", "SPACE").what(), "第 0 行 SPACE 名称：P1");
  EXPECT_EQ(kvn::Translation({{"A", {"B", "C"}, 5}}),
            QStringList(QString::fromUtf8("测站 A 的棱镜点 B,C 水平角 2C 互差超限")));
  for (QTranslator* const table : QCoreApplication::instance()->findChildren<QTranslator*>()) {
    QCoreApplication::removeTranslator(table);
  }
}

TEST(Translations, TheProgramTellsAFailureOnceAndKeepsNamesInJsonEnglish) {
#ifndef KELVANE_HAS_TRANSLATIONS
  GTEST_SKIP() << "built without lrelease";
#endif
  test::Program const program;
  program.write("loose.in2", "3,5,0\nA,0,0\nB,0,100\nA\nB,L,0\nP,L,45\nP,S,7\nR\nB,L,0\nQ,L,90\nQ,S,5\n");
  qputenv("LANGUAGE", "zh_CN");
  test::Run const refused = program.run({"adjust", "loose.in2", "--method", "open"});
  test::Run const shown = program.run({"show", test::samplePath("trav_connecting_fr_5legs.txt"), "--json"});
  qputenv("LANGUAGE", "en:zh_CN");
  test::Run const english = program.run({"adjust", "loose.in2", "--method", "open"});
  qputenv("LANGUAGE", "en");
  EXPECT_THAT(refused.err, testing::StartsWith("kelvane: loose.in2: 数据错误 ("));
  EXPECT_THAT(english.err, testing::StartsWith("kelvane: loose.in2: Data error ("));
  EXPECT_EQ(shown.json()["rows"][0]["pointType"], Json::Value("StationPoint"));
}

}  // namespace
