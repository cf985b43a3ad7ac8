// utils::ElapsedTimerLog: how long a block of code took, in the debug log.
#pragma once

#include <utils/Export.h>

#include <QElapsedTimer>
#include <QString>

namespace utils {

/// Logs its life time in milliseconds under its text, at debug level, category "kelvane.timer", which is off until the
/// host switches it on.
class KELVANE_EXPORT ElapsedTimerLog {
 public:
  explicit ElapsedTimerLog(QString text);
  ElapsedTimerLog(ElapsedTimerLog const&) = delete;
  ElapsedTimerLog& operator=(ElapsedTimerLog const&) = delete;
  ~ElapsedTimerLog();

 private:
  QString text;
  QElapsedTimer timer;
};

}  // namespace utils
