#include "app/inspect/lending.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <new>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "app/inspect/guarded_pages.h"
#include "ktscene/kt_geometry.h"
#include "ktscene/kt_graphic_node.h"

namespace dxf2d {

namespace {

KtCallbacks& lender() {
  static KtCallbacks callbacks;
  return callbacks;
}

// Pages, each for one object at a time, that are taken in turn: after many other objects only is
// one readable again.
class Pages {
 public:
  void* Open() {
    void* page = static_cast<char*>(memory_) + pageSize() * next_;
    next_ = (next_ + 1) % kCount;
    openPage(page);
    return page;
  }
  void Close(void* page) const { closePage(page); }

 private:
  static constexpr std::size_t kCount = 4096;

  void* memory_ = reservePages(kCount);
  std::size_t next_ = 0;
};

Pages& pages() {
  static Pages pages;
  return pages;
}

void spoil(std::vector<double>& list) {
  std::ranges::fill(list, std::numeric_limits<double>::quiet_NaN());
}
void spoil(std::vector<int>& list) { std::ranges::fill(list, std::numeric_limits<int>::max()); }
void spoil(std::u16string& text) { std::ranges::fill(text, u'#'); }
template <typename Other>
void spoil(Other& /*object*/) {}

// An object in a page of its own, for one call.
template <typename Object>
class Lent {
 public:
  template <typename... Arguments>
  explicit Lent(Arguments&&... arguments)
      : object_(new (pages().Open()) Object(std::forward<Arguments>(arguments)...)) {}
  // What it has on the heap stays there, spoiled, so that it is not taken for something else.
  ~Lent() {
    spoil(*object_);
    pages().Close(object_);
  }
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;

  Object& operator*() const { return *object_; }
  Object* operator->() const { return object_; }

 private:
  Object* object_;
};

// Numbers, or null.
class LentNumbers {
 public:
  LentNumbers(const double* numbers, std::size_t count) {
    if (numbers != nullptr) {
      page_ = static_cast<double*>(pages().Open());
      std::copy_n(numbers, count, page_);
    }
  }
  ~LentNumbers() {
    if (page_ != nullptr) {
      pages().Close(page_);
    }
  }
  LentNumbers(const LentNumbers&) = delete;
  LentNumbers& operator=(const LentNumbers&) = delete;

  const double* Get() const { return page_; }

 private:
  double* page_ = nullptr;
};

class LentNode final : public KtGraphicNode {
 public:
  explicit LentNode(const KtGraphicNode& node) : KtGraphicNode(node.GetIsLabel()) {
    hasText_ = node.GetLabelText(text_);
  }
  bool GetLabelText(std::u16string& text) const override {
    if (hasText_) {
      text = text_;
    }
    return hasText_;
  }

 private:
  std::u16string text_;
  bool hasText_;
};

class LentShape final : public KtGeometry {
 public:
  explicit LentShape(const KtGeometry& shape) : KtGeometry(shape.GetGraphicType()) {
    hasParameters_ = shape.GetParameters(parameters_);
  }
  bool GetParameters(std::vector<double>& parameters) const override {
    if (hasParameters_) {
      parameters = parameters_;
    }
    return hasParameters_;
  }

 private:
  std::vector<double> parameters_;
  bool hasParameters_;
};

using Reals = std::vector<double>;
using Indices = std::vector<int>;

// NOLINTBEGIN(clang-analyzer-core.CallAndMessage): registered only where the plug-in has the slot.
void openNode(KtGraphicAttribute* attribute) {
  lender().openNode(&*Lent<KtGraphicAttribute>(*attribute));
}
bool reuse(KtGraphicAttribute* attribute) {
  return lender().reuse(&*Lent<KtGraphicAttribute>(*attribute));
}
void openLod(const Reals& ranges, double distance) {
  lender().openLod(*Lent<Reals>(ranges), distance);
}
void boundingBox(const double* min, const double* max, double size) {
  const LentNumbers low(min, 3);
  const LentNumbers high(max, 3);
  lender().boundingBox(low.Get(), high.Get(), size);
}
void material(const double* ambient, const double* diffuse, const double* specular,
              const double* emission, const double* shininess, const double* transparency) {
  const LentNumbers first(ambient, 3);
  const LentNumbers second(diffuse, 3);
  const LentNumbers third(specular, 3);
  const LentNumbers fourth(emission, 3);
  const LentNumbers fifth(shininess, 1);
  const LentNumbers sixth(transparency, 1);
  lender().material(first.Get(), second.Get(), third.Get(), fourth.Get(), fifth.Get(), sixth.Get());
}
void matrix(const double* elements) { lender().matrix(LentNumbers(elements, 16).Get()); }
bool faceGeometry(const Reals& coords, const Indices& indices, const Reals& normals,
                  const Indices& normalIndices, const Reals& texture, const Indices& textureIndices,
                  bool reverse, bool closed, bool perVertex, bool convex, const Texture* image) {
  return lender().faceGeometry(*Lent<Reals>(coords), *Lent<Indices>(indices), *Lent<Reals>(normals),
                               *Lent<Indices>(normalIndices), *Lent<Reals>(texture),
                               *Lent<Indices>(textureIndices), reverse, closed, perVertex, convex,
                               image);
}
bool faceSet(const Reals& coords, const Indices& indices, bool reverse, bool closed) {
  return lender().faceSet(*Lent<Reals>(coords), *Lent<Indices>(indices), reverse, closed);
}
bool lineSet(const Reals& coords, const Indices& indices) {
  return lender().lineSet(*Lent<Reals>(coords), *Lent<Indices>(indices));
}
bool specialGeometry(KtGeometry* shape, bool flag) {
  return lender().specialGeometry(&*Lent<LentShape>(*shape), flag);
}
bool label(KtGraphicNode* node, bool flag, int colorIndex) {
  return lender().label(&*Lent<LentNode>(*node), flag, colorIndex);
}
bool openFile(const std::u16string& path) { return lender().openFile(*Lent<std::u16string>(path)); }

// NOLINTEND(clang-analyzer-core.CallAndMessage)

// `own` where the plug-in has the slot.
template <typename Callback>
Callback where(Callback given, Callback own) {
  return given == nullptr ? nullptr : own;
}

}  // namespace

KtTraverser lendingTraverser(const KtTraverser& traverser) {
  const KtCallbacks& given = lender() = traverser.Callbacks();
  KtTraverser lending;
  lending.Init(where(given.openNode, &openNode), given.closeNode, where(given.reuse, &reuse),
               where(given.openLod, &openLod), given.closeLod,
               where(given.boundingBox, &boundingBox), where(given.material, &material),
               where(given.matrix, &matrix), where(given.faceGeometry, &faceGeometry),
               where(given.faceSet, &faceSet), where(given.lineSet, &lineSet), nullptr, nullptr,
               where(given.specialGeometry, &specialGeometry), nullptr, where(given.label, &label),
               nullptr, nullptr, where(given.openFile, &openFile), given.closeFile);
  return lending;
}

}  // namespace dxf2d
