// What the targets of other libraries must give: their headers, the quick ones.
#include <json/version.h>
#include <osg/Version>
#include <tinyxml2.h>
#include <utils/Export.h>

int main() { return osgGetVersion() == nullptr ? 1 : 0; }
