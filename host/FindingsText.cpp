#include "FindingsText.h"

#include "Output.h"
#include "RecordJson.h"

#include <algorithm>

namespace kvn::host {

QString judgementText(Job const& job) {
  QString text;
  if (job.reading() == Job::Reading::AsRead) return text;
  for (Judgement const& judgement : judgementsOf(job)) text += "  " + judgement.sentence + '\n';
  return text;
}

QString findingsText(std::vector<FieldFinding> const& findings) {
  QString text;
  for (FieldFinding const& finding : findings) {
    if (finding.severity == FieldFinding::Error) text += "  " + printable(worded(finding)) + '\n';
  }
  for (QString const& line : warningLines(findings)) text += "  " + printable(line) + '\n';
  return text.isEmpty() ? text : QString("\n%1\n%2").arg(System::tr("To look at first"), text);
}

bool hasErrors(std::vector<FieldFinding> const& findings) {
  return std::any_of(findings.begin(), findings.end(),
                     [](FieldFinding const& finding) { return finding.severity == FieldFinding::Error; });
}

Json::Value findingsJson(std::vector<FieldFinding> const& findings) {
  Json::Value list(Json::arrayValue);
  for (FieldFinding const& finding : findings) {
    if (finding.severity != FieldFinding::Note) list.append(toJson(finding));
  }
  return list;
}

}  // namespace kvn::host
