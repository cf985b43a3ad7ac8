#include <mvz/ViewerManager.h>

#include <algorithm>
#include <vector>

namespace mvz {
namespace {

// Neither is ever destroyed: a host may hold a manager in a global that outlives the statics of this library.
std::recursive_mutex& managersMutex() {
  static auto* const instance = new std::recursive_mutex;
  return *instance;
}

std::vector<ViewerManager*>& managers() {
  static auto* const instance = new std::vector<ViewerManager*>;
  return *instance;
}

}  // namespace

ViewerManager::ViewerManager() {
  std::lock_guard<std::recursive_mutex> const hold(managersMutex());
  managers().push_back(this);
}

ViewerManager::~ViewerManager() {
  std::lock_guard<std::recursive_mutex> const hold(managersMutex());
  auto& all = managers();
  all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

std::unique_lock<std::recursive_mutex> ViewerManager::lock() const {
  return std::unique_lock<std::recursive_mutex>(mutex);
}

void ViewerManager::requestRedraw() {}

void ViewerManager::requestRedrawOfAll() {
  std::lock_guard<std::recursive_mutex> const hold(managersMutex());
  // A copy: a manager may go away while another one repaints.
  std::vector<ViewerManager*> const all = managers();
  for (ViewerManager* manager : all) {
    if (std::find(managers().begin(), managers().end(), manager) != managers().end()) manager->requestRedraw();
  }
}

}  // namespace mvz
