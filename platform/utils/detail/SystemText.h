// Texts about failures of the operating system.
#pragma once

#include <QCoreApplication>
#include <QString>
#include <system_error>

namespace utils::detail {

/// In the words of the whole library, which has one table of translations for them.
inline QString translated(char const* text) { return QCoreApplication::translate("kvn::System", text); }

/// What the system calls the error of that number, such as "No space left on device".
inline QString worded(int error) { return QString::fromStdString(std::generic_category().message(error)); }

}  // namespace utils::detail
