// What assimp makes of the units of each format, measured with one model, a square of one meter, in
// two units: some readers apply the unit that the file states, and the others leave it to us.
#include "app/model/stated_unit.h"

#include <gtest/gtest.h>
#include <minizip/zip.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "app/cli/failure.h"
#include "app/model/model_reader.h"
#include "tests/app/model/model_builder.h"
#include "tests/support/scratch_directory.h"

namespace dxf2d {
namespace {

// A meter in units, as files write it.
struct Written {
  const char* unit;
  const char* meter;
};

std::string filled(std::string text, const Written& written) {
  for (const auto& [mark, value] :
       {std::pair<std::string, std::string>{"@UNIT", written.unit}, {"@METER", written.meter}}) {
    for (std::size_t at = text.find(mark); at != text.npos; at = text.find(mark)) {
      text.replace(at, mark.size(), value);
    }
  }
  return text;
}

class StatedUnit : public testing::Test {
 protected:
  std::string Write(const char* name, const std::string& text) {
    const std::string path = folder_ / name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  static PlanScene DrawnIn(const std::string& path, LengthUnit unit) {
    const Model model = readModel(path, {UpAxis::kZ});
    PlanOptions options;
    options.up = UpAxis::kZ;
    options.units = unit;
    return makePlanScene(*model.scene, model.source, options);
  }

  static void ExpectAMeterWide(const std::string& path, LengthUnit modelUnit) {
    const PlanScene plan = DrawnIn(path, kMillimeter);
    EXPECT_NEAR(plan.content.extent.maxX - plan.content.extent.minX, 1000.0, 1e-3) << path;
    EXPECT_EQ(unitName(plan.content.modelUnit), unitName(modelUnit)) << path;
    EXPECT_EQ(plan.content.drawingUnit, kMillimeter);
  }

 private:
  ScratchDirectory folder_;
};

constexpr const char* kCollada = R"(<?xml version="1.0" encoding="utf-8"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><unit name="unit" meter="@UNIT"/><up_axis>Z_UP</up_axis></asset>
<library_geometries><geometry id="g"><mesh><source id="p"><float_array id="a" count="12">
0 0 0 @METER 0 0 @METER @METER 0 0 @METER 0</float_array><technique_common>
<accessor source="#a" count="4" stride="3"><param name="X" type="float"/><param name="Y" type="float"/>
<param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<polylist count="1"><input semantic="VERTEX" source="#v" offset="0"/><vcount>4</vcount>
<p>0 1 2 3</p></polylist></mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="s"><node id="n"><instance_geometry url="#g"/></node>
</visual_scene></library_visual_scenes><scene><instance_visual_scene url="#s"/></scene></COLLADA>)";

TEST_F(StatedUnit, ColladaIsReadAsMetersWhateverItsUnit) {
  ExpectAMeterWide(Write("m.dae", filled(kCollada, {"1", "1"})), kMeter);
  ExpectAMeterWide(Write("cm.dae", filled(kCollada, {"0.01", "100"})), kMeter);
}

constexpr const char* kIfc = R"(ISO-10303-21;
HEADER;
FILE_DESCRIPTION((''),'2;1');
FILE_NAME('a.ifc','',(''),(''),'','','');
FILE_SCHEMA(('IFC2X3'));
ENDSEC;
DATA;
#1=IFCPROJECT('0aaaaaaaaaaaaaaaaaaaaa',#5,'p',$,$,$,$,(#10),#20);
#2=IFCPERSON($,'a',$,$,$,$,$,$);
#3=IFCORGANIZATION($,'a',$,$,$);
#4=IFCPERSONANDORGANIZATION(#2,#3,$);
#5=IFCOWNERHISTORY(#4,#6,$,.ADDED.,$,$,$,0);
#6=IFCAPPLICATION(#3,'1','a','a');
#10=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-05,#11,$);
#11=IFCAXIS2PLACEMENT3D(#12,$,$);
#12=IFCCARTESIANPOINT((0.,0.,0.));
#20=IFCUNITASSIGNMENT((#21,#22));
#21=IFCSIUNIT(*,.LENGTHUNIT.,@UNIT,.METRE.);
#22=IFCSIUNIT(*,.PLANEANGLEUNIT.,$,.RADIAN.);
#30=IFCLOCALPLACEMENT($,#11);
#31=IFCSITE('0bbbbbbbbbbbbbbbbbbbbb',#5,'s',$,$,#30,#40,$,.ELEMENT.,$,$,$,$,$);
#40=IFCPRODUCTDEFINITIONSHAPE($,$,(#41));
#41=IFCSHAPEREPRESENTATION(#10,'Body','SweptSolid',(#42));
#42=IFCEXTRUDEDAREASOLID(#43,#11,#46,@METER.);
#43=IFCRECTANGLEPROFILEDEF(.AREA.,$,#44,@METER.,@METER.);
#44=IFCAXIS2PLACEMENT2D(#45,$);
#45=IFCCARTESIANPOINT((0.,0.));
#46=IFCDIRECTION((0.,0.,1.));
#50=IFCRELAGGREGATES('0ccccccccccccccccccccc',#5,$,$,#1,(#31));
ENDSEC;
END-ISO-10303-21;
)";

TEST_F(StatedUnit, IfcIsReadAsMetersWhateverItsUnit) {
  ExpectAMeterWide(Write("m.ifc", filled(kIfc, {"$", "1"})), kMeter);
  ExpectAMeterWide(Write("mm.ifc", filled(kIfc, {".MILLI.", "1000"})), kMeter);
}

constexpr const char* kFbx = R"(; FBX 7.3.0 project file
FBXHeaderExtension:  {
	FBXHeaderVersion: 1003
	FBXVersion: 7300
}
GlobalSettings:  {
	Version: 1000
	Properties70:  {
		P: "UpAxis", "int", "Integer", "",2
		P: "UnitScaleFactor", "double", "Number", "",@UNIT
	}
}
Objects:  {
	Geometry: 1, "Geometry::g", "Mesh" {
		Vertices: *12 {
			a: 0,0,0,@METER,0,0,@METER,@METER,0,0,@METER,0
		}
		PolygonVertexIndex: *4 {
			a: 0,1,2,-4
		}
		GeometryVersion: 124
	}
	Model: 2, "Model::m", "Mesh" {
		Version: 232
	}
}
Connections:  {
	C: "OO",2,0
	C: "OO",1,2
}
)";

TEST_F(StatedUnit, FbxIsReadAsWrittenAndItsUnitKept) {
  ExpectAMeterWide(Write("m.fbx", filled(kFbx, {"100", "1"})), kMeter);
  ExpectAMeterWide(Write("cm.fbx", filled(kFbx, {"1", "100"})), kCentimeter);
  ExpectAMeterWide(Write("in.fbx", filled(kFbx, {"2.54", "39.37007874"})), kInch);
}

constexpr const char* kAmf = R"(<?xml version="1.0" encoding="UTF-8"?>
<amf unit="@UNIT" version="1.1"><object id="0"><mesh><vertices>
<vertex><coordinates><x>0</x><y>0</y><z>0</z></coordinates></vertex>
<vertex><coordinates><x>@METER</x><y>0</y><z>0</z></coordinates></vertex>
<vertex><coordinates><x>@METER</x><y>@METER</y><z>0</z></coordinates></vertex></vertices>
<volume><triangle><v1>0</v1><v2>1</v2><v3>2</v3></triangle></volume></mesh></object></amf>)";

TEST_F(StatedUnit, AmfIsReadAsWrittenAndItsUnitFoundInTheFile) {
  ExpectAMeterWide(Write("mm.amf", filled(kAmf, {"millimeter", "1000"})), kMillimeter);
  ExpectAMeterWide(Write("in.amf", filled(kAmf, {"inch", "39.37007874"})), kInch);
}

constexpr const char* k3mf = R"(<?xml version="1.0" encoding="UTF-8"?>
<model unit="@UNIT" xmlns="http://schemas.microsoft.com/3dmanufacturing/core/2015/02"><resources>
<object id="1" type="model"><mesh><vertices><vertex x="0" y="0" z="0"/>
<vertex x="@METER" y="0" z="0"/><vertex x="@METER" y="@METER" z="0"/></vertices>
<triangles><triangle v1="0" v2="1" v3="2"/></triangles></mesh></object></resources>
<build><item objectid="1"/></build></model>)";

constexpr const char* kRelationships =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">
<Relationship Target="/3D/3dmodel.model" Id="rel0"
 Type="http://schemas.microsoft.com/3dmanufacturing/2013/01/3dmodel"/></Relationships>)";

void zip3mf(const std::string& path, const std::string& model) {
  zipFile package = zipOpen64(path.c_str(), APPEND_STATUS_CREATE);
  ASSERT_NE(package, nullptr);
  const std::pair<const char*, std::string> entries[] = {{"_rels/.rels", kRelationships},
                                                         {"3D/3dmodel.model", model}};
  for (const auto& [name, text] : entries) {
    zip_fileinfo info{};
    zipOpenNewFileInZip64(package, name, &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                          Z_DEFAULT_COMPRESSION, 0);
    zipWriteInFileInZip(package, text.data(), static_cast<unsigned>(text.size()));
    zipCloseFileInZip(package);
  }
  zipClose(package, nullptr);
}

TEST_F(StatedUnit, The3mfFormatIsReadAsWrittenAndItsUnitFoundInTheFile) {
  const std::string mm = Write("mm.3mf", "");
  std::filesystem::remove(mm);
  zip3mf(mm, filled(k3mf, {"millimeter", "1000"}));
  ExpectAMeterWide(mm, kMillimeter);
  const std::string foot = Write("ft.3mf", "");
  std::filesystem::remove(foot);
  zip3mf(foot, filled(k3mf, {"foot", "3.280839895"}));
  ExpectAMeterWide(foot, kFoot);
}

constexpr const char* kGltf = R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],
"nodes":[{"mesh":0}],"meshes":[{"primitives":[{"attributes":{"POSITION":0}}]}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]}],
"bufferViews":[{"buffer":0,"byteLength":36}],
"buffers":[{"byteLength":36,"uri":"data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAACAPwAAgD8AAAAA"}]})";

TEST_F(StatedUnit, GltfIsInMeters) { ExpectAMeterWide(Write("a.gltf", kGltf), kMeter); }

TEST_F(StatedUnit, FbxStatesCentimetersInSingleOrDoublePrecision) {
  aiScene scene;
  scene.mMetaData = aiMetadata::Alloc(1);
  scene.mMetaData->Set(0, "UnitScaleFactor", 2.54);
  EXPECT_EQ(unitName(statedUnit(scene, "Autodesk FBX Importer", "")), "in");
  scene.mMetaData->Set(0, "UnitScaleFactor", 100.0F);
  EXPECT_EQ(statedUnit(scene, "Autodesk FBX Importer", ""), kMeter);
  scene.mMetaData->Set(0, "UnitScaleFactor", -1.0);
  EXPECT_FALSE(statedUnit(scene, "Autodesk FBX Importer", "").IsKnown());
}

constexpr const char* kStl = R"(solid a
facet normal 0 0 1
outer loop
vertex 0 0 0
vertex 1 0 0
vertex 1 1 0
endloop
endfacet
endsolid a
)";

TEST_F(StatedUnit, WithoutAnyTheUserMustGiveIt) {
  const std::string path = Write("a.stl", kStl);
  try {
    DrawnIn(path, kMillimeter);
    ADD_FAILURE() << "not refused";
  } catch (const UsageError& error) {
    EXPECT_NE(std::string(error.what()).find("--source-units"), std::string::npos);
  }
  const Model model = readModel(path);
  EXPECT_FALSE(model.source.unit.IsKnown());
  PlanOptions options;
  options.sourceUnits = kInch;
  options.units = kMillimeter;
  options.scale = 0.5;
  const PlanScene plan = makePlanScene(*model.scene, model.source, options);
  EXPECT_NEAR(plan.content.extent.maxX, 12.7, 1e-9);
}

TEST_F(StatedUnit, TheFilesOwnUnitWins) {
  const Model model =
      readModel(Write("mm.amf", filled(kAmf, {"millimeter", "1000"})), {UpAxis::kZ});
  PlanOptions options;
  options.sourceUnits = kInch;
  options.units = kMeter;
  const PlanScene plan = makePlanScene(*model.scene, model.source, options);
  EXPECT_NEAR(plan.content.extent.maxX, 1.0, 1e-6);
}

}  // namespace
}  // namespace dxf2d
