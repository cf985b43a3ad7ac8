#include "core/IHasProject.h"

#include <QObject>

namespace kvn {

IHasProject::IHasProject() : project(getQtParentProject()) {}
IHasProject::IHasProject(Project* value) : project(value) {}
IHasProject::~IHasProject() = default;

Project* IHasProject::getProject() const { return project != nullptr ? project : getQtParentProject(); }
void IHasProject::setProject(Project* value) { project = value; }

Project* IHasProject::getQtParentProject() const {
  auto const* const self = dynamic_cast<QObject const*>(this);
  if (self == nullptr) return nullptr;
  for (QObject const* parent = self->parent(); parent != nullptr; parent = parent->parent()) {
    if (auto const* const holder = dynamic_cast<IHasProject const*>(parent)) return holder->getProject();
  }
  return nullptr;
}

}  // namespace kvn
