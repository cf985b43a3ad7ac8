// Project: one survey project.
#pragma once

#include "core/Configure.h"
#include "records/CoordinatePointInfo.h"
#include "records/FeatureDataType.h"
#include "records/Network.h"
#include "records/StationMap.h"
#include "records/TraverseDataInfo.h"

#include <mvz/VRD_DAM_PARA_T.h>
#include <utils/Export.h>
#include <utils/IProcessCancel.h>

#include <QString>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace tinyxml2 {
class XMLElement;
}

namespace kvn {

class AlgorithmAdjust;
class AlgorithmData;
class CommandManager;
class ErrorInfo;
class ITraverseDataCollcetion;
class MapScene;
class OutputReport;
class TriangleHeightAdjust;
class XmlMannager;

/// Owns the observation rows, the network, the coordinate list, the settings, the command manager and, once they exist,
/// the objects of the calculation. Every file that is read ends up in these members, every command edits them.
///
/// Made with `System::createProject`. Used from one thread at a time.
class KELVANE_EXPORT Project : public utils::IProcessCancel {
 public:
  /// What the project was made from. A project file of a later version may hold a number beyond these.
  enum FileType : int {
    LqfFile,    ///< instrument job file
    VrdFile,    ///< traverse text file
    CosaFile,   ///< COSA network file
    CoordFile,  ///< coordinate file
  };

  /// What the map shows; any value but 0 draws the network.
  enum OperationType {
    ObservationView,  ///< the observation rows when there are any
    NetworkView,
  };

  Project();
  Project(Project const&) = delete;
  Project& operator=(Project const&) = delete;
  ~Project() override;

  // Import and export. Each import but that of a project file reads the whole file before it replaces anything: a file
  // that cannot be read leaves the project as it was. Each throws a DataException with the reason for a file that could
  // not be read to its end; then a project file leaves the project as it was, too.

  /// Reads a project file: after `resetData`, settings, rows or network, and coordinate list come from the file, and
  /// the network of rows is generated. The legend codes stay as they are.
  /// @throws QLogicError "Can not open file" for a file that is missing or not well-formed: the project has been reset
  ///         by then. QLogicError "Line N: an element with more than 100 attributes", before the reset. What
  ///         `generateNetworkData` throws: the rows are there then, and the network is empty.
  virtual void importKVNFile(QString const& path);
  /// Reads a traverse file: the rows are replaced, the network emptied, an earlier calculation dropped. The rows get
  /// approximate coordinates where the observations give them, the row checks set their flags, and the legend codes
  /// are read.
  /// @throws QLogicError "The import file data is empty" when it has no rows, and what the reader throws: nothing has
  ///         changed then. What `VRDTraverseDataCollcetion::correctData` throws of rows that make no network, such as a
  ///         station with an odd number of sights: the rows are replaced and the network is empty by then, while the
  ///         source files, which `save` does not replace then, and an earlier calculation are still those of the data
  ///         before.
  virtual void importVRDFile(QString const& path);
  /// Reads a COSA network file: lines and known points are replaced, the rows emptied, an earlier calculation dropped,
  /// and the legend codes read.
  /// @throws QLogicError "The import file data is empty" when it has neither lines nor known points.
  /// @throws DataException, std::logic_error of the reader.
  virtual void importCosaFile(QString const& path);
  /// The same for a network file that the caller has read already.
  /// @throws QLogicError "The import file data is empty" when it has neither lines nor known points.
  void importCosaNetwork(QString const& path, Network read);
  /// The same as `importVRDFile` for a traverse file that the caller has read already, but the rows keep their
  /// coordinates, and their flags are not set: those that make no network are rows all the same. The file becomes the
  /// project's own, with its name.
  /// @throws QLogicError "The import file data is empty" without rows.
  void importTraverseRows(QString const& path, std::vector<TraverseDataInfo> read);
  /// Reads an instrument job file: the rows are replaced and the network emptied. Job and instrument names are kept
  /// for a later export.
  /// @throws QLogicError "There is no observation data" when it has no rows; what the reader throws.
  virtual void importVRDLQFFile(QString const& path);
  /// Reads a coordinate file: the coordinate list is replaced and the legend codes are read; rows and network stay.
  /// @throws QLogicError "Can not open file"; DataException "The Format of Data is wrong".
  virtual void importCoordFile(QString const& path);

  /// Imports a file by its suffix, compared without regard to case, and takes its path and name. A suffix that is not
  /// one of the known kinds imports nothing and is not reported, but the path and the name are taken all the same.
  /// @throws what the import throws.
  virtual void read(QString const& path);
  /// The same for a file whose bytes the caller has read already, so that what was looked at is what is imported; the
  /// imports that a derived class has in place of ours are not called.
  void readContents(QString const& path, std::string const& bytes);
  /// Takes over what `other` was read from: rows, network, coordinates, settings, names of file and sources, legend
  /// codes where it has any. Results are dropped; map, commands and datum parameters stay. References handed out
  /// earlier stay valid. With it a host reads into a project of its own first, and keeps the old data where that fails.
  void takeData(Project&& other);
  /// Writes to the source file that the project was made from, by the export of its kind; nothing happens when there
  /// is none. The modified state stays.
  /// @throws what the export throws; QLogicError "View Data is empty" rather than empty a traverse file that the
  ///         project came from, when a network command has emptied the rows; a QLogicError that says so while the rows
  ///         are those of a traverse file whose import failed and the source files are those of the data before: until
  ///         another traverse file, a network file or a project file is read.
  virtual void save() const;
  /// Writes the project file, which replaces an old one only when it is complete, and makes it the project's own.
  /// `name` and the modified state stay.
  ///
  /// Of a project that came from a traverse file the rows are written and not the network, also when a network command
  /// has emptied them: a `Warning` tells that the lines are not in the file.
  /// @throws QLogicError "Can not write file" with the reason.
  virtual void saveAs(QString path);

  virtual void clearMapData();  ///< takes everything off the map and repaints it; the layers stay
  /// Takes the features of one type off the map.
  void clearMapData(FeatureDataType type, bool redraw);

  /// Empties rows, network and coordinate list, restores `configure`, and clears `projectFile` and `version`.
  virtual void resetData();

  /// Writes known points and lines as a COSA network file, creating the directory.
  /// @throws QLogicError "Network Data is empty" without lines on a project that does not come from observations.
  bool exportCosaTraverseFile(QString const& path) const;
  /// To the network file that the project came from; false when there is none. @throws QLogicError as `save` after an
  /// import that failed.
  bool exportCosaTraverseFile() const;
  /// Writes the rows as a traverse file.
  /// @throws QLogicError "View Data is empty" without rows on a project that came from a traverse file.
  bool exportVRDTraverseFile(QString const& path) const;
  /// To the traverse file that the project came from; false when there is none. @throws QLogicError as `save` after an
  /// import that failed.
  bool exportVRDTraverseFile() const;
  /// Writes the rows as an instrument job file, with the names of the job that was read.
  /// @throws QLogicError "View Data is empty" without rows, and on a project that no job file was read into.
  bool exportLQFFile(QString const& path) const;
  bool exportLQFFile() const;  ///< to the job file that the project came from; false when there is none
  /// Writes the coordinate list, an empty one too.
  bool exportCoordFile(QString const& path) const;
  bool exportCoordFile() const;  ///< to the coordinate file that the project came from; false when there is none

  /// Reads the legend codes of the default file into a library of their own, which replaces the one that is there.
  /// @return  false when the file cannot be read; the old library stays then.
  bool readLegendCode();

  // The steps from observations to results.

  /// Reduces the rows of an instrument job into the station map and writes the reduced angles into the rows. To be done
  /// before `generateNetworkData` of an instrument job.
  void buildStationMap();
  /// The network of the rows: of an instrument job from the station map and the known points of `addKnownPoint`; of a
  /// traverse file from the rows, known points included. For the other kinds nothing changes.
  ///
  /// A station map that was built is built again, so that it is never older than the rows; one that was not stays
  /// empty. Without rows the network of a job becomes empty, as its station map is, lines added by hand included; that
  /// of a traverse file stays.
  /// @return true. @throws what `INetworkDataCollection::TraverseDataListToNetwork` throws.
  bool generateNetworkData();
  /// Adjusts the heights of the rows; read them from `getTriangleHeightAdjust`.
  /// @throws std::exception as `TriangleHeightDataRead::setTraverseDataList`, `TriangleHeightAdjust::heightLSAdjust`.
  void calculateTriangleHeight();
  /// Replaces the coordinate list by the adjusted points, with adjusted heights unless `TraversePointAdjust` says
  /// otherwise.
  /// @throws QLogicError "There is no adjustment result" without a calculation; nothing changes then.
  void algorithmPointConvertCoord();

  // The map. Nothing is cleared before something is drawn.

  /// On the viewer manager of the system, which may be null: such a scene has no views of its own, and what frames or
  /// repaints it goes to the system's viewer manager once there is one.
  MapScene* getOrCreateMapScene();
  /// Draws everything. @throws QLogicError "User Cancel".
  void build();
  /// Draws the observation rows or, where they are not to be shown or there are none, the network, and frames it. A
  /// failure to place the points of the network is sent as an `Error` message, and nothing is drawn. A line with an
  /// end that has no coordinates is left out, with a `Warning` that names it.
  void buildMapInputData();
  void buildCoordData();  ///< draws the coordinate list, under the viewers' lock. @throws QLogicError "User Cancel".
  void fullShowMap();     ///< moves the views to the coordinate points, then to the lines of the network

  bool checkVRDData();       ///< `TraverseDataManage::checkData` of the rows
  void resetVRDDataState();  ///< `TraverseDataManage::resetVRDDataState` of the rows
  /// Sends the findings as `Warning` messages, after one `Error` message when they are announced and there are any.
  void printErrorInfo(std::vector<ErrorInfo> const& errors, bool announce) const;

  // State.

  void setName(QString const& path);  ///< `projectFile` is the path, `name` its complete base name
  void clearNetwork();
  bool isEmpty() const;     ///< no lines, no rows, no coordinates; known points alone do not count
  bool isModified() const;  ///< with a resolution of one second
  void setModify(bool modified);
  bool isCoordinateData() const;   ///< the coordinate list is not empty
  bool isNetworkViewData() const;  ///< the network has lines, or there are rows
  bool isUsingViewData() const;    ///< there are rows, or the project came from a traverse file alone
  bool isTraverseNameExist(std::string const& pointName) const;
  void addKnownPoint(KnownPoint const& point);          ///< overwrites every entry of that name, else appends
  bool removeKnownPoint(std::string const& pointName);  ///< the first entry of that name
  void removeCoordinatePoint(QString const& id);        ///< the first point of that id; no match is no failure
  /// @throws QLogicError "User Cancel" when the host's cancel query says so.
  void checkCancelAndThrow() const;
  void traverseDataToAlgorithData();  ///< does nothing

  // Accessors. The list setters replace the content: references handed out earlier stay valid.

  CommandManager* getCommandManager() const;
  MapScene* getMapScene() const;  ///< null until a scene exists
  QString getVersion() const;
  void setVersion(QString value);
  FileType getFileType() const;
  void setFileType(FileType value);
  std::vector<TraverseDataInfo>& getTraverseDataList();
  std::vector<TraverseDataInfo> const& getTraverseDataList() const;
  void setTraverseDataList(std::vector<TraverseDataInfo> rows);
  Configure& getConfigure();
  Configure const& getConfigure() const;
  void setConfigure(Configure const& value);
  QString getProjectFile() const;
  void setProjectFile(QString path);
  QString getName() const;
  QString getNetworkFile() const;
  QString getViewFile() const;
  QString getCoordFile() const;
  QString getLQFFile() const;
  /// Of the instrument job file that was read last, in the bytes of the file; empty without one.
  std::string getInstrumentName() const;
  std::vector<CoordinatePointInfo>& getCoordinatePointList();
  std::vector<CoordinatePointInfo> const& getCoordinatePointList() const;
  void setCoordinatePointList(std::vector<CoordinatePointInfo> points);
  Network& getNetwork();
  Network const& getNetwork() const;
  void setNetwork(Network value);
  AlgorithmAdjust* getAlgorithmAdjust() const;
  void setAlgorithmAdjust(std::unique_ptr<AlgorithmAdjust> value);
  TriangleHeightAdjust* getTriangleHeightAdjust() const;
  void setTriangleHeightAdjust(std::unique_ptr<TriangleHeightAdjust> value);
  OutputReport* getOutputReport() const;
  void setOutputReport(std::unique_ptr<OutputReport> value);
  AlgorithmData* getAlgorithData() const;
  void setAlgorithData(std::unique_ptr<AlgorithmData> value);
  QString getNetworkMapid() const;
  void setNetworkMapid(QString value);
  XmlMannager* getLegendCodeXmlMannager() const;  ///< null until the legend codes were read
  VRD_DAM_PARA_T const& getDatumParam() const;
  void setDatumParam(VRD_DAM_PARA_T const& value);
  VerticalAngleType getVerticalAngleType() const;
  void setVerticalAngleType(VerticalAngleType value);
  void setOperationType(OperationType value);

 protected:
  /// Resets the project and takes in what the file holds. @throws QLogicError as `importKVNFile`.
  void readProject(QString path);
  void writeProject(QString path) const;  ///< @throws QLogicError "Can not write file" with the reason

 private:
  void takeProject(QString const& path, std::string const& bytes);
  void finishProject(QString const& path);
  void takeTraverse(QString const& path, std::istream& stream);
  void takeJob(QString const& path, std::istream& stream);
  void takeNetwork(QString const& path, std::istream& stream);
  void takeCoordinates(QString const& path, std::string const& bytes);
  void forgetSources();
  void requireOwnSources() const;
  void setKnownPointList(std::vector<KnownPoint> points);
  void readViewData(tinyxml2::XMLElement const* element);
  void readNetworkData(tinyxml2::XMLElement const* element);
  void readCoordinateData(tinyxml2::XMLElement const* element);

  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
