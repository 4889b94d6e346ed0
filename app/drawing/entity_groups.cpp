#include "app/drawing/entity_groups.h"

#include "app/cli/translation.h"

namespace dxf2d {

namespace {

constexpr int kLineWeightCode = 370;
constexpr int kTrueColorCode = 420;

}  // namespace

EntityGroups::EntityGroups(GroupReader& reader, std::vector<PlanPoint>* corners)
    : reader_(reader),
      kind_(reader.Current().value),
      line_(reader.Current().line),
      corners_(corners) {
  for (reader.Advance(); reader.Current().code != 0; reader.Advance()) {
    Take(reader);
  }
  if (corners_ != nullptr && ordinates_ != corners_->size()) {
    Fail(tr("a point has no group 20"), tr("add it or export the drawing again"));
  }
}

void EntityGroups::Take(const GroupReader& reader) {
  constexpr int kFirstReal = 10;
  constexpr int kFirstInteger = 60;
  const int code = reader.Current().code;
  if (code < kFirstReal) {
    TakeText(reader.Current());
    return;
  }
  if (code >= static_cast<int>(kCodeCount)) {
    TakeStyle(reader);
    return;
  }
  const auto slot = static_cast<std::size_t>(code);
  values_[slot] = code < kFirstInteger ? reader.Real() : reader.Integer();
  present_[slot] = true;
  if (corners_ != nullptr) {
    TakeCorner(values_[slot], code);
  }
}

void EntityGroups::TakeText(const DxfGroup& group) {
  switch (group.code) {
    case 1:
      text_ = group.value;
      break;
    case 2:
      name_ = group.value;
      break;
    case 6:
      lineTypeName_ = group.value;
      break;
    case 8:
      layerName_ = group.value;
      break;
    default:
      break;
  }
}

void EntityGroups::TakeStyle(const GroupReader& reader) {
  // Hundredths of a millimeter; what is below 0 stands for the layer's, the block's or none.
  constexpr int kMostLineWeight = 211;
  if (reader.Current().code == kLineWeightCode) {
    const int weight = reader.Integer();
    const bool isGiven = weight >= 0 && weight <= kMostLineWeight;
    lineWeight_ = isGiven ? static_cast<std::int16_t>(weight) : kDefaultLineWeight;
  } else if (reader.Current().code == kTrueColorCode) {
    trueColor_ = reader.Integer() & 0xFFFFFF;
  }
}

void EntityGroups::TakeCorner(double value, int code) {
  if (code == 10) {
    corners_->push_back({value, 0.0});
  } else if (code == 20 && ordinates_ < corners_->size()) {
    corners_->back().y = value;
    ++ordinates_;
  } else if (code == 42 && value != 0.0) {
    Fail(tr("a bulge makes an arc, which is not read"), tr("use a drawing as dxf2d writes it"));
  }
}

double EntityGroups::RequiredReal(int code) const {
  if (!Has(code)) {
    Fail(tr("group %1 is missing", {std::to_string(code)}),
         tr("add it or export the drawing again"));
  }
  return values_[static_cast<std::size_t>(code)];
}

PlanPoint EntityGroups::Point(int code) const {
  return {RequiredReal(code), RequiredReal(code + 10)};
}

void EntityGroups::RequireOnly(int code, double value) const {
  if (Real(code, value) == value) {
    return;
  }
  Fail(tr("group %1 has a value that is not supported", {std::to_string(code)}),
       tr("use a drawing written by dxf2d"));
}

void EntityGroups::Fail(const std::string& problem, const std::string& remedy) const {
  reader_.FailAt(line_, std::string(kind_.substr(0, 16)) + ": " + problem, remedy);
}

}  // namespace dxf2d
