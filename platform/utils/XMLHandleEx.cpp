#include <utils/XMLHandleEx.h>

namespace utils {

tinyxml2::XMLElement* XMLHandleEx::touchInElement(char const* name) {
  tinyxml2::XMLNode* const parent = ToNode();
  if (parent == nullptr) return nullptr;
  tinyxml2::XMLElement* const child = parent->FirstChildElement(name);
  if (child != nullptr) return child;
  return parent->InsertEndChild(parent->GetDocument()->NewElement(name))->ToElement();
}

}  // namespace utils
