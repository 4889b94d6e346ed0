"""Scenes and their nodes."""
from __future__ import annotations

import ctypes
import enum
import os
from typing import Any, Callable, Dict, List, NamedTuple, Optional, Sequence, Tuple, Union

from . import _arrays
from ._library import (
    FINDING,
    PROGRESS,
    DrawOptions,
    Label,
    Lists,
    check,
    library,
    made,
)

Path = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]
Color = Tuple[float, float, float]
# 16 numbers for row vectors, flat or in four rows: the translation is the last row.
Matrix = Any

_CLOSED = 1
_CLOCKWISE = 2


class Run(enum.IntEnum):
    """What a list of point numbers is, or the codes that end the runs in it."""

    SEGMENT = -1
    IGNORED = -2
    TRIANGLE_STRIP = -3
    TRIANGLE_FAN = -4
    TRIANGLES = -5
    LINE_STRIP = -6
    POLYGON = -7


class Finding(NamedTuple):
    """What a drawing would lack, or show in the wrong place."""

    is_error: bool
    #: A JSON pointer, such as "/nodes/0/children/2".
    node: str
    problem: str
    remedy: str


def translation(x: float, y: float, z: float) -> List[float]:
    """The matrix of a translation."""
    return [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1]


def split_matrix(matrix: Matrix) -> Tuple[List[float], List[float]]:
    """The placement (a rotation about z and a translation) and the residual of any matrix.

    ``matrix`` equals the residual first, then the placement.
    """
    placement = (ctypes.c_double * 16)()
    residual = (ctypes.c_double * 16)()
    check(library.KtCSplitMatrix(_arrays.matrix(matrix), placement, residual))
    return list(placement), list(residual)


_IDENTITY = translation(0, 0, 0)
# Of a matrix, relative to its largest element.
_ROUNDING = 1e-6


def _text(text: Optional[str]) -> Optional[bytes]:
    if text is None:
        return None
    if "\0" in text:
        raise ValueError("a text with a zero character; leave it out")
    # What is not a character becomes a question mark.
    return text.encode("utf-8", "replace")


class Node:
    """A node of a scene. Made by :meth:`Scene.add_node` and :meth:`Scene.add_object`."""

    def __init__(self, scene: "Scene", handle: int) -> None:
        self._scene = scene
        self._handle = handle

    @property
    def _open(self) -> int:
        # Raises for a closed scene, which has freed the node.
        _ = self._scene._open
        return self._handle

    def add_node(self, matrix: Optional[Matrix] = None, color: Optional[Color] = None) -> "Node":
        """Adds a part without names: it belongs to the object above it."""
        return self._scene.add_node(self, matrix=matrix, color=color)

    def set_names(self, object_id: str, graphic_name: Optional[str] = None) -> None:
        """Names the object that a drawing places here, and what it looks like.

        Nodes that share a graphic name must look the same, except for their placement; they may be
        drawn as instances of one block.
        """
        check(library.KtCSetNames(self._open, _text(object_id), _text(graphic_name)))

    def set_matrix(self, matrix: Matrix) -> None:
        """Sets the transform from the node's coordinates to its parent's; see :func:`split_matrix`."""
        check(library.KtCSetMatrix(self._open, _arrays.matrix(matrix)))

    def set_color(self, red: float, green: float, blue: float) -> None:
        """Sets the node's color, from 0 to 1; its children inherit it."""
        check(library.KtCSetColor(self._open, red, green, blue))

    def set_label(
        self,
        text: str,
        height: float,
        position: Sequence[float] = (0.0, 0.0, 0.0),
        *,
        angle: float = 0.0,
        align: str = "L",
        color: Color = (0.0, 0.0, 0.0),
    ) -> None:
        """Sets the node's label, a text of one or more lines.

        ``height`` is in drawing units, ``angle`` in degrees, ``align`` L, C or R.
        """
        # Anything but one letter is refused like a letter that is none of the three.
        letter = align.encode("ascii", "replace") if len(align) == 1 else b"?"
        label = Label(ctypes.sizeof(Label), _text(text), height, *position, angle, letter, *color)
        check(library.KtCSetLabel(self._open, ctypes.byref(label)))

    def add_faces(
        self,
        coords: Any,
        indices: Any,
        *,
        counts: Any = None,
        run: Optional[Run] = None,
        closed: bool = False,
        clockwise: bool = False,
    ) -> None:
        """Adds a mesh.

        ``coords``: x, y, z triples. ``indices``: point numbers, with a :class:`Run` code after each
        run; without codes if ``run`` says what they all are (``Run.TRIANGLES``) or ``counts`` how
        many each polygon has. ``closed``: the mesh bounds a solid.
        """
        flags = (_CLOSED if closed else 0) | (_CLOCKWISE if clockwise else 0)
        self._add(lambda lists: library.KtCAddFaces(self._open, lists, flags), coords, indices, counts, run)

    def add_lines(
        self, coords: Any, indices: Any, *, counts: Any = None, run: Optional[Run] = None
    ) -> None:
        """Adds lines; arguments as in :meth:`add_faces`, each count being that of a line strip."""
        self._add(lambda lists: library.KtCAddLines(self._open, lists), coords, indices, counts, run)

    def share(self, other: "Node") -> None:
        """Adds what another node draws so far, without a copy."""
        check(library.KtCShareGeometry(self._open, other._open))

    def _add(self, call: Callable[[Any], int], coords: Any, indices: Any, counts: Any, run: Optional[Run]) -> None:
        lent: List[_arrays.Numbers] = []
        try:
            lent.append(_arrays.floats(coords))
            lent.append(_arrays.integers(indices))
            if counts is not None:
                lent.append(_arrays.integers(counts))
            check(call(ctypes.byref(_lists(lent, run))))
        except BaseException:
            for numbers in lent:
                numbers.release()
            raise
        if counts is not None:
            # Both are copied, with codes between them.
            lent.pop().release()
            lent.pop().release()
        self._scene._lent.extend(lent)


def _lists(lent: List[_arrays.Numbers], run: Optional[Run]) -> Lists:
    lists = Lists(size=ctypes.sizeof(Lists), is_lent=1, run_code=int(run or 0))
    if lent[0].itemsize == 4:
        lists.floats = lent[0].address
    else:
        lists.doubles = lent[0].address
    lists.coord_count = lent[0].count
    lists.indices = lent[1].address
    lists.index_count = lent[1].count
    if len(lent) == 3:
        lists.counts = lent[2].address
        lists.count_count = lent[2].count
    return lists


class Scene:
    """A scene. Use it as a context manager, or close it, to release the arrays that it reads."""

    def __init__(self) -> None:
        self._lent: List[_arrays.Numbers] = []
        self._residuals: Dict[str, List[List[float]]] = {}
        self._handle: Optional[int] = made(library.KtCNewScene())

    @property
    def _open(self) -> int:
        if self._handle is None:
            raise ValueError("the scene is closed; make another one")
        return self._handle

    def close(self) -> None:
        """Frees the scene and its nodes, and releases the arrays. May be called again."""
        handle, self._handle = getattr(self, "_handle", None), None
        if handle is not None:
            library.KtCFreeScene(handle)
            while self._lent:
                self._lent.pop().release()

    def __enter__(self) -> "Scene":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        self.close()

    def add_node(
        self,
        parent: Optional[Node] = None,
        *,
        matrix: Optional[Matrix] = None,
        color: Optional[Color] = None,
    ) -> Node:
        """Adds a node after the last one of ``parent``, or of the scene."""
        node = Node(self, made(library.KtCAddNode(self._open, parent._open if parent else None)))
        if matrix is not None:
            node.set_matrix(matrix)
        if color is not None:
            node.set_color(*color)
        return node

    def add_object(
        self,
        object_id: str,
        graphic_name: Optional[str] = None,
        *,
        matrix: Optional[Matrix] = None,
        color: Optional[Color] = None,
    ) -> Node:
        """Adds an object that the drawing places, and returns the node for its meshes and lines.

        ``matrix`` may be any transform: what a placement does not carry (tilt, scale, mirroring)
        becomes the matrix of a part below the object's node. Objects with one graphic name share a
        drawing if that matrix, to a millionth, and the color are the same, too.
        """
        placement, residual = split_matrix(_IDENTITY if matrix is None else matrix)
        node = self.add_node(matrix=placement, color=color)
        if graphic_name is not None:
            number, residual = self._known_residual(graphic_name, residual)
            graphic_name = f"{graphic_name}|{number}|{color}"
        node.set_names(object_id, graphic_name)
        return node if residual == _IDENTITY else node.add_node(matrix=residual)

    def _known_residual(self, name: str, residual: List[float]) -> Tuple[int, List[float]]:
        """The first residual of that name that equals this one except for rounding, and its number.

        Programs that compute in 32-bit floats have different last digits for every rotation.
        """
        known = self._residuals.setdefault(name, [_IDENTITY])
        largest = max(map(abs, residual))
        for number, other in enumerate(known):
            if all(abs(a - b) <= _ROUNDING * largest for a, b in zip(residual, other)):
                return number, other
        known.append(residual)
        return len(known) - 1, residual

    def check(self) -> List[Finding]:
        """Lists what a drawing of the scene would lack or show in the wrong place."""
        found: List[Finding] = []

        @FINDING
        def keep(_: object, is_error: int, *texts: bytes) -> None:
            found.append(Finding(bool(is_error), *(text.decode("utf-8", "replace") for text in texts)))

        check(library.KtCCheckScene(self._open, keep, None))
        return found

    def write(self, path: Path) -> None:
        """Writes the scene as a file (JSON) that ``dxf2d`` reads, for bug reports."""
        check(library.KtCWriteSceneFile(self._open, os.fsencode(path)))

    def draw(
        self,
        path: Path,
        *,
        plugin: Optional[Path] = None,
        progress: Optional[Callable[[int], Optional[bool]]] = None,
    ) -> None:
        """Draws the scene into a file, which is then complete, or as it was before on failure.

        ``plugin``: the path of a plug-in; the one that is installed with KtScene by default.
        ``progress``: called before each node with the number of those before it; False cancels, and
        exceptions pass through. Other threads run meanwhile.
        """
        raised: List[BaseException] = []

        def call(_: object, nodes: int) -> int:
            try:
                return 0 if progress is not None and progress(nodes) is False else 1
            except BaseException as error:
                raised.append(error)
                return 0

        options = DrawOptions(size=ctypes.sizeof(DrawOptions))
        if plugin is not None:
            options.plugin = os.fsencode(plugin)
        if progress is not None:
            options.progress = PROGRESS(call)
        status = library.KtCDraw(self._open, os.fsencode(path), ctypes.byref(options))
        if raised:
            raise raised[0]
        check(status)
