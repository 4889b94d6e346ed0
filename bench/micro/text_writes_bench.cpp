// Texts on their way into the file, and the vertex that is made of them.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "dxf/dxf_writer.h"
#include "geometry/callbacks.h"
#include "labels/label_callback.h"
#include "plugin/entry.h"
#include "session/callbacks.h"

namespace dxf2d {

namespace {

// Nothing is kept, so that the disk does not count.
constexpr const char16_t* kNowhere = u"/dev/null";

void writeLiteral(benchmark::State& state) {
  DxfWriter writer;
  writer.Open(kNowhere);
  for (auto _ : state) {
    writer.Write("  0\nVERTEX\n");
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(writeLiteral);

void writeText(benchmark::State& state, char16_t letter) {
  DxfWriter writer;
  writer.Open(kNowhere);
  const CString text(std::u16string(static_cast<std::size_t>(state.range(0)), letter));
  for (auto _ : state) {
    writer.Write(text);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(writeText, ascii, u'a')->Arg(8)->Arg(64)->Arg(4096);
BENCHMARK_CAPTURE(writeText, umlauts, u'\u00fc')->Arg(8)->Arg(64)->Arg(4096);

void writeVertex(benchmark::State& state) {
  DxfWriter writer;
  writer.Open(kNowhere);
  double x = 12.345678;
  for (auto _ : state) {
    writer.WriteVertexBegin(nullptr);
    writer.WritePoint10(nullptr, x, -x, 0.0);
    x += 0.001;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(writeVertex);

void writeLabel(benchmark::State& state) {
  DXF2dOpenFileForModel(kNowhere);
  DXF2dOpenNode(nullptr);
  const std::u16string label = u"T:1 2.5 0 10 20 5 30 C 0 1 0 0 0 \"Room 101\" \"24.50 m\u00b2\"";
  for (auto _ : state) {
    benchmark::DoNotOptimize(writeLabelText(label, 0));
  }
  DXF2dCloseFileForModel();
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(writeLabel);

}  // namespace

}  // namespace dxf2d
