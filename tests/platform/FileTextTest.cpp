// Paths in the local 8-bit encoding.
#include <gtest/gtest.h>
#include <utils/FileText.h>
#include <utils/HTextCodec.h>
#include <QTextCodec>

namespace {

TEST(NativePath, IsInTheCharsetOfFileNamesWhateverTheCodecOfContents) {
  QTextCodec* const former = QTextCodec::codecForLocale();
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("GBK"));
  std::string const gbk = "\xB2\xE2.txt";
  EXPECT_EQ(HTextCodec::FromLocal8Bit(gbk).toStdString(), "测.txt");
  EXPECT_EQ(HTextCodec::ToLocal8Bit(QStringLiteral("测.txt")), gbk);
  EXPECT_EQ(utils::nativePath(gbk), "测.txt");
  QTextCodec::setCodecForLocale(former);
}

}  // namespace
