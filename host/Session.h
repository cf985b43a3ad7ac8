// Session: the library with one project, for the time of one subcommand.
#pragma once

#include "FieldJob.h"
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

  /// Reads a file into the project; unless `asRead` a network file with the care of `CarefulCosaCollection`, and a
  /// field job or a project file by `openFieldJob`. The settings are those of the file, as far as it has any.
  /// @throws Refusal for a file that is not there or of an unknown kind; what the readers throw.
  void open(QString const& path, bool asRead = false);

  Project& project() { return *current; }
  Messages& messages() { return received; }
  QString const& file() const { return openFile; }  ///< the path given to `open`
  FieldJob const& job() const { return fieldJob; }  ///< empty for other files and `asRead`
  bool isAsRead() const { return openedAsRead; }    ///< as told to `open`

 private:
  void openNetwork(QString const& path, std::string const& bytes);

  System system;
  Messages received;
  std::shared_ptr<Project> current;
  QString openFile;
  FieldJob fieldJob;
  bool openedAsRead = false;
};

/// Everything that there is to say about what the session has opened.
std::vector<FieldFinding> findingsOn(Session& session);

/// What a least-squares adjustment of the network would run into: input that it refuses, points that cannot be placed
/// or that nothing holds, gross errors.
std::vector<FieldFinding> findingsOnStart(Project const& project);

/// By line, then by severity.
void sortFindings(std::vector<FieldFinding>& findings);

/// Text of a failure with the line, the station or the point that it concerns.
QString describe(AlgorithmException const& failure, Network const& network);

/// Runs a subcommand in a session of its own. A failure becomes one line on standard error, with JSON also {code,
/// message} on standard output, and `Refused`. @throws UsageError for an unknown encoding.
int runInSession(CommonOptions const& options, std::function<int(Session&)> const& run);

}  // namespace kvn::host
