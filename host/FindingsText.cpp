#include "FindingsText.h"

#include "Output.h"

namespace kvn::host {

QString findingsText(std::vector<FieldFinding> const& findings) {
  QString text;
  for (QString const& line : warningLines(findings)) text += "  " + printable(line) + '\n';
  return text.isEmpty() ? text : "\nTo look at first\n" + text;
}

}  // namespace kvn::host
