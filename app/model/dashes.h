// Dashed lines, for drawings with one line type.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "app/model/plan_extent.h"

namespace dxf2d {

// A hundredth of the extent's larger side.
double defaultDashLength(const PlanExtent& extent);

// How many dashes dashesOf makes of a polyline.
double countDashes(std::span<const std::array<double, 2>> polyline, double dashLength);

// Cuts a polyline into dashes of `dashLength`, above 0, measured along it, with gaps of half of
// that between them. There is a dash at both ends; gaps are stretched for that. What is too short
// for two dashes is one.
std::vector<PlanPoints> dashesOf(std::span<const std::array<double, 2>> polyline,
                                 double dashLength);

}  // namespace dxf2d
