// The headers of osgEarth that a program compiles with are those that the library was built with.
#pragma once

#include <osgEarth/Version>

// A class of osgEarth and that of its stand-in differ in size and in the order of their virtual operations, and a
// program with the wrong one of them would often link.
#if defined(KELVANE_HAS_OSGEARTH_STANDIN) && !defined(OSGEARTH_IS_KELVANE_STANDIN)
#error "Kelvane was built with its stand-in of osgEarth: no include path of another osgEarth may stand before Kelvane's"
#endif
