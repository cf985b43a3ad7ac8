// IHasProject: lets an object in a Qt parent chain find its project.
#pragma once

#include <utils/Export.h>

namespace kvn {

class Project;

class KELVANE_EXPORT IHasProject {
 public:
  /// Looks for a project through the Qt parents. A constructor runs before the derived QObject can be seen, so the
  /// search usually succeeds only later, in `getProject`.
  IHasProject();
  IHasProject(Project* project);
  virtual ~IHasProject();

  /// The stored project, else the one of the nearest Qt ancestor that is an `IHasProject`; may be null.
  virtual Project* getProject() const;
  virtual void setProject(Project* value);

  /// Project of the nearest Qt ancestor that is an `IHasProject`; null when this is no QObject or there is none.
  Project* getQtParentProject() const;

 private:
  Project* project = nullptr;
};

}  // namespace kvn
