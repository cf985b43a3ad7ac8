// JobException: a step of a job that cannot be done.
#pragma once

#include "records/FieldFinding.h"

#include <utils/Export.h>

#include <QString>
#include <stdexcept>
#include <vector>

namespace kvn {

/// Thrown by the steps of `Job`. `what()` is "FILE: text", in UTF-8, for a host that shows one line; the parts are
/// there for one that shows a list. Usual causes: a file that is not there or of another kind than its suffix says, a
/// line that cannot be read, a network that its observations do not determine.
///
/// Where another exception of the library is the cause, it is nested (`std::rethrow_if_nested`).
class KELVANE_EXPORT JobException : public std::runtime_error {
 public:
  JobException(QString const& path, QString const& reason, int lineNumber = 0, int furtherErrors = 0);
  ~JobException() override;

  QString file;  ///< path as the host gave it; empty for a job that was not opened from a file
  QString text;  ///< the reason, with the line, the station or the point where there is one
  int line;      ///< of the file, from 1; 0 when it is not known
  int further;   ///< errors of the file beside this one, which `Job::findings` lists
};

/// Names of a file are no text in the local 8-bit encoding (`QTextCodec::codecForLocale`): the host may offer another
/// one.
class KELVANE_EXPORT JobEncodingException : public JobException {
 public:
  using JobException::JobException;
  ~JobEncodingException() override;
};

/// Every traverse misses by far more than the a-priori errors allow. `findings` is what else its run has found out.
class KELVANE_EXPORT JobMisclosureException : public JobException {
 public:
  JobMisclosureException(QString const& path, QString const& reason, std::vector<FieldFinding> found);
  ~JobMisclosureException() override;

  std::vector<FieldFinding> findings;
};

}  // namespace kvn
