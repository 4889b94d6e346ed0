// Prints what dxflib finds in a drawing: "blocks B inserts I polylines P vertices V".
//
// usage: dxflib_counts DRAWING
#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <cstdio>

namespace {

class Counter : public DL_CreationAdapter {
 public:
  void addBlock(const DL_BlockData&) override { ++blocks_; }
  void addInsert(const DL_InsertData&) override { ++inserts_; }
  void addPolyline(const DL_PolylineData&) override { ++polylines_; }
  void addVertex(const DL_VertexData&) override { ++vertices_; }

  void Print() const {
    std::printf("blocks %zu inserts %zu polylines %zu vertices %zu\n", blocks_, inserts_,
                polylines_, vertices_);
  }

 private:
  std::size_t blocks_ = 0;
  std::size_t inserts_ = 0;
  std::size_t polylines_ = 0;
  std::size_t vertices_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: dxflib_counts DRAWING\n");
    return 2;
  }
  Counter counter;
  DL_Dxf reader;
  if (!reader.in(argv[1], &counter)) {
    std::fprintf(stderr, "dxflib_counts: '%s' cannot be read\n", argv[1]);
    return 1;
  }
  counter.Print();
}
