// Everything that a scene file must not hold, with the place and the reason that are reported.
#include <gtest/gtest.h>

#include "ktscene/kt_scene_reader.h"

namespace {

// The sentence of the refusal of `json`, without the file's name; empty when it is read.
std::string refusal(const std::string& json) {
  try {
    ParseScene(json, "scene.json");
    return {};
  } catch (const KtSceneError& error) {
    const std::string sentence = error.what();
    EXPECT_TRUE(sentence.starts_with("scene.json: ")) << sentence;
    EXPECT_EQ(sentence.find('\n'), std::string::npos) << sentence;
    EXPECT_EQ(sentence.find("json.exception"), std::string::npos) << sentence;
    return sentence.substr(12);
  }
}

struct Case {
  std::string text;
  std::string sentence;
};

// Each text stands in the braces of a scene's only node.
void expectNodeRefusals(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    EXPECT_EQ(refusal("{\"nodes\":[{" + c.text + "}]}"), "/nodes/0" + c.sentence) << c.text;
  }
}

void expectRefusals(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    EXPECT_EQ(refusal(c.text), c.sentence) << c.text;
  }
}

std::string matrixWith(std::size_t position, const std::string& value) {
  std::vector<std::string> elements = {"1", "0", "0", "0", "0", "1", "0", "0",
                                       "0", "0", "1", "0", "0", "0", "0", "1"};
  elements[position] = value;
  std::string text = "\"matrix\":[" + elements[0];
  for (std::size_t i = 1; i < elements.size(); ++i) {
    text += "," + elements[i];
  }
  return text + "]";
}

}  // namespace

TEST(SceneRefusal, TheSceneItself) {
  expectRefusals({
      {"[]", "must be an object, is a list"},
      {"null", "must be an object, is null"},
      {"7", "must be an object, is an integer"},
      {"\"x\"", "must be an object, is a string"},
      {"{}", "must have \"nodes\""},
      {R"({"nodes":{}})", "/nodes: must be a list of objects, is an object"},
      {R"({"nodes":null})", "/nodes: must be a list of objects, is null"},
      {R"({"nodes":[[]]})", "/nodes/0: must be an object, is a list"},
      {R"({"nodes":[{},{},3]})", "/nodes/2: must be an object, is an integer"},
      {R"({"nodes":[],"nodes":[]})", "/nodes: appears twice"},
      {R"({"nodes":[],"format":"scene"})", "/format: must be \"ktscene\""},
      {R"({"nodes":[],"format":1})", "/format: must be a string, is an integer"},
      {R"({"nodes":[],"version":2})", "/version: must be 1, the only version"},
      {R"({"nodes":[],"version":1.0})", "/version: must be a 32-bit integer, is another number"},
      {R"({"nodes":[],"version":"1"})", "/version: must be a 32-bit integer, is a string"},
      {R"({"nodes":[],"node":[]})", "/node: is not a key of a scene"},
  });
}

TEST(SceneRefusal, UnknownKeys) {
  expectNodeRefusals({
      {R"("colour":[1,1,1])", "/colour: is not a key of a node"},
      {R"("coords":[1,1,1])", "/coords: is not a key of a node"},
      {R"("":1)", "/: is not a key of a node"},
      {R"("a/b~c":1)", "/a~1b~0c: is not a key of a node"},
      {R"("a\nb":1)", "/a\\u000Ab: is not a key of a node"},
      {R"("label":{"font":"x"})", "/label/font: is not a key of a label"},
      {R"("bounds":{"size":1})", "/bounds/size: is not a key of bounds"},
      {R"("lod":{"range":[]})", "/lod/range: is not a key of a level-of-detail group"},
      {R"("geometry":[{"sphere":[1]}])", "/geometry/0/sphere: is not a key of a geometry item"},
      {R"("geometry":[{"faceSet":{"normals":[]}}])",
       "/geometry/0/faceSet/normals: is not a key of a face set"},
      {R"("geometry":[{"lineSet":{"closedSurface":true}}])",
       "/geometry/0/lineSet/closedSurface: is not a key of a line set"},
  });
}

TEST(SceneRefusal, DoubledKeys) {
  expectNodeRefusals({
      {R"("objectId":"a","objectId":"a")", "/objectId: appears twice"},
      {R"("label":{"text":"a","text":"b"})", "/label/text: appears twice"},
      {R"("geometry":[{"box":[1,1,1],"box":[1,1,1]}])", "/geometry/0/box: appears twice"},
  });
}

TEST(SceneRefusal, MissingKeys) {
  expectNodeRefusals({
      {R"("label":{})", "/label: must have \"text\""},
      {R"("label":{"colorIndex":1})", "/label: must have \"text\""},
      {R"("bounds":{"min":[0,0,0]})", "/bounds: must have \"max\""},
      {R"("bounds":{"max":[0,0,0]})", "/bounds: must have \"min\""},
      {R"("lod":{})", "/lod: must have \"levels\""},
      {R"("lod":{"ranges":[1]})", "/lod: must have \"levels\""},
      {R"("geometry":[{"faceSet":{"indices":[]}}])", "/geometry/0/faceSet: must have \"coords\""},
      {R"("geometry":[{"lineSet":{"coords":[]}}])", "/geometry/0/lineSet: must have \"indices\""},
      {R"("geometry":[{"box":[1,1,1]},{}])",
       "/geometry/1: must have one of \"faceSet\", \"lineSet\", \"box\" and \"cylinder\""},
  });
}

TEST(SceneRefusal, GeometryItemHasOneKey) {
  expectNodeRefusals({{R"("geometry":[{"box":[1,1,1],"cylinder":[1,1]}])",
                       "/geometry/0/cylinder: is a second key; a geometry item has exactly one"}});
}

TEST(SceneRefusal, NodeWithLodHoldsNothingElse) {
  const std::string reason = ": is not allowed: a node with \"lod\" has no other key";
  expectNodeRefusals({
      {R"("lod":{"levels":[]},"item":true)", "/item" + reason},
      {R"("objectId":"","lod":{"levels":[]})", "/lod" + reason},
      {R"("lod":{"levels":[]},"children":[])", "/children" + reason},
      {R"("lod":{"levels":[]},"lod":{"levels":[]})", "/lod: appears twice"},
  });
}

TEST(SceneRefusal, WrongTypes) {
  expectNodeRefusals({
      {R"("graphicName":null)", "/graphicName: must be a string, is null"},
      {R"("objectId":1)", "/objectId: must be a string, is an integer"},
      {R"("realObjectId":["a"])", "/realObjectId: must be a string, is a list"},
      {R"("item":null)", "/item: must be true or false, is null"},
      {R"("item":"true")", "/item: must be true or false, is a string"},
      {R"("matrix":1.5)", "/matrix: must be a list of numbers, is another number"},
      {R"("matrix":["1"])", "/matrix/0: must be a number, is a string"},
      {R"("color":[0,null,0])", "/color/1: must be a number, is null"},
      {R"("color":[0,[1],0])", "/color/1: must be a number, is a list"},
      {R"("color":{"r":1})", "/color: must be a list of numbers, is an object"},
      {R"("label":"T:x")", "/label: must be an object, is a string"},
      {R"("label":[])", "/label: must be an object, is a list"},
      {R"("label":{"text":false})", "/label/text: must be a string, is false"},
      {R"("bounds":[0,0,0])", "/bounds: must be an object, is a list"},
      {R"("geometry":{})", "/geometry: must be a list of objects, is an object"},
      {R"("geometry":["box"])", "/geometry/0: must be an object, is a string"},
      {R"("geometry":[{"faceSet":[]}])", "/geometry/0/faceSet: must be an object, is a list"},
      {R"("geometry":[{"faceSet":{"closedSurface":0}}])",
       "/geometry/0/faceSet/closedSurface: must be true or false, is an integer"},
      {R"("geometry":[{"faceSet":{"indices":7}}])",
       "/geometry/0/faceSet/indices: must be a list of integers, is an integer"},
      {R"("lod":true)", "/lod: must be an object, is true"},
      {R"("lod":{"levels":{}})", "/lod/levels: must be a list of objects, is an object"},
      {R"("lod":{"levels":[{},1]})", "/lod/levels/1: must be an object, is an integer"},
      {R"("children":[{"children":[{},{"item":2}]}])",
       "/children/0/children/1/item: must be true or false, is an integer"},
  });
}

TEST(SceneRefusal, ListsOfAnotherLength) {
  expectNodeRefusals({
      {R"("matrix":[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0])", "/matrix: must have 16 numbers, has 15"},
      {R"("matrix":[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1,0])", "/matrix: must have 16 numbers, has 17"},
      {R"("matrix":[])", "/matrix: must have 16 numbers, has 0"},
      {R"("color":[1,1])", "/color: must have 3 numbers, has 2"},
      {R"("bounds":{"min":[0,0],"max":[1,1,1]})", "/bounds/min: must have 3 numbers, has 2"},
      {R"("geometry":[{"box":[1,1]}])", "/geometry/0/box: must have 3 numbers, has 2"},
      {R"("geometry":[{"cylinder":[1,1,1]}])", "/geometry/0/cylinder: must have 2 numbers, has 3"},
  });
}

TEST(SceneRefusal, MatrixThatIsNotAffine) {
  expectNodeRefusals({
      {matrixWith(3, "0.5"), "/matrix/3: must be 0"},
      {matrixWith(7, "1"), "/matrix/7: must be 0"},
      {matrixWith(11, "1e-300"), "/matrix/11: must be 0"},
      {matrixWith(15, "0"), "/matrix/15: must be 1"},
      {matrixWith(15, "2"), "/matrix/15: must be 1"},
  });
}

TEST(SceneRefusal, NumbersOutOfRange) {
  const std::string tooLarge = ": must be at most 1e15 in magnitude";
  expectNodeRefusals({
      {R"("color":[0,1.5,0])", "/color/1: must be from 0 to 1"},
      {R"("color":[-0.001,0,0])", "/color/0: must be from 0 to 1"},
      {R"("geometry":[{"box":[1,0,1]}])", "/geometry/0/box/1: must be above 0"},
      {R"("geometry":[{"box":[1,1,-1]}])", "/geometry/0/box/2: must be above 0"},
      {R"("geometry":[{"cylinder":[1e-400,1]}])", "/geometry/0/cylinder/0: must be above 0"},
      {R"("geometry":[{"cylinder":[1,-0]}])", "/geometry/0/cylinder/1: must be above 0"},
      {R"("geometry":[{"box":[1e16,1,1]}])", "/geometry/0/box/0" + tooLarge},
      {R"("bounds":{"min":[0,0,-1.1e15]})", "/bounds/min/2" + tooLarge},
      {R"("lod":{"ranges":[1000000000000001]})", "/lod/ranges/0" + tooLarge},
      {R"("geometry":[{"faceSet":{"coords":[0,1e400]}}])",
       "/geometry/0/faceSet/coords/1" + tooLarge},
      {R"("geometry":[{"lineSet":{"coords":[-1e999999999999]}}])",
       "/geometry/0/lineSet/coords/0" + tooLarge},
      {R"("geometry":[{"lineSet":{"coords":[99999999999999999999]}}])",
       "/geometry/0/lineSet/coords/0" + tooLarge},
      {matrixWith(12, "1e16"), "/matrix/12" + tooLarge},
  });
}

TEST(SceneRefusal, IntegersBeyond32BitsOrWithAFraction) {
  const std::string reason = ": must be a 32-bit integer, is another number";
  for (const char* number : {"1.0", "1e2", "2147483648", "-2147483649", "9223372036854775808",
                             "-9223372036854775809", "99999999999999999999999", "1e400"}) {
    expectNodeRefusals({
        {"\"geometry\":[{\"faceSet\":{\"indices\":[0," + std::string(number) + "]}}]",
         "/geometry/0/faceSet/indices/1" + reason},
        {"\"label\":{\"colorIndex\":" + std::string(number) + "}", "/label/colorIndex" + reason},
    });
  }
}

TEST(SceneRefusal, LoneSurrogates) {
  expectRefusals({
      {R"({"nodes":[{"graphicName":"a\uD800"}]})",
       "/nodes/0/graphicName: has a lone surrogate at byte 33"},
      {R"({"nodes":[{"graphicName":"\uDC00a"}]})",
       "/nodes/0/graphicName: has a lone surrogate at byte 31"},
      {R"({"nodes":[{"graphicName":"\uD800\uD800"}]})",
       "/nodes/0/graphicName: has a lone surrogate at byte 37"},
      {"{\"nodes\":[{\"graphicName\":\"a\xED\xA0\x80\"}]}",
       "/nodes/0/graphicName: has a lone surrogate at byte 28"},
      {"{\"nodes\":[{\"graphicName\":\"\xED\xBF\xBF\"}]}",
       "/nodes/0/graphicName: has a lone surrogate at byte 27"},
      {R"({"nodes":[{"\uD800":1}]})", "/nodes/0: has a lone surrogate at byte 18"},
  });
}

TEST(SceneRefusal, TextThatIsNotUtf8) {
  expectRefusals({
      {"{\"nodes\":[{\"objectId\":\"\xFF\"}]}", "/nodes/0/objectId: is not valid UTF-8 at byte 23"},
      {"{\"nodes\":[{\"objectId\":\"\xC3\"}]}", "/nodes/0/objectId: is not valid UTF-8 at byte 24"},
      {"{\"nodes\":[{\"objectId\":\"\xC0\x80\"}]}",
       "/nodes/0/objectId: is not valid UTF-8 at byte 23"},
  });
}

TEST(SceneRefusal, TextThatIsNotJson) {
  const std::string zero(1, '\0');
  expectRefusals({
      {"", "is empty; write a JSON object with \"nodes\" into it"},
      {"\xEF\xBB\xBF", "is empty; write a JSON object with \"nodes\" into it"},
      {" \n", "is not JSON at byte 2: unexpected end of input, expected '[', '{', or a literal"},
      {"nodes", "is not JSON at byte 1: invalid literal"},
      {"{nodes:[]}", "is not JSON at byte 2: invalid literal"},
      {R"({"nodes":[])", "is not JSON at byte 11: unexpected end of input, expected '}'"},
      {R"({"nodes":[],})", "is not JSON at byte 12: unexpected '}', expected string literal"},
      {R"({"nodes":[{}{}]})", "/nodes/1: is not JSON at byte 12: unexpected '{', expected ']'"},
      {R"({"nodes" []})", "/nodes: is not JSON at byte 9: unexpected '[', expected ':'"},
      {R"({"nodes":[]} x)", "is not JSON at byte 13: invalid literal"},
      {R"({"nodes":[]}{})", "is not JSON at byte 12: unexpected '{', expected end of input"},
      {R"({"nodes":[NaN]})", "/nodes/0: is not JSON at byte 10: invalid literal"},
      {R"({"nodes":[]/*x*/})", "is not JSON at byte 11: invalid literal"},
      {"{\"nodes\":[{\"objectId\":\"a\nb\"}]}",
       "/nodes/0/objectId: is not JSON at byte 24: invalid string: control character U+000A (LF) "
       "must be escaped to \\u000A or \\n"},
      {R"({"nodes":[{"objectId":"a\x"}]})",
       "/nodes/0/objectId: is not JSON at byte 25: invalid string: forbidden character after "
       "backslash"},
      {R"({"nodes":[{"color":[01]}]})",
       "/nodes/0/color/1: is not JSON at byte 21: unexpected number literal, expected ']'"},
      {R"({"nodes":[{"color":[.5]}]})",
       "/nodes/0/color/0: is not JSON at byte 20: invalid literal"},
      {R"({"nodes":[{"color":[-]}]})",
       "/nodes/0/color/0: is not JSON at byte 21: invalid number, expected digit after '-'"},
      {"{\"nodes\":[]}" + zero, "is not JSON in UTF-8: a zero byte at byte 12"},
      {"{\"nodes\":[]}" + zero + "garbage", "is not JSON in UTF-8: a zero byte at byte 12"},
      {std::string("\xFF\xFE{\0", 4), "is not JSON in UTF-8: a zero byte at byte 3"},
      {"\xFF{}", "is not JSON at byte 0: invalid literal"},
      {"\xEF\xBB{}", "is not JSON at byte 2: invalid BOM, must be 0xEF 0xBB 0xBF if given"},
  });
}

TEST(SceneRefusal, UnfinishedTextAnywhereIsRefused) {
  const std::string text =
      R"({"format":"ktscene","version":1,"nodes":[{"graphicName":"\u00fc","item":false,)"
      R"("matrix":[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1],"color":[0,0.5,1e-1],"geometry":[{"faceSet":)"
      R"({"coords":[0,-1,2],"indices":[0,-7],"closedSurface":true}},{"box":[1,2,3]}],)"
      R"("label":{"text":"T:","colorIndex":3},"bounds":{"min":[0,0,0],"max":[1,1,1]},)"
      R"("children":[{"lod":{"ranges":[1],"levels":[{}]}}]}]})";
  EXPECT_EQ(refusal(text), "");
  for (std::size_t size = 0; size < text.size(); ++size) {
    EXPECT_NE(refusal(text.substr(0, size)), "") << size;
  }
}

TEST(SceneRefusal, LongPointerIsCutInItsMiddle) {
  std::string key;
  for (int i = 0; i < 1000; ++i) {
    key += "ü";
  }
  const std::string sentence = refusal("{\"" + key + "\":1}");
  EXPECT_LT(sentence.size(), 1100u);
  EXPECT_TRUE(sentence.starts_with("/üüü"));
  EXPECT_TRUE(sentence.ends_with("üüü: is not a key of a scene"));
  EXPECT_NE(sentence.find("ü … ü"), std::string::npos);
}
