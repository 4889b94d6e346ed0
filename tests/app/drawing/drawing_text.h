// Drawings as text, in the form in which this system writes them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dxf2d {

// A whole drawing with these BLOCKS and ENTITIES.
std::string drawingText(std::string_view blocks, std::string_view entities);

// "GO_" and the number, as blocks of this system are called.
std::string blockName(std::size_t number);
std::string blockText(std::string_view name, std::string_view entities);

// "  0\nkind\n" and the groups, given as "10=1.5 20=2"; blanks part the groups.
std::string entityText(std::string_view kind, std::string_view groups);

std::string lineText(int color, double x1, double y1, double x2, double y2);
// `points` as "x,y x,y".
std::string polylineText(int color, bool closed, std::string_view points);
std::string insertText(std::string_view block, double x, double y, double rotation = 0.0);
// `across` and `up` as groups 72 and 73.
std::string labelText(std::string_view text, double height, double x, double y, int across,
                      int up = 2, double rotation = 0.0);

// What the reader says of a malformed drawing, which it calls plan.dxf; empty when it takes it.
std::string complaintOf(const std::string& drawing);

}  // namespace dxf2d
