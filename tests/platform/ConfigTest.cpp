// The configuration file, what must not be lost in writing it, and paths in the local 8-bit encoding.
#include <gmock/gmock.h>
#include <utils/Config.h>
#include <utils/FileText.h>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include "support/Support.h"

namespace {

using utils::Config;

struct ConfigFile : testing::Test {
  std::string path(char const* name) const { return directory.filePath(name).toStdString(); }
  void write(char const* name, std::string const& text) const { test::writeFile(directory.filePath(name), text); }
  QTemporaryDir directory;
  Config config;
};

TEST_F(ConfigFile, ReadsWholeDocumentsAndKeepsTheTreeAtOthers) {
  config.root()["Globle"]["Path"]["OutPath"] = "/data/测量/Ü";
  EXPECT_TRUE(config.write(path("a/b/new.json")).error.isEmpty());
  ASSERT_EQ(config.read(path("a/b/new.json")), Config::ReadResult::Good);
  for (char const* text : {"{\"a\": ", "{} rest", ""}) {
    write("bad.json", text);
    EXPECT_EQ(config.read(path("bad.json")), Config::ReadResult::Invalid) << text;
  }
  EXPECT_EQ(config.read(path("missing.json")), Config::ReadResult::Missing);
  EXPECT_EQ(config.value("Globle.Path.OutPath", "other"), "/data/测量/Ü");
  EXPECT_THAT(config.write(path("bad.json/c.json")).error.toStdString(), testing::HasSubstr("bad.json/c.json"));
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
  config.read(path("read.json"));
  config.write(path("other.json"));
  ASSERT_EQ(config.read(path("other.json")), Config::ReadResult::Good);
  EXPECT_EQ(config.value("a"), 1) << "another file was read, not this one";
  config.root().clear();
  config.write(path("other.json"));
  config.read(path("other.json"));
  EXPECT_EQ(config.value("a"), Json::Value()) << "the host emptied the settings it had read";
}

TEST_F(ConfigFile, ADirectoryInItsPlaceStays) {
  config.root()["a"] = 1;
  QDir(directory.path()).mkdir("taken.json");
  EXPECT_EQ(config.read(path("taken.json")), Config::ReadResult::Unreadable);
  EXPECT_EQ(config.unreadableReason(), "not a regular file");
  EXPECT_THAT(config.write(path("taken.json")).error.toStdString(),
              testing::EndsWith("taken.json: not a regular file"));
  config.read(path("missing.json"));
  EXPECT_EQ(config.unreadableReason(), "");
  EXPECT_TRUE(QFileInfo(directory.filePath("taken.json")).isDir());
}

TEST_F(ConfigFile, StaysWhenItCouldNotBeReadBeforeItWasWritten) {
  QDir(directory.path()).mkdir("a.json");  // what cannot be read
  ASSERT_EQ(config.read(path("a.json")), Config::ReadResult::Unreadable);
  config.root()["b"] = 2;
  QDir(directory.path()).rmdir("a.json");
  write("a.json", R"({"a": 1})");
  EXPECT_THAT(config.write(path("a.json")).error.toStdString(), testing::HasSubstr("could not be read before"));
  EXPECT_EQ(config.read(path("a.json")), Config::ReadResult::Good);
  EXPECT_EQ(config.value("a"), 1);
  config.root()["b"] = 2;
  EXPECT_EQ(config.write(path("a.json")).error, "");
}

TEST_F(ConfigFile, IsTheSameFileToReadAndToWriteWhateverTheCodec) {
  write("\u6D4B.json", R"({"a": 1})");
  test::LocalEncoding const gbk("GBK");
  std::string const local = directory.filePath("\u6D4B.json").toLocal8Bit().toStdString();
  EXPECT_TRUE(Config().write(local).error.isEmpty());
  EXPECT_EQ(config.read(local), Config::ReadResult::Good) << "an empty tree did not replace it";
  EXPECT_EQ(config.value("a"), 1);
}

}  // namespace
