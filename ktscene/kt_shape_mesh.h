// Analytic shapes as the face sets that stand in for them.
#pragma once

#include "ktscene/export.h"
#include "ktscene/kt_scene.h"

// Six quadrilaterals, normals outwards.
KT_SCENE_API KtFaceSet MakeBoxMesh(const KtBox& box);
// 32 quadrilaterals about the axis and two 32-gons, normals outwards.
KT_SCENE_API KtFaceSet MakeCylinderMesh(const KtCylinder& cylinder);
