// What the targets of other libraries must give: their headers, the quick ones.
#include <json/version.h>
#include <tinyxml2.h>
#include <utils/Export.h>
#include <osg/Version>

int main() { return osgGetVersion() == nullptr ? 1 : 0; }
