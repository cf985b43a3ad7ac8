// What the tests of the legend codes share.
#pragma once

#include <legend/XmlMannager.h>

#include <QLocale>

using Code = kvn::XmlMannager::LegendCodeAttribute;

inline Code makeCode(QString const& name, QString const& group, kvn::AttributeType type = kvn::Point) {
  Code code;
  code.Name = name;
  code.Group = group;
  code.Type = type;
  return code;
}

/// Another user's language, until the end of the block.
class Language {
 public:
  explicit Language(QLocale::Language language) { QLocale::setDefault(QLocale(language)); }
  Language(Language const&) = delete;
  Language& operator=(Language const&) = delete;
  ~Language() { QLocale::setDefault(before); }

 private:
  QLocale before;
};
