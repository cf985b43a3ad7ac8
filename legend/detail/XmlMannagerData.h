// What a legend library holds; for the sources of XmlMannager alone.
#pragma once

#include "legend/XmlMannager.h"

#include <utils/detail/PrivateData.h>

#include <QMap>
#include <QSet>
#include <array>

namespace kvn {

struct KELVANE_PRIVATE XmlMannager::Data {
  using Codes = QList<LegendCodeAttribute>;
  using CodeMap = QMap<QString, Codes>;

  static bool isChinese();
  void clear();
  LegendCodeAttribute const* find(QString const& name, AttributeType type) const;
  bool contains(QString const& name, AttributeType type);
  void forgetNames(AttributeType type) { names[type].isMade = false; }
  bool add(LegendCodeAttribute const& code);

  KELVANE_LATER_MEMBER
  QString file;                       ///< as given to, or chosen by, `readPrjCode`
  std::array<QStringList, 3> groups;  ///< by AttributeType, in display order
  std::array<CodeMap, 3> codes;       ///< by AttributeType, by group name
  Codes none;                         ///< what is handed out for a type that is none

  /// Names of the codes of a type. Groups that were handed out can change at any time: they are looked through.
  struct Names {
    bool isMade = false;
    QSet<QString> known;
    QSet<QString> handedOut;  ///< groups
  };
  std::array<Names, 3> names;  ///< by AttributeType
};

}  // namespace kvn
