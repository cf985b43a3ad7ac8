// One request repaints the views of every manager that is alive.
#include <gtest/gtest.h>
#include <mvz/ProjectMapScene.h>
#include <mvz/ViewerManager.h>
#include <functional>
#include <osg/ref_ptr>

namespace {

class Views : public mvz::ViewerManager {
 public:
  void requestRedraw() override {
    ++redraws;
    if (atRedraw) atRedraw();
  }
  int redraws = 0;
  std::function<void()> atRedraw;

 protected:
  ~Views() override = default;
};

TEST(Redraw, ReachesEveryLivingManager) {
  osg::ref_ptr<Views> const first(new Views);
  osg::ref_ptr<Views> second(new Views);
  osg::ref_ptr<Views> const third(new Views);
  mvz::ProjectMapScene::reDraw();
  EXPECT_EQ(second->redraws, 1);
  first->atRedraw = [&second] { second = nullptr; };  // one that goes away meanwhile is passed over
  mvz::ProjectMapScene::reDraw();
  mvz::ProjectMapScene::reDraw();
  EXPECT_EQ(first->redraws, 3);
  EXPECT_EQ(third->redraws, 3);
}

}  // namespace
