#include "AdjustRun.h"

#include <exception>

void AdjustRun::run() {
  job.setCancelCall([this] { return cancelled.load(); });
  job.setProgressCall([this](kvn::AdjustProgress const& at) {
    static char const* const stages[] = {"Start", "Round %1", "Errors", "Results", "Check"};
    QString const stage(stages[at.stage]);
    Q_EMIT progressed(at.stage == kvn::AdjustProgress::Equations ? stage.arg(at.round) : stage, at.stage);
  });
  try {
    job.project()->getConfigure().AdjustMethod = 0;  // least squares
    job.adjust();
    job.takeResults();
  } catch (std::exception const& exception) {  // a kvn::JobException; an earlier result stays as it was
    failed = exception.what();
  }
  job.setProgressCall({});
  job.setCancelCall({});
}
