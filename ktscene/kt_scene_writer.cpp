#include "ktscene/kt_scene_writer.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <string_view>
#include <vector>

#include "ktscene/kt_output_file.h"
#include "ktscene/kt_scene_reader.h"
#include "ktscene/utf_text.h"

namespace {

void append(std::string& text, double number) {
  // No JSON number; the reader refuses a larger one in its place, with the reason.
  constexpr double kTooLarge = 1e300;
  char digits[32];
  const double written = std::isfinite(number) ? number : kTooLarge;
  text.append(digits, std::to_chars(digits, std::end(digits), written).ptr);
}
void append(std::string& text, int number) { text += std::to_string(number); }
void append(std::string& text, bool flag) { text += flag ? "true" : "false"; }

void append(std::string& text, const std::u16string& words) {
  text += '"';
  for (const char16_t unit : words) {
    const bool isPlain = unit >= 0x20 && unit < 0x7F && unit != u'"' && unit != u'\\';
    if (isPlain) {
      text += static_cast<char>(unit);
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(unit));
      text += escape;
    }
  }
  text += '"';
}

template <typename List>
void appendList(std::string& text, const List& list) {
  const char* separator = "[";
  for (const auto& element : list) {
    text += separator;
    append(text, element);
    separator = ",";
  }
  text += *separator == '[' ? "[]" : "]";
}

class SceneWriter {
 public:
  std::string Write(const KtScene& scene) {
    text_ = "{\"format\":\"ktscene\",\"version\":1,\"nodes\":";
    Begin(scene.nodes, "}\n");
    while (!open_.empty()) {
      List& list = open_.back();
      if (list.next == list.nodes->size()) {
        text_ += list.next == 0 ? "[]" : "\n]";
        text_ += list.end;
        open_.pop_back();
      } else {
        text_ += list.next == 0 ? "[\n" : ",\n";
        WriteNode((*list.nodes)[list.next++]);
      }
    }
    return std::move(text_);
  }

 private:
  struct List {
    const std::vector<KtSceneNode>* nodes;
    std::size_t next;
    // What follows the list.
    const char* end;
  };

  void Begin(const std::vector<KtSceneNode>& nodes, const char* end) {
    open_.push_back({&nodes, 0, end});
  }

  void Key(const char* key) {
    text_ += isFirst_ ? "\"" : ",\"";
    text_ += key;
    text_ += "\":";
    isFirst_ = false;
  }

  void WriteNode(const KtSceneNode& node) {
    text_ += '{';
    isFirst_ = true;
    if (node.lod) {
      Key("lod");
      text_ += "{\"ranges\":";
      appendList(text_, node.lod->ranges);
      text_ += ",\"levels\":";
      Begin(node.lod->levels, "}}");
      return;
    }
    WriteNames(node);
    WriteContent(node);
    if (node.children.empty()) {
      text_ += '}';
    } else {
      Key("children");
      Begin(node.children, "}");
    }
  }

  void WriteNames(const KtSceneNode& node) {
    for (const auto& [key, name] :
         {std::pair("graphicName", &node.graphicName), std::pair("objectId", &node.objectId),
          std::pair("realObjectId", &node.realObjectId)}) {
      if (!name->empty()) {
        Key(key);
        append(text_, *name);
      }
    }
    if (!node.hasGraphicItem) {
      Key("item");
      append(text_, false);
    }
    if (!node.matrix.IsIdentity()) {
      double elements[16];
      node.matrix.GetData(elements);
      Key("matrix");
      appendList(text_, elements);
    }
    if (node.color) {
      Key("color");
      appendList(text_, *node.color);
    } else if (node.material) {
      Key("color");
      appendList(text_, node.material->diffuse);
    }
  }

  void WriteContent(const KtSceneNode& node) {
    if (!node.geometry.empty()) {
      Key("geometry");
      const char* separator = "[";
      for (const KtSceneGeometry& item : node.geometry) {
        text_ += separator;
        std::visit([this](const auto& content) { WriteItem(content); }, item);
        separator = ",";
      }
      text_ += ']';
    }
    if (node.label) {
      Key("label");
      text_ += "{\"text\":";
      append(text_, node.label->text);
      text_ += ",\"colorIndex\":";
      append(text_, node.label->colorIndex);
      text_ += '}';
    }
    if (node.bounds) {
      Key("bounds");
      text_ += "{\"min\":";
      appendList(text_, node.bounds->min);
      text_ += ",\"max\":";
      appendList(text_, node.bounds->max);
      text_ += '}';
    }
  }

  template <typename Set>
  void WriteItem(const std::shared_ptr<const Set>& set) {
    if (set == nullptr) {
      // Which the reader refuses.
      text_ += "{\"faceSet\":null}";
    } else {
      WriteSet(*set);
    }
  }
  template <typename Borrowed>
  void WriteSet(const Borrowed& borrowed) {
    WriteSet(KtCopyLists(borrowed));
  }
  void WriteSet(const KtFaceSet& set) {
    text_ += "{\"faceSet\":";
    WriteLists(set.coords, set.indices);
    text_ += ",\"reverseOrientation\":";
    append(text_, set.reverseOrientation);
    text_ += ",\"closedSurface\":";
    append(text_, set.closedSurface);
    text_ += "}}";
  }
  void WriteSet(const KtLineSet& set) {
    text_ += "{\"lineSet\":";
    WriteLists(set.coords, set.indices);
    text_ += "}}";
  }
  void WriteLists(const std::vector<double>& coords, const std::vector<int>& indices) {
    text_ += "{\"coords\":";
    appendList(text_, coords);
    text_ += ",\"indices\":";
    appendList(text_, indices);
  }
  void WriteItem(const KtBox& box) {
    text_ += "{\"box\":";
    appendList(text_, std::initializer_list<double>{box.a, box.b, box.c});
    text_ += '}';
  }
  void WriteItem(const KtCylinder& cylinder) {
    text_ += "{\"cylinder\":";
    appendList(text_, std::initializer_list<double>{cylinder.radius, cylinder.height});
    text_ += '}';
  }

  std::string text_;
  std::vector<List> open_;
  // Whether the object that is being written has no key yet.
  bool isFirst_ = true;
};

}  // namespace

std::string SceneText(const KtScene& scene, const std::string& name) {
  std::string text = SceneWriter().Write(scene);
  // One definition of what a file can hold.
  static_cast<void>(ParseScene(text, name));
  return text;
}

void WriteSceneFile(const KtScene& scene, const std::string& path) {
  const std::string text = SceneText(scene, path);
  KtOutputFile file(path);
  file.Write(text);
  file.Commit();
}
