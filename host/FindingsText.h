// What to look at first, for the head of a report and for JSON.
#pragma once

#include <Kelvane.h>
#include <json/value.h>
#include <QString>
#include <vector>

namespace kvn::host {

/// What the tests say of the results, a sentence a line. Empty for what is not judged: a run to the letter.
QString judgementText(Job const& job);
/// What stops a part of the job, then the warnings, in their order, each a line below a title; warnings of one kind
/// together. Empty where there is none.
QString findingsText(std::vector<FieldFinding> const& findings);
bool hasErrors(std::vector<FieldFinding> const& findings);
/// What is worth a look; notes say that nothing is wrong.
Json::Value findingsJson(std::vector<FieldFinding> const& findings);

}  // namespace kvn::host
