// Session: the library with one project, for the time of one subcommand.
#pragma once

#include "Messages.h"
#include "Options.h"
#include "Streams.h"

#include <Kelvane.h>
#include <QString>
#include <functional>
#include <vector>

namespace kvn::host {

class Session {
 public:
  /// Reads the user's configuration, and sees to it that it is not written at the end.
  explicit Session(CommonOptions const& options);
  Session(Session const&) = delete;
  Session& operator=(Session const&) = delete;
  ~Session();

  /// As `Job::open`. The settings are those of the file, as far as it has any.
  void open(QString const& path, Job::Reading reading = Job::Reading::Careful);

  Job& job() { return opened; }
  Project& project() { return *opened.project(); }
  Messages& messages() { return received; }
  QString const& file() const { return openFile; }  ///< the path given to `open`, as `shown`

  /// Where to write what is to become `path`, which may stand for standard output.
  /// @throws JobException for a folder that is not there: a long computation would be lost.
  QString outputFor(QString const& path);
  /// Prints what has been written there for standard output.
  void pass(QString const& written) const { streams.pass(written); }
  /// A path as the user knows it, for text and for JSON: a byte that is no character stands as \xE9.
  QString shown(QString const& path) const { return utils::readablePath(streams.shown(path)); }

 private:
  System system;
  Messages received;
  Job opened;
  Streams streams;
  QString openFile;
  QString kindOfInput;
  QString kindOfOutput;
};

/// Sends a `Warning` for each line of `warningLines`.
void tellWarnings(std::vector<FieldFinding> const& findings);

/// Runs a subcommand in a session of its own. A failure becomes one line on standard error, with JSON also {code,
/// file, message} on standard output, and `Refused`. @throws UsageError for an unknown encoding.
int runInSession(CommonOptions const& options, std::function<int(Session&)> const& run);

}  // namespace kvn::host
