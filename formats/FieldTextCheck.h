// FieldTextCheck: what the readers of field jobs take in silence, and in which line it stands.
#pragma once

#include "formats/ITraverseDataCollcetion.h"
#include "records/FieldFinding.h"
#include "records/TraverseDataInfo.h"

#include <utils/Export.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace kvn {

/// A look at the text of a job that a reader has accepted.
struct FieldTextCheck {
  /// `Error`: an angle that is no number, which reads as 0, and a number that is not finite. `Warning`: minutes or
  /// seconds of 60 and above, something behind a number, what is passed over.
  std::vector<FieldFinding> findings;
  std::vector<int> rowLines;  ///< line, from 1, of each row that the reader made; 0 where it is not known
};

/// Looks at a traverse file.
KELVANE_EXPORT FieldTextCheck inspectTraverseText(std::istream& stream);
/// Looks at an instrument job file, given the rows that were read from it.
KELVANE_EXPORT FieldTextCheck inspectJobText(std::istream& stream, std::vector<TraverseDataInfo> const& rows);

/// Reads a file into a collection like its `read` of a path, but a failure names the line.
///
/// @param path  in the local 8-bit encoding.
/// @throws DataException with the line and the text of whatever the reader throws; std::bad_alloc.
KELVANE_EXPORT void readNamingTheLine(ITraverseDataCollcetion& collection, std::string const& path);
/// The same of a file that the caller has open.
KELVANE_EXPORT void readNamingTheLine(ITraverseDataCollcetion& collection, std::istream& file);

}  // namespace kvn
