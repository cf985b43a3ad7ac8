// XMLHandleEx: steps from an XML element to its children that create what is missing.
#pragma once

#include <utils/Export.h>

#include <tinyxml2.h>

namespace utils {

class KELVANE_EXPORT XMLHandleEx : public tinyxml2::XMLHandle {
 public:
  using XMLHandle::XMLHandle;

  /// The first child element of that name, appended when there is none. Null only for a handle that holds no node.
  tinyxml2::XMLElement* touchInElement(char const* name);
};

}  // namespace utils
