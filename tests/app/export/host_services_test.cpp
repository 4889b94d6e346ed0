// What a host offers to plug-ins, and a plug-in that uses it.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "ktscene/kt_scene_reader.h"
#include "ktscene/kt_traverser.h"
#include "platform/path_text.h"
#include "tests/support/scratch_directory.h"

namespace {

// The host's side; `context` of the KtHost is one of these.
struct Services {
  std::vector<std::string> asked;
  std::string log;
  int nodesUntilCancel = 1000;
};

Services& servicesOf(const KtHost* host) { return *static_cast<Services*>(host->context); }

int report(const KtHost* /*host*/, double /*fraction*/, const char* /*text*/) { return 0; }
int isCanceled(const KtHost* host) { return servicesOf(host).nodesUntilCancel-- <= 0 ? 1 : 0; }
void writeLog(const KtHost* host, int severity, const char* sentence) {
  servicesOf(host).log += std::to_string(severity) + " " + sentence;
}
const char* finalName(const KtHost* /*host*/) { return "hall & house.svg"; }
int companionPath(const KtHost* /*host*/, const char* /*suffix*/, char* /*path*/, size_t /*size*/) {
  return 0;
}

const void* extensionOf(const KtHost* host, const char* id) {
  static constexpr KtHostProgress kProgress{sizeof(KtHostProgress), &report, &isCanceled};
  static constexpr KtHostLog kLog{sizeof(KtHostLog), &writeLog};
  static constexpr KtHostFiles kFiles{sizeof(KtHostFiles), &finalName, &companionPath};
  servicesOf(host).asked.emplace_back(id);
  if (std::strcmp(id, KT_HOST_PROGRESS) == 0) {
    return &kProgress;
  }
  if (std::strcmp(id, KT_HOST_LOG) == 0) {
    return &kLog;
  }
  return std::strcmp(id, KT_HOST_FILES) == 0 ? &kFiles : nullptr;
}

// An export by the SVG plug-in in a private copy, since it keeps its host.
class HostServices : public testing::Test {
 protected:
  bool Export(const KtHost* host, const std::string& scene) {
    KtTraverser traverser;
    KtLoadOptions options;
    options.isPrivate = true;
    options.host = host;
    traverser.Load(SVG_PLUGIN, options);
    const std::string path = directory_ / "plan.svg";
    const bool isDrawn = traverser.Walk(ParseScene(scene, "scene"), pathFromBytes(path));
    std::ifstream file(path, std::ios::binary);
    drawing_.assign(std::istreambuf_iterator<char>(file), {});
    return isDrawn;
  }

  ScratchDirectory directory_;
  Services services_;
  KtHost host_{sizeof(KtHost), KTSCENE_VERSION, "test 1.0", &services_, &extensionOf};
  std::string drawing_;
};

constexpr const char* kLines =
    R"({"nodes": [{"geometry": [{"lineSet": {"coords": [0, 0, 0, 1, 1, 0], "indices": [0, 1, -1]}}],
                   "children": [{"label": {"text": "T:no label"}}, {}]}]})";

}  // namespace

TEST_F(HostServices, AreUsedWhereTheHostHasThem) {
  EXPECT_TRUE(Export(&host_, kLines));
  EXPECT_EQ(services_.log, "1 labels left out, since they do not follow the syntax: 1");
  EXPECT_NE(drawing_.find("<title>hall &amp; house.svg</title>"), std::string::npos);
  EXPECT_FALSE(services_.asked.empty());
}

TEST_F(HostServices, AreNotNeeded) {
  EXPECT_TRUE(Export(nullptr, kLines));
  EXPECT_EQ(drawing_.find("<title>"), std::string::npos);
  EXPECT_NE(drawing_.find("<path"), std::string::npos);
}

TEST_F(HostServices, CancelEndsTheExport) {
  services_.nodesUntilCancel = 1;
  EXPECT_FALSE(Export(&host_, kLines));
  // The second node is not drawn, and neither is its label read.
  EXPECT_EQ(services_.log, "");
}
