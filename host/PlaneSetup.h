// The options of the command line as settings of a job.
#pragma once

#include "Options.h"
#include "Session.h"

namespace kvn::host {

/// Weights, datum, limits of misclosures and approximate coordinates. @throws JobException for a coordinate file that
/// cannot be read.
void useOptions(Session& session, AdjustOptions const& options);

}  // namespace kvn::host
