"""Plan drawings in DXF from 3D scenes, through KtScene's C API.

Example, the plan of two crates::

    import ktscene

    points = [(0, 0, 0), (2, 0, 0), (2, 1, 0), (0, 1, 0)]
    with ktscene.Scene() as scene:
        first = scene.add_object("crate-1", "crate")
        first.add_faces(points, [0, 1, 2, 3], counts=[4])
        second = scene.add_object("crate-2", "crate", matrix=ktscene.translation(5, 3, 0))
        second.share(first)
        scene.draw("crates.dxf")

Coordinates and indices are anything with the buffer protocol (NumPy arrays, ``array.array``) or
plain sequences. Contiguous buffers of 32- or 64-bit floats and of 32-bit integers are read where
they are, without a copy, and kept alive by the scene; what they hold when the scene is drawn is
what is drawn. NumPy itself is not needed.
"""
from ._library import Canceled, Error, library_version
from ._scene import (
    Finding,
    Node,
    Run,
    Scene,
    split_matrix,
    translation,
)

__all__ = [
    "Canceled",
    "Error",
    "Finding",
    "Node",
    "Run",
    "Scene",
    "library_version",
    "split_matrix",
    "translation",
]
__version__ = "1.0.0"
