// What every target does first: names in UTF-8, as the host program has them, and no log.
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextCodec>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
  static QCoreApplication const application(*argc, *argv);  // owns what the system makes
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
  return 0;
}
