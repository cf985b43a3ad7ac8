// Runs the tests away from the user's home, with a fixed codec.
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTextCodec>
#include <clocale>
#include <cstdio>
#include <cstring>

namespace {

/// A run that is meant to show that a decimal comma does no harm must not pass because the locale was not there.
bool localeIsAsExpected() {
  if (qEnvironmentVariableIsEmpty("KELVANE_EXPECT_DECIMAL_COMMA")) return true;
  return std::strcmp(std::localeconv()->decimal_point, ",") == 0;
}

/// Texts in English and names in UTF-8, here and in the programs that a test starts, wherever the user lives.
void leaveTheUsersLocale() {
  qputenv("LANGUAGE", "en");
  if (qEnvironmentVariableIsEmpty("KELVANE_EXPECT_DECIMAL_COMMA")) qputenv("LC_ALL", "C.UTF-8");
}

}  // namespace

int main(int argc, char** argv) {
  leaveTheUsersLocale();
  QTemporaryDir const home;
  for (char const* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_DOCUMENTS_DIR"}) {
    qputenv(variable, home.path().toLocal8Bit());
  }
  testing::InitGoogleTest(&argc, argv);
  QCoreApplication const application(argc, argv);
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
  if (!localeIsAsExpected()) {
    std::fprintf(stderr, "the locale with a decimal comma is not there\n");
    return 1;
  }
  return RUN_ALL_TESTS();
}
