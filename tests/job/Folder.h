// A job of the tests: a host with messages, and a folder for its files.
#pragma once

#include "support/Support.h"

#include <gtest/gtest.h>
#include <QTemporaryDir>
#include <string>

namespace test {

class JobInFolder : public testing::Test {
 protected:
  QString path(QString const& name) const { return folder.filePath(name); }
  QString written(QString const& name, std::string const& bytes) const {
    writeFile(path(name), bytes);
    return path(name);
  }

  Host host;
  QTemporaryDir folder;
  kvn::Job job;
};

/// Two set-ups of A: the second one has its circle 10° further, and is the only one to see Q.
constexpr char const* kTwoSetUps =
    "JOB     J01\nINST    T1\n"
    "STA     A,1.5000,\nXYZ     1000.0000,1000.0000,50.0000\n"
    "BS      B,1.6000,\nHVD     0.0,324000.0,\n"
    "SC      P,1.6000,\nHVD     216000.0,324000.0,100.0\n"
    "STA     A,1.5000,\nXYZ     1000.0000,1000.0000,50.0000\n"
    "BS      B,1.6000,\nHVD     36000.0,324000.0,\n"
    "SC      Q,1.6000,\nHVD     144000.0,324000.0,80.0\n"
    "STA     B,1.5000,\nXYZ     1100.0000,1000.0000,50.0000\n"
    "BS      A,1.6000,\nHVD     0.0,324000.0,\n"
    "SC      P,1.6000,\nHVD     1080000.0,324000.0,100.0\n";

/// The file of the first steps, with other a-priori errors than the defaults in its head: 20", 3 mm, 2 ppm.
constexpr char const* kFirstNetwork =
    "20,3,2\nA,1000,1000\nB,1000,1200\nA\nB,L,0.0000\nP,L,315.0000\nP,S,141.42\nB\nP,L,0.0000\nP,S,141.43\n"
    "A,L,314.5958\n";

}  // namespace test
