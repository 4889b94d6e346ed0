// The groups of one entity, read up to the start of the next.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/drawing/drawing.h"
#include "app/drawing/group_reader.h"

namespace dxf2d {

// The values of one entity by group code. A group that stands twice counts as it stands last;
// groups that no entity of this system has are passed over. Refers to the reader and its text.
class EntityGroups {
 public:
  // Reads from the entity's group 0, which is current, to the next group 0, which is current then.
  // Throws DxfError for values that are not numbers where the format has them: reals in groups 10
  // to 59, whole numbers in 60 to 79, 370 and 420.
  //
  // `corners`, if given, gets a point for each group 10 and the group 20 after it, for entities
  // that hold all their points themselves.
  explicit EntityGroups(GroupReader& reader, std::vector<PlanPoint>* corners = nullptr);

  bool Has(int code) const { return present_[static_cast<std::size_t>(code)]; }
  double Real(int code, double absent) const {
    return Has(code) ? values_[static_cast<std::size_t>(code)] : absent;
  }
  int Integer(int code, int absent) const { return static_cast<int>(Real(code, absent)); }
  // Groups 1, 2, 6 and 8; empty when absent.
  std::string_view Text() const { return text_; }
  std::string_view Name() const { return name_; }
  std::string_view LineTypeName() const { return lineTypeName_; }
  std::string_view LayerName() const { return layerName_; }
  // Groups 370 and 420.
  std::int16_t LineWeight() const { return lineWeight_; }
  std::int32_t TrueColor() const { return trueColor_; }

  // The number of group `code`. Throws DxfError when it is missing.
  double RequiredReal(int code) const;
  // The point of groups `code` and `code` + 10. Throws DxfError when either is missing.
  PlanPoint Point(int code) const;
  // Throws DxfError when the group stands with another value: it would change the picture, and no
  // drawing of this system has it.
  void RequireOnly(int code, double value) const;
  // Throws DxfError for the line of the entity's group 0.
  [[noreturn]] void Fail(const std::string& problem, const std::string& remedy) const;

 private:
  static constexpr std::size_t kCodeCount = 80;

  void Take(const GroupReader& reader);
  void TakeText(const DxfGroup& group);
  void TakeStyle(const GroupReader& reader);
  void TakeCorner(double value, int code);

  const GroupReader& reader_;
  std::string_view kind_;
  std::size_t line_;
  std::string_view text_;
  std::string_view name_;
  std::string_view lineTypeName_;
  std::string_view layerName_;
  std::int16_t lineWeight_ = kDefaultLineWeight;
  std::int32_t trueColor_ = kNoTrueColor;
  std::vector<PlanPoint>* corners_;
  std::size_t ordinates_ = 0;
  std::bitset<kCodeCount> present_;
  // Left unset where present_ is false: a drawing has millions of vertices with two values each.
  std::array<double, kCodeCount> values_;
};

}  // namespace dxf2d
