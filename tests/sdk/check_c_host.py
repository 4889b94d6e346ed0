"""The example host in C draws its table, and says what is wrong where it cannot.

usage: check_c_host.py PROGRAM [PLUGIN]
"""
import pathlib
import subprocess
import sys
import tempfile

import ezdxf
from ezdxf import disassemble


def main():
    program = sys.argv[1:2]
    plugin = sys.argv[2:]
    with tempfile.TemporaryDirectory() as folder:
        drawing = pathlib.Path(folder) / "table.dxf"
        subprocess.run([*program, drawing, *plugin], check=True)
        document = ezdxf.readfile(drawing)
        inserts = document.modelspace().query("INSERT")
        # Both legs are placements of one block.
        blocks = [insert.dxf.name for insert in inserts]
        assert len(blocks) - len(set(blocks)) == 1, blocks
        points = []
        texts = []
        for entity in disassemble.recursive_decompose(document.modelspace()):
            if entity.dxftype() == "POLYLINE":
                points.extend(vertex.dxf.location for vertex in entity.vertices)
            elif entity.dxftype() == "TEXT":
                texts.append(entity.dxf.text)
        assert texts == ["Table"], texts
        # The top is 20 by 10; the legs stand at 1 and 18, and are 1 wide and 8 long.
        assert {round(p.x, 6) for p in points} == {0, 20, 1, 2, 18, 19}, points
        assert {round(p.y, 6) for p in points} == {0, 10, 1, 9}, points

        done = subprocess.run([*program, drawing / "below", *plugin], stderr=subprocess.PIPE, text=True)
        assert done.returncode == 1 and str(drawing / "below") in done.stderr, done
        assert done.stderr.startswith("c_host: ") and done.stderr.count("\n") == 1, done.stderr


if __name__ == "__main__":
    main()
