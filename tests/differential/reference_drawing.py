"""The drawing that a scene gives, by the reference implementation of the drawing rules.

It shares nothing with the exporter: `compare_drawings.py` holds the two against each other.
"""

import sys

from reference_groups import Drawing
from reference_session import Session

# Calls a level of a scene's tree can take, and trees as deep as generated scenes have them.
sys.setrecursionlimit(20000)


def drawing_of(scene, code_page=1252):
    """The bytes of the drawing of `scene`, a scene file's content as `json.load` gives it."""
    drawing = Drawing(code_page)
    Session(drawing).export(scene["nodes"])
    return drawing.content()
