// Files that the library reads at run time: icons, legend codes, translations.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <string>
#include <vector>

namespace utils {

/// Finds a file that is given relative to an installation, such as "config\earth\img\station.png".
///
/// Either separator is understood. The first that is there is taken of: the working directory, the folder of the
/// program, and the data folder that is installed with the library.
///
/// @return  the path as the operating system knows it; empty when there is no such file. An absolute path is only
/// looked
///          at itself.
KELVANE_EXPORT std::string resourceFile(QString const& relative);

/// All folders of that name, in the order in which `resourceFile` looks for files.
KELVANE_EXPORT std::vector<std::string> resourceFolders(QString const& relative);

}  // namespace utils
