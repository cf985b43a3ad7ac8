// An adjustment on a thread of its own.
#pragma once

#include <Kelvane.h>

#include <QThread>
#include <atomic>

/// Runs `Job::adjust`. A job is used from one thread at a time: until `finished` nobody else touches it.
class AdjustRun : public QThread {
  Q_OBJECT

 public:
  AdjustRun(kvn::Job& toAdjust, QObject* parent) : QThread(parent), job(toAdjust) {}

  void cancel() { cancelled = true; }  ///< the run ends as a failed one, soon
  QString const& failure() const { return failed; }

  /// @param stage  of `kvn::AdjustProgress`, the rounds of an iteration being one.
  Q_SIGNAL void progressed(QString text, int stage);

 protected:
  void run() override;

 private:
  kvn::Job& job;
  std::atomic<bool> cancelled{false};
  QString failed;
};
