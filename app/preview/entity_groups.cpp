#include "app/preview/entity_groups.h"

EntityGroups::EntityGroups(GroupReader& reader)
    : reader_(reader), kind_(reader.Current().value), line_(reader.Current().line) {
  for (reader.Advance(); reader.Current().code != 0; reader.Advance()) Take(reader);
}

void EntityGroups::Take(const GroupReader& reader) {
  constexpr int kFirstReal = 10;
  constexpr int kFirstInteger = 60;
  const int code = reader.Current().code;
  if (code == 1) text_ = reader.Current().value;
  if (code == 2) name_ = reader.Current().value;
  if (code < kFirstReal || code >= static_cast<int>(kCodeCount)) return;
  const auto slot = static_cast<std::size_t>(code);
  values_[slot] = code < kFirstInteger ? reader.Real() : reader.Integer();
  present_[slot] = true;
}

double EntityGroups::RequiredReal(int code) const {
  if (!Has(code)) {
    Fail("group " + std::to_string(code) + " is missing; add it or export the drawing again");
  }
  return values_[static_cast<std::size_t>(code)];
}

PlanPoint EntityGroups::Point(int code) const {
  return {RequiredReal(code), RequiredReal(code + 10)};
}

void EntityGroups::RequireOnly(int code, double value) const {
  if (Real(code, value) == value) return;
  Fail("group " + std::to_string(code) +
       " has a value that changes the shape in a way that is not read; use a drawing as dxf2d "
       "writes it");
}

void EntityGroups::Fail(const std::string& reason) const {
  reader_.FailAt(line_, std::string(kind_.substr(0, 16)) + ": " + reason);
}
