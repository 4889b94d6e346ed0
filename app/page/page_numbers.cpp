#include "app/page/page_numbers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <span>
#include <unordered_map>
#include <utility>

#include "app/cli/translation.h"
#include "app/drawing/drawing_nesting.h"
#include "app/drawing/group_reader.h"
#include "app/drawing/text_decoding.h"

namespace dxf2d::page {

namespace {

static_assert(std::endian::native == std::endian::little);

// Beyond it, sums of coordinates and their squares overflow.
constexpr double kMostCoordinate = 1e150;

bool isInRange(double value) { return std::abs(value) <= kMostCoordinate; }
bool isInRange(PlanPoint point) { return isInRange(point.x) && isInRange(point.y); }

bool isDrawable(const DrawingEntity& entity) {
  struct InRange {
    bool operator()(const LineEntity& line) const {
      return isInRange(line.start) && isInRange(line.end);
    }
    bool operator()(const PolylineEntity& line) const {
      return std::ranges::all_of(line.vertices, [](PlanPoint point) { return isInRange(point); });
    }
    bool operator()(const FaceEntity& face) const {
      return std::ranges::all_of(face.corners, [](PlanPoint point) { return isInRange(point); });
    }
    bool operator()(const CircleEntity& circle) const {
      return isInRange(circle.center) && isInRange(circle.radius);
    }
    bool operator()(const TextEntity& text) const {
      return isInRange(text.at) && isInRange(text.height) && isInRange(text.widthFactor) &&
             isInRange(text.rotation);
    }
    bool operator()(const InsertEntity& insert) const {
      return isInRange(insert.at) && isInRange(insert.rotation);
    }
  };
  return std::visit(InRange{}, entity);
}

// How far a text reaches, near enough to fit a page to it.
void addText(PlanExtents& extents, const TextEntity& text, const Placement& placement) {
  constexpr double kUsualWidth = 0.8;
  const double width =
      kUsualWidth * text.height * text.widthFactor * static_cast<double>(text.bytes.size());
  const double left = -0.5 * static_cast<double>(text.across) * width;
  const double low = text.up == TextUp::kTop      ? -text.height
                     : text.up == TextUp::kMiddle ? -text.height / 2.0
                                                  : 0.0;
  const Placement turn = Placement{}.Insert({{}, 0, text.at, text.rotation}, {});
  for (const double x : {left, left + width}) {
    for (const double y : {low, low + text.height}) {
      extents.Add(placement.Apply(turn.Apply({x, y})));
    }
  }
}

void addExtents(PlanExtents& extents, const DrawingEntity& entity, const Placement& placement) {
  struct Adding {
    PlanExtents& extents;
    const Placement& placement;
    void Add(std::span<const PlanPoint> points) const {
      for (const PlanPoint point : points) {
        extents.Add(placement.Apply(point));
      }
    }
    void operator()(const LineEntity& line) const {
      const PlanPoint ends[] = {line.start, line.end};
      Add(ends);
    }
    void operator()(const PolylineEntity& line) const { Add(line.vertices); }
    void operator()(const FaceEntity& face) const { Add(face.corners); }
    void operator()(const CircleEntity& circle) const {
      const PlanPoint center = placement.Apply(circle.center);
      extents.Add({center.x - circle.radius, center.y - circle.radius});
      extents.Add({center.x + circle.radius, center.y + circle.radius});
    }
    void operator()(const TextEntity& text) const {
      if (text.height > 0.0) {
        addText(extents, text, placement);
      }
    }
    void operator()(const InsertEntity&) const {}
  };
  std::visit(Adding{extents, placement}, entity);
}

// Measures what the drawing shows; its INSERTs are in range.
void measure(const Drawing& drawing, const PageStyle& style, PageNumbers& numbers) {
  std::size_t strokes = 0;
  forEachPlaced(drawing, [&](const DrawingEntity& entity, const Placement& placement) {
    strokes += strokesOf(entity);
    if (strokes > kMaxPageStrokes) {
      throw LimitError(style.name, tr("makes a page of more than %1 points and letters",
                                      {std::to_string(kMaxPageStrokes)}));
    }
    if (isDrawable(entity) && isInRange(placement.origin)) {
      addExtents(numbers.extents, entity, placement);
    }
  });
}

// Numbers for values, each new one the next.
template <typename Value, typename Map>
std::uint32_t numberOf(const Value& value, Map& numbers, std::vector<Value>& values) {
  const auto [place, isNew] = numbers.emplace(value, static_cast<std::uint32_t>(values.size()));
  if (isNew) {
    values.push_back(value);
  }
  return place->second;
}

struct StyledEntity {
  std::uint32_t style;
  const DrawingEntity* entity;
};

class PageWriter {
 public:
  PageWriter(const Drawing& drawing, const PageStyle& style) : drawing_(drawing), style_(style) {
    measure(drawing, style, numbers_);
  }

  PageNumbers Run() {
    AddBlock(drawing_.entities, {}, style_.title, true);
    for (const DrawingBlock& block : drawing_.blocks) {
      const auto known = style_.names.blocks.find(block.name);
      AddBlock(block.entities, block.base,
               known == style_.names.blocks.end() ? decodeText(block.name, style_.codePage)
                                                  : known->second,
               false);
    }
    return std::move(numbers_);
  }

 private:
  void AddBlock(const std::vector<DrawingEntity>& entities, PlanPoint base, const std::string& name,
                bool isDrawing) {
    SetFrame(entities, base);
    std::vector<StyledEntity> drawable;
    for (const DrawingEntity& entity : entities) {
      if (isDrawable(entity)) {
        drawable.push_back(
            {std::visit([&](const auto& one) { return StyleNumber(one); }, entity), &entity});
      } else {
        ++numbers_.leftOut;
      }
    }
    SortLines(drawable);
    for (const StyledEntity& one : drawable) {
      Add(*one.entity, one.style, isDrawing);
    }
    numbers_.blockNames.push_back(NameNumber(name));
    for (const std::size_t end : {numbers_.lineEnds.size(), numbers_.circleStyles.size(),
                                  numbers_.textStyles.size(), numbers_.insertBlocks.size()}) {
      numbers_.blockEnds.push_back(static_cast<std::uint32_t>(end));
    }
  }

  // Lines of one style in a row: changing a browser's colors takes as long as a stroke. Everything
  // else stays in its order.
  static void SortLines(std::vector<StyledEntity>& entities) {
    const auto isLine = [](const StyledEntity& one) {
      return !std::holds_alternative<CircleEntity>(*one.entity) &&
             !std::holds_alternative<TextEntity>(*one.entity) &&
             !std::holds_alternative<InsertEntity>(*one.entity);
    };
    const auto others = std::stable_partition(entities.begin(), entities.end(), isLine);
    std::stable_sort(
        entities.begin(), others,
        [](const StyledEntity& one, const StyledEntity& next) { return one.style < next.style; });
  }

  // Steps that are powers of two keep round coordinates round.
  void SetFrame(const std::vector<DrawingEntity>& entities, PlanPoint base) {
    PlanExtents extents;
    for (const DrawingEntity& entity : entities) {
      if (isDrawable(entity) && !std::holds_alternative<TextEntity>(entity)) {
        addExtents(extents, entity, {});
      }
    }
    low_ = extents.Low();
    const PlanPoint half = extents.Half();
    const double size = 2.0 * std::max(half.x, half.y);
    constexpr int kSteps = 30;
    constexpr int kLeastExponent = -1000;
    step_ =
        size > 0.0 ? std::ldexp(1.0, std::max(kLeastExponent, std::ilogb(size) + 1 - kSteps)) : 1.0;
    numbers_.frames.insert(numbers_.frames.end(), {low_.x, low_.y, step_, base.x, base.y});
  }

  void Add(const DrawingEntity& entity, std::uint32_t style, bool isDrawing) {
    if (const auto* line = std::get_if<LineEntity>(&entity)) {
      const PlanPoint ends[] = {line->start, line->end};
      AddLine(ends, false, style);
    } else if (const auto* polyline = std::get_if<PolylineEntity>(&entity)) {
      AddLine(polyline->vertices, polyline->closed, style);
    } else if (const auto* face = std::get_if<FaceEntity>(&entity)) {
      AddLine(face->corners, true, style);
    } else if (const auto* circle = std::get_if<CircleEntity>(&entity)) {
      numbers_.circles.insert(numbers_.circles.end(),
                              {circle->center.x, circle->center.y, circle->radius});
      numbers_.circleStyles.push_back(style);
    } else if (const auto* text = std::get_if<TextEntity>(&entity)) {
      AddText(*text, style);
    } else if (const auto* insert = std::get_if<InsertEntity>(&entity)) {
      AddInsert(*insert, isDrawing);
    }
  }

  void AddLine(std::span<const PlanPoint> points, bool isClosed, std::uint32_t style) {
    if (points.empty()) {
      return;
    }
    for (const PlanPoint point : points) {
      numbers_.vertices.push_back(
          static_cast<std::uint32_t>(std::lround((point.x - low_.x) / step_)));
      numbers_.vertices.push_back(
          static_cast<std::uint32_t>(std::lround((point.y - low_.y) / step_)));
    }
    numbers_.lineEnds.push_back(static_cast<std::uint32_t>(numbers_.vertices.size() / 2));
    numbers_.lineStyles.push_back(2 * style + (isClosed ? 1U : 0U));
  }

  void AddText(const TextEntity& text, std::uint32_t style) {
    std::string shown =
        decodeText(std::string_view(text.bytes).substr(0, kMaxTextBytes), style_.codePage);
    if (text.height <= 0.0 || shown.find_first_not_of(' ') == std::string::npos) {
      return;
    }
    numbers_.texts.insert(numbers_.texts.end(),
                          {text.at.x, text.at.y, text.height, text.widthFactor, text.rotation});
    numbers_.textStyles.push_back(style);
    numbers_.textAnchors.push_back(static_cast<std::uint32_t>(text.across) |
                                   static_cast<std::uint32_t>(text.up) << 2);
    numbers_.strings.push_back(std::move(shown));
  }

  void AddInsert(const InsertEntity& insert, bool isDrawing) {
    numbers_.inserts.insert(numbers_.inserts.end(), {insert.at.x, insert.at.y, insert.rotation});
    numbers_.insertBlocks.push_back(static_cast<std::uint32_t>(insert.block + 1));
    numbers_.insertLayers.push_back(insert.layer);
    numbers_.insertNames.push_back(isDrawing ? InsertNumber(insert) : PageNumbers::kNoName);
  }

  // The name that is known of an INSERT of the drawing itself.
  std::uint32_t InsertNumber(const InsertEntity& insert) {
    const std::vector<InsertName>& known = style_.names.inserts;
    const auto found = std::find_if(
        known.begin() + static_cast<std::ptrdiff_t>(nextInsert_), known.end(),
        [&](const InsertName& one) { return one.block == drawing_.blocks[insert.block].name; });
    if (found == known.end()) {
      // The list is of another drawing; the others would be looked for as long.
      nextInsert_ = known.size();
      return PageNumbers::kNoName;
    }
    nextInsert_ = static_cast<std::size_t>(found - known.begin()) + 1;
    return found->name.empty() ? PageNumbers::kNoName : NameNumber(found->name);
  }

  std::uint32_t NameNumber(const std::string& name) {
    return numberOf(name, nameNumbers_, numbers_.names);
  }

  std::uint32_t StyleNumber(const EntityProperties& properties) {
    return numberOf(StyleKey{properties.layer, properties.color, properties.trueColor,
                             properties.lineType, properties.lineWeight},
                    styleNumbers_, numbers_.styles);
  }

  const Drawing& drawing_;
  const PageStyle& style_;
  PageNumbers numbers_;
  // Of the current block.
  PlanPoint low_;
  double step_ = 1.0;
  // In the list of known names.
  std::size_t nextInsert_ = 0;
  std::unordered_map<std::string, std::uint32_t> nameNumbers_;
  std::map<StyleKey, std::uint32_t> styleNumbers_;
};

template <typename Number>
void append(std::string& bytes, const std::vector<Number>& numbers) {
  bytes.append(reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(Number));
}

}  // namespace

std::string PageNumbers::Bytes() const {
  std::string bytes;
  // The larger ones first, so that each array is aligned.
  for (const std::vector<double>* reals : {&frames, &circles, &texts, &inserts}) {
    append(bytes, *reals);
  }
  for (const std::vector<std::uint32_t>* counts :
       {&vertices, &lineEnds, &lineStyles, &circleStyles, &textStyles, &textAnchors, &insertBlocks,
        &insertLayers, &insertNames, &blockNames, &blockEnds}) {
    append(bytes, *counts);
  }
  return bytes;
}

PageNumbers pageNumbers(const Drawing& drawing, const PageStyle& style) {
  return PageWriter(drawing, style).Run();
}

}  // namespace dxf2d::page
