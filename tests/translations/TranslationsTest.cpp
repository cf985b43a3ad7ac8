// The table of Chinese texts: every key of the sources stands in it, and the built library speaks it.
#include "host/Program.h"
#include "support/Support.h"

#include <gmock/gmock.h>
#include <reduction/CheckData.h>
#include <tinyxml2.h>
#include <QCoreApplication>
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
