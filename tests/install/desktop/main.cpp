// What a user does with the window of the desktop example: drive SAMPLES PICTURE.png FOLDER. Ends with 0 when all came
// as expected.
#include <MainWindow.h>

#include <QApplication>
#include <QOpenGLContext>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QWheelEvent>
#include <cstdio>

namespace {

int failures = 0;

void expect(bool holds, char const* what) {
  if (holds) return;
  std::fprintf(stderr, "not so: %s\n", what);
  ++failures;
}

/// Pixels that are not paper.
int inkOf(QImage const& picture) {
  int count = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) count += picture.pixelColor(x, y).lightness() < 220 ? 1 : 0;
  }
  return count;
}

struct Driver {
  MainWindow window;
  MapWidget* map = window.findChild<MapWidget*>();
  QTableView* points = window.findChild<QTableView*>("Points");
  QTableView* observations = window.findChild<QTableView*>("Observations");
  QListWidget* findings = window.findChild<QListWidget*>("findings");

  void adjust() {
    QSignalSpy ended(&window, &MainWindow::adjusted);
    window.adjust();
    expect(ended.wait(20000), "an adjustment comes to an end");
  }

  /// Ends of the lines on the map, x east, y north.
  std::vector<osg::Vec3d> endsOfLines() const {
    std::vector<osg::Vec3d> ends;
    for (auto* const layer : kvn::System::Instance()->getProjectList().front()->getMapScene()->getLayers()) {
      osg::Group* const group = layer->getNode()->asGroup();
      for (unsigned i = 0; i < group->getNumChildren(); ++i) {
        auto* const line = dynamic_cast<osgEarth::FeatureNode*>(group->getChild(i));
        if (line == nullptr) continue;
        for (osg::Vec3d const& end : *line->getFeature()->getGeometry()) ends.push_back(end);
      }
    }
    return ends;
  }

  QPoint pixelOf(double north, double east) const {
    osg::Vec2d const pixel = map->view()->toPixel({east, north, 0});
    return {int(pixel.x()), int(pixel.y())};
  }

  std::string picked() const {
    std::string names;
    for (osg::Node* node : map->viewers()->getPickNodeList()) {
      std::string name;
      mvz::ILayer::GetFeatureInfo(dynamic_cast<osgEarth::AnnotationNode*>(node), nullptr, nullptr, &name, nullptr,
                                  nullptr);
      names += name + " ";
    }
    return names;
  }

  int inked() const { return inkOf(map->grabFramebuffer()); }
};

void opensAndAdjusts(Driver& user, QString const& samples) {
  expect(!user.window.open(samples + "/missing.in2"), "a file that is missing is told");
  expect(user.window.statusBar()->currentMessage().contains("missing.in2"), "by its name");
  expect(user.window.open(samples + "/net_charamza1990_p238.in2"), "a network file is opened");
  expect(user.points->model()->rowCount() == 2, "it has two known points");
  expect(kvn::System::Instance()->getProjectList().size() == 1, "of what was not opened nothing is left");
  QSignalSpy shares(user.window.findChild<QProgressBar*>(), &QProgressBar::valueChanged);
  user.adjust();
  QList<int> grown;
  for (QList<QVariant> const& share : shares) grown << share[0].toInt();
  expect(grown.size() >= 3 && std::is_sorted(grown.begin(), grown.end()), "the share of what is done grows");
  expect(user.points->model()->rowCount() == 12, "with those that are adjusted twelve");
  // The published coordinate of point 403, as the README of the project has it.
  QAbstractItemModel const* const model = user.points->model();
  QString north;
  for (int row = 0; row < model->rowCount(); ++row) {
    if (model->index(row, 0).data() == "403") north = model->index(row, 1).data().toString();
  }
  expect(north == "1054612.5952", "point 403 stands where it was published");
  expect(user.observations->model()->rowCount() == 46 + 23, "each observation has a row");
}

/// The places that the project finds for its map by itself are millimetres to metres off.
void drawsLinesBetweenAdjustedPlaces(Driver& user) {
  QAbstractItemModel const* const model = user.points->model();
  std::vector<osg::Vec3d> places;
  for (int row = 0; row < model->rowCount(); ++row) {
    places.emplace_back(model->index(row, 2).data().toDouble(), model->index(row, 1).data().toDouble(), 0);
  }
  std::vector<osg::Vec3d> const ends = user.endsOfLines();
  expect(ends.size() == 2 * 23, "each line is on the map once");
  for (osg::Vec3d const& end : ends) {
    bool const isPlace = std::any_of(places.begin(), places.end(), [&](osg::Vec3d const& place) {
      return (place - end).length() < 1e-4;  // of the last digit in the table half a unit each way
    });
    expect(isPlace, "a line ends at adjusted places");
  }
}

/// Of a click the table tells, of a table the map; the place is that of point 403.
void findsPointsBothWays(Driver& user) {
  constexpr double kNorth = 1054612.5952;
  constexpr double kEast = 644373.6085;
  QTest::mouseClick(user.map, Qt::LeftButton, {}, user.pixelOf(kNorth, kEast));
  expect(user.points->currentIndex().siblingAtColumn(0).data() == "403", "a click on a point selects its row");
  expect(user.picked() == "403 ", "and highlights it");
  user.points->setCurrentIndex(user.points->model()->index(0, 0));
  expect(user.picked() == "1 ", "a row that is selected is highlighted on the map");

  // Dragging and the wheel leave the place where the mouse is.
  QPoint const before = user.pixelOf(kNorth, kEast);
  QTest::mousePress(user.map, Qt::LeftButton, {}, before);
  QMouseEvent drag(QEvent::MouseMove, before + QPoint(60, -40), Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(user.map, &drag);
  QTest::mouseRelease(user.map, Qt::LeftButton, {}, before + QPoint(60, -40));
  expect((user.pixelOf(kNorth, kEast) - before - QPoint(60, -40)).manhattanLength() <= 1, "the map follows the mouse");
  expect(user.picked() == "1 ", "a drag is no click");
  double const scale = user.map->view()->metresPerPixel();
  QPointF const mouse = before + QPoint(60, -40);
  QWheelEvent turn(mouse, user.map->mapToGlobal(mouse.toPoint()), {}, {0, 360}, Qt::NoButton, {}, Qt::NoScrollPhase,
                   false);
  QApplication::sendEvent(user.map, &turn);
  expect(std::abs(user.map->view()->metresPerPixel() * 2 / scale - 1) < 1e-9, "three notches double the scale");
  expect((user.pixelOf(kNorth, kEast) - mouse.toPoint()).manhattanLength() <= 4, "about the mouse");
}

void showsWhatIsThere(Driver& user, QString const& picture) {
  user.map->viewers()->requestRedraw();
  QTest::qWait(50);
  expect(user.inked() > 2000, "the map is drawn");
  expect(user.window.grab().save(picture), "the window is saved as a picture");
  // A picture of its own beside the open window, whose context Qt may think current.
  user.map->makeCurrent();
  QImage const before = user.map->grabFramebuffer();
  QString const beside = QFileInfo(picture).path() + "/beside.png";
  expect(user.window.savePicture(beside), "a picture is drawn beside the window");
  expect(QOpenGLContext::currentContext() == nullptr, "and Qt thinks no context current that is not");
  QImage const twice(beside);
  expect(twice.size() == 2 * user.map->size(), "with twice as many pixels each way");
  expect(inkOf(twice) > 2 * inkOf(before), "it shows what the window shows");
  expect(user.map->grabFramebuffer() == before, "and the window is drawn as before");
  expect(!user.window.savePicture("/no/such/folder/x.png"), "a picture that cannot be written is told");
  user.window.resize(900, 700);
  QTest::qWait(50);
  expect(user.map->view()->getWidth() == user.map->width(), "the view has the size of its widget");
  expect(user.inked() > 1000, "the map is drawn in another size");
  // Another parent window: Qt makes another context.
  QWidget* const taken = user.window.takeCentralWidget();
  taken->setParent(nullptr);
  taken->show();
  QTest::qWait(50);
  expect(user.inked() > 1000, "the map is drawn in a window of its own");
  user.window.setCentralWidget(taken);
  QTest::qWait(50);
  expect(user.inked() > 1000, "and back again");
}

/// A network with one distance, from 1 to 403, that is a metre too long.
void jumpsToFindings(Driver& user, QString const& samples, QString const& folder) {
  QFile good(samples + "/net_charamza1990_p238.in2");
  good.open(QFile::ReadOnly);
  QByteArray text = good.readAll();
  expect(text.contains("403,S,388.536"), "the sample has the distance");
  QFile file(folder + "/wrong.in2");
  file.open(QFile::WriteOnly);
  file.write(text.replace("403,S,388.536", "403,S,389.536"));
  file.close();
  expect(user.window.open(file.fileName()), "another file is opened");
  user.adjust();
  expect(user.findings->count() > 0, "something is told of a wrong distance");
  user.points->setCurrentIndex({});
  bool found = false;
  for (int row = 0; row < user.findings->count() && !found; ++row) {
    if (!user.findings->item(row)->text().contains("1 to 403")) continue;
    user.findings->setCurrentRow(-1);
    user.findings->setCurrentRow(row);
    QModelIndex const at = user.observations->currentIndex();
    found = at.siblingAtColumn(0).data() == "1" && at.siblingAtColumn(1).data() == "403" && user.picked() == "1 403 ";
  }
  expect(found, "a finding leads to its observation and its points on the map");
  QString const page = user.window.report();
  expect(!page.isEmpty() && QFileInfo(page).size() > 10000, "the report is written");
}

/// A square of points 100 m apart, each of which sees its neighbours in the four quarters of its circle.
QString writeGrid(QString const& folder, int side) {
  QFile file(folder + "/grid.in2");
  file.open(QFile::WriteOnly);
  auto const name = [](int north, int east) { return QByteArray::number(1000 * (north + 1) + east); };
  file.write("2,3,2\n" + name(0, 0) + ",1000,1000\n" + name(0, 1) + ",1000,1100\n");
  for (int north = 0; north < side; ++north) {
    for (int east = 0; east < side; ++east) {
      file.write(name(north, east) + "\n");
      int const steps[][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
      for (int quarter = 0; quarter < 4; ++quarter) {
        int const toNorth = north + steps[quarter][0];
        int const toEast = east + steps[quarter][1];
        if (toNorth < 0 || toEast < 0 || toNorth >= side || toEast >= side) continue;
        QByteArray const target = name(toNorth, toEast);
        file.write(target + ",L," + QByteArray::number(90 * quarter) + ".0000\n" + target + ",S,100.000\n");
      }
    }
  }
  return file.fileName();
}

/// Cancelled at the first sign of life, a run ends without a result, and the job can be adjusted again.
void cancels(Driver& user, QString const& folder) {
  expect(user.window.open(writeGrid(folder, 30)), "a larger network is opened");
  QSignalSpy ended(&user.window, &MainWindow::adjusted);
  user.window.adjust();
  AdjustRun* const run = user.window.findChildren<AdjustRun*>().last();  // former ones wait to be deleted
  QObject::connect(run, &AdjustRun::progressed, run, &AdjustRun::cancel, Qt::DirectConnection);
  expect(ended.wait(20000), "a cancelled run ends");
  expect(user.points->model()->rowCount() == 2, "without a result");
  user.adjust();
  expect(user.points->model()->rowCount() == 900, "and can be repeated");
}

void showsAFieldBook(Driver& user, QString const& samples) {
  expect(user.window.open(samples + "/trav_connecting_fr_5legs.txt"), "a field book is opened");
  QAbstractItemModel const* const rows = user.window.findChild<QTableView*>("Rows")->model();
  expect(rows->rowCount() > 10 && rows->index(0, 0).data() == "station", "its rows are in their table");
  user.adjust();
  expect(user.points->model()->rowCount() == 8, "it is adjusted");
  QTest::qWait(50);
  expect(user.inked() > 1000, "and drawn");
}

}  // namespace

int main(int argc, char** argv) {
  QApplication const application(argc, argv);
  if (argc != 4) return 2;
  QStringList const arguments = QApplication::arguments();
  kvn::System system;
  system.setConfigFile({});
  system.init();
  {
    Driver user;
    user.window.show();
    expect(QTest::qWaitForWindowExposed(&user.window), "the window is shown");
    opensAndAdjusts(user, arguments[1]);
    drawsLinesBetweenAdjustedPlaces(user);
    QTest::qWait(50);
    findsPointsBothWays(user);
    showsWhatIsThere(user, arguments[2]);
    jumpsToFindings(user, arguments[1], arguments[3]);
    cancels(user, arguments[3]);
    showsAFieldBook(user, arguments[1]);
  }
  std::printf("%d failures\n", failures);
  return failures == 0 ? 0 : 1;
}
