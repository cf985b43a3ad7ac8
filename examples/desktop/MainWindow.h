// The window: map, tables, findings.
#pragma once

#include "AdjustRun.h"
#include "MapWidget.h"
#include "Tables.h"

#include <QAction>
#include <QListWidget>
#include <QMainWindow>
#include <QProgressBar>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <memory>
#include <string>
#include <vector>

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow();
  ~MainWindow() override;

  bool open(QString const& path);  ///< false, and told, where the file cannot be read; the old one stays then
  void adjust();
  QString report();  ///< path of the page, there as long as the window; empty, and told, where it cannot be written

  bool savePicture(QString const& path);  ///< what the map shows, as PNG; false, and told, where it cannot be drawn

  Q_SIGNAL void adjusted();  ///< a run has ended, well or not

 private:
  QTableView* addTable(QString const& title, Table& table);
  void addActions();
  void chooseFile();
  void tell(QString const& text, bool isError);
  void showJob();
  void closeJob();
  void draw();
  void drawAdjusted();
  void finish();
  void showFindings();
  void jumpTo(kvn::FieldFinding const& finding);
  void jumpToFeature(osgEarth::AnnotationNode* feature);
  void selectRow(QTableView* view, Table& table, int row);
  /// Highlights the points on the map; with `centre` the first one comes to the middle.
  void showOnMap(std::vector<std::string> const& names, bool centre);
  bool isBusy() const { return run != nullptr; }

  std::unique_ptr<kvn::Job> job;
  AdjustRun* run = nullptr;
  std::vector<kvn::FieldFinding> findings;
  QTemporaryDir pages;
  bool selecting = false;  ///< a selection that the window makes itself is no click of the user

  Table rows, points, observations;
  MapWidget* map;
  QTabWidget* tabs;
  QTableView *rowView, *pointView, *observationView;
  QListWidget* findingList;
  QProgressBar* progress;
  QAction *openAction, *adjustAction, *cancelAction, *reportAction, *pictureAction;
};
