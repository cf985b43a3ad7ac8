// Files that the program writes.
#pragma once

#include "Session.h"

#include <QString>
#include <functional>

namespace kvn::host {

/// @throws Refusal for a suffix that is not among `kinds`, such as {"in2"}.
void requireWritableKind(QString const& path, QStringList const& kinds);

/// Runs `write`. @return  whether the file is there as a whole; if not, the reason has been printed.
bool save(Session& session, QString const& path, std::function<void(Session&, QString const&)> const& write);

}  // namespace kvn::host
