#include "shapes/cylinder_writer.h"

#include <cmath>

#include "dxf/dxf_writer.h"
#include "dxf/flushed.h"
#include "ktscene/kt_matrix.h"
#include "session/block_node.h"
#include "session/export_session.h"
#include "shapes/shape_block.h"

namespace {

constexpr int kOctagonCorners = 8;
constexpr double kTwoPi = 6.283185307179586;
// Radius to diameter.
constexpr double kDiameter = 2.0;

bool areCylinderSizes(const std::vector<double>& parameters) {
  return parameters.size() == 2 && parameters[0] > 0.0 && parameters[1] > 0.0;
}

KtPoint3 midpoint(const KtPoint3& a, const KtPoint3& b) {
  return {(a.Get0() + b.Get0()) / 2.0, (a.Get1() + b.Get1()) / 2.0, (a.Get2() + b.Get2()) / 2.0};
}

}  // namespace

CylinderWriter::CylinderWriter() : writer_(DxfWriter::Instance()) {}

bool CylinderWriter::WriteCylinder(BlockNode* node, const std::vector<double>& parameters) {
  if (parameters.size() != 2 || node == nullptr || writer_ == nullptr) {
    return false;
  }
  node_ = node;
  KtMatrix matrix;
  matrix.Init(node->matrix);
  double axisX = 0.0;
  double axisY = 0.0;
  double axisZ = 0.0;
  double angle = 0.0;
  matrix.GetRotation(&axisX, &axisY, &axisZ, &angle, -1);
  return angle == 0.0 && WriteSideOutline(parameters);
}

bool CylinderWriter::WriteSideOutline(const std::vector<double>& parameters) {
  if (writer_ == nullptr || node_ == nullptr || !areCylinderSizes(parameters)) {
    return false;
  }
  const double r = parameters[0];
  const double h = parameters[1];
  const double startAngle = 0.0;
  const KtPoint3 p0(r * std::sin(startAngle), -r * std::cos(startAngle), 0.0);
  const KtPoint3 p3(p0.Get0() + kDiameter * r, p0.Get1(), 0.0);
  const KtPoint3 p1(p0.Get0(), p0.Get1() + h, 0.0);
  const KtPoint3 p2(p3.Get0() + kDiameter * r, p1.Get1(), 0.0);
  // The centre line's run names point 6, which there is not; see the header.
  return writeShapeBlock(
      *writer_, *node_,
      {{p0, p1, p2, p3, midpoint(p0, p3), midpoint(p1, p2)}, {0, 1, 2, 3, -6, 5, 6, -1}});
}

bool CylinderWriter::WriteOctagon(const std::vector<double>& parameters) {
  if (writer_ == nullptr || node_ == nullptr || !areCylinderSizes(parameters)) {
    return false;
  }
  const double r = parameters[0];
  IndexedOutline octagon;
  for (int i = kOctagonCorners; i >= 1; --i) {
    const double angle = kTwoPi * i / kOctagonCorners;
    octagon.points.emplace_back(r * std::sin(angle), -r * std::cos(angle), 0.0);
  }
  octagon.indices = {0, 1, 2, 3, 4, 5, 6, 7, -6};
  return writeShapeBlock(*writer_, *node_, octagon);
}

void CylinderWriter::WriteExtrudedCircle(BlockNode* node, double radius, double thickness) {
  if (node == nullptr || writer_ == nullptr) {
    return;
  }
  node_ = node;
  flushed(*writer_, [&](DxfWriter& writer) {
    beginShapeBlock(writer, *node_);
    writer.WriteCircleBegin();
    writer.WriteLayer();
    writer.WriteColor(node_->colorIndex);
    writer.WriteReal39(thickness);
    writer.WriteReal40(radius);
    writer.WritePoint10(node_, 0.0, 0.0, 0.0);
    writer.WriteExtrusion(node_, 0.0, 0.0, 1.0);
    writer.WriteBlockEnd();
    return true;
  });
}

bool writeCylinder(const std::vector<double>& parameters) {
  CylinderWriter writer;
  return writer.WriteCylinder(exportSession().currentNode, parameters);
}
