// Files that the program writes.
#pragma once

#include "Session.h"

#include <QString>
#include <functional>

namespace kvn::host {

/// `Job::save`.
void saveJob(Session& session, QString const& path);

/// Runs `write`. @return  whether the file is there as a whole; if not, an `Error` message has told why.
bool save(Session& session, QString const& path, std::function<void(Session&, QString const&)> const& write);

}  // namespace kvn::host
