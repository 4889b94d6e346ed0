#include "ktscene/scene_builder.h"

#include <memory>
#include <utility>

#include "ktscene/kt_scene_error.h"
#include "ktscene/utf_text.h"

namespace dxf2d {

namespace {

std::string quoted(std::string_view name) { return '"' + std::string(name) + '"'; }

std::string_view describe(const SceneKeyRule& rule, bool isElement) {
  switch (rule.value) {
    case SceneValue::kText:
      return "a string";
    case SceneValue::kFlag:
      return "true or false";
    case SceneValue::kInteger:
      return "a 32-bit integer";
    case SceneValue::kNumbers:
      return isElement ? "a number" : "a list of numbers";
    case SceneValue::kIntegers:
      return isElement ? "a 32-bit integer" : "a list of integers";
    case SceneValue::kObject:
      return "an object";
    case SceneValue::kObjects:
      return isElement ? "an object" : "a list of objects";
  }
  return "something else";
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
  if (levels_.empty()) {
    return;
  }
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
  if (rule == nullptr || rule->value != SceneValue::kFlag) {
    RefuseType(value ? "true" : "false");
  }
  SetFlag(levels_.back().key, value);
  FinishValue();
}

void SceneBuilder::Text(std::string_view utf8) {
  const SceneKeyRule* rule = Expected();
  if (rule == nullptr || rule->value != SceneValue::kText) {
    RefuseType("a string");
  }
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

// ---- Lists

void SceneBuilder::BeginList() {
  const SceneKeyRule* rule = Expected();
  const bool isList = rule != nullptr && !IsInList() &&
                      (rule->value == SceneValue::kNumbers ||
                       rule->value == SceneValue::kIntegers || rule->value == SceneValue::kObjects);
  if (!isList) {
    RefuseType("a list");
  }
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
  if (rule.value == SceneValue::kNumbers) {
    SetNumbers(levels_.back().key);
  }
  if (rule.value == SceneValue::kIntegers) {
    set_.indices = std::move(integers_);
  }
  FinishValue();
}

// ---- Objects

void SceneBuilder::BeginObject() {
  const SceneKeyRule* rule = Expected();
  const bool isObject =
      rule == nullptr || rule->value == (IsInList() ? SceneValue::kObjects : SceneValue::kObject);
  if (!isObject) {
    RefuseType("an object");
  }
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
  if (list == SceneKey::kNodes) {
    return scene_.nodes.emplace_back();
  }
  if (list == SceneKey::kLevels) {
    return Node().lod->levels.emplace_back();
  }
  return Node().children.emplace_back();
}

void SceneBuilder::Key(std::string_view name) {
  SceneLevel& level = levels_.back();
  const SceneObjectRule& rule = ruleOf(level.object);
  const std::optional<SceneKey> key = findKey(level.object, name);
  if (!key) {
    RefuseMember(name, "is not a key of " + std::string(rule.name));
  }
  if ((level.seen & bit(*key)) != 0) {
    RefuseMember(name, "appears twice");
  }
  level.seen |= bit(*key);
  const bool isAlone = level.seen == bit(*key);
  if (level.object == SceneObject::kGeometryItem && !isAlone) {
    RefuseMember(name, "is a second key; a geometry item has exactly one");
  }
  if (level.object == SceneObject::kNode && !isAlone && (level.seen & bit(SceneKey::kLod)) != 0) {
    RefuseMember(name, "is not allowed: a node with \"lod\" has no other key");
  }
  level.key = *key;
  level.hasKey = true;
}

void SceneBuilder::EndObject() {
  const SceneLevel level = levels_.back();
  levels_.pop_back();
  const SceneKeys missing = ruleOf(level.object).required & ~level.seen;
  if (missing != 0) {
    Refuse("must have " + quoted(ruleOf(firstOf(missing)).name));
  }
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

}  // namespace dxf2d
