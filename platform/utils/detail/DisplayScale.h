// The name under which a camera carries the display scale of its view.
#pragma once

namespace utils::detail {

/// User value of a camera, double: pixels of the viewport across one pixel in which icons and labels are measured. They
/// belong to a scene, which may be shown on several screens. (Short: a string that needs no memory of its own.)
constexpr char const* kDisplayScale = "pixelScale";

}  // namespace utils::detail
