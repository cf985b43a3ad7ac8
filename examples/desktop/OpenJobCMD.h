// A command of the host's own, beside those of the library: opens a file with a surveyor's care.
#pragma once

#include <Kelvane.h>

#include <memory>

/// `{"file": "job.lqf"}`: a `kvn::Job` opens the file into the project that runs the command, which is one of the
/// system's list. `out` has the numbers of "rows", "lines" and "coordinates".
///
/// The library's `OpenFileCMD` is run in the same way. It reads to the letter of the formats, and no findings tell of
/// it.
class OpenJobCMD : public kvn::Command {
 public:
  bool execute(Json::Value const& in) override;
  char const* className() const override { return "OpenJobCMD"; }

  /// The job that the last command has opened, for whoever ran it; null where it failed, and the second time.
  static std::unique_ptr<kvn::Job> takeJob();
};
