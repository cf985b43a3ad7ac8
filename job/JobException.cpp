#include "job/JobException.h"

#include "records/detail/Messages.h"

#include <utils/FileName.h>

#include <utility>

namespace kvn {
namespace {

std::string sentence(QString const& path, QString text, int further) {
  if (further > 0) text += Messages::tr(" (and %1 more)").arg(further);
  return (path.isEmpty() ? text : QString("%1: %2").arg(utils::readablePath(path), text)).toStdString();
}

}  // namespace

JobException::JobException(QString const& path, QString const& reason, int lineNumber, int furtherErrors)
    : std::runtime_error(sentence(path, reason, furtherErrors)),
      file(path),
      text(reason),
      line(lineNumber),
      further(furtherErrors) {}

JobException::~JobException() = default;

JobEncodingException::~JobEncodingException() = default;

JobMisclosureException::JobMisclosureException(QString const& path, QString const& reason,
                                               std::vector<FieldFinding> found)
    : JobException(path, reason), findings(std::move(found)) {}

JobMisclosureException::~JobMisclosureException() = default;

}  // namespace kvn
