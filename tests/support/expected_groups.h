// The text of a drawing's pieces, for comparing byte for byte.
#pragma once

#include <string>
#include <utility>
#include <vector>

using PlanPoint = std::pair<std::string, std::string>;

// x, y and 0 under `code` (two digits), code + 10 and code + 20.
inline std::string pointText(int code, const PlanPoint& point) {
  std::string text;
  const auto add = [&text](int group, const std::string& value) {
    text.append(1, ' ').append(std::to_string(group)).append(1, '\n');
    text.append(value).append(1, '\n');
  };
  add(code, point.first);
  add(code + 10, point.second);
  add(code + 20, "0.000000");
  return text;
}

inline const PlanPoint kOriginText = {"0.000000", "0.000000"};

inline std::string blockHeadText(int number) {
  const std::string name = "GO_" + std::to_string(number) + "\n";
  return "  0\nBLOCK\n  8\n0\n  2\n" + name + " 70\n64\n" + pointText(10, kOriginText) + "  3\n" +
         name;
}

inline std::string blockText(int number, const std::string& entities) {
  return blockHeadText(number) + entities + "  0\nENDBLK\n  8\n0\n";
}

// An INSERT of the block; `turn` is the value of its group 50, empty for none.
inline std::string insertText(int number, const PlanPoint& place = kOriginText,
                              const std::string& turn = "") {
  return "  0\nINSERT\n  8\n0\n 66\n    1\n  2\nGO_" + std::to_string(number) + "\n" +
         pointText(10, place) + (turn.empty() ? "" : " 50\n" + turn + "\n") + "  0\nSEQEND\n";
}

inline std::string polylineText(int color, const std::vector<PlanPoint>& points,
                                bool closed = false) {
  std::string text = "  0\nPOLYLINE\n  8\n0\n 62\n" + std::to_string(color) + "\n 66\n1\n" +
                     pointText(10, kOriginText) + (closed ? " 70\n1\n" : " 70\n0\n");
  for (const PlanPoint& point : points) {
    text += "  0\nVERTEX\n  8\n0\n 70\n0\n" + pointText(10, point);
  }
  return text + "  0\nSEQEND\n";
}

inline std::string lineText(int color, const PlanPoint& start, const PlanPoint& end) {
  return "  0\nLINE\n  8\n0\n 62\n" + std::to_string(color) + "\n" + pointText(10, start) +
         pointText(11, end);
}

// The line of one unit that tests/support/drawing_session.h draws.
inline std::string unitLineText(int color = 254) {
  return polylineText(color, {kOriginText, {"1.000000", "0.000000"}});
}

// What closes a drawing: the end of BLOCKS, and ENTITIES with `placements`.
inline std::string drawingEndText(const std::string& placements) {
  return "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n" + placements + "  0\nENDSEC\n  0\nEOF\n";
}
