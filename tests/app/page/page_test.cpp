#include "app/page/page.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "app/drawing/dxf_reader.h"
#include "app/page/page_files.h"
#include "app/page/page_text.h"
#include "tests/app/drawing/drawing_text.h"

namespace dxf2d::page {

namespace {

std::string pageOf(const Drawing& drawing, const std::string& title = "plan") {
  PageStyle style;
  style.title = title;
  style.codePage = 65001;
  return makePage(drawing, style).html;
}

Drawing drawingOf(const std::string& blocks, const std::string& entities) {
  return parseDrawing(drawingText(blocks, entities), "plan.dxf");
}

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

// What the element <script ... id="ID"> holds.
std::string scriptOf(const std::string& html, const std::string& id) {
  const std::size_t begin = html.find('>', html.find("id=\"" + id + "\"")) + 1;
  return html.substr(begin, html.find("</script>", begin) - begin);
}

TEST(Page, HoldsItsOwnScriptAndStyleAndLoadsNothing) {
  const std::string html = pageOf(drawingOf("", lineText(1, 0, 0, 1, 1)));
  EXPECT_NE(html.find("default-src 'none'"), std::string::npos);
  EXPECT_NE(html.find("<script>" + std::string(kScript) + "</script>"), std::string::npos);
  EXPECT_NE(html.find("<style>" + std::string(kStyle) + "</style>"), std::string::npos);
  EXPECT_NE(html.find("script-src " + policySource(kScript)), std::string::npos);
  EXPECT_NE(html.find("style-src " + policySource(kStyle)), std::string::npos);
  for (const char* address : {"http:", "https:", "//cdn", "src=", "href=", "url(", "@import"}) {
    EXPECT_EQ(html.find(address), std::string::npos) << address;
  }
}

TEST(Page, NoNameBecomesMarkupOrScript) {
  const std::string evil = "</script><script>alert(1)</script><!--\xE2\x80\xA8'\"&{{SCRIPT}}";
  Drawing drawing =
      drawingOf(blockText("A", lineText(1, 0, 0, 1, 1)) + blockText("B", lineText(1, 0, 0, 1, 1)),
                insertText("A", 0, 0) + insertText("B", 2, 0) + labelText(evil, 1, 0, 0, 0));
  drawing.blocks.front().name = evil;
  drawing.layers.push_back({.name = evil});
  const std::string harmless = pageOf(drawingOf("", lineText(1, 0, 0, 1, 1)));
  const std::string html = pageOf(drawing, evil);
  for (const char* part : {"<script", "</script", "<!--", "\xE2\x80\xA8"}) {
    const std::size_t inTitles = std::string(part) == "\xE2\x80\xA8" ? 2 : 0;
    EXPECT_EQ(countOf(html, part), countOf(harmless, part) + inTitles) << part;
  }
  const auto said = nlohmann::json::parse(scriptOf(html, "drawing"));
  EXPECT_EQ(said["layers"].back()["name"], evil);
  EXPECT_EQ(said["texts"].back(), evil);
  EXPECT_EQ(said["title"], evil);
}

TEST(Page, SaysUnitsLayersAndStyles) {
  Drawing drawing = drawingOf("", lineText(1, 0, 0, 1, 1) + lineText(256, 0, 0, 2, 1));
  drawing.units = 6;
  drawing.layers.push_back(
      {.name = "Walls", .color = 5, .lineWeight = 50, .lineType = LineType::kDashed});
  const auto said = nlohmann::json::parse(scriptOf(pageOf(drawing), "drawing"));
  EXPECT_EQ(said["unit"], "m");
  EXPECT_EQ(said["extents"], nlohmann::json({0.0, 0.0, 2.0, 1.0}));
  EXPECT_EQ(said["layers"][1]["color"], 0x0000FF);
  EXPECT_EQ(said["layers"][1]["dashed"], true);
  EXPECT_EQ(said["layers"][1]["weight"], 50);
  EXPECT_EQ(said["styles"][0]["color"], 0xFF0000);
  EXPECT_TRUE(said["styles"][1]["color"].is_null());
}

TEST(Page, EmptyDrawingHasNone) { EXPECT_EQ(pageOf(drawingOf("", "")), ""); }

}  // namespace

}  // namespace dxf2d::page
