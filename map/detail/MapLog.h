// The log of the drawing tools, one line for each record.
#pragma once

#include <QLoggingCategory>

namespace kvn::detail {

Q_DECLARE_LOGGING_CATEGORY(mapLog)

}  // namespace kvn::detail
