// JobWriter: what a session holds, as a file of any kind.
#pragma once

#include "Session.h"

#include <QString>
#include <QStringList>

namespace kvn::host {

/// The suffixes of `writeJob`.
QStringList writableKinds();

/// Writes the job in the format of the suffix, creating the folder. What the format has no place for is told as a
/// `Warning`, or refused where the file would be read as something else.
/// @throws Refusal, DataException for a name or a number that the file cannot hold and for a kind that the job is not;
///         what the library's writers throw.
void writeJob(Session& session, QString const& path);

}  // namespace kvn::host
