// The subcommands. Each takes the program's name and what follows the subcommand, and gives the exit code.
#pragma once

#include <QStringList>

namespace kvn::host {

// @throws UsageError for a command line that is not understood.

int runShow(QStringList const& arguments);
int runCheck(QStringList const& arguments);
int runConvert(QStringList const& arguments);
int runAdjust(QStringList const& arguments);
int runReport(QStringList const& arguments);
int runPlan(QStringList const& arguments);
int runMap(QStringList const& arguments);
int runHeights(QStringList const& arguments);
int runExec(QStringList const& arguments);

}  // namespace kvn::host
