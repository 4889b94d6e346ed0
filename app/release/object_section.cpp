#include "app/release/object_section.h"

#include <initializer_list>
#include <string_view>

#include "app/release/drawing_handles.h"

namespace dxf2d::release {

namespace {

struct Entry {
  std::string_view name;
  Handle handle;
};

void writeDictionary(TagWriter& tags, Handle handle, Handle owner,
                     std::initializer_list<Entry> entries) {
  tags.Open("DICTIONARY", handle, owner);
  tags.Subclass("AcDbDictionary");
  tags.Integer(281, 1);
  for (const Entry& entry : entries) {
    tags.Text(3, entry.name);
    tags.Reference(350, entry.handle);
  }
}

void writePlotStyles(TagWriter& tags) {
  tags.Open("ACDBDICTIONARYWDFLT", kPlotStyleDictionary, kRootDictionary);
  tags.Subclass("AcDbDictionary");
  tags.Integer(281, 1);
  tags.Text(3, "Normal");
  tags.Reference(350, kPlotStyle);
  tags.Subclass("AcDbDictionaryWithDefault");
  tags.Reference(340, kPlotStyle);
  tags.Open("ACDBPLACEHOLDER", kPlotStyle, kPlotStyleDictionary);
}

void writeMlineStyle(TagWriter& tags) {
  tags.Open("MLINESTYLE", kMlineStyle, kMlineStyleDictionary);
  tags.Subclass("AcDbMlineStyle");
  tags.Text(2, "Standard");
  tags.Integer(70, 0);
  tags.Text(3, "");
  tags.Integer(62, kColorByLayer);
  tags.Real(51, 90.0);
  tags.Real(52, 90.0);
  tags.Integer(71, 2);
  for (const double offset : {0.5, -0.5}) {
    tags.Real(49, offset);
    tags.Integer(62, kColorByLayer);
    tags.Text(6, "BYLAYER");
  }
}

// Sheet A3 in landscape, in millimeters.
void writePlotSettings(TagWriter& tags, bool isModel) {
  tags.Subclass("AcDbPlotSettings");
  tags.Text(1, "");
  tags.Text(2, "none_device");
  tags.Text(4, "A3");
  tags.Text(6, "");
  constexpr double kMargin = 7.5;
  for (const int code : {40, 41, 42, 43}) {
    tags.Real(code, kMargin);
  }
  tags.Real(44, 420.0);
  tags.Real(45, 297.0);
  for (const int code : {46, 47, 48, 49, 140, 141}) {
    tags.Real(code, 0.0);
  }
  tags.Real(142, 1.0);
  tags.Real(143, 1.0);
  // 1024: these are the settings of model space.
  tags.Integer(70, isModel ? 1024 : 0);
  tags.Integer(72, 1);
  tags.Integer(73, 0);
  tags.Integer(74, 5);
  tags.Text(7, "");
  tags.Integer(75, 16);
  tags.Real(147, 1.0);
  tags.Real(148, 0.0);
  tags.Real(149, 0.0);
}

void writeLayout(TagWriter& tags, Handle handle, Handle space, const PlanExtents& extents,
                 bool isModel) {
  tags.Open("LAYOUT", handle, kLayoutDictionary);
  writePlotSettings(tags, isModel);
  tags.Subclass("AcDbLayout");
  tags.Text(1, isModel ? "Model" : "Layout1");
  tags.Integer(70, 1);
  tags.Integer(71, isModel ? 0 : 1);
  tags.FlatPoint(10, {0.0, 0.0});
  tags.FlatPoint(11, {420.0, 297.0});
  tags.Point(12, {});
  tags.Point(14, extents.Low());
  tags.Point(15, extents.High());
  tags.Real(146, 0.0);
  tags.Point(13, {});
  tags.Point(16, {1.0, 0.0});
  tags.Point(17, {0.0, 1.0});
  tags.Integer(76, 0);
  tags.Reference(330, space);
}

}  // namespace

void writeObjects(TagWriter& tags, const PlanExtents& extents) {
  tags.Text(0, "SECTION");
  tags.Text(2, "OBJECTS");
  writeDictionary(tags, kRootDictionary, 0,
                  {{"ACAD_GROUP", kGroupDictionary},
                   {"ACAD_LAYOUT", kLayoutDictionary},
                   {"ACAD_MLINESTYLE", kMlineStyleDictionary},
                   {"ACAD_PLOTSTYLENAME", kPlotStyleDictionary}});
  writeDictionary(tags, kGroupDictionary, kRootDictionary, {});
  writeDictionary(tags, kLayoutDictionary, kRootDictionary,
                  {{"Model", kModelLayout}, {"Layout1", kPaperLayout}});
  writeDictionary(tags, kMlineStyleDictionary, kRootDictionary, {{"Standard", kMlineStyle}});
  writePlotStyles(tags);
  writeMlineStyle(tags);
  writeLayout(tags, kModelLayout, kModelSpaceRecord, extents, true);
  writeLayout(tags, kPaperLayout, kPaperSpaceRecord, {}, false);
  tags.Text(0, "ENDSEC");
}

}  // namespace dxf2d::release
