// What a host may hand to the callbacks, from the bytes of a fuzz input.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <string>
#include <vector>

#include "ktscene/kt_geometry.h"
#include "ktscene/kt_graphic_node.h"
#include "ktscene/kt_scene.h"

// Any text: letters, UTF-16 units of every kind, nulls.
std::u16string takeText(FuzzedDataProvider& data);
// Mostly one of few names, so that nodes share them.
std::u16string takeName(FuzzedDataProvider& data);
// Mostly a label string with a field or two that are out of place.
std::u16string takeLabel(FuzzedDataProvider& data);
// A node with names, a transform and a color or not; without content.
KtSceneNode takeNode(FuzzedDataProvider& data);
// Sizes of a shape, as many as it has and others.
std::vector<double> takeSizes(FuzzedDataProvider& data);
// Any double.
double takeReal(FuzzedDataProvider& data);

// A graphic node that is a label or none, and has a text or none.
class AnyLabel : public KtGraphicNode {
 public:
  explicit AnyLabel(FuzzedDataProvider& data);
  bool GetLabelText(std::u16string& text) const override;

 private:
  bool hasText_;
  std::u16string text_;
};

// A shape of any type that has sizes or none.
class AnyShape : public KtGeometry {
 public:
  explicit AnyShape(FuzzedDataProvider& data);
  bool GetParameters(std::vector<double>& parameters) const override;

 private:
  bool hasSizes_;
  std::vector<double> sizes_;
};
