// Findings and failures in words.
#pragma once

#include "core/AlgorithmException.h"
#include "records/FieldFinding.h"
#include "records/Network.h"

#include <utils/Export.h>

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

namespace kvn {

/// Text of a record, which keeps the bytes of its source: UTF-8 where they are valid UTF-8, else the local 8-bit
/// encoding.
KELVANE_EXPORT QString recordText(std::string const& bytes);

/// "line 12: S to A: text", as far as line and names are known; a row without a line is told by its number.
KELVANE_EXPORT QString worded(FieldFinding const& finding);

/// Text of a failure with the line of the network, the station or the point that it concerns.
/// @param network  the one that the calculation was given.
KELVANE_EXPORT QString worded(AlgorithmException const& failure, Network const& network);

/// A line for each text of a `Warning`, with the first places. Of texts that differ in a number alone, or in what they
/// quote, the first three are told, and how many more there are.
KELVANE_EXPORT QStringList warningLines(std::vector<FieldFinding> const& findings);

/// What stops the job first, then by what it may cost, the most first; the order of others stays.
KELVANE_EXPORT void sortByCost(std::vector<FieldFinding>& findings);

/// By line, then by severity; the order of others stays.
KELVANE_EXPORT void sortFindings(std::vector<FieldFinding>& findings);

}  // namespace kvn
