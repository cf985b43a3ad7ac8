// The configuration file, what must not be lost in writing it, and paths in the local 8-bit encoding.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utils/Config.h>
#include <utils/FileText.h>
#include <QTemporaryDir>
#include <QTextCodec>

#include "support/Support.h"

namespace {

using utils::Config;

struct ConfigFile : testing::Test {
  std::string path(char const* name) const { return directory.filePath(name).toStdString(); }
  std::string bytes(char const* name) const { return test::fileBytes(directory.filePath(name)); }
  void write(char const* name, std::string const& text) const { test::writeFile(directory.filePath(name), text); }
  QTemporaryDir directory;
  Config config;
};

TEST_F(ConfigFile, KeepsTheTreeWhenTheFileIsMissingOrNoJson) {
  config.root()["a"] = 1;
  std::string const deep(5000, '[');
  for (char const* text : {"{\"a\": ", "{} rest", "\x01", "", deep.c_str()}) {
    write("bad.json", text);
    EXPECT_EQ(config.read(path("bad.json")), Config::ReadResult::Invalid) << text;
  }
  EXPECT_EQ(config.read(path("missing.json")), Config::ReadResult::Missing);
  EXPECT_EQ(config.value("a"), 1);
}

TEST_F(ConfigFile, IsWrittenIntoANewDirectoryAndReadsBackByDottedPaths) {
  config.root()["Globle"]["Path"]["OutPath"] = "/data/测量/Ü";
  EXPECT_EQ(config.write(path("a/b/new.json")).error.toStdString(), "");
  Config again;
  EXPECT_EQ(again.read(path("a/b/new.json")), Config::ReadResult::Good);
  EXPECT_EQ(again.value("Globle.Path.OutPath", "other"), "/data/测量/Ü");
  EXPECT_EQ(again.value("Globle.Path.Missing", "other"), "other");
  EXPECT_EQ(again.value("Globle.Path.OutPath.Deeper", 5), 5);
  write("file", "");
  EXPECT_THAT(config.write(path("file/config.json")).error.toStdString(), testing::HasSubstr("file/config.json"));
}

TEST_F(ConfigFile, KeepsEveryFileThatIsNoJsonBesideTheNewOne) {
  config.root()["a"] = 1;
  QStringList kept;
  for (char const* text : {"{\"first\": ", "{} second"}) {
    write("config.json", text);
    kept << config.write(path("config.json")).keptAs;
    EXPECT_EQ(test::fileBytes(kept.back()), text);
    EXPECT_EQ(Config().read(path("config.json")), Config::ReadResult::Good);
  }
  EXPECT_EQ(test::fileBytes(kept.front()), "{\"first\": ");
}

TEST_F(ConfigFile, AnEmptyTreeReplacesOnlyWhatWasRead) {
  write("read.json", "{}");
  write("other.json", R"({"a": 1})");
  ASSERT_EQ(config.read(path("read.json")), Config::ReadResult::Good);
  config.write(path("other.json"));
  EXPECT_EQ(bytes("other.json"), R"({"a": 1})") << "another file was read, not this one";
  ASSERT_EQ(config.read(path("other.json")), Config::ReadResult::Good);
  config.root().clear();
  config.write(path("other.json"));
  EXPECT_EQ(bytes("other.json").find('a'), std::string::npos) << "the host emptied the settings it had read";
}

TEST(NativePath, IsInTheCharsetOfFileNamesWhateverTheCodecOfContents) {
  QTextCodec* const former = QTextCodec::codecForLocale();
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("GBK"));
  EXPECT_EQ(utils::nativePath("\xB2\xE2.txt"), "测.txt");
  QTextCodec::setCodecForLocale(former);
}

}  // namespace
