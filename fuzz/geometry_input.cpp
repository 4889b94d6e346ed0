#include "fuzz/geometry_input.h"

#include <array>
#include <bit>
#include <cstdint>
#include <limits>

namespace {

using Limits = std::numeric_limits<double>;

constexpr std::array kOddValues = {Limits::quiet_NaN(),
                                   Limits::infinity(),
                                   -Limits::infinity(),
                                   Limits::max(),
                                   Limits::lowest(),
                                   Limits::min(),
                                   Limits::denorm_min(),
                                   1e300,
                                   -1e300,
                                   1e-160,
                                   1e15,
                                   0.1,
                                   1 + 1e-15,
                                   0.5};

constexpr std::uint8_t kGridBytes = 200;
constexpr std::uint8_t kAnyBits = 255;

int takeEntry(FuzzedDataProvider& data, std::size_t pointCount) {
  const auto kind = data.ConsumeIntegral<std::uint8_t>();
  constexpr std::uint8_t kPointBytes = 160;
  constexpr std::uint8_t kCodeBytes = 240;
  if (kind < kPointBytes) {
    return pointCount == 0 ? 0 : static_cast<int>(kind % pointCount);
  }
  if (kind < kCodeBytes) {
    return -1 - kind % 9;
  }
  if (kind < kAnyBits) {
    return static_cast<int>(pointCount) + kind - kCodeBytes;
  }
  return data.ConsumeIntegral<int>();
}

}  // namespace

double takeCoordinate(FuzzedDataProvider& data) {
  const auto kind = data.ConsumeIntegral<std::uint8_t>();
  if (kind < kGridBytes) {
    constexpr int kGrid = 5;
    return kind % kGrid - 1;
  }
  if (kind < kAnyBits) {
    const std::size_t odd = kind % (kOddValues.size() + 1);
    return odd < kOddValues.size() ? kOddValues[odd] : -0.0;
  }
  return std::bit_cast<double>(data.ConsumeIntegral<std::uint64_t>());
}

std::vector<double> takeCoords(FuzzedDataProvider& data, int most) {
  const auto points = data.ConsumeIntegralInRange<std::size_t>(0, static_cast<std::size_t>(most));
  const std::size_t remainder = points % 16 == 15 ? 2 : 0;
  std::vector<double> coords;
  while (coords.size() < 3 * points + remainder) {
    coords.push_back(takeCoordinate(data));
  }
  return coords;
}

std::vector<int> takeIndices(FuzzedDataProvider& data, std::size_t pointCount, int most) {
  const auto count = data.ConsumeIntegralInRange<std::size_t>(0, static_cast<std::size_t>(most));
  std::vector<int> indices;
  while (indices.size() < count && data.remaining_bytes() > 0) {
    indices.push_back(takeEntry(data, pointCount));
  }
  return indices;
}

KtMatrix takeMatrix(FuzzedDataProvider& data) {
  // Rows as a placement has them: the identity, a quarter turn, a mirror image, on its side,
  // leaning.
  constexpr std::array<std::array<double, 9>, 6> kTurns = {{{1, 0, 0, 0, 1, 0, 0, 0, 1},
                                                            {0, 1, 0, -1, 0, 0, 0, 0, 1},
                                                            {-1, 0, 0, 0, 1, 0, 0, 0, 1},
                                                            {1, 0, 0, 0, 0, 1, 0, -1, 0},
                                                            {1, 0, 0, 0, 0.8, 0.6, 0, -0.6, 0.8},
                                                            {0.6, 0.8, 0, -0.8, 0.6, 0, 0, 0, 1}}};
  std::array<double, 16> elements{};
  const auto kind = data.ConsumeIntegralInRange<std::size_t>(0, kTurns.size());
  if (kind == kTurns.size()) {
    for (double& element : elements) {
      element = takeCoordinate(data);
    }
  } else {
    for (std::size_t i = 0; i < 9; ++i) {
      elements[4 * (i / 3) + i % 3] = kTurns[kind][i];
    }
    for (std::size_t i = 12; i < 15; ++i) {
      elements[i] = takeCoordinate(data);
    }
    elements[15] = 1.0;
  }
  KtMatrix matrix;
  matrix.Init(elements.data());
  return matrix;
}
