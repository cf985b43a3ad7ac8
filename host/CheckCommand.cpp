// check: what is wrong with a file, and what computes but should not be trusted.
#include "Commands.h"
#include "Failures.h"
#include "Format.h"
#include "Options.h"
#include "Output.h"
#include "RecordJson.h"
#include "Session.h"

#include <algorithm>
#include <utility>

namespace kvn::host {
namespace {

Json::Value marksOf(TraverseDataInfo const& row) {
  Json::Value json;
  json["id"] = jsonText(row.id);
  json["name"] = jsonText(row.name);
  json["pointType"] = row.pointType.toString();
  json["isNameValid"] = row.isNameValid;
  json["isHorizontalAngleValid"] = row.isHorizontalAngleValid;
  json["isVerticalAngleValid"] = row.isVerticalAngleValid;
  json["isSlantDistanceValid"] = row.isSlantDistanceValid;
  return json;
}

bool isValid(TraverseDataInfo const& row) {
  return row.isNameValid && row.isHorizontalAngleValid && row.isVerticalAngleValid && row.isSlantDistanceValid;
}

/// Why the job is not good, for the last line; empty when it is. Warnings are for the surveyor to judge.
QString verdict(Project const& project, std::vector<FieldFinding> const& findings) {
  auto const& rows = project.getTraverseDataList();
  if (std::any_of(findings.begin(), findings.end(),
                  [](FieldFinding const& finding) { return finding.severity == FieldFinding::Error; })) {
    return "the job cannot be computed as it stands";
  }
  auto const marked = rows.size() - static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), isValid));
  return marked == 0 ? QString() : "the row checks mark " + counted(marked, "row", "rows");
}

void print(Session& session, bool ok, std::vector<FieldFinding> const& findings, bool asJson) {
  if (!asJson) {
    QString text;
    for (FieldFinding const& finding : findings) {
      text += printable(QString("%1: %2").arg(QLatin1String(severityName(finding.severity)), worded(finding))) + '\n';
    }
    printText(text.isEmpty() ? QStringLiteral("Nothing found.\n") : text);
    return;
  }
  Json::Value json;
  json["version"] = kJsonVersion;
  json["ok"] = ok;
  json["rows"] = json["findings"] = Json::Value(Json::arrayValue);
  for (TraverseDataInfo const& row : session.project().getTraverseDataList()) json["rows"].append(marksOf(row));
  for (FieldFinding const& finding : findings) json["findings"].append(toJson(finding));
  json["messages"] = session.messages().take();
  printJson(json);
}

}  // namespace

int runCheck(QStringList const& arguments) {
  auto const options = parseCheck(arguments);
  if (!options) return Done;
  return runInSession(*options, [&options](Session& session) {
    session.open(options->file);
    std::vector<FieldFinding> const findings = session.job().findings();
    QString const reason = verdict(session.project(), findings);
    print(session, reason.isEmpty(), findings, options->json);
    if (!reason.isEmpty()) printLine(printable(QString("kelvane: %1: %2").arg(session.file(), reason)));
    return reason.isEmpty() ? Done : Refused;
  });
}

}  // namespace kvn::host
