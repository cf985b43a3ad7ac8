// The way of a text to the user, for code that has no System.
#pragma once

#include "records/MessType.h"

#include <QCoreApplication>
#include <QString>

namespace kvn {

/// Readers, calculators and records tell the user something without knowing the process-wide `System`: what they
/// include stays below them, and the whole `System` with its projects and viewers stays out of them.
class Messages {
  /// `tr` looks texts up in the context of `System::tr`, so that a text has one translation wherever it stands.
  Q_DECLARE_TR_FUNCTIONS(kvn::System)

 public:
  /// As `System::sendMessage` of the one `System` there is; silent where there is none.
  static void send(QString const& text, MessType type);
};

}  // namespace kvn
