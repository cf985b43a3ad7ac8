// The configuration file: what is read, and what must not be lost in writing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utils/Config.h>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include "support/Support.h"

namespace {

using utils::Config;

class ConfigFile : public testing::Test {
 protected:
  std::string path(char const* name) const { return directory.filePath(name).toStdString(); }
  std::string bytes(char const* name) const { return test::fileBytes(directory.filePath(name)); }
  void write(char const* name, std::string const& text) const { test::writeFile(directory.filePath(name), text); }

  QTemporaryDir directory;
  Config config;
};

TEST_F(ConfigFile, FindsValuesByDottedPaths) {
  write("good.json", R"({"Globle": {"Path": {"OutPath": "/out"}, "List": [1, 2]}} // a remark)"
                     "\n");
  ASSERT_EQ(config.read(path("good.json")), Config::ReadResult::Good);
  EXPECT_EQ(config.value("Globle.Path.OutPath", "other"), "/out");
  EXPECT_EQ(config.value("Globle.Path.Missing", "other"), "other");
  EXPECT_EQ(config.value("Globle.Path.OutPath.Deeper", 5), 5);
  EXPECT_EQ(config.value("Globle.List.Deeper"), Json::Value());
}

TEST_F(ConfigFile, KeepsTheTreeWhenTheFileIsMissingOrNoJson) {
  config.root()["a"] = 1;
  std::string const deep(5000, '[');
  for (std::string const& text : {std::string("{\"a\": "), std::string("{} {}"), std::string("{} rest"),
                                  std::string("\x00\x01", 2), std::string(), deep}) {
    SCOPED_TRACE(text.substr(0, 20));
    write("bad.json", text);
    EXPECT_EQ(config.read(path("bad.json")), Config::ReadResult::Invalid);
    EXPECT_EQ(config.value("a"), 1);
  }
  EXPECT_EQ(config.read(path("missing.json")), Config::ReadResult::Missing);
  EXPECT_EQ(config.read(""), Config::ReadResult::Missing);
  EXPECT_EQ(config.value("a"), 1);
}

TEST_F(ConfigFile, IsWrittenIntoANewDirectoryAndReadsBack) {
  config.root()["Globle"]["Path"]["OutPath"] = "/data/测量/Ü";
  auto const written = config.write(path("a/b/new.json"));
  EXPECT_EQ(written.error.toStdString(), "");
  EXPECT_TRUE(written.keptAs.isEmpty());
  Config again;
  EXPECT_EQ(again.read(path("a/b/new.json")), Config::ReadResult::Good);
  EXPECT_EQ(again.root(), config.root());
}

TEST_F(ConfigFile, KeepsEveryFileThatIsNoJsonBesideTheNewOne) {
  config.root()["a"] = 1;
  QStringList kept;
  for (char const* text : {"{\"first\": ", "{} second"}) {
    write("config.json", text);
    auto const written = config.write(path("config.json"));
    EXPECT_TRUE(written.error.isEmpty());
    EXPECT_EQ(test::fileBytes(written.keptAs), text);
    EXPECT_EQ(QFileInfo(written.keptAs).absolutePath(), QDir(directory.path()).absolutePath());
    EXPECT_FALSE(kept.contains(written.keptAs));
    kept << written.keptAs;
    EXPECT_EQ(Config().read(path("config.json")), Config::ReadResult::Good);
  }
  EXPECT_EQ(test::fileBytes(kept.front()), "{\"first\": ");
}

TEST_F(ConfigFile, AnEmptyTreeReplacesOnlyWhatWasRead) {
  write("read.json", "{}");
  write("other.json", R"({"a": 1})");
  EXPECT_TRUE(config.write(path("other.json")).error.isEmpty());
  EXPECT_EQ(bytes("other.json"), R"({"a": 1})");
  ASSERT_EQ(config.read(path("read.json")), Config::ReadResult::Good);
  config.write(path("other.json"));
  EXPECT_EQ(bytes("other.json"), R"({"a": 1})") << "another file was read, not this one";

  ASSERT_EQ(config.read(path("other.json")), Config::ReadResult::Good);
  config.root().clear();
  config.write(path("other.json"));
  EXPECT_EQ(Config().read(path("other.json")), Config::ReadResult::Good);
  EXPECT_EQ(bytes("other.json").find('a'), std::string::npos) << "the host emptied the settings it had read";
}

TEST_F(ConfigFile, TellsWhyItWasNotWritten) {
  write("file", "");
  config.root()["a"] = 1;
  EXPECT_THAT(config.write(path("file/config.json")).error.toStdString(), testing::HasSubstr("file/config.json"));
  EXPECT_TRUE(config.write("").error.isEmpty());
}

}  // namespace
