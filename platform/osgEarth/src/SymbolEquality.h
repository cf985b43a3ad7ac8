// Whether two symbols say the same, so that one may stand for both.
#pragma once

#include <osgEarth/Symbol>

namespace osgEarth {
inline namespace kelvane {

/// Of one of the library's own classes, without a name and without data of the host.
bool canBeCompared(Symbol const& symbol);

/// All values, defaults and marks of two symbols that can be compared; false for those of different classes.
bool isEqual(Symbol const& a, Symbol const& b);

}  // namespace kelvane
}  // namespace osgEarth
