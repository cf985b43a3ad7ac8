// The legend file: what is read, what is written, and the two files that come with the library.
#include <gtest/gtest.h>
#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <utility>

#include "legend/LegendSupport.h"
#include "support/Support.h"

namespace {

using kvn::AttributeType;
using kvn::XmlMannager;

constexpr AttributeType kTypes[] = {kvn::Point, kvn::Line, kvn::Polygon};

/// Everything that a library holds under its listed groups, in order.
QStringList contentOf(XmlMannager& library) {
  QStringList all;
  for (AttributeType const type : kTypes) {
    for (QString const& group : library.getGroupList(type)) {
      all << "group" << group;
      for (Code const& c : library.getLegendCodeList(group, type)) {
        all << c.Name << c.Group << c.Code << c.ID << c.Scale << c.Color << QString::number(c.Type);
      }
    }
  }
  return all;
}

class LegendFile : public testing::Test {
 protected:
  QString path(char const* name) const { return folder.filePath(name); }
  bool read(std::string const& bytes) {
    test::writeFile(path("in.xml"), bytes);
    return library.readPrjCode(path("in.xml"));
  }
  QTemporaryDir const folder;
  Language const english{QLocale::English};
  XmlMannager library;
};

TEST_F(LegendFile, SectionsAndFieldsMayBeMissingAndUnlistedGroupsDropTheirCodes) {
  struct Case {
    char const* what;
    std::string text;  ///< below the root; $ is a listed group G of points
    char const* content;
  };
  Case const cases[] = {
      {"nothing in it", "", ""},
      {"lines without points", "<LGroups><x>G</x></LGroups><Lines><Line><Name>a</Name><Group>G</Group></Line></Lines>",
       "group G a G default 1 1 #000a96 1"},
      {"a group is listed once, whatever its element, and kept when empty",
       "<FGroups><x>B</x><FGroup>A</FGroup><y>B</y></FGroups>", "group B group A"},
      {"fields in any order, one empty", "<Points><Point><Color/><Scale>2</Scale><Group>G</Group></Point></Points>$",
       "group G  G default 1 2  0"},
      {"the default group counts when listed", "<PGroups><P>无分组</P></PGroups><Points><Point/></Points>",
       "group 无分组  无分组 default 1 1 #000a96 0"},
      {"unlisted groups, other elements",
       "$<Points><Point/><Point><Group>g</Group></Point><x><Group>G</Group></x></Points>", "group G"},
      {"one name twice", "$<Points><Point><Group>G</Group></Point><Point><Group>G</Group><ID>2</ID></Point></Points>",
       "group G  G default 1 1 #000a96 0  G default 2 1 #000a96 0"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    QString const text = QString::fromStdString(c.text).replace("$", "<PGroups><P>G</P></PGroups>");
    EXPECT_TRUE(read("<Any>" + text.toStdString() + "</Any>"));
    EXPECT_EQ(contentOf(library).join(" "), QString::fromUtf8(c.content));
  }
}

TEST_F(LegendFile, AFileThatIsNoXmlLeavesTheLibraryEmpty) {
  std::string const crowded = "<R" + test::xmlAttributes(101) + "/>";
  for (std::string const text :
       {"", " \n", "<R>", "<R></S>", "<R a=></R>", "<!-- no element -->", "\xff\xfe<\0R\0", crowded.c_str()}) {
    SCOPED_TRACE(text);
    ASSERT_TRUE(library.addGroup("G", kvn::Point));
    EXPECT_FALSE(read(text));
    EXPECT_TRUE(library.getGroupList(kvn::Point).isEmpty());
    EXPECT_TRUE(library.getLegendCodeList("G", kvn::Point).isEmpty());
  }
}

TEST_F(LegendFile, SaysWhyAFileCannotBeReadAndNothingOfOneThatIsNoXml) {
  test::Host const host;
  EXPECT_FALSE(library.readPrjCode("/proc/self/mem"));  // opens, and cannot be read at its beginning
  ASSERT_EQ(host.messages.size(), 1U);
  EXPECT_EQ(
      host.messages[0].first,
      "The legend codes were not read: /proc/self/mem: the file could not be read to its end: Input/output error");
  EXPECT_EQ(host.messages[0].second, kvn::Warning);
  EXPECT_FALSE(read("<R>"));
  EXPECT_TRUE(library.readPrjCode(path("none.xml")));
  EXPECT_EQ(host.messages.size(), 1U);
}

TEST_F(LegendFile, WritesTheListedGroupsAndTheirCodes) {
  ASSERT_TRUE(
      read("<R><PGroups><P>G</P><P/></PGroups><Points><Point><Name>n</Name><Group>G</Group></Point></Points></R>"));
  Code unlisted = makeCode("h", "H");
  ASSERT_TRUE(library.addElement(&unlisted));
  ASSERT_TRUE(library.saveAsPrjCode(path("out.xml")));
  EXPECT_EQ(
      QString::fromStdString(test::fileBytes(path("out.xml"))).simplified(),
      "<?xml version=\"1.0\" encoding=\"gbk\"?> <VRDGroundCode> <PGroups> <PGroup>G</PGroup> </PGroups> <LGroups/> "
      "<FGroups/> <Points> <Point> <Name>n</Name> <Group>G</Group> <Code>default</Code> <ID>1</ID> "
      "<Scale>1</Scale> <Color>#000a96</Color> </Point> </Points> <Lines/> <Polygons/> </VRDGroundCode>");
}

TEST_F(LegendFile, AFailedSaveLeavesTheOldFileAndTheLibrary) {
  test::Host host;
  auto const told = [&host] {
    auto const messages = std::exchange(host.messages, {});
    return messages.size() == 1 && messages[0].second == kvn::Error ? messages[0].first : QString();
  };
  ASSERT_TRUE(library.addGroup("G", kvn::Point));
  EXPECT_FALSE(library.saveAsPrjCode(""));
  EXPECT_TRUE(told().startsWith("The file was not written: "));
  EXPECT_FALSE(library.saveAsPrjCode(folder.path()));
  EXPECT_EQ(told(), "The file was not written: " + folder.path() + ": Is a directory");
  EXPECT_FALSE(library.saveAsPrjCode(path("no folder/out.xml")));
  EXPECT_TRUE(told().endsWith("no folder/out.xml: No such file or directory"));
  test::writeFile(path("old.xml"), "old");
  test::LocalEncoding const latin("ISO-8859-1");
  for (QString const& text : {QString::fromUtf8("图根点"), QString("a") + QChar(0) + "b", QString(QChar(0xd800))}) {
    Code code = makeCode("n", "G");
    code.Code = text;
    library.getLegendCodeList("G", kvn::Point) = {code};
    EXPECT_FALSE(library.saveAsPrjCode(path("old.xml")));
    EXPECT_EQ(told(), "The file was not written: " + path("old.xml") + ": " + text +
                          " cannot be written in the encoding ISO-8859-1");
    EXPECT_EQ(test::fileBytes(path("old.xml")), "old");
    EXPECT_EQ(library.getLegendCodeList("G", kvn::Point), QList<Code>{code});
  }
}

TEST_F(LegendFile, FileNamesAreFoundUnderAnotherEncodingOfTheContents) {
  test::LocalEncoding const gbk("GBK");
  ASSERT_TRUE(library.addGroup("G", kvn::Line));
  ASSERT_TRUE(library.saveAsPrjCode(folder.filePath(QString::fromUtf8("图例.xml"))));
  XmlMannager again;
  ASSERT_TRUE(again.readPrjCode(folder.filePath(QString::fromUtf8("图例.xml"))));
  EXPECT_EQ(again.getGroupList(kvn::Line), QStringList{"G"});
}

/// The file of the user's language; what is no file stands for it too.
QStringList defaultContent(QLocale::Language language, QString const& path) {
  Language const spoken(language);
  XmlMannager library;
  EXPECT_TRUE(library.readPrjCode(path));
  for (AttributeType const type : kTypes) {
    EXPECT_EQ(library.getGroupList(type).last(), XmlMannager::getDefaultGroupName());
    QSet<QString> names;
    for (QString const& group : library.getGroupList(type)) {
      EXPECT_FALSE(group.isEmpty());
      for (Code const& c : library.getLegendCodeList(group, type)) {
        SCOPED_TRACE(c.Name.toStdString());
        EXPECT_FALSE(c.Name.isEmpty() || c.Code.isEmpty() || names.contains(c.Name));
        EXPECT_TRUE(QRegularExpression("^#[0-9a-f]{6}$").match(c.Color).hasMatch());
        EXPECT_GT(c.Scale.toDouble(), 0);
        names.insert(c.Name);
      }
    }
  }
  return contentOf(library);
}

TEST_F(LegendFile, TheDefaultFilesHoldTheSameCodesInTwoLanguages) {
  QStringList const chinese = defaultContent(QLocale::Chinese, "");
  QStringList const other = defaultContent(QLocale::German, folder.path());
  EXPECT_EQ(defaultContent(QLocale::English, path("no file.xml")), other);
  ASSERT_EQ(chinese.size(), other.size());
  EXPECT_TRUE(chinese.contains(QString::fromUtf8("控制点")));
  EXPECT_TRUE(other.contains("Control points"));
  int const codes = other.filter(QRegularExpression("^#")).size();  // each has one colour
  for (char const* name : {"CASS.xml", "PRESET_EN.xml"}) {
    QString const file = QString::fromStdString(test::fileBytes(KELVANE_SOURCE_DIR "/config/Codes/" + QString(name)));
    EXPECT_EQ(file.count("<Name>"), codes) << name;  // none was dropped
    // Other programs, unlike the library, believe the first line.
    QXmlStreamReader xml(
        QByteArray::fromStdString(test::fileBytes(KELVANE_SOURCE_DIR "/config/Codes/" + QString(name))));
    QString texts;
    while (!xml.atEnd()) texts += xml.readNext() == QXmlStreamReader::Characters ? xml.text() : QStringRef();
    EXPECT_FALSE(xml.hasError()) << name;
    EXPECT_TRUE(texts.contains(QString::fromUtf8("控制点")) || texts.contains("Control points")) << name;
  }
}

TEST_F(LegendFile, ADefaultFileInTheWorkingDirectoryComesFirstAndMayBeBroken) {
  QString const before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(folder.path()) && QDir().mkpath("config/Codes"));
  test::writeFile("config/Codes/PRESET_EN.xml", "<R><PGroups><P>own</P></PGroups></R>");
  EXPECT_TRUE(library.readPrjCode(""));
  EXPECT_EQ(contentOf(library), QStringList({"group", "own"}));
  test::writeFile("config/Codes/PRESET_EN.xml", "<R>");
  EXPECT_FALSE(library.readPrjCode(""));
  QDir::setCurrent(before);
  EXPECT_EQ(contentOf(library), QStringList());
}

}  // namespace
