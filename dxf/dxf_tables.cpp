// The TABLES section: the one linetype, layer and application that a drawing refers to.
//
// The linetype's German name and description are part of the format. There is deliberately no STYLE
// table although the header and every text name the style STANDARD: readers supply it.
#include "dxf/dxf_writer.h"

namespace dxf2d {

namespace {

constexpr char kTables[] =
    "  0\nSECTION\n  2\nTABLES\n"
    "  0\nTABLE\n  2\nLTYPE\n 70\n1\n"
    "  0\nLTYPE\n  2\nAUSGEZOGEN\n 70\n64\n  3\nAusgezogene Linie\n 72\n65\n 73\n0\n 40\n0.000000\n"
    "  0\nENDTAB\n"
    "  0\nTABLE\n  2\nLAYER\n 70\n1\n"
    "  0\nLAYER\n  2\n0\n 70\n64\n 62\n7\n  6\nAUSGEZOGEN\n"
    "  0\nENDTAB\n"
    "  0\nTABLE\n  2\nAPPID\n 70\n1\n"
    "  0\nAPPID\n  2\nTAVEN_HOLDRIK\n 70\n64\n"
    "  0\nENDTAB\n"
    "  0\nENDSEC\n";

}  // namespace

void DxfWriter::WriteTablesSection() { Write(kTables); }

}  // namespace dxf2d
