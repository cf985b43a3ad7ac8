// Files that the program writes.
#pragma once

#include "Options.h"
#include "Session.h"

#include <QString>
#include <QStringList>
#include <functional>

namespace kvn::host {

/// Suffixes of all files that jobs can be saved as: those of `Job::save`, and those for other programs.
QStringList savableKinds();
bool isExchange(QString const& path);

/// A file of any of the kinds. What has no coordinates is told where the file needs some.
void saveJob(Session& session, QString const& path, ExchangeChoice const& choice);

/// What is left out of a picture or a file because it has no coordinates, as one `Warning`. A table has heights all the
/// same.
void tellWithoutPlace(SiteDrawing const& drawing, bool isTable = false);

/// Runs `write`. @return  whether the file is there as a whole; if not, an `Error` message has told why.
bool save(Session& session, QString const& path, std::function<void(Session&, QString const&)> const& write);

/// Prints what has come of it where JSON is wanted. @return the exit code.
int finishSaving(Session& session, QString const& path, bool saved, bool asJson);

}  // namespace kvn::host
