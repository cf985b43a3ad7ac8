// The call by which long work asks whether to go on.
#pragma once

#include <functional>

namespace kvn::detail {

/// Called again and again in long work; may throw to end it.
using Poll = std::function<void()>;

}  // namespace kvn::detail
