#include <utils/ElapsedTimerLog.h>

#include <QLoggingCategory>
#include <utility>

namespace utils {
namespace {
Q_LOGGING_CATEGORY(timerLog, "kelvane.timer", QtWarningMsg)
}

ElapsedTimerLog::ElapsedTimerLog(QString label) : text(std::move(label)) { timer.start(); }

ElapsedTimerLog::~ElapsedTimerLog() {
  qCDebug(timerLog).noquote().nospace() << text << " " << double(timer.nsecsElapsed()) / 1e6 << " ms";
}

}  // namespace utils
