// Identities of records.
#pragma once

#include <utils/Export.h>

#include <string>

namespace kvn {

/// A new UUID as lower-case hexadecimal text in braces, 38 characters.
KELVANE_EXPORT std::string newId();

}  // namespace kvn
