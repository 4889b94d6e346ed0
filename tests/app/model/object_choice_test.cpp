#include "app/model/object_choice.h"

#include <gtest/gtest.h>

#include "app/cli/failure.h"
#include "app/model/model_error.h"
#include "app/model/name_pattern.h"
#include "app/model/plan_scene.h"
#include "tests/app/model/model_builder.h"

namespace dxf2d {
namespace {

bool matches(const char* name, const char* pattern) {
  return matchesPattern(foldedCase(name), foldedCase(pattern));
}

TEST(NamePattern, StarsStandForAnythingAndQuestionMarksForOneCharacter) {
  EXPECT_TRUE(matches("wall 12", "wall*"));
  EXPECT_TRUE(matches("wall", "wall*"));
  EXPECT_TRUE(matches("outer wall 12", "*wall*12"));
  EXPECT_TRUE(matches("wall 1", "wall ?"));
  EXPECT_FALSE(matches("wall 12", "wall ?"));
  EXPECT_FALSE(matches("wall 12", "wall"));
  EXPECT_FALSE(matches("", "?"));
  EXPECT_TRUE(matches("", "*"));
}

TEST(NamePattern, LetterCaseDoesNotMatter) {
  EXPECT_TRUE(matches("WALL", "wall"));
  EXPECT_TRUE(matches("K\u00DCCHE", "k\u00FCche"));
  EXPECT_TRUE(matches("\u0421\u0422\u0415\u041D\u0410", "\u0441\u0442\u0435\u043D\u0430"));
}

TEST(NamePattern, ManyStarsTakeNoExponentialTime) {
  EXPECT_FALSE(matchesPattern(std::u16string(5000, u'a'), u"*a*a*a*a*a*a*a*a*a*a*b"));
}

TEST(NearestNames, AreThoseWithTheFewestEdits) {
  EXPECT_EQ(nearestNames({"roof", "Wall", "window", "wall 2", "Wall"}, "wal*", 2),
            (std::vector<std::string>{"Wall", "wall 2"}));
}

TEST(NearestNames, ThoseThatHoldThePatternComeFirst) {
  EXPECT_EQ(nearestNames({"roof", "the old kitchen table", "tablet", "cable"}, "Table", 3),
            (std::vector<std::string>{"tablet", "the old kitchen table", "cable"}));
}

TEST(NearestNames, AMistypedPartComesBeforeShortNamesWithoutIt) {
  EXPECT_EQ(nearestNames({"WC", "Kamin", "Wand-Int-ERDG-1"}, "wal", 1),
            (std::vector<std::string>{"Wand-Int-ERDG-1"}));
}

// A house with two floors of two objects each.
std::unique_ptr<aiScene> makeHouse() {
  aiNode* ground =
      withChildren(makeNode("ground floor", aiMatrix4x4(), {}),
                   {makeNode("wall", aiMatrix4x4(), {0}), makeNode("door", aiMatrix4x4(), {0})});
  aiNode* upper =
      withChildren(makeNode("upper floor", aiMatrix4x4(), {}),
                   {makeNode("wall", aiMatrix4x4(), {0}), makeNode("bed", aiMatrix4x4(), {0})});
  return makeModel({makeSquareMesh()},
                   withChildren(makeNode("house", aiMatrix4x4(), {}), {ground, upper}));
}

std::vector<std::u16string> chosen(const ObjectFilter& filter) {
  PlanOptions options;
  options.filter = filter;
  const auto model = makeHouse();
  const PlanScene plan = makePlanScene(*model, {"house.stl", "STL", {}}, options);
  std::vector<std::u16string> names;
  for (const KtSceneNode& node : plan.scene.nodes) {
    names.push_back(node.objectId);
  }
  return names;
}

TEST(ObjectChoice, NamesChooseObjectsWhereverTheyAre) {
  EXPECT_EQ(chosen({{"WALL"}, {}}), (std::vector<std::u16string>{u"wall", u"wall 2"}));
}

TEST(ObjectChoice, AGroupChoosesAllBelowIt) {
  EXPECT_EQ(chosen({{"upper*"}, {}}), (std::vector<std::u16string>{u"wall", u"bed"}));
}

TEST(ObjectChoice, PathsTellEqualNamesApart) {
  EXPECT_EQ(chosen({{"house/ground floor/wall"}, {}}), (std::vector<std::u16string>{u"wall"}));
}

TEST(ObjectChoice, WhatIsExcludedIsLeftOutOfWhatIsChosen) {
  EXPECT_EQ(chosen({{"upper*"}, {"bed"}}), (std::vector<std::u16string>{u"wall"}));
  EXPECT_EQ(chosen({{}, {"wall", "door"}}), (std::vector<std::u16string>{u"bed"}));
}

TEST(ObjectChoice, APatternThatMatchesNothingIsAnErrorWithTheNearestNames) {
  for (const ObjectFilter& filter :
       {ObjectFilter{{"dor"}, {}}, ObjectFilter{{}, {"dor"}}, ObjectFilter{{"wall", "dor"}, {}}}) {
    try {
      chosen(filter);
      ADD_FAILURE() << "not refused";
    } catch (const UsageError& error) {
      const std::string sentence = error.what();
      EXPECT_NE(sentence.find("'dor'"), std::string::npos) << sentence;
      EXPECT_NE(sentence.find("'door'"), std::string::npos) << sentence;
    }
  }
}

TEST(ObjectChoice, PatternsThatLeaveNothingAreTheReasonThatIsTold) {
  try {
    chosen({{"wall"}, {"house"}});
    ADD_FAILURE() << "not refused";
  } catch (const ModelError& error) {
    EXPECT_STREQ(error.what(),
                 "house.stl: nothing to draw: --only and --exclude leave no object; choose other "
                 "patterns");
  }
}

}  // namespace
}  // namespace dxf2d
