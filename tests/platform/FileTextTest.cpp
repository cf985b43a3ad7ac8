// Whole files: names of any bytes, what is read, what is replaced and what is refused.
#include "support/Support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utils/ByteStream.h>
#include <utils/FileText.h>
#include <QDir>
#include <QTemporaryDir>
#include <QTextCodec>
#include <fstream>
#include <string>
#include <thread>

namespace {

using testing::HasSubstr;
using State = utils::FileBytes::State;

class FileText : public testing::Test {
 protected:
  QTemporaryDir folder;

  QString path(QString const& name) const { return folder.filePath(name); }
  std::string native(QString const& name) const { return utils::nativePathOf(path(name)); }
  QStringList names() const {
    return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  }
};

TEST_F(FileText, NamesOfAnyBytesAreTheSameFileForReadingAndWriting) {
  struct Case {
    char const* codec;
    char const* bytes;
    char const* readable;
  };
  // In a name of the disk: Latin-1 in UTF-8, GBK in UTF-8, half a character, and text in an encoding that lacks it.
  Case const cases[] = {
      {"UTF-8", "raw\xE9.txt", "raw\\xE9.txt"},    {"UTF-8", "\xB2\xE2\xCA\xD4.in2", "\\xB2\\xE2\\xCA\\xD4.in2"},
      {"UTF-8", "end\xE6\xB5", "end\\xE6\\xB5"},   {"UTF-8", "\xE6\xB5\x8B\xFF\xE6\xB5\x8B", "测\\xFF测"},
      {"GBK", "\xC3\xA9t\xC3\xA9.dat", "été.dat"}, {"ISO-8859-1", "\xE6\xB5\x8B.dat", "测.dat"}};
  QTextCodec* const before = QTextCodec::codecForLocale();
  for (Case const& c : cases) {
    SCOPED_TRACE(c.readable);
    QTextCodec::setCodecForLocale(QTextCodec::codecForName(c.codec));
    std::string const onDisk = utils::nativePathOf(folder.path()) + "/" + c.bytes;
    std::ofstream(onDisk) << "old";
    QString const name = utils::pathOfNative(onDisk);
    EXPECT_EQ(utils::nativePathOf(name), onDisk);
    EXPECT_EQ(utils::readablePath(name).section('/', -1), QString::fromUtf8(c.readable));
    EXPECT_EQ(utils::readFile(name).bytes, "old");
    EXPECT_EQ(utils::replaceFile(name, "new"), QString());
    std::ifstream file(onDisk);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "new");
    ::unlink(onDisk.c_str());
    EXPECT_EQ(names(), QStringList());  // no file under another name
  }
  QTextCodec::setCodecForLocale(before);
  EXPECT_EQ(utils::nativePathOf(QString::fromLatin1("a\0b", 3)), "");
  EXPECT_THAT(utils::replaceFile(QString::fromLatin1("a\0b", 3), "").toStdString(),
              HasSubstr("cannot be written in the encoding"));
}

TEST_F(FileText, SaysWhyAFileIsNotRead) {
  ASSERT_EQ(::mkfifo(native("pipe").c_str(), 0600), 0);
  test::writeFile(path("empty"), "");
  test::writeFile(path("bytes"), std::string("a\0\r\n\xFF", 5));
  EXPECT_EQ(utils::readFile(path("none")).state, State::Missing);
  EXPECT_EQ(utils::readFile(path("empty/none")).state, State::Missing);
  EXPECT_EQ(utils::readFile(QString()).state, State::Missing);
  EXPECT_EQ(utils::readFile(folder.path()).state, State::NotAFile);
  EXPECT_EQ(utils::readFile(path("pipe")).state, State::NotAFile);  // and does not wait for a writer
  EXPECT_EQ(utils::readFile(path(QString(300, 'x'))).reason.toStdString(),
            "the file cannot be read: File name too long");
  EXPECT_TRUE(utils::readFile(path("empty")).isWhole());
  EXPECT_EQ(utils::readFile(path("bytes")).bytes, std::string("a\0\r\n\xFF", 5));
}

TEST_F(FileText, KeepsTheRightsOfTheFileThatItReplaces) {
  mode_t const mask = ::umask(027);
  EXPECT_EQ(utils::replaceFile(path("new"), "1"), QString());
  test::writeFile(path("old"), "1");
  ASSERT_EQ(::chmod(native("old").c_str(), 0664), 0);
  bool const mayGive = ::chown(native("old").c_str(), 1234, 4321) == 0;  // the superuser alone
  ASSERT_EQ(::symlink("old", native("link").c_str()), 0);
  bool const hasAttributes = ::setxattr(native("old").c_str(), "user.note", "kept", 4, 0) == 0;
  EXPECT_EQ(utils::replaceFile(path("link"), "2"), QString());
  ::umask(mask);
  struct stat status {};
  ASSERT_EQ(::stat(native("new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  ASSERT_EQ(::lstat(native("link").c_str(), &status), 0);
  EXPECT_TRUE(S_ISLNK(status.st_mode));
  ASSERT_EQ(::stat(native("old").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0664U);
  if (mayGive) {
    EXPECT_EQ(status.st_uid, 1234U);
    EXPECT_EQ(status.st_gid, 4321U);
  }
  char note[4] = {};
  EXPECT_EQ(::getxattr(native("old").c_str(), "user.note", note, 4), hasAttributes ? 4 : -1);
  EXPECT_EQ(test::fileBytes(path("old")), "2");
  EXPECT_EQ(names(), QStringList({"link", "new", "old"}));
}

TEST_F(FileText, LeavesTheOldFileWhereItMustNotOrCannotBeReplaced) {
  test::writeFile(path("protected"), "old");
  ASSERT_EQ(::chmod(native("protected").c_str(), 0444), 0);
  test::writeFile(path("first"), "old");
  ASSERT_EQ(::link(native("first").c_str(), native("second").c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", native("dangling").c_str()), 0);
  ASSERT_EQ(::symlink("loop", native("loop").c_str()), 0);
  QStringList const before = names();
  struct Case {
    char const* name;
    char const* reason;
  };
  for (Case const& c : {Case{"protected", "the file is write-protected"},
                        {"first", "second name (a hard link)"},
                        {"dangling", "the link leads nowhere"},
                        {"loop", "Too many levels of symbolic links"},
                        {".", "Is a directory"},
                        {"missing/file", "No such file or directory"},
                        {"first/file", "Not a directory"}}) {
    EXPECT_THAT(utils::replaceFile(path(c.name), "new").toStdString(), HasSubstr(c.reason)) << c.name;
  }
  EXPECT_EQ(test::fileBytes(path("protected")), "old");
  EXPECT_EQ(test::fileBytes(path("second")), "old");
  EXPECT_EQ(names(), before);
}

TEST_F(FileText, WritesThroughWhatIsNoRegularFile) {
  ASSERT_EQ(::mkfifo(native("pipe").c_str(), 0600), 0);
  std::string received;
  std::thread reader([&] {
    std::ifstream pipe(native("pipe"));
    received.assign(std::istreambuf_iterator<char>(pipe), {});
  });
  EXPECT_EQ(utils::replaceFile(path("pipe"), "through"), QString());
  reader.join();
  EXPECT_EQ(received, "through");
  EXPECT_EQ(names(), QStringList("pipe"));

  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  QString const openFile = QString("/dev/fd/%1").arg(ends[1]);
  EXPECT_EQ(utils::replaceFile(openFile, "to the open file"), QString());
  char buffer[100];
  EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(::read(ends[0], buffer, sizeof buffer))), "to the open file");
  ::close(ends[0]);
  EXPECT_EQ(utils::replaceFile(openFile, "nobody reads"), "Broken pipe");  // and the process lives
  ::close(ends[1]);
}

TEST(ByteStream, GoesBackAsAFileDoes) {
  utils::ByteStream stream("first\nsecond");
  std::string line;
  std::getline(stream, line);
  stream.seekg(0);
  std::getline(stream, line);
  EXPECT_EQ(line, "first");
  stream.seekg(-3, std::ios::end);
  std::getline(stream, line);
  EXPECT_EQ(line, "ond");
  stream.clear();
  EXPECT_FALSE(stream.seekg(13));
}

}  // namespace
