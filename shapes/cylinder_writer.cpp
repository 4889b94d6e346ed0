#include "shapes/cylinder_writer.h"

#include <cmath>

#include "dxf/dxf_writer.h"
#include "dxf/flush_guard.h"
#include "ktscene/kt_run_code.h"
#include "session/export_session.h"
#include "session/record/block_node.h"
#include "shapes/shape_block.h"

namespace dxf2d {

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

CylinderWriter::CylinderWriter() : writer_(exportSession().writer) {}

bool CylinderWriter::WriteCylinder(BlockNode* node, const std::vector<double>& parameters) {
  if (parameters.size() != 2 || node == nullptr || writer_ == nullptr) {
    return false;
  }
  node_ = node;
  double axisX = 0.0;
  double axisY = 0.0;
  double axisZ = 0.0;
  double angle = 0.0;
  node->matrix.GetRotation(&axisX, &axisY, &axisZ, &angle, -1);
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
  // The center line's run names point 6, which does not exist; see the header.
  return writeShapeBlock(*writer_, *node_,
                         {{p0, p1, p2, p3, midpoint(p0, p3), midpoint(p1, p2)},
                          {0, 1, 2, 3, KtRunCode::kLineStrip, 5, 6, KtRunCode::kSegment}});
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
  octagon.indices = {0, 1, 2, 3, 4, 5, 6, 7, KtRunCode::kLineStrip};
  return writeShapeBlock(*writer_, *node_, octagon);
}

void CylinderWriter::WriteExtrudedCircle(BlockNode* node, double radius, double thickness) {
  if (node == nullptr || writer_ == nullptr) {
    return;
  }
  node_ = node;
  const FlushGuard flush(*writer_);
  beginShapeBlock(*writer_, *node_);
  writer_->WriteCircleBegin();
  writer_->WriteLayer();
  writer_->WriteColor(node_->colorIndex);
  writer_->WriteReal39(thickness);
  writer_->WriteReal40(radius);
  writer_->WritePoint10(node_, 0.0, 0.0, 0.0);
  writer_->WriteExtrusion(node_, 0.0, 0.0, 1.0);
  writer_->WriteBlockEnd();
}

bool writeCylinder(const std::vector<double>& parameters) {
  CylinderWriter writer;
  return writer.WriteCylinder(exportSession().currentNode, parameters);
}

}  // namespace dxf2d
