#include "FindingsText.h"

#include "Output.h"
#include "RecordJson.h"

namespace kvn::host {

QString judgementText(Job const& job) {
  QString text;
  if (job.reading() == Job::Reading::AsRead) return text;
  for (Judgement const& judgement : judgementsOf(job)) text += "  " + judgement.sentence + '\n';
  return text;
}

QString findingsText(std::vector<FieldFinding> const& findings) {
  QString text;
  for (QString const& line : warningLines(findings)) text += "  " + printable(line) + '\n';
  return text.isEmpty() ? text : QString("\n%1\n%2").arg(System::tr("To look at first"), text);
}

Json::Value findingsJson(std::vector<FieldFinding> const& findings) {
  Json::Value list(Json::arrayValue);
  for (FieldFinding const& finding : findings) {
    if (finding.severity != FieldFinding::Note) list.append(toJson(finding));
  }
  return list;
}

}  // namespace kvn::host
