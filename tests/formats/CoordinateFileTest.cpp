// Reading and writing coordinate files.
#include <gtest/gtest.h>
#include <QTemporaryDir>
#include <filesystem>
#include <sstream>

#include "support/Support.h"

namespace {

using kvn::CoordinateDataCollection;
using kvn::DataException;

class CoordinateFile : public testing::Test {
 protected:
  CoordinateDataCollection read(std::string const& text) const {
    test::writeFile(path, text);
    CoordinateDataCollection collection;
    collection.read(path);
    return collection;
  }

  kvn::DatFileData readOlder(std::string const& text) const {
    test::writeFile(path, text);
    kvn::DatFileData data;
    EXPECT_TRUE(data.openDatFileData(path));
    return data;
  }

  template <typename List>
  static std::string described(List const& points) {
    std::string text;
    for (kvn::CoordinatePointInfo const& point : points) {
      text += point.name + "|" + point.signal;  // byte by byte
      text += QStringLiteral(" N %1 E %2 Z %3\n")
                  .arg(point.N, 0, 'g', 10)
                  .arg(point.E, 0, 'g', 10)
                  .arg(point.Z, 0, 'g', 10)
                  .toStdString();
    }
    return text;
  }

  QTemporaryDir folder;
  QString path = folder.filePath(QStringLiteral("points.dat"));
};

TEST_F(CoordinateFile, IsReadPointByPoint) {
  struct Case {
    char const *text, *points;
  };
  Case const cases[] = {
      {"", ""},
      {"P1,,2000,1000,50", "P1| N 1000 E 2000 Z 50\n"},
      {"P1,,2e3,+1000., 50 \n,\xE7,inf,-0.5,1e-3", "P1| N 1000 E 2000 Z 50\n|\xEF\xBF\xBD N -0.5 E inf Z 0.001\n"},
      {"P1,,\t2000,1000,50\nQ,\x01,1,2,3", "P1| N 1000 E 2000 Z 50\nQ|\x01 N 2 E 1 Z 3\n"},
      {"P1,K, -2.5e1 ,+1,.5\r\nP 2,,1,2,3\n", "P1|K N 1 E -25 Z 0.5\nP 2| N 2 E 1 Z 3\n"},
      {"\xE7\x82\xB9,\xE7\x82\xB9,1,2,3\n", "\xE7\x82\xB9|\xE7\x82\xB9 N 2 E 1 Z 3\n"},
  };
  for (Case const& c : cases) EXPECT_EQ(described(read(c.text).getCoordinateDataList()), c.points);
  std::string const longName(1 << 20, 'x');
  EXPECT_EQ(read(longName + ",,1,2,3").getCoordinateDataList().at(0).name, longName);
}

TEST_F(CoordinateFile, IsRefusedWithAnyFault) {
  for (char const* text : {"\n", " \n", "P1,,1,2,3\n\nP2,,1,2,3\n", "P1,,1,2", "P1,,1,2,3,", "P,1,,1,2,3", "P1,K,a,0,0",
                           "P1,K,,0,0", "P1,K,0,1m,0", "P1,K,0,0,1.2.3"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(test::failureOf<DataException>([&] { read(text); }), "The Format of Data is wrong");
  }
  CoordinateDataCollection collection = read("Old,,1,2,3");
  test::writeFile(path, "New,,1,2,3\nBad\n");
  EXPECT_THROW(collection.read(path), DataException);
  EXPECT_EQ(described(collection.getCoordinateDataList()), "Old| N 2 E 1 Z 3\nNew| N 2 E 1 Z 3\n");
}

TEST_F(CoordinateFile, KeepsTheBytesOfTheLocalEncoding) {
  test::LocalEncoding const gbk("GBK");
  // The second byte of the second character is a letter of ASCII.
  std::string const text = "\xB5\xE3\x81\x5C,,1.0000,2.0000,3.0000";
  CoordinateDataCollection collection = read(text);
  EXPECT_EQ(collection.getCoordinateDataList().at(0).name, "\xB5\xE3\x81\x5C");
  // The name of a file is in the charset of the system all the same.
  QString const chinese = folder.filePath(QString::fromUtf8("\xE7\x82\xB9.dat"));
  EXPECT_TRUE(collection.write(HTextCodec::ToLocal8Bit(chinese)));
  EXPECT_TRUE(std::filesystem::exists(chinese.toStdString()));
  collection.setCoordinateDataList({});
  collection.read(chinese);
  EXPECT_EQ(collection.getCoordinateDataList().at(0).name, "\xB5\xE3\x81\x5C");
  // A mark of UTF-16 changes nothing: guessed, this would be a good point.
  std::string const utf16("\xFF\xFEP\0,\0,\0001\0,\0002\0,\0003\0", 18);
  EXPECT_EQ(test::failureOf<DataException>([&] { read(utf16); }), "The Format of Data is wrong");
}

TEST_F(CoordinateFile, IsWrittenWithoutALastLineEnd) {
  CoordinateDataCollection collection = read("P1,,2000.00004,1000,-0.00006\nP2,K,2100.5,1100.25,51.23\n");
  std::string const expected = "P1,,2000.0000,1000.0000,-0.0001\nP2,K,2100.5000,1100.2500,51.2300";
  EXPECT_TRUE(collection.write(path.toStdString()));
  EXPECT_EQ(test::fileBytes(path), expected);
  collection.setCoordinateDataList({});
  collection.read(path);
  std::ostringstream stream;
  collection.write(stream);
  EXPECT_EQ(stream.str(), expected);
}

TEST_F(CoordinateFile, ThatCannotBeOpenedHasNoPoints) {
  CoordinateDataCollection collection;
  kvn::DatFileData data;
  for (QString const& missing : {folder.filePath("none.dat"), folder.path()}) {
    collection.read(missing);
    EXPECT_FALSE(data.openDatFileData(missing));
  }
  EXPECT_TRUE(collection.getCoordinateDataList().empty());
}

TEST_F(CoordinateFile, IsReadWithNorthAheadByTheOlderReader) {
  // 0.1 in single precision; a number that is none is 0.
  EXPECT_EQ(described(readOlder("P1,K,1,0.1,x\r\n\xE7\x82\xB9,,,5,3\n").getDatFileData()),
            "P1|K N 1 E 0.1000000015 Z 0\n\xE7\x82\xB9| N 0 E 5 Z 3\n");
  EXPECT_EQ(test::failureOf<DataException>([&] { readOlder("P1,,1,2,3\n\n"); }), "line 2 ERROR");
  EXPECT_EQ(test::failureOf<DataException>([&] { readOlder("P1,,1,2,3,4"); }), "line 1 ERROR");
}

}  // namespace
