#include "fuzz/random_host/reference_scene.h"

#include "ktscene/kt_scene_reader.h"

namespace {

constexpr std::string_view kScene = R"({ "nodes": [
  { "objectId": "G", "matrix": [1, 0, 0, 0,  0, 1, 0, 0,  0, 0, 1, 0,  100, 50, 0, 1],
    "children": [
      { "graphicName": "leg", "objectId": "L1", "realObjectId": "L1",
        "matrix": [1, 0, 0, 0,  0, 1, 0, 0,  0, 0, 1, 0,  1, 0, 0, 1],
        "geometry": [ { "faceSet": {
          "coords": [0, 0, 0,  1, 0, 0,  0, 1, 0,  1, 1, 0,  2, 1, 3,  2, 0, 3],
          "indices": [0, 1, 2, -7, 0, 1, 2, 3, 4, -3, 0, 1, 3, 4, -4, 1, 5, 4, 0, 1, 3, -5,
                      0, 4, 5, -6, 2, 5, -1] } } ] },
      { "graphicName": "leg", "objectId": "L2", "realObjectId": "L2",
        "matrix": [0, 1, 0, 0,  -1, 0, 0, 0,  0, 0, 1, 0,  2, 0, 0, 1],
        "geometry": [ { "box": [1, 2, 3] } ] },
      { "graphicName": "leg", "objectId": "L3", "realObjectId": "L3", "color": [0, 1, 0],
        "geometry": [ { "cylinder": [1, 2] } ] } ] },
  { "children": [ { "color": [0.2, 0.4, 0.9], "children": [ { "geometry": [
      { "box": [4, 2, 1] },
      { "lineSet": { "coords": [0, 0, 0,  3, 0, 1,  3, 4, 2,  0, 4, 3,  0, 4, 9],
                     "indices": [0, 1, 2, -6, 3, 0, -1, 3, 4, -1] } } ] } ] } ] },
  { "graphicName": "upright", "objectId": "U", "realObjectId": "U",
    "matrix": [1, 0, 0, 0,  0, 0, 1, 0,  0, -1, 0, 0,  10, 20, 30, 1],
    "geometry": [ { "box": [2, 4, 6] } ] },
  { "lod": { "levels": [ { "graphicName": "near", "objectId": "A",
                           "geometry": [ { "box": [1, 2, 2] } ] } ] } },
  { "graphicName": "note", "objectId": "N", "label": { "colorIndex": 3,
    "text": "T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"\u00dcber 3 \u20ac, \u4e2d\" \"line\"" } } ] })";

}  // namespace

KtScene referenceScene() { return ParseScene(kScene, "the reference scene"); }
