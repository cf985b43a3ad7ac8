// Repaints can be asked for on any thread; run with the thread sanitizer by `make tsan`.
#include <gtest/gtest.h>
#include <mvz/ProjectMapScene.h>
#include <mvz/ViewerManager.h>
#include <osg/ref_ptr>
#include <thread>
#include <vector>

namespace {

constexpr int kTimes = 200;

TEST(RedrawThreads, AskWhileViewsAndManagersComeAndGo) {
  osg::ref_ptr<mvz::ViewerManager> const lasting(new mvz::ViewerManager);
  osg::ref_ptr<mvz::View> const view(new mvz::View(10, 10));
  lasting->addView(view);
  std::vector<std::thread> threads;
  threads.reserve(3);
  for (int i = 0; i < 2; ++i) {
    threads.emplace_back([] {
      for (int n = 0; n < kTimes; ++n) mvz::ProjectMapScene::reDraw();
    });
  }
  threads.emplace_back([&view] {
    for (int n = 0; n < kTimes; ++n) view->requestRedraw();
  });
  for (int n = 0; n < kTimes; ++n) {
    osg::ref_ptr<mvz::ViewerManager> const passing(new mvz::ViewerManager);
    osg::ref_ptr<mvz::View> const another(new mvz::View(10, 10));
    lasting->addView(another);
    lasting->removeView(another);
    view->drawn();
  }
  for (std::thread& thread : threads) thread.join();
  view->drawn();
  EXPECT_FALSE(view->needsRedraw());
  mvz::ProjectMapScene::reDraw();
  EXPECT_TRUE(view->needsRedraw());
}

}  // namespace
