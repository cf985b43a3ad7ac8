// The font of the map's labels.
#pragma once

#include <string>

namespace mvz::detail {

/// Path of a font file with Chinese characters where the machine has one; empty when there is none of those known here,
/// and then osgText's own font serves.
///
/// The environment variable KELVANE_FONT goes first, whatever it names. Looked for once a process.
std::string const& mapFontFile();

/// Whether that font has Chinese characters, as far as its file name tells; true for one that KELVANE_FONT names.
bool mapFontHasChinese();

}  // namespace mvz::detail
