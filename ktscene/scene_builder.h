// Builds a scene from the events of a JSON reader and refuses what breaks a rule of the format.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ktscene/kt_scene.h"
#include "ktscene/scene_place.h"
#include "ktscene/scene_schema.h"

namespace dxf2d {

// Takes the events in the order of the text. Each operation throws KtSceneError, with the place,
// for what is not allowed there. Keeps its place on the heap, so that any depth is safe.
class SceneBuilder {
 public:
  // `name` stands for the file in messages, in UTF-8.
  explicit SceneBuilder(std::string name) : name_(std::move(name)) {}

  void Null();
  void Flag(bool value);
  // `integer` is the value when it was written as an integer and has 32 bits.
  void Number(double value, std::optional<int> integer);
  void Text(std::string_view utf8);
  void BeginObject();
  void Key(std::string_view name);
  void EndObject();
  void BeginList();
  void EndList();

  // Refuses the value being read or awaited.
  [[noreturn]] void Refuse(const std::string& reason) const;

  // The scene, once the text has ended.
  KtScene TakeScene() { return std::move(scene_); }

 private:
  // What the next value must be; null for the scene itself.
  const SceneKeyRule* Expected() const;
  bool IsInList() const { return !levels_.empty() && levels_.back().isList; }
  KtSceneNode& Node() const { return *levels_.back().node; }
  [[noreturn]] void RefuseType(std::string_view what) const;
  [[noreturn]] void RefuseMember(std::string_view key, const std::string& reason) const;
  void FinishValue();

  void AddNumber(double value);
  void CheckElement(double value) const;
  void SetText(SceneKey key, std::u16string text);
  void SetFlag(SceneKey key, bool value);
  void SetInteger(SceneKey key, int value);
  void SetNumbers(SceneKey key);
  KtSceneNode& AddNode(SceneKey list);
  KtSceneNode* StartObject(SceneObject object);
  void FinishObject(const SceneLevel& level);

  std::string name_;
  KtScene scene_;
  std::vector<SceneLevel> levels_;
  // The list of numbers being read, and the set that the lists of a geometry item go to.
  std::vector<double> numbers_;
  std::vector<int> integers_;
  KtFaceSet set_;
};

}  // namespace dxf2d
