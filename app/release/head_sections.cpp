#include "app/release/head_sections.h"

namespace dxf2d::release {

namespace {

// $INSUNITS of inch, foot, mile, yard and what is counted in them; all others are metric.
bool isImperial(int units) {
  constexpr int kImperial[] = {1, 2, 3, 8, 9, 10};
  for (const int unit : kImperial) {
    if (unit == units) {
      return true;
    }
  }
  return false;
}

class HeaderVariables {
 public:
  explicit HeaderVariables(TagWriter& tags) : tags_(tags) {}

  void Text(std::string_view name, int code, std::string_view value) {
    tags_.Text(9, name);
    tags_.Text(code, value);
  }
  void Integer(std::string_view name, int code, int value) {
    tags_.Text(9, name);
    tags_.Integer(code, value);
  }
  void Real(std::string_view name, double value) {
    tags_.Text(9, name);
    tags_.Real(40, value);
  }
  void Point(std::string_view name, PlanPoint value) {
    tags_.Text(9, name);
    tags_.Point(10, value);
  }
  void FlatPoint(std::string_view name, PlanPoint value) {
    tags_.Text(9, name);
    tags_.FlatPoint(10, value);
  }
  void Reference(std::string_view name, int code, Handle value) {
    tags_.Text(9, name);
    tags_.Reference(code, value);
  }

 private:
  TagWriter& tags_;
};

}  // namespace

void writeHeader(TagWriter& tags, const Drawing& drawing, const PlanExtents& extents, Handle seed) {
  tags.Text(0, "SECTION");
  tags.Text(2, "HEADER");
  HeaderVariables variables(tags);
  variables.Text("$ACADVER", 1, drawing.release == Release::kR2004 ? "AC1018" : "AC1015");
  // Texts are ASCII with \U+XXXX, so that this page is never looked at.
  variables.Text("$DWGCODEPAGE", 3, "ANSI_1252");
  variables.Point("$INSBASE", {});
  variables.Point("$EXTMIN", extents.Low());
  variables.Point("$EXTMAX", extents.High());
  variables.FlatPoint("$LIMMIN", extents.Low());
  variables.FlatPoint("$LIMMAX", extents.High());
  variables.Integer("$ORTHOMODE", 70, 0);
  variables.Integer("$FILLMODE", 70, 1);
  variables.Integer("$MIRRTEXT", 70, 0);
  // The dashes are as long as they are: their length stands in the line type.
  variables.Real("$LTSCALE", 1.0);
  variables.Real("$TEXTSIZE", 2.5);
  variables.Text("$TEXTSTYLE", 7, kTextStyleName);
  variables.Text("$CLAYER", 8, drawing.layers.front().name);
  variables.Text("$CELTYPE", 6, "ByLayer");
  variables.Integer("$CECOLOR", 62, kColorByLayer);
  variables.Real("$CELTSCALE", 1.0);
  variables.Text("$DIMSTYLE", 2, "Standard");
  variables.Integer("$LUNITS", 70, 2);
  variables.Integer("$LUPREC", 70, 4);
  variables.Integer("$AUNITS", 70, 0);
  variables.Integer("$AUPREC", 70, 2);
  variables.Reference("$HANDSEED", 5, seed);
  variables.Integer("$TILEMODE", 70, 1);
  variables.Integer("$MEASUREMENT", 70, isImperial(drawing.units) ? 0 : 1);
  // As the layer says.
  variables.Integer("$CELWEIGHT", 370, -1);
  // Shows line weights on the screen.
  variables.Integer("$LWDISPLAY", 290, 1);
  variables.Integer("$INSUNITS", 70, drawing.units);
  // Plots by color, as the drawings of earlier releases do.
  variables.Integer("$PSTYLEMODE", 290, 1);
  tags.Text(0, "ENDSEC");
}

void writeClasses(TagWriter& tags, Release release) {
  struct ObjectClass {
    std::string_view record;
    std::string_view name;
    int count;
  };
  constexpr ObjectClass kClasses[] = {
      {"ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", 1},
      {"ACDBPLACEHOLDER", "AcDbPlaceHolder", 1},
      {"LAYOUT", "AcDbLayout", 2},
  };
  tags.Text(0, "SECTION");
  tags.Text(2, "CLASSES");
  for (const ObjectClass& object : kClasses) {
    tags.Text(0, "CLASS");
    tags.Text(1, object.record);
    tags.Text(2, object.name);
    tags.Text(3, "ObjectDBX Classes");
    tags.Integer(90, 0);
    if (release == Release::kR2004) {
      tags.Integer(91, object.count);
    }
    tags.Integer(280, 0);
    tags.Integer(281, 0);
  }
  tags.Text(0, "ENDSEC");
}

}  // namespace dxf2d::release
