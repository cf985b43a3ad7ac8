// Files that the program writes.
#pragma once

#include "Session.h"

#include <QString>
#include <functional>
#include <iosfwd>

namespace kvn::host {

/// @throws Refusal for a suffix that is not among `kinds`, such as {"in2"}.
void requireWritableKind(QString const& path, QStringList const& kinds);

/// Replaces a file, creating its folder, by what `print` prints. @throws Refusal with the reason; what `print` throws.
void writeWhole(QString const& path, std::function<void(std::ostream&)> const& print);

/// Runs `write`. @return  whether the file is there as a whole; if not, an `Error` message has told why.
bool save(Session& session, QString const& path, std::function<void(Session&, QString const&)> const& write);

}  // namespace kvn::host
