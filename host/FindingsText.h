// What to look at first, for the head of a report.
#pragma once

#include <Kelvane.h>
#include <QString>
#include <vector>

namespace kvn::host {

/// The warnings, in their order, each a line below a title; those of one kind together. Empty where there is none.
QString findingsText(std::vector<FieldFinding> const& findings);

}  // namespace kvn::host
