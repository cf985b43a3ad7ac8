// A host with a window: desktop [FILE]
#include "MainWindow.h"

#include <QApplication>

int main(int argc, char** argv) {
  QApplication const application(argc, argv);
  QApplication::setApplicationName("Kelvane example");
  kvn::System system;  // one a process, and it outlives the window with its projects
  system.init();
  MainWindow window;
  window.show();
  if (argc > 1) window.open(QApplication::arguments()[1]);
  return QApplication::exec();
}
