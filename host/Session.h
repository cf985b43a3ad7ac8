// Session: the library with one project, for the time of one subcommand.
#pragma once

#include "Messages.h"
#include "Options.h"

#include <Kelvane.h>
#include <QString>
#include <functional>
#include <memory>

namespace kvn::host {

class Session {
 public:
  /// Reads the user's configuration, and sees to it that it is not written at the end.
  Session();
  Session(Session const&) = delete;
  Session& operator=(Session const&) = delete;
  ~Session();

  /// Reads a file into the project.
  /// @throws Refusal for a file that is not there or of an unknown kind; what `Project::read` throws.
  void open(QString const& path);

  Project& project() { return *current; }
  Messages& messages() { return received; }
  QString const& file() const { return openFile; }  ///< the path given to `open`

 private:
  System system;
  Messages received;
  std::shared_ptr<Project> current;
  QString openFile;
};

/// Takes the a-priori errors of the head of a COSA file; the project does not keep them.
void takeHead(QString const& file, Configure& configure);

/// Runs a subcommand in a session of its own. A failure becomes one line on standard error, with JSON also {code,
/// message} on standard output, and `Refused`. @throws UsageError for an unknown encoding.
int runInSession(CommonOptions const& options, std::function<int(Session&)> const& run);

}  // namespace kvn::host
