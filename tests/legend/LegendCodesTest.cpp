// Groups and codes in memory.
#include <gtest/gtest.h>
#include <QCoreApplication>
#include <QMetaObject>
#include <QMetaType>
#include <memory>

#include "legend/LegendSupport.h"

namespace {

using kvn::AttributeType;
using kvn::XmlMannager;

/// "A(a1 a2) B()" for the listed groups and, behind "+", those that are not listed but hold codes. A code that is told
/// to be in another group has a "!".
QString contentOf(XmlMannager& library) {
  QString text;
  QStringList const listed = library.getGroupList(kvn::Point);
  for (QString const& group : listed + QStringList{"+", "A", "B", "C", "H", "X", "None Group"}) {
    bool const isUnlisted = text.contains('+');
    if (group == "+" || (isUnlisted && listed.contains(group))) {
      if (!isUnlisted) text += "+ ";
      continue;
    }
    QStringList names;
    for (Code const& c : library.getLegendCodeList(group, kvn::Point)) names << c.Name + (c.Group == group ? "" : "!");
    if (!isUnlisted || !names.isEmpty()) text += group + "(" + names.join(" ") + ") ";
  }
  return text.trimmed();
}

class LegendCodes : public testing::Test {
 protected:
  LegendCodes() { fill(library); }
  static void fill(XmlMannager& filled) {
    for (char const* group : {"A", "B", "C"}) filled.addGroup(group, kvn::Point);
    for (QString const name : {"a1", "a2", "a3", "b1", "h1"}) {
      Code code = makeCode(name, name.left(1).toUpper());
      filled.addElement(&code);
    }
  }
  Language const english{QLocale::English};
  XmlMannager library;
};

TEST_F(LegendCodes, GroupsAreRenamedAndDeletedWithoutLosingACode) {
  struct Case {
    char const* what;
    QStringList edit;
    bool result;
    char const* content;
  };
  char const* const before = "A(a1 a2 a3) B(b1) C() + H(h1)";
  Case const cases[] = {
      {"an existing group is not added again", {"add", "A"}, true, before},
      {"a group needs a name", {"add", ""}, false, before},
      {"a new name keeps the place", {"rename", "A", "X"}, true, "X(a1 a2 a3) B(b1) C() + H(h1)"},
      {"the same name", {"rename", "A", "A"}, true, before},
      {"a name in use", {"rename", "A", "B"}, true, "B(b1 a1 a2 a3) C() + H(h1)"},
      {"a name in use that is not listed", {"rename", "B", "H"}, true, "A(a1 a2 a3) H(h1 b1) C() +"},
      {"a group that is not listed", {"rename", "H", "X"}, true, "A(a1 a2 a3) B(b1) C() + X(h1)"},
      {"an unlisted group onto a listed one", {"rename", "H", "C"}, true, "A(a1 a2 a3) B(b1) C(h1) +"},
      {"an unknown group onto a name in use", {"rename", "X", "A"}, true, before},
      {"an unknown group onto a new name", {"rename", "X", "Y"}, true, before},
      {"no new name", {"rename", "A", ""}, false, before},
      {"no old name", {"rename", "", "X"}, false, before},
      {"codes of a deleted group", {"delete", "A"}, true, "B(b1) C() + H(h1) None Group(a1 a2 a3)"},
      {"an empty group", {"delete", "C"}, true, "A(a1 a2 a3) B(b1) + H(h1)"},
      {"a deleted group that is not listed", {"delete", "H"}, true, "A(a1 a2 a3) B(b1) C() + None Group(h1)"},
      {"an unknown group", {"delete", "X"}, false, before},
      {"nothing to delete", {"delete", ""}, false, before},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    XmlMannager edited;
    fill(edited);
    QString const name = c.edit[1];
    bool const result = c.edit[0] == "add"      ? edited.addGroup(name, kvn::Point)
                        : c.edit[0] == "rename" ? edited.updateGroup(c.edit[2], name, kvn::Point)
                                                : edited.deleteGroup(name, kvn::Point);
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(contentOf(edited), c.content);
  }
  EXPECT_TRUE(library.deleteGroup("X", kvn::Line));  // only points ask for the group
}

TEST_F(LegendCodes, TheDefaultGroupStaysAndTakesTheCodesOfADeletedOneAtItsEnd) {
  library.addGroup("None Group", kvn::Point);
  Code first = makeCode("n1", "None Group");
  library.addElement(&first);
  EXPECT_TRUE(library.deleteGroup("B", kvn::Point));
  EXPECT_FALSE(library.deleteGroup("None Group", kvn::Point));
  EXPECT_EQ(contentOf(library), "A(a1 a2 a3) C() None Group(n1 b1) + H(h1)");
}

TEST_F(LegendCodes, ANameIsUniqueInItsTypeAndNotInItsGroup) {
  Code codes[] = {makeCode("a1", "B"), makeCode("a1", "B", kvn::Line), makeCode("A1", "B"),
                  makeCode("x", "B", AttributeType(3))};
  bool const added[] = {false, true, true, false};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(library.addElement(&codes[i]), added[i]) << i;
  EXPECT_EQ(contentOf(library), "A(a1 a2 a3) B(b1 A1) C() + H(h1)");
}

TEST_F(LegendCodes, ANameIsFreeOrInUseAsTheListsAreNow) {
  auto const isFree = [this](char const* name) { return !library.isContainLegendCode(makeCode(name, "?")); };
  EXPECT_TRUE(isFree("new") && !isFree("a1"));
  // The host changes a list that it has got, a code that it holds, and once more.
  QList<Code>& list = library.getLegendCodeList("A", kvn::Point);
  Code& held = list[0];
  Code added = makeCode("new", "A");
  EXPECT_TRUE(isFree("newer") && library.addElement(&added) && !isFree("new"));
  held.Name = "renamed";
  EXPECT_TRUE(isFree("a1") && !isFree("renamed"));
  list.removeLast();
  EXPECT_TRUE(isFree("new")) << "what was added is gone again";
  library.updateGroup("X", "B", kvn::Point);
  EXPECT_TRUE(!isFree("b1"));
  Code moved = makeCode("b1", "H");
  Code before = makeCode("b1", "X");
  EXPECT_TRUE(library.updateElement(&before, &moved) && !isFree("b1"));
  EXPECT_TRUE(library.deleteElement(&moved) && isFree("b1"));
  library.deleteGroup("A", kvn::Point);
  EXPECT_TRUE(!isFree("a2")) << "the codes of a deleted group stay";
}

TEST_F(LegendCodes, ACodeIsChangedInPlaceOrMovesToTheEndOfAnotherGroup) {
  QList<Code>& list = library.getLegendCodeList("A", kvn::Point);
  Code const before = list[1];
  Code red = before;
  red.Color = "#ff0000";
  EXPECT_TRUE(library.updateElement(&list[1], &red));
  EXPECT_EQ(list[1], red);
  Code old = before;
  Code moved = red;
  moved.Group = "B";
  EXPECT_FALSE(library.updateElement(&old, &moved));  // no longer there, and its name is in use
  EXPECT_TRUE(library.updateElement(&old, &old));     // nothing to change
  EXPECT_EQ(contentOf(library), "A(a1 a2 a3) B(b1) C() + H(h1)");
  EXPECT_TRUE(library.updateElement(&list[1], &moved));
  EXPECT_EQ(contentOf(library), "A(a1 a3) B(b1 a2) C() + H(h1)");
  Code renamed = moved;
  renamed.Name = "z";
  EXPECT_FALSE(library.updateElement(&moved, &renamed));
  Code line = moved;
  line.Type = kvn::Line;
  EXPECT_FALSE(library.updateElement(&moved, &line));
}

TEST_F(LegendCodes, OfEqualCodesTheLastIsChangedAndFoundAndAllAreDeleted) {
  QList<Code>& list = library.getLegendCodeList("A", kvn::Point);
  Code red = list[0];
  red.Color = "#ff0000";
  list << list[0] << list[0];
  EXPECT_TRUE(library.updateElement(&list[0], &red));
  EXPECT_EQ(list.last(), red);
  Code moved = red;
  moved.Group = "B";
  EXPECT_FALSE(library.updateElement(&red, &moved)) << "the others of its name are in the way";
  EXPECT_EQ(list.last(), red) << "and it is not lost";
  EXPECT_EQ(*std::unique_ptr<Code>(library.getLegendCodeData("a1", kvn::Point)), red);
  EXPECT_TRUE(library.deleteElement(&list[0]));
  EXPECT_EQ(contentOf(library), "A(a2 a3 a1) B(b1) C() + H(h1)");
  Code unknown = makeCode("a2", "no group");
  EXPECT_TRUE(library.deleteElement(&unknown));
}

TEST_F(LegendCodes, TheDefaultGroupFollowsTheLanguageAndTheDefaultOfARecordDoesNot) {
  std::unique_ptr<Code> const unknown(library.getLegendCodeData("a1", kvn::Polygon));
  EXPECT_EQ(*unknown, makeCode("a1", "None Group", kvn::Polygon));
  EXPECT_EQ(unknown->Code + unknown->ID + unknown->Scale + unknown->Color, "default11#000a96");
  Language const chinese(QLocale::Chinese);
  EXPECT_EQ(XmlMannager::getDefaultGroupName(), QString::fromUtf8("无分组"));
  EXPECT_EQ(Code().Group, QString::fromUtf8("无分组"));
}

TEST_F(LegendCodes, ATypeThatIsNoneKeepsNothing) {
  auto const noType = AttributeType(3);
  library.getLegendCodeList("A", noType) << makeCode("x", "A", noType);
  EXPECT_TRUE(library.getLegendCodeList("A", noType).isEmpty());
  EXPECT_FALSE(library.addGroup("A", noType) || library.deleteGroup("A", noType) ||
               !library.getGroupList(noType).isEmpty());
}

TEST_F(LegendCodes, AHostReachesTheOperationsByTheirNames) {
  EXPECT_STREQ(library.metaObject()->className(), "kvn::XmlMannager");
  EXPECT_GE(library.metaObject()->indexOfSignal("reloadData()"), 0);
  EXPECT_NE(QMetaType::type("kvn::AttributeType"), int(QMetaType::UnknownType));
  ASSERT_TRUE(
      QMetaObject::invokeMethod(&library, "addGroup", Q_ARG(QString, "D"), Q_ARG(kvn::AttributeType, kvn::Point)));
  EXPECT_TRUE(QMetaObject::invokeMethod(&library, "addGroup", Qt::QueuedConnection, Q_ARG(QString, "E"),
                                        Q_ARG(kvn::AttributeType, kvn::Point)));
  EXPECT_EQ(contentOf(library), "A(a1 a2 a3) B(b1) C() D() + H(h1)");
  QCoreApplication::sendPostedEvents(&library);
  EXPECT_EQ(contentOf(library), "A(a1 a2 a3) B(b1) C() D() E() + H(h1)");
}

}  // namespace
