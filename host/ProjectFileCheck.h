// A look at the text of a project file, for what its reader takes in silence.
#pragma once

#include <Kelvane.h>
#include <QString>

namespace kvn::host {

/// `Error`: a number, a truth value or a kind of row that cannot be read, for which the reader takes the default.
/// `Warning`: a version or a kind of data that is not known. The lines are those of the rows.
/// @throws Refusal for a file that is not well-formed, with the line, or that holds nothing of a project.
FieldTextCheck inspectProjectFile(QString const& path, std::string const& bytes);

}  // namespace kvn::host
