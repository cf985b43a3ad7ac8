// CheckData: the coarse gate after a file has been opened.
#pragma once

#include <utils/Export.h>

#include <QCoreApplication>
#include <QObject>

namespace kvn {

class Project;

/// Tests all rows and all lines of a project and tells the user in one `Error` message, "The data is error", that a
/// file cannot be right. Angles must lie between -1e-8 and 360, a bound that lets every radian value of a circle
/// reading pass and stops a column of degrees; distances must not be below -1e-8 m. Nothing is changed.
class KELVANE_EXPORT CheckData : public QObject {
  Q_DECLARE_TR_FUNCTIONS(kvn::CheckData)

 public:
  /// Rows, and only when they are good the lines; false for a null project.
  static bool checkInitData(Project* project);
  static bool checkTraverseData(Project* project);  ///< false without a message for a null project
  static bool checkNetworkData(Project* project);   ///< the project must not be null
};

}  // namespace kvn
