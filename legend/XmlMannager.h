// XmlMannager: the legend codes of a project, in named groups, with their file.
#pragma once

#include "records/AttributeType.h"

#include <utils/Export.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

namespace kvn {

/// The legend library: for each of points, lines and polygons a list of group names in display order, and the codes of
/// each group.
///
/// Names of codes are unique in a type, unless a file brings two. The codes of a group that the group list does not
/// name are kept in memory and not written: `addElement` with a new group makes such codes, and so does `deleteGroup`
/// while the default group is not listed. `addGroup` before them lists the group.
///
/// Edits stay in memory until `saveAsPrjCode`. Nothing throws, failures are results of false. A type that is none of
/// the three has no groups and no codes, and takes none. Used on the caller's thread.
class KELVANE_EXPORT XmlMannager : public QObject {
  Q_OBJECT

 public:
  /// One legend code. All texts are free, the library checks no characters.
  struct LegendCodeAttribute {
    QString Name;                              ///< what it is, the identity within a type
    QString Group = QStringLiteral("无分组");  ///< name of the group; this default is Chinese in every locale
    QString Code = QStringLiteral("default");  ///< code word, as the surveyor types it in the field
    QString ID = QStringLiteral("1");
    QString Scale = QStringLiteral("1");        ///< factor of the symbol's size, as a text
    QString Color = QStringLiteral("#000a96");  ///< customarily #rrggbb
    AttributeType Type = Point;                 ///< set by whoever builds a record

    /// Equal when all seven fields are.
    friend bool operator==(LegendCodeAttribute const& a, LegendCodeAttribute const& b) {
      return a.Name == b.Name && a.Group == b.Group && a.Code == b.Code && a.ID == b.ID && a.Scale == b.Scale &&
             a.Color == b.Color && a.Type == b.Type;
    }
    friend bool operator!=(LegendCodeAttribute const& a, LegendCodeAttribute const& b) { return !(a == b); }
  };

  XmlMannager(QObject* parent = nullptr);
  ~XmlMannager() override;

  /// "无分组" when the default QLocale is Chinese, else "None Group".
  static QString getDefaultGroupName();

  QStringList getGroupList(AttributeType type) const;  ///< in display order

  /// The list of the group, in place; valid until the groups change or a file is read.
  ///
  /// An unknown group is created, empty and not listed; a later `addGroup` does not list it any more.
  QList<LegendCodeAttribute>& getLegendCodeList(QString group, AttributeType type);

  /// A new copy of the code of that name, never null; the caller deletes it. An unknown name gives a code of that name
  /// with the defaults, in the default group.
  LegendCodeAttribute* getLegendCodeData(QString name, AttributeType type) const;

  bool isContainLegendCode(LegendCodeAttribute code) const;  ///< whether a code of its type has its name, in any group

  /// Replaces the library by the content of a file.
  ///
  /// When there is no such file (an empty path, a folder), the default file of the user's language is read instead:
  /// ".\config\Codes\CASS.xml" for Chinese, ".\config\Codes\PRESET_EN.xml" for any other, found as an installed file
  /// is. Texts are in the local 8-bit encoding, whatever the file declares. A code whose group the file does not list
  /// is dropped; codes of one name all stay.
  ///
  /// @return  false, and the library is empty, when the file cannot be read, for which a `Warning` says why, or is no
  ///          XML, or has an element with more than a hundred attributes.
  bool readPrjCode(QString const& path);

  /// Writes the listed groups and their codes; the file is replaced only when the new one is complete.
  ///
  /// @return  false, and the old file is as it was, when it cannot be written or when a text has a character that
  ///          the local 8-bit encoding cannot express, or U+0000, which XML cannot hold. An `Error` says why.
  bool saveAsPrjCode(QString path) const;

  /// Removes a group; its codes go to the end of the default group.
  /// @return  false for an empty name, for the default group, and for a group of points that does not exist.
  Q_SLOT bool deleteGroup(QString group, kvn::AttributeType Type);

  /// Appends a group to the list unless it exists; false for an empty name.
  Q_SLOT bool addGroup(QString group, kvn::AttributeType Type);

  /// Renames a group, which keeps its place in the list. Onto a name in use it moves the codes behind those already
  /// there, and the old name leaves the list.
  /// @return  false for an empty name.
  Q_SLOT bool updateGroup(QString newName, QString oldName, kvn::AttributeType Type);

  /// Changes the code that equals `*beforeP` to `*p`: in place, or at the end of another group. Without such a code it
  /// changes nothing in the same group, and adds `*p` to another one.
  /// @return  false when the name or the type differs, and when `*p` cannot be added to the other group because a
  ///          further code has its name, which only a file can bring about; nothing has changed then.
  Q_SLOT bool updateElement(kvn::XmlMannager::LegendCodeAttribute* beforeP, kvn::XmlMannager::LegendCodeAttribute* p);

  /// Appends a copy to its group, which is created, not listed, when it does not exist; false when the name is in use.
  Q_SLOT bool addElement(kvn::XmlMannager::LegendCodeAttribute* p);

  /// Removes what equals `*p` from its group; true also when there was nothing.
  Q_SLOT bool deleteElement(kvn::XmlMannager::LegendCodeAttribute* p);

  Q_SIGNAL void reloadData();  ///< for the host's use

 private:
  struct Data;
  std::unique_ptr<Data> own;
};

}  // namespace kvn
