#include <mvz/ProjectMapScene.h>
#include <mvz/ViewerManager.h>

namespace mvz {

void ProjectMapScene::reDraw() { ViewerManager::requestRedrawOfAll(); }

}  // namespace mvz
