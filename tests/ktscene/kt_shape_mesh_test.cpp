#include "ktscene/kt_scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "ktscene/kt_g.h"

namespace {

std::vector<KtPoint3> pointsOf(const KtFaceSet& mesh) {
  std::vector<KtPoint3> points;
  for (std::size_t i = 0; i + 2 < mesh.coords.size(); i += 3) {
    points.emplace_back(mesh.coords[i], mesh.coords[i + 1], mesh.coords[i + 2]);
  }
  return points;
}

// How far the polygon's normal points away from `center`.
double outwardness(const KtFaceSet& mesh, unsigned first, const KtPoint3& center) {
  const std::vector<KtPoint3> points = pointsOf(mesh);
  KtPoint3 n;
  EXPECT_TRUE(KtG::ComputeNormal(points, mesh.indices, first, true, n));
  const KtPoint3& p = points[static_cast<std::size_t>(mesh.indices[first])];
  return n.Get0() * (p.Get0() - center.Get0()) + n.Get1() * (p.Get1() - center.Get1()) +
         n.Get2() * (p.Get2() - center.Get2());
}

void expectNormalsOutwards(const KtFaceSet& mesh, const KtPoint3& center) {
  unsigned first = 0;
  for (unsigned i = 0; i < mesh.indices.size(); ++i) {
    if (mesh.indices[i] != -7) {
      continue;
    }
    EXPECT_GT(outwardness(mesh, first, center), 0.0) << first;
    first = i + 1;
  }
  EXPECT_EQ(first, mesh.indices.size());
}

}  // namespace

TEST(MakeBoxMesh, StandsOnTheGroundAboutTheOrigin) {
  const KtFaceSet mesh = MakeBoxMesh({2, 4, 6});
  EXPECT_EQ(mesh.coords, (std::vector<double>{-1, -2, 0, 1, -2, 0, 1, 2, 0, -1, 2, 0,  //
                                              -1, -2, 6, 1, -2, 6, 1, 2, 6, -1, 2, 6}));
  EXPECT_EQ(mesh.indices, (std::vector<int>{3, 2, 1, 0, -7, 4, 5, 6, 7, -7, 0, 1, 5, 4, -7,
                                            1, 2, 6, 5, -7, 2, 3, 7, 6, -7, 3, 0, 4, 7, -7}));
  EXPECT_FALSE(mesh.reverseOrientation);
  EXPECT_TRUE(mesh.closedSurface);
}

TEST(MakeBoxMesh, NormalsPointOutwards) {
  expectNormalsOutwards(MakeBoxMesh({2, 4, 6}), {0, 0, 3});
}

TEST(MakeCylinderMesh, HasTwoRingsOf32Points) {
  const KtFaceSet mesh = MakeCylinderMesh({3, 5});
  ASSERT_EQ(mesh.coords.size(), 64u * 3u);
  for (std::size_t i = 0; i < 64; ++i) {
    const double phi = 6.283185307179586 * static_cast<double>(i % 32) / 32;
    EXPECT_EQ(mesh.coords[3 * i], 3 * std::cos(phi));
    EXPECT_EQ(mesh.coords[3 * i + 1], 3 * std::sin(phi));
    EXPECT_EQ(mesh.coords[3 * i + 2], i < 32 ? 0 : 5);
  }
  EXPECT_EQ(mesh.coords[0], 3);
  EXPECT_EQ(mesh.coords[1], 0);
}

TEST(MakeCylinderMesh, HasTwoCapsAnd32Sides) {
  const KtFaceSet mesh = MakeCylinderMesh({3, 5});
  EXPECT_FALSE(mesh.reverseOrientation);
  EXPECT_TRUE(mesh.closedSurface);
  ASSERT_EQ(mesh.indices.size(), 33u + 33u + 32u * 5u);
  EXPECT_EQ(mesh.indices[0], 31);
  EXPECT_EQ(mesh.indices[31], 0);
  EXPECT_EQ(mesh.indices[33], 32);
  EXPECT_EQ(mesh.indices[64], 63);
  EXPECT_EQ(std::vector<int>(mesh.indices.begin() + 66, mesh.indices.begin() + 76),
            (std::vector<int>{0, 1, 33, 32, -7, 1, 2, 34, 33, -7}));
  EXPECT_EQ(std::vector<int>(mesh.indices.end() - 5, mesh.indices.end()),
            (std::vector<int>{31, 0, 32, 63, -7}));
}

TEST(MakeCylinderMesh, NormalsPointOutwards) {
  expectNormalsOutwards(MakeCylinderMesh({3, 5}), {0, 0, 2.5});
}
