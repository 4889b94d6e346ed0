#include "tests/app/drawing/drawing_text.h"

#include <iomanip>
#include <sstream>

#include "app/drawing/dxf_reader.h"

namespace dxf2d {

namespace {

std::string real(double value) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(6) << value;
  return text.str();
}

std::string group(int code, std::string_view value) {
  std::ostringstream text;
  text << std::setw(3) << code << '\n' << value << '\n';
  return text.str();
}

std::string pointText(int code, double x, double y) {
  return group(code, real(x)) + group(code + 10, real(y)) + group(code + 20, "0.000000");
}

}  // namespace

std::string drawingText(std::string_view blocks, std::string_view entities) {
  std::string text =
      "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1006\n  9\n$EXTMIN\n 10\n-100.000000\n"
      " 20\n-100.000000\n  9\n$DIMBLK\n  1\n\n  0\nENDSEC\n"
      "  0\nSECTION\n  2\nTABLES\n  0\nTABLE\n  2\nLAYER\n 70\n1\n  0\nLAYER\n  2\n0\n 70\n64\n"
      " 62\n7\n  6\nAUSGEZOGEN\n  0\nENDTAB\n  0\nENDSEC\n  0\nSECTION\n  2\nBLOCKS\n";
  text += blocks;
  text += "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n";
  text += entities;
  return text + "  0\nENDSEC\n  0\nEOF\n";
}

std::string blockName(std::size_t number) {
  std::string name = "GO_";
  return name += std::to_string(number);
}

std::string blockText(std::string_view name, std::string_view entities) {
  return "  0\nBLOCK\n  8\n0\n" + group(2, name) + group(70, "64") + pointText(10, 0, 0) +
         group(3, name) + std::string(entities) + "  0\nENDBLK\n  8\n0\n";
}

std::string entityText(std::string_view kind, std::string_view groups) {
  std::string text = group(0, kind);
  std::istringstream words{std::string(groups)};
  for (std::string word; words >> word;) {
    const std::size_t sign = word.find('=');
    text += group(std::stoi(word.substr(0, sign)), word.substr(sign + 1));
  }
  return text;
}

std::string lineText(int color, double x1, double y1, double x2, double y2) {
  return group(0, "LINE") + group(8, "0") + group(62, std::to_string(color)) +
         pointText(10, x1, y1) + pointText(11, x2, y2);
}

std::string polylineText(int color, bool closed, std::string_view points) {
  std::string text = group(0, "POLYLINE") + group(8, "0") + group(62, std::to_string(color)) +
                     group(66, "1") + pointText(10, 0, 0) + group(70, closed ? "1" : "0");
  std::istringstream words{std::string(points)};
  double x = 0.0;
  double y = 0.0;
  for (char comma = ','; words >> x >> comma >> y;) {
    text += group(0, "VERTEX") + group(8, "0") + group(70, "0") + pointText(10, x, y);
  }
  return text + group(0, "SEQEND");
}

std::string insertText(std::string_view block, double x, double y, double rotation) {
  std::string text = group(0, "INSERT") + group(8, "0") + group(66, "    1") + group(2, block) +
                     pointText(10, x, y);
  if (rotation != 0.0) {
    text += group(50, real(rotation));
  }
  return text + group(0, "SEQEND");
}

std::string labelText(std::string_view text, double height, double x, double y, int across, int up,
                      double rotation) {
  std::string label = group(0, "TEXT") + group(40, real(height)) + group(62, "7") +
                      pointText(10, x, y) + pointText(11, x, y) +
                      group(72, std::to_string(across)) + group(73, std::to_string(up));
  if (rotation != 0.0) {
    label += group(50, real(rotation));
  }
  return label + group(41, "0.800000") + group(1, text) + group(7, "STANDARD") + group(8, "0");
}

std::string complaintOf(const std::string& drawing) {
  try {
    parseDrawing(drawing, "plan.dxf");
    return {};
  } catch (const DxfError& error) {
    return error.what();
  }
}

}  // namespace dxf2d
