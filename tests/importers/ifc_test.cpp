// IFC by way of dxf2d-import-ifc.
#include <gtest/gtest.h>

#include <array>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/cli/exit_code.h"
#include "tests/app/export/dxf2d_program.h"

namespace dxf2d {
namespace {

// What a house is written with.
struct Writing {
  const char* schema;
  // "MILLI", or nothing for meters.
  const char* prefix;
  // Of the site, in meters.
  std::array<double, 3> site;
};

void PrintTo(const Writing& writing, std::ostream* out) {
  *out << writing.schema << ", " << (*writing.prefix == '\0' ? "METRE" : writing.prefix)
       << ", site at " << writing.site[0];
}

// Writes a house of two storeys, at 0 and 3 m: on each a wall of 6 by 0.2 by 2.5 m with an opening,
// and three windows of 1 by 0.1 by 1.2 m that share one shape; on the ground floor a space.
class HouseWriter {
 public:
  explicit HouseWriter(const Writing& writing)
      : isOld_(std::string(writing.schema) == "IFC2X3"),
        perMeter_(*writing.prefix == '\0'  ? 1.0
                  : *writing.prefix == 'C' ? 100.0
                                           : 1000.0) {
    text_ << "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION((''),'2;1');\n"
             "FILE_NAME('house.ifc','2026-01-01T00:00:00',(''),(''),'','','');\nFILE_SCHEMA(('"
          << writing.schema << "'));\nENDSEC;\nDATA;\n";
    const std::string prefix =
        *writing.prefix == '\0' ? "$" : "." + std::string(writing.prefix) + ".";
    const std::string unit = Add("IFCSIUNIT(*,.LENGTHUNIT.," + prefix + ",.METRE.)");
    history_ = isOld_ ? AddHistory() : "$";
    context_ =
        Add("IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-05," + Axes({0, 0, 0}) + ",$)");
    const std::string units = Add("IFCUNITASSIGNMENT((" + unit + "))");
    const std::string project = Root("IFCPROJECT", "'House',$,$,$,$,(" + context_ + ")," + units);
    const std::string sitePlace = Place("$", writing.site);
    const std::string site =
        Root("IFCSITE", "'Site',$,$," + sitePlace + ",$,$,.ELEMENT.,$,$,$,$,$");
    const std::string housePlace = Place(sitePlace, {0, 0, 0});
    const std::string house =
        Root("IFCBUILDING", "'House',$,$," + housePlace + ",$,$,.ELEMENT.,$,$,$");
    Aggregate(project, {site});
    Aggregate(site, {house});
    Aggregate(house, {Storey("Ground floor", housePlace, 0.0, true),
                      Storey("Upper floor", housePlace, 3.0, false)});
  }

  std::string Text() const { return text_.str() + "ENDSEC;\nEND-ISO-10303-21;\n"; }

 private:
  using Triple = std::array<double, 3>;

  std::string Number(double meters) const { return Real(meters * perMeter_); }
  static std::string Real(double value) {
    std::ostringstream text;
    text.precision(15);
    text << value;
    return text.str().find('.') == std::string::npos ? text.str() + "." : text.str();
  }
  std::string Add(const std::string& entity) {
    const std::string number = "#" + std::to_string(++last_);
    text_ << number << "=" << entity << ";\n";
    return number;
  }
  std::string Root(const std::string& type, const std::string& rest) {
    // 22 characters that are different for each.
    std::ostringstream id;
    id << "0aaaaaaaaaaaaaaaaa" << 1000 + last_;
    return Add(type + "('" + id.str() + "'," + history_ + "," + rest + ")");
  }
  std::string AddHistory() {
    const std::string person = Add("IFCPERSON($,'a',$,$,$,$,$,$)");
    const std::string organization = Add("IFCORGANIZATION($,'a',$,$,$)");
    const std::string both = Add("IFCPERSONANDORGANIZATION(" + person + "," + organization + ",$)");
    const std::string program = Add("IFCAPPLICATION(" + organization + ",'1','a','a')");
    return Add("IFCOWNERHISTORY(" + both + "," + program + ",$,.ADDED.,$,$,$,0)");
  }
  std::string Axes(const Triple& at) {
    const std::string point = Add("IFCCARTESIANPOINT((" + Number(at[0]) + "," + Number(at[1]) +
                                  "," + Number(at[2]) + "))");
    return Add("IFCAXIS2PLACEMENT3D(" + point + ",$,$)");
  }
  std::string Place(const std::string& parent, const Triple& at) {
    return Add("IFCLOCALPLACEMENT(" + parent + "," + Axes(at) + ")");
  }
  // A box from the origin of its placement.
  std::string Box(const Triple& size) {
    const std::string middle =
        Add("IFCCARTESIANPOINT((" + Number(size[0] / 2) + "," + Number(size[1] / 2) + "))");
    const std::string axes = Add("IFCAXIS2PLACEMENT2D(" + middle + ",$)");
    const std::string profile = Add("IFCRECTANGLEPROFILEDEF(.AREA.,$," + axes + "," +
                                    Number(size[0]) + "," + Number(size[1]) + ")");
    const std::string up = Add("IFCDIRECTION((0.,0.,1.))");
    const std::string solid = Add("IFCEXTRUDEDAREASOLID(" + profile + "," + Axes({0, 0, 0}) + "," +
                                  up + "," + Number(size[2]) + ")");
    return Add("IFCSHAPEREPRESENTATION(" + context_ + ",'Body','SweptSolid',(" + solid + "))");
  }
  std::string Shape(const std::string& representation) {
    return Add("IFCPRODUCTDEFINITIONSHAPE($,$,(" + representation + "))");
  }
  void Aggregate(const std::string& whole, const std::vector<std::string>& parts) {
    Root("IFCRELAGGREGATES", "$,$," + whole + "," + List(parts));
  }
  static std::string List(const std::vector<std::string>& items) {
    std::string list = "(";
    for (const std::string& item : items) {
      list += (list.size() == 1 ? "" : ",") + item;
    }
    return list + ")";
  }
  // The last attributes of an element, which later versions have more of.
  std::string Kind(const std::string& newer) const { return isOld_ ? "" : newer; }

  std::string Storey(const std::string& name, const std::string& house, double height,
                     bool hasSpace) {
    const std::string place = Place(house, {0, 0, height});
    const std::string storey = Root(
        "IFCBUILDINGSTOREY", "'" + name + "',$,$," + place + ",$,$,.ELEMENT.," + Number(height));
    std::vector<std::string> elements = {Wall(place)};
    const std::string map =
        Add("IFCREPRESENTATIONMAP(" + Axes({0, 0, 0}) + "," + Box({1, 0.1, 1.2}) + ")");
    for (int i = 0; i < 3; ++i) {
      elements.push_back(Window(place, map, i));
    }
    Root("IFCRELCONTAINEDINSPATIALSTRUCTURE", "$,$," + List(elements) + "," + storey);
    if (hasSpace) {
      const std::string at = Place(place, {1, 1, 0});
      Aggregate(storey, {Root("IFCSPACE", "'Room',$,$," + at + "," + Shape(Box({3, 3, 2.5})) +
                                              ",'Living room',.ELEMENT.,.INTERNAL.,$")});
    }
    return storey;
  }
  std::string Wall(const std::string& storey) {
    const std::string place = Place(storey, {0, 0, 0});
    const std::string wall = Root(
        "IFCWALL", "'Wall',$,$," + place + "," + Shape(Box({6, 0.2, 2.5})) + ",$" + Kind(",$"));
    const std::string opening =
        Root("IFCOPENINGELEMENT", "'Hole',$,$," + Place(place, {2, -0.1, 1}) + "," +
                                      Shape(Box({1, 0.4, 1.2})) + ",$" + Kind(",$"));
    Root("IFCRELVOIDSELEMENT", "$,$," + wall + "," + opening);
    return wall;
  }
  std::string Window(const std::string& storey, const std::string& map, int number) {
    const std::string origin = Add("IFCCARTESIANPOINT((0.,0.,0.))");
    const std::string turn = Add("IFCCARTESIANTRANSFORMATIONOPERATOR3D($,$," + origin + ",1.,$)");
    const std::string item = Add("IFCMAPPEDITEM(" + map + "," + turn + ")");
    const std::string shape = Shape(Add("IFCSHAPEREPRESENTATION(" + context_ +
                                        ",'Body','MappedRepresentation',(" + item + "))"));
    const double x = 2.0 * number;
    return Root("IFCWINDOW", "'Window " + std::to_string(number + 1) + "',$,$," +
                                 Place(storey, {x, 4, 1}) + "," + shape + ",$," + Number(1.2) +
                                 "," + Number(1) + Kind(",$,$,$"));
  }

  bool isOld_;
  double perMeter_;
  int last_ = 0;
  std::string history_;
  std::string context_;
  std::ostringstream text_;
};

class IfcImport : public Dxf2d, public testing::WithParamInterface<Writing> {
 protected:
  std::string House() const { return Write("house.ifc", HouseWriter(GetParam()).Text()); }
  int Export(const std::string& options = "") {
    return Run("export " + House() + " -f -o " + Path("out.dxf") + " " + options);
  }
  void ExpectSummary(const std::string& part) const {
    EXPECT_NE(out_.find(part), std::string::npos) << "no '" << part << "' in: " << out_;
  }
  // The least and greatest x of a finished drawing's polylines.
  std::array<double, 2> Width() const {
    std::istringstream drawing(Read(Path("out.dxf")));
    std::array<double, 2> range = {1e300, -1e300};
    std::string code;
    std::string value;
    bool isVertex = false;
    while (std::getline(drawing, code) && std::getline(drawing, value)) {
      if (std::stoi(code) == 0) {
        isVertex = value == "LWPOLYLINE";
      } else if (isVertex && std::stoi(code) == 10) {
        range = {std::min(range[0], std::stod(value)), std::max(range[1], std::stod(value))};
      }
    }
    return range;
  }
};

class IfcNames : public Dxf2d {};

TEST_P(IfcImport, ProductsAreObjectsAndMappedOnesShareABlock) {
  ASSERT_EQ(Export(), kExitDone) << error_;
  ExpectSummary("8 objects");
  ExpectSummary("unit m");
  ExpectSummary("; read by dxf2d-import-ifc");
}

TEST_F(IfcNames, OfStoreysAreListedWhenNoneFits) {
  const std::string house = Write("house.ifc", HouseWriter({"IFC4", "", {}}).Text());
  EXPECT_EQ(Run("export " + house + " -o " + Path("out.dxf") + " --storey cellar"), kExitUsage);
  EXPECT_NE(error_.find("'Ground floor', 'Upper floor'"), std::string::npos) << error_;
}

TEST_F(IfcNames, AreThoseOfProductsWithoutSpacesAndOpenings) {
  const std::string house = Write("house.ifc", HouseWriter({"IFC4", "MILLI", {}}).Text());
  ASSERT_EQ(Run("export --list --json " + house), kExitDone) << error_;
  EXPECT_NE(out_.find("Window 2"), std::string::npos) << out_;
  EXPECT_EQ(out_.find("Room"), std::string::npos) << out_;
  EXPECT_EQ(out_.find("Hole"), std::string::npos) << out_;
}

TEST_F(IfcNames, OfSpacesAreTheLongOnesWhereSpacesAreWanted) {
  const std::string house = Write("house.ifc", HouseWriter({"IFC4", "MILLI", {}}).Text());
  ASSERT_EQ(Run("export --list --json --spaces " + house), kExitDone) << error_;
  EXPECT_NE(out_.find("Living room"), std::string::npos) << out_;
  EXPECT_EQ(out_.find("Hole"), std::string::npos) << out_;
  ASSERT_EQ(Run("export --spaces " + house + " -o " + Path("out.dxf")), kExitDone) << error_;
  EXPECT_NE(out_.find(": 9 objects"), std::string::npos) << out_;
  EXPECT_EQ(out_.find("no effect"), std::string::npos) << out_;
}

TEST_P(IfcImport, LiesWhereItsSiteIsToTheMicrometer) {
  ASSERT_EQ(Export("--cut 4.2 --only wall --explode"), kExitDone) << error_;
  const auto [low, high] = Width();
  EXPECT_NEAR(low, GetParam().site[0], 2e-6);
  EXPECT_NEAR(high, GetParam().site[0] + 6.0, 2e-6);
}

TEST_F(IfcNames, AreOfFilesInWhichZIsUp) {
  const std::string house = Write("house.ifc", HouseWriter({"IFC4", "", {}}).Text());
  ASSERT_EQ(Run("export " + house + " -o " + Path("auto.dxf")), kExitDone) << error_;
  ASSERT_EQ(Run("export " + house + " -o " + Path("z.dxf") + " --up z"), kExitDone) << error_;
  EXPECT_EQ(Read(Path("auto.dxf")), Read(Path("z.dxf")));
}

TEST_P(IfcImport, StoreysAreCutAboveTheirFloors) {
  ASSERT_EQ(Export("--storey 'Upper floor'"), kExitDone) << error_;
  ExpectSummary("4 objects");
}

INSTANTIATE_TEST_SUITE_P(
    Houses, IfcImport,
    testing::Values(
        Writing{"IFC2X3", "MILLI", {0, 0, 0}}, Writing{"IFC2X3", "", {500000.25, 20, 3}},
        Writing{"IFC4", "MILLI", {0, 0, 0}}, Writing{"IFC4", "", {0, 0, 0}},
        Writing{"IFC4", "MILLI", {500000.25, 5400000.5, 120}},
        Writing{"IFC4", "", {500000.25, 5400000.5, 120}},
        Writing{"IFC4", "MILLI", {-70000.125, 20, -3}}, Writing{"IFC4", "", {0, 7000000.25, 0}},
        Writing{"IFC4", "CENTI", {12.5, -8, 0}},
        Writing{"IFC4", "CENTI", {500000.25, 5400000.5, 0}},
        Writing{"IFC4X3_ADD2", "MILLI", {0, 0, 0}}, Writing{"IFC4X3_ADD2", "", {-70000.125, 0, 0}},
        Writing{"IFC4X3_ADD2", "MILLI", {500000.25, 5400000.5, 0}}));

class BrokenIfc : public Dxf2d {};

TEST_F(BrokenIfc, IsOneSentence) {
  for (const char* text :
       {"solid part", "ISO-10303-21;\nHEADER;\n", "ISO-10303-21;\nDATA;\n#1=IFCWALL(", ""}) {
    EXPECT_EQ(Run("export " + Write("broken.ifc", text) + " -o " + Path("out.dxf")), kExitInput)
        << text;
    ExpectOneSentence();
  }
}

}  // namespace
}  // namespace dxf2d
