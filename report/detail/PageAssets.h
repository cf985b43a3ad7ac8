// Style and script of a page, as they stand in page.css and page.js.
#pragma once

#include <string_view>

namespace kvn::detail {

extern std::string_view const kPageStyle;
extern std::string_view const kPageScript;

}  // namespace kvn::detail
