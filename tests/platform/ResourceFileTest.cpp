// Files that the library finds at run time.
#include <gtest/gtest.h>
#include <utils/ResourceFile.h>
#include <QDir>
#include <QTemporaryDir>

#include "support/Support.h"

namespace {

constexpr char const* kIcon = "config\\earth\\img\\kvn_stationpoint.png";

TEST(ResourceFile, TheWorkingDirectoryComesBeforeWhatCameWithTheLibrary) {
  QTemporaryDir const folder;
  QString const before = QDir::currentPath();
  ASSERT_TRUE(QDir::setCurrent(folder.path()));
  std::string const shipped = utils::resourceFile(kIcon);
  ASSERT_TRUE(QDir().mkpath("config/earth/img"));
  test::writeFile("config/earth/img/kvn_stationpoint.png", "own");
  std::string const own = utils::resourceFile(kIcon);
  std::string const dotted = utils::resourceFile(QStringLiteral(".\\") + kIcon);
  std::vector<std::string> const folders = utils::resourceFolders("config\\earth");
  utils::setResourcesFromWorkingDirectory(false);
  EXPECT_EQ(utils::resourceFile(kIcon), shipped) << "a program that opens a job beside somebody else's files";
  EXPECT_EQ(utils::resourceFolders("config\\earth").size(), folders.size() - 1);
  utils::setResourcesFromWorkingDirectory(true);
  QDir::setCurrent(before);
  EXPECT_EQ(test::fileBytes(QString::fromStdString(shipped)).substr(1, 3), "PNG");
  EXPECT_EQ(own, "config/earth/img/kvn_stationpoint.png");
  ASSERT_GE(folders.size(), 2U);
  EXPECT_EQ(folders[0], "config/earth");
  EXPECT_EQ(folders[1] + "/img/kvn_stationpoint.png", shipped);
  EXPECT_EQ(dotted, "./config/earth/img/kvn_stationpoint.png");
}

TEST(ResourceFile, WhatIsNotThereIsEmptyAndAFolderIsNoFile) {
  EXPECT_EQ(utils::resourceFile("config\\earth\\img\\none.png"), "");
  EXPECT_EQ(utils::resourceFile("config\\earth"), "");
  EXPECT_EQ(utils::resourceFile("/no/such/file"), "");
  EXPECT_TRUE(utils::resourceFolders(kIcon).empty()) << "a file is no folder";
}

}  // namespace
