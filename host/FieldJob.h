// FieldJob: a field job opened with a surveyor's care.
#pragma once

#include <Kelvane.h>
#include <QString>
#include <vector>

namespace kvn::host {

/// The findings on a job and the network that its rows make; empty for a file that is no field job.
struct FieldJob {
  FieldTextCheck text;
  FieldReduction reduction;

  /// Of text and reduction, with the lines of the file where they are known.
  std::vector<FieldFinding> findings() const;
  /// The same lines for findings on the rows.
  std::vector<FieldFinding> placed(std::vector<FieldFinding> list) const;
};

/// Takes in the bytes of a traverse file, an instrument job file or a project file: rows, marked by the row checks,
/// network and known points go into the project, the rows with the readings of the file. Stations of a job that have
/// coordinates are known. A project file may hold a network or coordinates in place of rows.
/// @throws DataException with the line; QLogicError for a field book without rows; Refusal as `inspectProjectFile`.
FieldJob openFieldJob(Project& project, QString const& path, std::string const& bytes);

/// The same as the library does it: the two faces paired by their place, or the station map. @throws what it throws.
void openFieldJobAsRead(Project& project, QString const& path, std::string const& bytes);

/// "line 12: S to A: text".
QString worded(FieldFinding const& finding);

/// Sends a `Warning` for each text of a warning, naming the first places. Of texts that differ in a number alone, or in
/// what they quote, the first are sent, and how many more there are.
void tellWarnings(std::vector<FieldFinding> const& findings);

/// @throws Refusal for an `Error` among the findings.
void requireNoError(QString const& file, std::vector<FieldFinding> const& findings);

}  // namespace kvn::host
