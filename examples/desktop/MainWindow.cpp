#include "MainWindow.h"

#include "OpenJobCMD.h"

#include <QDesktopServices>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>
#include <algorithm>
#include <exception>
#include <set>

namespace {

/// What can be asked at once. `Job::AdjustmentStart` costs as much as an adjustment, and that tells it too.
constexpr unsigned kOfTheFile = kvn::Job::FileText | kvn::Job::FileTold | kvn::Job::FieldReduced | kvn::Job::RowChecks |
                                kvn::Job::NetworkChecks | kvn::Job::HeightChecks;
constexpr unsigned kOfTheRun = kvn::Job::AdjustmentRun | kvn::Job::HeightRun;

std::vector<std::string> namesOf(kvn::FieldFinding const& finding) {
  std::vector<std::string> names = finding.targets;
  if (!finding.station.empty()) names.insert(names.begin(), finding.station);
  return names;
}

/// The features of a layer; none where the scene has no such layer.
std::vector<osgEarth::AnnotationNode*> featuresOf(kvn::MapScene& scene, kvn::FeatureDataType type) {
  std::vector<osgEarth::AnnotationNode*> features;
  auto const* const layer = dynamic_cast<osgEarth::AnnotationLayer const*>(scene.getLayer(type));
  for (unsigned i = 0; layer != nullptr && i < layer->getGroup()->getNumChildren(); ++i) {
    features.push_back(dynamic_cast<osgEarth::AnnotationNode*>(layer->getGroup()->getChild(i)));
  }
  return features;
}

std::string nameOf(osgEarth::AnnotationNode* feature) {
  std::string name;
  mvz::ILayer::GetFeatureInfo(feature, nullptr, nullptr, &name, nullptr, nullptr);
  return name;
}

}  // namespace

MainWindow::MainWindow()
    : map(new MapWidget), tabs(new QTabWidget), findingList(new QListWidget), progress(new QProgressBar) {
  resize(1200, 800);
  setCentralWidget(map);
  rowView = addTable("Rows", rows);
  pointView = addTable("Points", points);
  observationView = addTable("Observations", observations);
  auto const dock = [this](QString const& title, QWidget* widget, Qt::DockWidgetArea area) {
    auto* const frame = new QDockWidget(title, this);
    frame->setObjectName(title);
    frame->setWidget(widget);
    addDockWidget(area, frame);
  };
  dock("Job", tabs, Qt::RightDockWidgetArea);
  dock("Findings", findingList, Qt::BottomDockWidgetArea);
  findingList->setObjectName("findings");
  // The library tells the stage of a run, and nobody knows how many rounds there will be: the bar has a share for each
  // stage, in which the text tells the round.
  progress->setRange(0, kvn::AdjustProgress::Check + 1);
  progress->hide();
  statusBar()->addPermanentWidget(progress);
  addActions();

  connect(map, &MapWidget::clicked, this, &MainWindow::jumpToFeature);
  connect(findingList, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row >= 0 && std::size_t(row) < findings.size()) jumpTo(findings[std::size_t(row)]);
  });
  kvn::System* const system = kvn::System::Instance();
  system->setMvzViewerManager(map->viewers());  // before the first project draws
  // An adjustment sends its messages on its own thread.
  system->setSendMessageFunc([this](QString const& text, kvn::MessType type) {
    QMetaObject::invokeMethod(this, [this, text, type] { tell(text, type == kvn::Error); });
  });
}

MainWindow::~MainWindow() {
  if (isBusy()) {
    run->cancel();
    run->wait();
  }
  kvn::System* const system = kvn::System::Instance();
  system->setSendMessageFunc({});
  closeJob();  // with its layers, while there is a map
  system->setMvzViewerManager(nullptr);
}

QTableView* MainWindow::addTable(QString const& title, Table& table) {
  auto* const view = new QTableView;
  view->setObjectName(title);
  view->setModel(&table);
  view->setSelectionBehavior(QAbstractItemView::SelectRows);
  view->setSelectionMode(QAbstractItemView::SingleSelection);
  tabs->addTab(view, title);
  connect(view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this, &table](QModelIndex const& now) {
            if (!selecting && now.isValid()) showOnMap(table.content().points(now.row()), false);
          });
  return view;
}

void MainWindow::addActions() {
  QToolBar* const bar = addToolBar("Job");
  bar->setObjectName("Actions");
  openAction = bar->addAction("Open...", this, &MainWindow::chooseFile);
  adjustAction = bar->addAction("Adjust", this, &MainWindow::adjust);
  cancelAction = bar->addAction("Cancel", this, [this] {
    if (isBusy()) run->cancel();
  });
  reportAction = bar->addAction("Report", this, [this] {
    QString const page = report();
    if (!page.isEmpty()) QDesktopServices::openUrl(QUrl::fromLocalFile(page));
  });
  pictureAction = bar->addAction("Picture...", this, [this] {
    QString const path = QFileDialog::getSaveFileName(this, "Picture", {}, "Pictures (*.png)");
    if (!path.isEmpty()) savePicture(path);
  });
  for (QAction* action : {adjustAction, cancelAction, reportAction, pictureAction}) action->setEnabled(false);
}

void MainWindow::tell(QString const& text, bool isError) {
  statusBar()->showMessage(isError ? "Error: " + text : text);
}

void MainWindow::chooseFile() {
  QStringList patterns;
  for (QString const& kind : kvn::Job::readableKinds()) patterns << "*." + kind;
  QString const path = QFileDialog::getOpenFileName(this, "Open", {}, "Field data (" + patterns.join(' ') + ")");
  if (!path.isEmpty()) open(path);
}

/// As a host's menu does it: by the name of a command, with JSON for what it needs and for what came of it.
bool MainWindow::open(QString const& path) {
  if (isBusy()) return false;
  kvn::System* const system = kvn::System::Instance();
  std::shared_ptr<kvn::Project> const project = system->createProject();
  system->addProject(project);
  Json::Value in;
  in["file"] = path.toStdString();
  Json::Value out;
  if (!project->getCommandManager()->execute("OpenJobCMD", in, out, {})) {
    system->removeProject(project.get());
    tell(QString::fromStdString(out["message"].asString()), true);
    return false;
  }
  closeJob();
  job = OpenJobCMD::takeJob();
  setWindowTitle(QFileInfo(path).fileName());
  showJob();
  tell(path, false);
  return true;
}

/// The project goes, and takes its layers off the map.
void MainWindow::closeJob() {
  if (job == nullptr) return;
  kvn::System::Instance()->removeProject(job->project().get());
  job.reset();
}

void MainWindow::showJob() {
  rows.setContent(rowsOf(*job));
  points.setContent(pointsOf(*job));
  observations.setContent(observationsOf(*job));
  draw();
  showFindings();
  adjustAction->setEnabled(true);
  reportAction->setEnabled(job->planeAdjustment() != nullptr);
  pictureAction->setEnabled(true);
}

void MainWindow::draw() {
  kvn::Project& project = *job->project();
  mvz::ViewerManager::Lock const hold = map->viewers()->lock();
  project.clearMapData();  // nothing is cleared by drawing
  if (job->planeAdjustment() != nullptr) {
    drawAdjusted();
  } else {
    project.setOperationType(kvn::Project::NetworkView);
    project.build();
  }
  project.fullShowMap();
}

/// A project places the points of its network by a search of its own, which is good enough before an adjustment and may
/// take a mirror image. What is adjusted is drawn between its places.
void MainWindow::drawAdjusted() {
  kvn::Project& project = *job->project();
  kvn::SiteDrawing const drawing = kvn::siteDrawingOf(*job);
  auto const placeOf = [&drawing](std::size_t point) {
    kvn::SitePoint const& at = drawing.points[point];
    return kvn::DrawPoint(at.x, at.y, 0.0, at.name);  // by the names a click finds the line of the network
  };
  kvn::LineDataTool lines(project.getOrCreateMapScene());
  for (kvn::SiteLine const& line : drawing.lines) lines.build(kvn::DrawLine(placeOf(line.from), placeOf(line.to)));
  project.buildCoordData();  // the points, which `takeResults` has put into the list
}

void MainWindow::showFindings() {
  findings = job->findingsOf(kOfTheFile | kOfTheRun);
  kvn::sortByCost(findings);
  QSignalBlocker const quiet(findingList);
  findingList->clear();
  for (kvn::FieldFinding const& finding : findings) findingList->addItem(kvn::worded(finding));
}

void MainWindow::adjust() {
  if (isBusy() || job == nullptr) return;
  run = new AdjustRun(*job, this);
  connect(run, &AdjustRun::progressed, this, [this](QString const& text, int stage) {
    progress->setFormat(text);
    progress->setValue(std::max(progress->value(), stage));  // a search for suspects may begin anew
  });
  connect(run, &QThread::finished, this, &MainWindow::finish);
  for (QAction* action : {openAction, adjustAction, reportAction}) action->setEnabled(false);
  cancelAction->setEnabled(true);
  progress->reset();
  progress->show();
  run->start();
}

void MainWindow::finish() {
  QString const failure = run->failure();
  run->deleteLater();
  run = nullptr;
  progress->hide();
  cancelAction->setEnabled(false);
  openAction->setEnabled(true);
  showJob();
  if (failure.isEmpty()) {
    tell("Adjusted, unit weight error " + QString::number(job->planeAdjustment()->result().unitError, 'f', 2), false);
  } else {
    tell(failure, true);
  }
  Q_EMIT adjusted();
}

QString MainWindow::report() {
  if (isBusy() || job == nullptr) return {};
  QString const page = pages.filePath("report.html");
  try {
    kvn::saveReport(*job, page);
  } catch (std::exception const& failure) {
    tell(failure.what(), true);
    return {};
  }
  return page;
}

bool MainWindow::savePicture(QString const& path) {
  // What the window shows, with twice as many pixels each way.
  osg::ref_ptr<mvz::OffscreenView> const picture = new mvz::OffscreenView(map->width(), map->height());
  picture->setDisplayScale(2.0);
  picture->setScene(map->view()->getScene());
  osg::Vec2d const middle(map->width() / 2.0, map->height() / 2.0);
  picture->zoom(middle, picture->metresPerPixel() / map->view()->metresPerPixel());
  picture->pan(middle - picture->toPixel(map->view()->toWorld(middle)));
  // The picture makes a context of its own current, which Qt would not know of.
  map->doneCurrent();
  mvz::ViewerManager::Lock const hold = map->viewers()->lock();
  try {
    picture->writeImage(path);
  } catch (std::exception const& failure) {
    tell(failure.what(), true);
    return false;
  }
  return true;
}

void MainWindow::jumpTo(kvn::FieldFinding const& finding) {
  std::vector<std::string> const names = namesOf(finding);
  if (finding.row != kvn::FieldFinding::kNoRow) {
    selectRow(rowView, rows, int(finding.row));
  } else {
    // The line of the file, else the observation between the names, else the first one with the point.
    auto const& content = observations.content();
    int row = finding.line == 0 ? -1 : observations.find([&](int at) { return content.line(at) == finding.line; });
    if (row < 0) {
      row = observations.find([&](int at) {
        std::vector<std::string> const ends = content.points(at);
        auto const isEnd = [&ends](std::string const& name) {
          return std::find(ends.begin(), ends.end(), name) != ends.end();
        };
        std::size_t const wanted = std::min<std::size_t>(names.size(), 2);
        return wanted > 0 && std::all_of(names.begin(), names.begin() + std::ptrdiff_t(wanted), isEnd);
      });
    }
    selectRow(observationView, observations, row);
  }
  showOnMap(names, true);
}

void MainWindow::jumpToFeature(osgEarth::AnnotationNode* feature) {
  // A run changes the job on its own thread: what the map shows can be moved meanwhile, not looked up.
  if (isBusy() || job == nullptr) return;
  if (feature == nullptr) return showOnMap({}, false);
  std::string const name = nameOf(feature);
  if (!name.empty()) {
    selectRow(pointView, points, points.find([&](int row) { return points.content().points(row)[0] == name; }));
    return showOnMap({name}, false);
  }
  kvn::NetworkRecords const records = job->project()->getMapScene()->findNetworkRecords(feature);
  if (records.lines.empty()) return;
  std::vector<std::string> const ends{records.lines[0]->start_name, records.lines[0]->end_name};
  selectRow(observationView, observations,
            observations.find([&](int row) { return observations.content().points(row) == ends; }));
  showOnMap(ends, false);
}

void MainWindow::selectRow(QTableView* view, Table& table, int row) {
  if (row < 0) return;
  selecting = true;
  tabs->setCurrentWidget(view);
  view->setCurrentIndex(table.index(row, 0));
  view->scrollTo(table.index(row, 0), QAbstractItemView::PositionAtCenter);
  selecting = false;
}

void MainWindow::showOnMap(std::vector<std::string> const& names, bool centre) {
  if (job == nullptr || job->project()->getMapScene() == nullptr) return;
  mvz::ViewerManager::Lock const hold = map->viewers()->lock();
  map->viewers()->clearPick();
  std::set<std::string> const wanted(names.begin(), names.end());
  bool isCentred = !centre;
  for (auto const type : {kvn::FeatureDataType::CoordData, kvn::FeatureDataType::ViewPointData}) {
    for (osgEarth::AnnotationNode* feature : featuresOf(*job->project()->getMapScene(), type)) {
      if (wanted.count(nameOf(feature)) == 0) continue;
      map->viewers()->pick(feature);
      auto const* const place = dynamic_cast<osgEarth::PlaceNode const*>(feature);
      if (!isCentred && place != nullptr && nameOf(feature) == names[0]) {
        map->centreOn(place->getPosition().vec3d());
        isCentred = true;
      }
    }
  }
}
