// Rows, points and observations of a job as Qt models.
#pragma once

#include <Kelvane.h>

#include <QAbstractTableModel>
#include <functional>
#include <vector>

/// A table whose texts are made when a view asks for them: a hundred thousand rows cost nothing until they are seen.
class Table : public QAbstractTableModel {
  Q_OBJECT

 public:
  struct Content {
    struct Column {
      QString title;
      std::function<QString(int row)> text;
    };
    int rows = 0;
    std::vector<Column> columns;
    /// Names of the points that a row is about: of an observation station and target.
    std::function<std::vector<std::string>(int row)> points;
    std::function<int(int row)> line;  ///< of the file, from 1; 0 where it is not known
  };

  using QAbstractTableModel::QAbstractTableModel;

  void setContent(Content value);
  Content const& content() const { return data_; }

  /// The first row from which the predicate is true; -1 without one.
  int find(std::function<bool(int row)> const& matches) const;

  int rowCount(QModelIndex const& parent = {}) const override;
  int columnCount(QModelIndex const& parent = {}) const override;
  QVariant data(QModelIndex const& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  Content data_;
};

// Copies of the records, so that the views may read them while another thread works on the job.

Table::Content rowsOf(kvn::Job const& job);          ///< of a field book; none of a network file
Table::Content pointsOf(kvn::Job const& job);        ///< known points, or after an adjustment all
Table::Content observationsOf(kvn::Job const& job);  ///< of the network, with residuals and tests after an adjustment
