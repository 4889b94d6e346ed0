#include "app/drawing/drawing_nesting.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "app/cli/translation.h"
#include "app/drawing/group_reader.h"

namespace dxf2d {

namespace {

// Walks the blocks that the drawing shows, each once, what it inserts before itself. A block's
// weight is then known when it is inserted again, so a tower of doublings costs its height.
class NestingCheck {
 public:
  NestingCheck(const Drawing& drawing, const std::string& name)
      : drawing_(drawing), name_(name), blocks_(drawing.blocks.size()) {}

  void Run() {
    levels_.push_back({&drawing_.entities, 0, nullptr});
    while (!levels_.empty()) {
      Step();
    }
  }

 private:
  enum class State { kUnseen, kOpen, kDone };
  struct BlockSum {
    State state = State::kUnseen;
    // Strokes of the block with its INSERTs expanded, and the levels below it.
    std::size_t strokes = 0;
    std::size_t depth = 1;
  };
  struct Level {
    const std::vector<DrawingEntity>* entities;
    std::size_t next;
    BlockSum* sum;
  };

  void Step() {
    Level& level = levels_.back();
    BlockSum& sum = level.sum != nullptr ? *level.sum : drawn_;
    if (level.next == level.entities->size()) {
      sum.state = State::kDone;
      levels_.pop_back();
      return;
    }
    const DrawingEntity& entity = (*level.entities)[level.next];
    const InsertEntity* insert = std::get_if<InsertEntity>(&entity);
    if (insert != nullptr && blocks_[insert->block].state != State::kDone) {
      // The INSERT is met again, and counted, once its block is done.
      Open(insert->block);
      return;
    }
    ++level.next;
    AddStrokes(sum, strokesOf(entity));
    if (insert != nullptr) {
      AddBlock(sum, blocks_[insert->block]);
    }
  }

  void Open(std::size_t number) {
    BlockSum& sum = blocks_[number];
    if (sum.state == State::kOpen) {
      throw DxfError({name_,
                      tr("block %1 inserts itself, directly or through others",
                         {quoted(drawing_.blocks[number].name)}),
                      tr("remove that INSERT")});
    }
    sum.state = State::kOpen;
    levels_.push_back({&drawing_.blocks[number].entities, 0, &sum});
  }

  void AddBlock(BlockSum& sum, const BlockSum& inserted) {
    AddStrokes(sum, inserted.strokes);
    sum.depth = std::max(sum.depth, inserted.depth + 1);
    if (sum.depth > kMaxNesting + 1) {
      throw LimitError(name_, tr("nests more than %1 blocks", {std::to_string(kMaxNesting)}));
    }
  }

  void AddStrokes(BlockSum& sum, std::size_t strokes) {
    sum.strokes += strokes;
    if (sum.strokes > kMaxStrokes) {
      throw LimitError(
          name_, tr("expands to more than %1 points and letters", {std::to_string(kMaxStrokes)}));
    }
  }

  const Drawing& drawing_;
  const std::string& name_;
  std::vector<BlockSum> blocks_;
  BlockSum drawn_;
  std::vector<Level> levels_;
};

}  // namespace

std::size_t strokesOf(const DrawingEntity& entity) {
  if (const auto* polyline = std::get_if<PolylineEntity>(&entity)) {
    return 1 + polyline->vertices.size();
  }
  if (const auto* text = std::get_if<TextEntity>(&entity)) {
    return 1 + std::min(text->bytes.size(), kMaxTextBytes);
  }
  return 1;
}

void checkNesting(const Drawing& drawing, const std::string& name) {
  NestingCheck(drawing, name).Run();
}

Placement Placement::Insert(const InsertEntity& insert, PlanPoint base) const {
  const double angle = insert.rotation * std::numbers::pi / 180.0;
  const double turnCosine = std::cos(angle);
  const double turnSine = std::sin(angle);
  Placement inner{cosine * turnCosine - sine * turnSine, sine * turnCosine + cosine * turnSine,
                  Apply(insert.at), insert.layer != 0 ? insert.layer : layer};
  const PlanPoint turned = Placement{inner.cosine, inner.sine, {}}.Apply(base);
  inner.origin = {inner.origin.x - turned.x, inner.origin.y - turned.y};
  return inner;
}

}  // namespace dxf2d
