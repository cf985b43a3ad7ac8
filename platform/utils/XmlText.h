// What XML text costs before it is parsed.
#pragma once

#include <utils/Export.h>

#include <string>

namespace utils {

/// Most attributes of one element. The parser compares each attribute with all before it: 200,000 in one tag take it
/// a quarter of a minute. Our own elements have fifteen.
constexpr int kMostXmlAttributes = 100;

/// Line, from 1, of the first element with more attributes than that; 0 when there is none.
KELVANE_EXPORT int lineOfCrowdedElement(std::string const& text);

}  // namespace utils
