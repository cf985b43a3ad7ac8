// Files that the library reads at run time: icons, legend codes, translations.
#pragma once

#include <utils/Export.h>

#include <QString>
#include <string>
#include <vector>

namespace utils {

/// Whether the working directory is one of the places where such files are looked for; it is, until told otherwise, so
/// that a host can keep files of its own there. A program that is started where somebody else's files lie, such as one
/// that opens the job beside it, says no before `System::init`: a table of translations could put other words into its
/// mouth.
KELVANE_EXPORT void setResourcesFromWorkingDirectory(bool value);
KELVANE_EXPORT bool areResourcesFromWorkingDirectory();

/// Finds a file that is given relative to an installation, such as "config\earth\img\station.png".
///
/// Either separator is understood. The first that is there is taken of: the working directory (see above), the folder
/// of the program, and the data folder that is installed with the library.
///
/// @return  the path as the operating system knows it; empty when there is no such file. An absolute path is only
/// looked
///          at itself.
KELVANE_EXPORT std::string resourceFile(QString const& relative);

/// All folders of that name, in the order in which `resourceFile` looks for files.
KELVANE_EXPORT std::vector<std::string> resourceFolders(QString const& relative);

}  // namespace utils
