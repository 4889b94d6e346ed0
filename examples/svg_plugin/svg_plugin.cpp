// A plug-in that draws the plan as SVG: every face and line in world coordinates, in the color of
// its node, and the lines of labels. It describes itself, so that hosts name its files, and uses
// what the host offers: its log, its cancel button, and the name under which the user gets the
// file.
#include <ktscene/kt_graphic_node.h>
#include <ktscene/kt_point3.h>
#include <ktscene/kt_run_code.h>
#include <ktscene/kt_traverser.h>
#include <ktscene/kt_v.h>
#include <ktscene/zu_message.h>
#include <platform/path_text.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

// An open node.
struct Node {
  KtMatrix world;
  std::array<double, 3> color{};
};

// The callbacks carry no context, so the open export is the module's state. A plug-in that is
// loaded as private copies has one in each copy.
struct Export {
  std::unique_ptr<std::FILE, CloseFile> file;
  std::vector<Node> nodes;
  std::string shapes;
  double minX = 0.0, minY = 0.0, maxX = 0.0, maxY = 0.0;
  bool isEmpty = true;
  bool isCanceled = false;
  int unreadLabels = 0;
};

Export session;
const KtHost* host = nullptr;

template <typename Extension>
const Extension* ask(const char* id) {
  return host == nullptr ? nullptr : static_cast<const Extension*>(host->get_extension(host, id));
}

// Without the locale's decimal separator.
void append(std::string& text, double value) {
  char digits[32];
  text.append(digits, std::to_chars(digits, std::end(digits), value).ptr);
}

std::string escaped(std::u16string_view text) {
  std::string result;
  for (const char c : pathToBytes(text)) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

// White is the color of a pen on a dark screen.
std::string cssColor(const std::array<double, 3>& color) {
  if (color == std::array{1.0, 1.0, 1.0}) {
    return "#000000";
  }
  char text[8] = "#";
  for (std::size_t i = 0; i < 3; ++i) {
    const double level = std::isfinite(color[i]) ? std::clamp(color[i], 0.0, 1.0) : 0.0;
    std::snprintf(text + 1 + 2 * i, 3, "%02x", static_cast<unsigned>(std::lround(level * 255.0)));
  }
  return text;
}

bool isDrawing() { return session.file && !session.isCanceled && !session.nodes.empty(); }

// Appends the points that `run` names, of which it needs two, as a path.
void appendPath(const std::vector<double>& coords, std::span<const int> run, bool isClosed) {
  std::string path;
  for (const int index : run) {
    const std::size_t at = static_cast<std::size_t>(index) * 3;
    if (index < 0 || at + 2 >= coords.size()) {
      return;
    }
    KtPoint3 point(coords[at], coords[at + 1], coords[at + 2]);
    point.Mult(session.nodes.back().world);
    if (!isFinite(point)) {
      return;
    }
    // SVG's y points down; a difference is never -0.
    const double x = point.Get0();
    const double y = 0.0 - point.Get1();
    session.minX = session.isEmpty ? x : std::min(session.minX, x);
    session.minY = session.isEmpty ? y : std::min(session.minY, y);
    session.maxX = session.isEmpty ? x : std::max(session.maxX, x);
    session.maxY = session.isEmpty ? y : std::max(session.maxY, y);
    session.isEmpty = false;
    path += path.empty() ? 'M' : 'L';
    append(path, x);
    path += ' ';
    append(path, y);
  }
  if (run.size() >= 2) {
    session.shapes += "<path stroke=\"" + cssColor(session.nodes.back().color) + "\" d=\"" + path +
                      (isClosed ? "Z\"/>\n" : "\"/>\n");
  }
}

void appendRun(const std::vector<double>& coords, std::span<const int> run, int code) {
  switch (code) {
    case KtRunCode::kPolygon:
      appendPath(coords, run, true);
      break;
    case KtRunCode::kLineStrip:
    case KtRunCode::kSegment:
      appendPath(coords, run, false);
      break;
    case KtRunCode::kTriangles:
      for (std::size_t i = 0; i + 3 <= run.size(); i += 3) {
        appendPath(coords, run.subspan(i, 3), true);
      }
      break;
    case KtRunCode::kTriangleStrip:
      for (std::size_t i = 0; i + 3 <= run.size(); ++i) {
        appendPath(coords, run.subspan(i, 3), true);
      }
      break;
    case KtRunCode::kTriangleFan:
      for (std::size_t i = 1; i + 2 <= run.size(); ++i) {
        appendPath(coords, std::array{run[0], run[i], run[i + 1]}, true);
      }
      break;
    default:
      break;
  }
}

bool appendSet(const std::vector<double>& coords, const std::vector<int>& indices) {
  if (!isDrawing() || coords.empty() || indices.empty()) {
    return false;
  }
  const std::span<const int> all = indices;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i] < 0) {
      appendRun(coords, all.subspan(begin, i - begin), all[i]);
      begin = i + 1;
    }
  }
  return true;
}

// ---- The slots

bool openFile(const std::u16string& path) {
  session = {};
  session.file.reset(std::fopen(pathToBytes(path).c_str(), "wb"));
  if (!session.file) {
    const std::u16string reason = pathFromBytes(std::strerror(errno));
    ZuErrorBox(nullptr, u"SVG", reason.c_str(), 0);
  }
  return session.file != nullptr;
}

void openNode(KtGraphicAttribute* attribute) {
  if (!session.file) {
    return;
  }
  Node node = session.nodes.empty() ? Node() : session.nodes.back();
  if (attribute != nullptr) {
    double local[16];
    attribute->GetMatrix(local);
    KtMatrix matrix;
    matrix.Init(local);
    node.world.Mult(matrix);
  }
  session.nodes.push_back(node);
  if (const auto* progress = ask<KtHostProgress>(KT_HOST_PROGRESS)) {
    session.isCanceled = session.isCanceled || progress->is_canceled(host) != 0;
  }
}

void closeNode() {
  if (!session.nodes.empty()) {
    session.nodes.pop_back();
  }
}

void material(const double* /*ambient*/, const double* diffuse, const double* /*specular*/,
              const double* /*emission*/, const double* /*shininess*/,
              const double* /*transparency*/) {
  if (isDrawing() && diffuse != nullptr) {
    std::copy_n(diffuse, 3, session.nodes.back().color.begin());
  }
}

bool faceSet(const std::vector<double>& coords, const std::vector<int>& indices,
             bool /*reverseOrientation*/, bool /*closedSurface*/) {
  return appendSet(coords, indices);
}

bool lineSet(const std::vector<double>& coords, const std::vector<int>& indices) {
  return appendSet(coords, indices);
}

bool label(KtGraphicNode* node, bool /*flag*/, int /*colorIndex*/) {
  std::u16string text;
  if (!isDrawing() || node == nullptr || !node->GetIsLabel() || !node->GetLabelText(text)) {
    return false;
  }
  double number = 0.0;
  double height = 0.0;
  double x = 0.0;
  double y = 0.0;
  unsigned short align = 0;
  bool frame = false;
  unsigned flags = 0;
  std::vector<std::u16string> lines;
  if (text.size() < 2 ||
      !KtV::ParseLabelString(text.substr(2), number, height, number, x, y, number, number, align,
                             frame, number, number, number, flags, lines)) {
    ++session.unreadLabels;
    return false;
  }
  KtPoint3 place(x, y, 0.0);
  place.Mult(session.nodes.back().world);
  for (const std::u16string& line : lines) {
    session.shapes += "<text stroke=\"none\" fill=\"black\" font-size=\"";
    append(session.shapes, height);
    session.shapes += "\" x=\"";
    append(session.shapes, place.Get0());
    session.shapes += "\" y=\"";
    append(session.shapes, 0.0 - place.Get1());
    session.shapes += "\">" + escaped(line) + "</text>\n";
    place.Set(place.Get0(), place.Get1() - height, 0.0);
  }
  return true;
}

std::string head(const Export& drawn) {
  std::string text = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"";
  const char* separator = "";
  for (const double value :
       {drawn.minX, drawn.minY, drawn.maxX - drawn.minX, drawn.maxY - drawn.minY}) {
    text += separator;
    append(text, value);
    separator = " ";
  }
  text += "\" fill=\"none\" stroke-width=\"1\">\n";
  const auto* files = ask<KtHostFiles>(KT_HOST_FILES);
  const char* name = files == nullptr ? nullptr : files->final_name(host);
  if (name != nullptr) {
    text += "<title>" + escaped(pathFromBytes(name)) + "</title>\n";
  }
  text += "<style>path { vector-effect: non-scaling-stroke }</style>\n";
  return text;
}

bool closeFile() {
  // Ended before anything below can throw.
  const Export done = std::exchange(session, {});
  if (!done.file) {
    return false;
  }
  if (done.unreadLabels > 0) {
    if (const auto* log = ask<KtHostLog>(KT_HOST_LOG)) {
      const std::string sentence = "labels left out, since they do not follow the syntax: " +
                                   std::to_string(done.unreadLabels);
      log->write(host, KT_LOG_WARNING, sentence.c_str());
    }
  }
  const std::string text = head(done) + done.shapes + "</svg>\n";
  if (std::fwrite(text.data(), 1, text.size(), done.file.get()) != text.size() ||
      std::fflush(done.file.get()) != 0) {
    throw std::runtime_error(std::string("the drawing cannot be written: ") + std::strerror(errno));
  }
  return !done.isCanceled;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) bool InitializeTraverser(KtTraverser* traverser,
                                                                           void* second) {
  host = static_cast<const KtHost*>(second);
  traverser->Init(openNode,    // 1
                  closeNode,   // 2
                  nullptr,     // 3 reuse
                  nullptr,     // 4 open level-of-detail group
                  nullptr,     // 5 close level-of-detail group
                  nullptr,     // 6 bounds
                  material,    // 7
                  nullptr,     // 8 matrix
                  nullptr,     // 9 face geometry
                  faceSet,     // 10
                  lineSet,     // 11
                  nullptr,     // 12 point set
                  nullptr,     // 13 graphic node
                  nullptr,     // 14 analytic shape
                  nullptr,     // 15 text
                  label,       // 16
                  nullptr,     // 17 begin file
                  nullptr,     // 18 end file
                  openFile,    // 19
                  closeFile);  // 20
  KtPluginDescription description;
  description.name = "SVG plan";
  description.version = "1.0";
  description.extension = ".svg";
  description.format = "SVG 1.1";
  return traverser->Describe(description);
}
