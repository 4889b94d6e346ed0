#include "ktscene/scene_builder.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "ktscene/kt_scene_reader.h"
#include "ktscene/utf_text.h"

namespace {

constexpr double kLargestNumber = 1e15;

std::string quoted(std::string_view name) { return '"' + std::string(name) + '"'; }

std::string_view describe(const SceneKeyRule& rule, bool isElement) {
  switch (rule.value) {
    case SceneValue::kText:
      return "a string";
    case SceneValue::kFlag:
      return "true or false";
    case SceneValue::kInteger:
      return "an integer of 32 bits";
    case SceneValue::kNumbers:
      return isElement ? "a number" : "a list of numbers";
    case SceneValue::kIntegers:
      return isElement ? "an integer of 32 bits" : "a list of integers";
    case SceneValue::kObject:
      return "an object";
    case SceneValue::kObjects:
      return isElement ? "an object" : "a list of objects";
  }
  return "something else";
}

std::array<double, 3> triple(const std::vector<double>& numbers) {
  return {numbers[0], numbers[1], numbers[2]};
}

}  // namespace

// ---- Refusals

void SceneBuilder::Refuse(const std::string& reason) const {
  const std::string pointer = jsonPointer(levels_);
  throw KtSceneError(name_ + ": " + (pointer.empty() ? "" : pointer + ": ") + reason);
}

void SceneBuilder::RefuseMember(std::string_view key, const std::string& reason) const {
  throw KtSceneError(name_ + ": " + jsonPointer(levels_, &key) + ": " + reason);
}

void SceneBuilder::RefuseType(std::string_view what) const {
  const SceneKeyRule* rule = Expected();
  const std::string_view must = rule == nullptr ? "an object" : describe(*rule, IsInList());
  Refuse("must be " + std::string(must) + ", is " + std::string(what));
}

// ---- Place

const SceneKeyRule* SceneBuilder::Expected() const {
  return levels_.empty() ? nullptr : &ruleOf(levels_.back().key);
}

void SceneBuilder::FinishValue() {
  if (levels_.empty()) return;
  if (levels_.back().isList) {
    ++levels_.back().done;
  } else {
    levels_.back().hasKey = false;
  }
}

// ---- Plain values

void SceneBuilder::Null() { RefuseType("null"); }

void SceneBuilder::Flag(bool value) {
  const SceneKeyRule* rule = Expected();
  if (rule == nullptr || rule->value != SceneValue::kFlag) RefuseType(value ? "true" : "false");
  SetFlag(levels_.back().key, value);
  FinishValue();
}

void SceneBuilder::Text(std::string_view utf8) {
  const SceneKeyRule* rule = Expected();
  if (rule == nullptr || rule->value != SceneValue::kText) RefuseType("a string");
  SetText(levels_.back().key, fromUtf8(utf8));
  FinishValue();
}

void SceneBuilder::Number(double value, std::optional<int> integer) {
  const SceneKeyRule* rule = Expected();
  if (rule != nullptr && rule->value == SceneValue::kNumbers && IsInList()) {
    AddNumber(value);
  } else if (rule != nullptr && rule->value == SceneValue::kIntegers && IsInList() && integer) {
    integers_.push_back(*integer);
  } else if (rule != nullptr && rule->value == SceneValue::kInteger && integer) {
    SetInteger(levels_.back().key, *integer);
  } else {
    RefuseType(integer ? "an integer" : "another number");
  }
  FinishValue();
}

void SceneBuilder::AddNumber(double value) {
  if (!(std::abs(value) <= kLargestNumber)) Refuse("must be at most 1e15 in magnitude");
  CheckElement(value);
  numbers_.push_back(value);
}

void SceneBuilder::CheckElement(double value) const {
  const std::size_t position = numbers_.size();
  switch (levels_.back().key) {
    case SceneKey::kMatrix:
      if (position % 4 == 3 && position < 15 && value != 0.0) Refuse("must be 0");
      if (position == 15 && value != 1.0) Refuse("must be 1");
      break;
    case SceneKey::kColor:
      if (!(value >= 0.0 && value <= 1.0)) Refuse("must be from 0 to 1");
      break;
    case SceneKey::kBox:
    case SceneKey::kCylinder:
      if (!(value > 0.0)) Refuse("must be above 0");
      break;
    default:
      break;
  }
}

void SceneBuilder::SetText(SceneKey key, std::u16string text) {
  switch (key) {
    case SceneKey::kFormat:
      if (text != u"ktscene") Refuse("must be \"ktscene\"");
      break;
    case SceneKey::kGraphicName:
      Node().graphicName = std::move(text);
      break;
    case SceneKey::kObjectId:
      Node().objectId = std::move(text);
      break;
    case SceneKey::kRealObjectId:
      Node().realObjectId = std::move(text);
      break;
    default:
      Node().label->text = std::move(text);
      break;
  }
}

void SceneBuilder::SetFlag(SceneKey key, bool value) {
  if (key == SceneKey::kItem) {
    Node().hasGraphicItem = value;
  } else if (key == SceneKey::kReverseOrientation) {
    set_.reverseOrientation = value;
  } else {
    set_.closedSurface = value;
  }
}

void SceneBuilder::SetInteger(SceneKey key, int value) {
  if (key == SceneKey::kColorIndex) {
    Node().label->colorIndex = value;
  } else if (value != 1) {
    Refuse("must be 1, the only version there is");
  }
}

// ---- Lists

void SceneBuilder::BeginList() {
  const SceneKeyRule* rule = Expected();
  const bool isList = rule != nullptr && !IsInList() &&
                      (rule->value == SceneValue::kNumbers ||
                       rule->value == SceneValue::kIntegers || rule->value == SceneValue::kObjects);
  if (!isList) RefuseType("a list");
  numbers_.clear();
  integers_.clear();
  const SceneLevel& holder = levels_.back();
  levels_.push_back({.node = holder.node,
                     .done = 0,
                     .seen = 0,
                     .object = holder.object,
                     .key = holder.key,
                     .isList = true,
                     .hasKey = false});
}

void SceneBuilder::EndList() {
  levels_.pop_back();
  const SceneKeyRule& rule = *Expected();
  if (rule.count != 0 && numbers_.size() != rule.count) {
    Refuse("must have " + std::to_string(rule.count) + " numbers, has " +
           std::to_string(numbers_.size()));
  }
  if (rule.value == SceneValue::kNumbers) SetNumbers(levels_.back().key);
  if (rule.value == SceneValue::kIntegers) set_.indices = std::move(integers_);
  FinishValue();
}

void SceneBuilder::SetNumbers(SceneKey key) {
  switch (key) {
    case SceneKey::kMatrix:
      Node().matrix.Init(numbers_.data());
      break;
    case SceneKey::kColor:
      Node().color = triple(numbers_);
      break;
    case SceneKey::kBox:
      Node().geometry.emplace_back(KtBox{numbers_[0], numbers_[1], numbers_[2]});
      break;
    case SceneKey::kCylinder:
      Node().geometry.emplace_back(KtCylinder{numbers_[0], numbers_[1]});
      break;
    case SceneKey::kMin:
      Node().bounds->min = triple(numbers_);
      break;
    case SceneKey::kMax:
      Node().bounds->max = triple(numbers_);
      break;
    case SceneKey::kRanges:
      Node().lod->ranges = std::move(numbers_);
      break;
    default:
      set_.coords = std::move(numbers_);
      break;
  }
}

// ---- Objects

void SceneBuilder::BeginObject() {
  const SceneKeyRule* rule = Expected();
  const bool isObject =
      rule == nullptr || rule->value == (IsInList() ? SceneValue::kObjects : SceneValue::kObject);
  if (!isObject) RefuseType("an object");
  const SceneObject object = rule == nullptr ? SceneObject::kScene : rule->object;
  KtSceneNode* node = StartObject(object);
  levels_.push_back({.node = node,
                     .done = 0,
                     .seen = 0,
                     .object = object,
                     .key = SceneKey::kFormat,
                     .isList = false,
                     .hasKey = false});
}

// Makes room for what the object describes. Returns the node that holds it. Nodes keep their
// address while they are open: only the innermost list grows.
KtSceneNode* SceneBuilder::StartObject(SceneObject object) {
  switch (object) {
    case SceneObject::kScene:
      return nullptr;
    case SceneObject::kNode:
      return &AddNode(levels_.back().key);
    case SceneObject::kLabel:
      Node().label = std::make_unique<KtLabel>();
      break;
    case SceneObject::kBounds:
      Node().bounds = std::make_unique<KtBounds>();
      break;
    case SceneObject::kLod:
      Node().lod = std::make_unique<KtSceneNode::Lod>();
      break;
    case SceneObject::kFaceSet:
    case SceneObject::kLineSet:
      set_ = {};
      break;
    case SceneObject::kGeometryItem:
      break;
  }
  return &Node();
}

KtSceneNode& SceneBuilder::AddNode(SceneKey list) {
  if (list == SceneKey::kNodes) return scene_.nodes.emplace_back();
  if (list == SceneKey::kLevels) return Node().lod->levels.emplace_back();
  return Node().children.emplace_back();
}

void SceneBuilder::Key(std::string_view name) {
  SceneLevel& level = levels_.back();
  const SceneObjectRule& rule = ruleOf(level.object);
  const std::optional<SceneKey> key = findKey(level.object, name);
  if (!key) RefuseMember(name, "is not a key of " + std::string(rule.name));
  if ((level.seen & bit(*key)) != 0) RefuseMember(name, "stands twice");
  level.seen |= bit(*key);
  const bool isAlone = level.seen == bit(*key);
  if (level.object == SceneObject::kGeometryItem && !isAlone) {
    RefuseMember(name, "is one key too many for a geometry item");
  }
  if (level.object == SceneObject::kNode && !isAlone && (level.seen & bit(SceneKey::kLod)) != 0) {
    RefuseMember(name, "must not be there: a node with \"lod\" holds nothing else");
  }
  level.key = *key;
  level.hasKey = true;
}

void SceneBuilder::EndObject() {
  const SceneLevel level = levels_.back();
  levels_.pop_back();
  const SceneKeys missing = ruleOf(level.object).required & ~level.seen;
  if (missing != 0) Refuse("must have " + quoted(ruleOf(firstOf(missing)).name));
  FinishObject(level);
  FinishValue();
}

void SceneBuilder::FinishObject(const SceneLevel& level) {
  if (level.object == SceneObject::kFaceSet) {
    level.node->geometry.emplace_back(std::make_shared<const KtFaceSet>(std::move(set_)));
  } else if (level.object == SceneObject::kLineSet) {
    level.node->geometry.emplace_back(std::make_shared<const KtLineSet>(
        KtLineSet{std::move(set_.coords), std::move(set_.indices)}));
  } else if (level.object == SceneObject::kGeometryItem && level.seen == 0) {
    Refuse(R"(must have one of "faceSet", "lineSet", "box" and "cylinder")");
  }
}
