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
    return System::tr("the job cannot be computed as it stands");
  }
  auto const marked = rows.size() - static_cast<std::size_t>(std::count_if(rows.begin(), rows.end(), isValid));
  return marked == 0
             ? QString()
             : counted(marked, System::tr("the row checks mark %1 row"), System::tr("the row checks mark %1 rows"));
}

QString textOf(std::vector<FieldFinding> const& findings, QString const& file) {
  QString text;
  for (FieldFinding const& finding : findings) {
    text += printable(file + severityText(finding.severity).arg(worded(finding))) + '\n';
  }
  return text.isEmpty() ? file + System::tr("Nothing found.") + '\n' : text;
}

Json::Value jsonOf(Session& session, bool ok, std::vector<FieldFinding> const& findings) {
  Json::Value json;
  json["version"] = kJsonVersion;
  json["ok"] = ok;
  json["rows"] = json["findings"] = Json::Value(Json::arrayValue);
  for (TraverseDataInfo const& row : session.project().getTraverseDataList()) json["rows"].append(marksOf(row));
  for (FieldFinding const& finding : findings) json["findings"].append(toJson(finding));
  json["messages"] = session.messages().take();
  return json;
}

/// What opening tells is among the findings, by its line.
void openSilently(Session& session, QString const& file) {
  session.messages().setErrorsOnly(true);
  session.open(file);
}

/// Checks an open file. @param json  gets the object of it where JSON is wanted.
int checkOpen(Session& session, CheckOptions const& options, Json::Value* json) {
  std::vector<FieldFinding> const findings = session.job().findings();
  QString const reason = verdict(session.project(), findings);
  QString const file = options.files.size() > 1 ? session.file() + ": " : QString();
  if (json != nullptr) {
    *json = jsonOf(session, reason.isEmpty(), findings);
  } else if (!options.quiet) {
    printText(textOf(findings, file));
  } else {
    for (FieldFinding const& finding : findings) {
      if (finding.severity != FieldFinding::Error) continue;
      printLine(printable(QString("kelvane: %1: %2").arg(session.file(), worded(finding))));
    }
  }
  if (!reason.isEmpty()) printLine(printable(QString("kelvane: %1: %2").arg(session.file(), reason)));
  return reason.isEmpty() ? Done : Refused;
}

/// One of several files: what cannot be opened does not keep the others from being looked at.
int checkOneOf(CheckOptions const& options, QString const& file, Json::Value& list) {
  CommonOptions each = options;
  each.json = false;  // a failure is one entry among the others
  Json::Value json;
  int const code = runInSession(each, [&](Session& session) {
    try {
      openSilently(session, file);
      return checkOpen(session, options, options.json ? &json : nullptr);
    } catch (JobException const& failure) {
      json["version"] = kJsonVersion;
      json["ok"] = false;
      json["code"] = 0;
      json["message"] = refusalText(failure).toStdString();
      json["messages"] = session.messages().take();
      throw;
    }
  });
  json["file"] = utils::readablePath(file).toStdString();
  list.append(json);
  return code;
}

int checkAll(CheckOptions const& options) {
  int worst = Done;
  Json::Value json;
  json["version"] = kJsonVersion;
  json["files"] = Json::Value(Json::arrayValue);
  for (QString const& file : options.files) worst = std::max(worst, checkOneOf(options, file, json["files"]));
  json["ok"] = worst == Done;
  if (options.json) printJson(json);
  return worst;
}

}  // namespace

int runCheck(QStringList const& arguments) {
  auto const options = parseCheck(arguments);
  if (!options) return Done;
  if (options->files.size() > 1) return checkAll(*options);
  return runInSession(*options, [&options](Session& session) {
    openSilently(session, options->files.first());
    Json::Value json;
    int const code = checkOpen(session, *options, options->json ? &json : nullptr);
    if (options->json) printJson(json);
    return code;
  });
}

}  // namespace kvn::host
