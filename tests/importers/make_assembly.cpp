// Writes a STEP or IGES file for the tests of the importer: make_assembly FILE [PINS]
//
// In inches: a red plate of 10 by 6 by 1 with a hole and a rounded corner, and four blue pins, or
// PINS, of radius 0.5 and height 3, which share one part named "pin".
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepFilletAPI_MakeFillet.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <IGESCAFControl_Writer.hxx>
#include <IGESControl_Controller.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <STEPControl_Controller.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <cmath>
#include <string>

namespace {

// What one inch is in the unit of the shapes, millimeters.
constexpr double kInch = 25.4;

TopoDS_Shape plate() {
  const TopoDS_Shape box = BRepPrimAPI_MakeBox(10 * kInch, 6 * kInch, 1 * kInch);
  const gp_Ax2 axis(gp_Pnt(5 * kInch, 3 * kInch, -kInch), gp::DZ());
  const TopoDS_Shape pierced =
      BRepAlgoAPI_Cut(box, BRepPrimAPI_MakeCylinder(axis, kInch, 3 * kInch));
  BRepFilletAPI_MakeFillet rounded(pierced);
  // The upright edge at the origin.
  for (TopExp_Explorer edges(pierced, TopAbs_EDGE); edges.More(); edges.Next()) {
    const TopoDS_Edge& edge = TopoDS::Edge(edges.Current());
    const gp_Pnt from = BRep_Tool::Pnt(TopExp::FirstVertex(edge));
    const gp_Pnt to = BRep_Tool::Pnt(TopExp::LastVertex(edge));
    if (std::hypot(from.X(), from.Y()) < 1e-6 && std::hypot(to.X(), to.Y()) < 1e-6) {
      rounded.Add(2 * kInch, edge);
      break;
    }
  }
  return rounded.Shape();
}

// In inches: four stand on the plate, the others beside it, a hundred in a row.
gp_Vec placeOfPin(int pin) {
  const double x = pin < 4 ? (pin % 2 == 0 ? 2.0 : 8.0) : 12.0 + 2.0 * (pin % 100);
  const double y = pin < 4 ? (pin < 2 ? 1.5 : 4.5) : 2.0 * (pin / 100);
  return {x * kInch, y * kInch, kInch};
}

Handle(TDocStd_Document) makeAssembly(int pins) {
  Handle(TDocStd_Document) document;
  XCAFApp_Application::GetApplication()->NewDocument("BinXCAF", document);
  const auto shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
  const auto colors = XCAFDoc_DocumentTool::ColorTool(document->Main());
  const TDF_Label assembly = shapes->NewShape();
  TDataStd_Name::Set(assembly, "fixture");
  const auto add = [&](const TopoDS_Shape& shape, const char* name, Quantity_NameOfColor color) {
    const TDF_Label part = shapes->AddShape(shape, false);
    TDataStd_Name::Set(part, name);
    colors->SetColor(part, Quantity_Color(color), XCAFDoc_ColorSurf);
    return part;
  };
  shapes->AddComponent(assembly, add(plate(), "plate", Quantity_NOC_RED), TopLoc_Location());
  const TDF_Label pin =
      add(BRepPrimAPI_MakeCylinder(0.5 * kInch, 3 * kInch).Shape(), "pin", Quantity_NOC_BLUE);
  for (int i = 0; i < pins; ++i) {
    gp_Trsf place;
    place.SetTranslation(placeOfPin(i));
    shapes->AddComponent(assembly, pin, TopLoc_Location(place));
  }
  shapes->UpdateAssemblies();
  return document;
}

}  // namespace

int main(int argc, char** argv) {
  Message::DefaultMessenger()->ChangePrinters().Clear();
  const std::string file = argc > 1 ? argv[1] : "";
  const Handle(TDocStd_Document) document = makeAssembly(argc > 2 ? std::stoi(argv[2]) : 4);
  if (file.ends_with(".igs")) {
    IGESControl_Controller::Init();
    Interface_Static::SetCVal("write.iges.unit", "INCH");
    IGESCAFControl_Writer writer;
    return writer.Transfer(document) && writer.Write(file.c_str()) ? 0 : 1;
  }
  STEPControl_Controller::Init();
  Interface_Static::SetCVal("write.step.unit", "INCH");
  STEPCAFControl_Writer writer;
  return writer.Transfer(document) && writer.Write(file.c_str()) == IFSelect_RetDone ? 0 : 1;
}
