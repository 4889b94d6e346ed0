#include "app/drawing/drawing_units.h"

#include <cassert>
#include <string_view>

#include "app/cli/option_values.h"

namespace dxf2d {

namespace {

struct Unit {
  std::string_view name;
  int number;
  double millimeters;
};

constexpr Unit kUnits[] = {{"mm", 4, 1.0}, {"cm", 5, 10.0}, {"m", 6, 1000.0},
                           {"km", 7, 1e6}, {"in", 1, 25.4}, {"ft", 2, 304.8}};

const Unit* unitOf(int number) {
  for (const Unit& unit : kUnits) {
    if (unit.number == number) {
      return &unit;
    }
  }
  return nullptr;
}

}  // namespace

std::optional<int> parseUnits(const std::string& name) {
  const std::string wanted = normalized(name);
  for (const Unit& unit : kUnits) {
    if (unit.name == wanted) {
      return unit.number;
    }
  }
  return std::nullopt;
}

std::string unitsName(int units) {
  const Unit* const unit = unitOf(units);
  std::string name(unit != nullptr ? unit->name : "unit ");
  return unit != nullptr ? name : name.append(std::to_string(units));
}

double unitsRatio(int from, int to) {
  const Unit* const source = unitOf(from);
  const Unit* const target = unitOf(to);
  assert(source != nullptr && target != nullptr);
  return source->millimeters / target->millimeters;
}

}  // namespace dxf2d
