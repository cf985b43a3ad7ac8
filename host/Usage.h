// What the program can do, and the language in which it says so.
#pragma once

#include <QString>
#include <QStringList>

namespace kvn::host {

/// Usage of the program as a whole.
QString programUsage();

/// Loads the texts of the language that the arguments ask for with --language, else of that of the locale. Done before
/// anything else is said, the errors of the command line among it; a name that is not known is left to the options.
void useLanguageOf(QStringList const& arguments);

/// The arguments without that option.
QStringList withoutLanguage(QStringList arguments);

}  // namespace kvn::host
