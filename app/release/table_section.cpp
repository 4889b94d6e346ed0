#include "app/release/table_section.h"

#include <algorithm>
#include <string_view>

#include "app/drawing/line_type.h"
#include "app/release/head_sections.h"

namespace dxf2d::release {

namespace {

void openTable(TagWriter& tags, std::string_view kind, Handle handle, std::size_t count) {
  tags.Text(0, "TABLE");
  tags.Text(2, kind);
  tags.Reference(5, handle);
  tags.Reference(330, 0);
  tags.Subclass("AcDbSymbolTable");
  tags.Integer(70, static_cast<std::int64_t>(count));
}

void closeTable(TagWriter& tags) { tags.Text(0, "ENDTAB"); }

void openRecord(TagWriter& tags, std::string_view kind, Handle handle, Handle table,
                std::string_view subclass, std::string_view name) {
  tags.Open(kind, handle, table);
  tags.Subclass("AcDbSymbolTableRecord");
  tags.Subclass(subclass);
  tags.Text(2, name);
}

void writeEmptyTable(TagWriter& tags, std::string_view kind, Handle handle) {
  openTable(tags, kind, handle, 0);
  closeTable(tags);
}

// The one view of model space: the whole drawing from above.
void writeViewports(TagWriter& tags, const PlanExtents& extents) {
  constexpr double kAspect = 1.5;
  const PlanPoint low = extents.Low();
  const PlanPoint high = extents.High();
  const double width = high.x - low.x;
  const double height = std::max(high.y - low.y, width / kAspect);
  openTable(tags, "VPORT", kViewportTable, 1);
  openRecord(tags, "VPORT", kViewport, kViewportTable, "AcDbViewportTableRecord", "*Active");
  tags.Integer(70, 0);
  tags.FlatPoint(10, {0.0, 0.0});
  tags.FlatPoint(11, {1.0, 1.0});
  tags.FlatPoint(12, {low.x + width / 2.0, low.y + (high.y - low.y) / 2.0});
  tags.FlatPoint(13, {});
  tags.FlatPoint(14, {10.0, 10.0});
  tags.FlatPoint(15, {10.0, 10.0});
  tags.Point(16, {});
  // The direction of sight: from above.
  tags.Real(36, 1.0);
  tags.Point(17, {});
  tags.Real(40, height > 0.0 ? height : 1.0);
  tags.Real(41, kAspect);
  tags.Real(42, 50.0);
  for (const int code : {43, 44, 50, 51}) {
    tags.Real(code, 0.0);
  }
  tags.Integer(71, 0);
  tags.Integer(72, 100);
  tags.Integer(73, 1);
  tags.Integer(74, 3);
  for (const int code : {75, 76, 77, 78}) {
    tags.Integer(code, 0);
  }
  closeTable(tags);
}

void writeLineType(TagWriter& tags, Handle handle, std::string_view name, std::string_view text,
                   double dash) {
  openRecord(tags, "LTYPE", handle, kLineTypeTable, "AcDbLinetypeTableRecord", name);
  tags.Integer(70, 0);
  tags.Text(3, text);
  tags.Integer(72, 65);
  if (dash <= 0.0) {
    tags.Integer(73, 0);
    tags.Real(40, 0.0);
    return;
  }
  tags.Integer(73, 2);
  tags.Real(40, 1.5 * dash);
  tags.Real(49, dash);
  tags.Integer(74, 0);
  tags.Real(49, -0.5 * dash);
  tags.Integer(74, 0);
}

void writeLineTypes(TagWriter& tags, double dash) {
  openTable(tags, "LTYPE", kLineTypeTable, 4);
  writeLineType(tags, kByBlockLineType, "ByBlock", "", 0.0);
  writeLineType(tags, kByLayerLineType, "ByLayer", "", 0.0);
  writeLineType(tags, kContinuousLineType, kContinuousName, "Solid line", 0.0);
  writeLineType(tags, kDashedLineType, kDashedName, "Dashed __ __ __", dash);
  closeTable(tags);
}

void writeLayers(TagWriter& tags, const Drawing& drawing, const DrawingHandles& handles) {
  openTable(tags, "LAYER", kLayerTable, drawing.layers.size());
  for (std::size_t i = 0; i < drawing.layers.size(); ++i) {
    const Layer& layer = drawing.layers[i];
    openRecord(tags, "LAYER", handles.Layer(i), kLayerTable, "AcDbLayerTableRecord", layer.name);
    tags.Integer(70, 0);
    tags.Integer(62, layer.color);
    if (layer.trueColor != kNoTrueColor && drawing.release == Release::kR2004) {
      tags.Integer(420, layer.trueColor);
    }
    tags.Text(6, lineTypeName(layer.lineType));
    // -3 stands for the weight that the reader's user has set.
    tags.Integer(370, layer.lineWeight != kDefaultLineWeight ? layer.lineWeight : -3);
    tags.Reference(390, kPlotStyle);
  }
  closeTable(tags);
}

void writeTextStyles(TagWriter& tags) {
  openTable(tags, "STYLE", kStyleTable, 1);
  openRecord(tags, "STYLE", kTextStyle, kStyleTable, "AcDbTextStyleTableRecord", kTextStyleName);
  tags.Integer(70, 0);
  tags.Real(40, 0.0);
  tags.Real(41, 1.0);
  tags.Real(50, 0.0);
  tags.Integer(71, 0);
  tags.Real(42, 2.5);
  tags.Text(3, "txt");
  tags.Text(4, "");
  closeTable(tags);
}

void writeAppIds(TagWriter& tags) {
  openTable(tags, "APPID", kAppIdTable, 1);
  openRecord(tags, "APPID", kAppId, kAppIdTable, "AcDbRegAppTableRecord", "ACAD");
  tags.Integer(70, 0);
  closeTable(tags);
}

void writeDimStyles(TagWriter& tags) {
  openTable(tags, "DIMSTYLE", kDimStyleTable, 1);
  tags.Subclass("AcDbDimStyleTable");
  // Of all objects this one alone has its handle in group 105: 5 stands for a name in it.
  tags.Text(0, "DIMSTYLE");
  tags.Reference(105, kDimStyle);
  tags.Reference(330, kDimStyleTable);
  tags.Subclass("AcDbSymbolTableRecord");
  tags.Subclass("AcDbDimStyleTableRecord");
  tags.Text(2, "Standard");
  tags.Integer(70, 0);
  tags.Reference(340, kTextStyle);
  closeTable(tags);
}

void writeBlockRecord(TagWriter& tags, Handle handle, std::string_view name, Handle layout) {
  openRecord(tags, "BLOCK_RECORD", handle, kBlockRecordTable, "AcDbBlockTableRecord", name);
  tags.Reference(340, layout);
}

void writeBlockRecords(TagWriter& tags, const Drawing& drawing, const DrawingHandles& handles) {
  openTable(tags, "BLOCK_RECORD", kBlockRecordTable, drawing.blocks.size() + 2);
  writeBlockRecord(tags, kModelSpaceRecord, "*Model_Space", kModelLayout);
  writeBlockRecord(tags, kPaperSpaceRecord, "*Paper_Space", kPaperLayout);
  for (std::size_t i = 0; i < drawing.blocks.size(); ++i) {
    writeBlockRecord(tags, handles.BlockRecord(i), drawing.blocks[i].name, 0);
  }
  closeTable(tags);
}

}  // namespace

void writeTables(TagWriter& tags, const Drawing& drawing, const DrawingHandles& handles,
                 const PlanExtents& extents) {
  tags.Text(0, "SECTION");
  tags.Text(2, "TABLES");
  writeViewports(tags, extents);
  writeLineTypes(tags, drawing.dashLength);
  writeLayers(tags, drawing, handles);
  writeTextStyles(tags);
  writeEmptyTable(tags, "VIEW", kViewTable);
  writeEmptyTable(tags, "UCS", kUcsTable);
  writeAppIds(tags);
  writeDimStyles(tags);
  writeBlockRecords(tags, drawing, handles);
  tags.Text(0, "ENDSEC");
}

}  // namespace dxf2d::release
