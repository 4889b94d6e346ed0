"""KtScene's library, its structures and functions, through ctypes."""
from __future__ import annotations

import ctypes
import os
import pathlib
import sysconfig
from ctypes import c_char, c_char_p, c_double, c_int, c_size_t, c_void_p
from typing import Iterator, Optional

NAME = "libKtScene.so.1"
OK = 0
CANCELED = 5

FINDING = ctypes.CFUNCTYPE(None, c_void_p, c_int, c_char_p, c_char_p, c_char_p)
PROGRESS = ctypes.CFUNCTYPE(c_int, c_void_p, c_size_t)


class Error(Exception):
    """A call that KtScene refused, or that failed; the text says why and what to do.

    ``status`` is one of the constants of ``ktscene_c.h``, such as 4 for a file that cannot be
    written.
    """

    def __init__(self, text: str, status: int) -> None:
        super().__init__(text)
        self.status = status


class Canceled(Error):
    """A drawing that its progress function canceled. No file was written."""


class Lists(ctypes.Structure):
    """KtCLists."""

    _fields_ = [
        ("size", c_size_t),
        ("floats", c_void_p),
        ("doubles", c_void_p),
        ("coord_count", c_size_t),
        ("indices", c_void_p),
        ("index_count", c_size_t),
        ("run_code", c_int),
        ("counts", c_void_p),
        ("count_count", c_size_t),
        ("is_lent", c_int),
    ]


class Label(ctypes.Structure):
    """KtCLabel."""

    _fields_ = [
        ("size", c_size_t),
        ("text", c_char_p),
        ("height", c_double),
        ("x", c_double),
        ("y", c_double),
        ("z", c_double),
        ("angle", c_double),
        ("align", c_char),
        ("red", c_double),
        ("green", c_double),
        ("blue", c_double),
    ]


class DrawOptions(ctypes.Structure):
    """KtCDrawOptions."""

    _fields_ = [
        ("size", c_size_t),
        ("plugin", c_char_p),
        ("progress", PROGRESS),
        ("context", c_void_p),
    ]


# By name: what it returns, and what it takes.
FUNCTIONS = {
    "KtSceneVersion": (c_int, ()),
    "KtCErrorText": (c_char_p, ()),
    "KtCNewScene": (c_void_p, ()),
    "KtCFreeScene": (None, (c_void_p,)),
    "KtCAddNode": (c_void_p, (c_void_p, c_void_p)),
    "KtCSetNames": (c_int, (c_void_p, c_char_p, c_char_p)),
    "KtCSetMatrix": (c_int, (c_void_p, ctypes.POINTER(c_double))),
    "KtCSplitMatrix": (c_int, (ctypes.POINTER(c_double),) * 3),
    "KtCSetColor": (c_int, (c_void_p, c_double, c_double, c_double)),
    "KtCSetLabel": (c_int, (c_void_p, ctypes.POINTER(Label))),
    "KtCAddFaces": (c_int, (c_void_p, ctypes.POINTER(Lists), c_int)),
    "KtCAddLines": (c_int, (c_void_p, ctypes.POINTER(Lists))),
    "KtCShareGeometry": (c_int, (c_void_p, c_void_p)),
    "KtCCheckScene": (c_int, (c_void_p, FINDING, c_void_p)),
    "KtCWriteSceneFile": (c_int, (c_void_p, c_char_p)),
    "KtCDraw": (c_int, (c_void_p, c_char_p, ctypes.POINTER(DrawOptions))),
}


def _places() -> Iterator[str]:
    """Where the library may be, the likeliest place first."""
    named = os.environ.get("KTSCENE_LIBRARY")
    if named:
        # Whoever names one means that one.
        yield named
        return
    here = pathlib.Path(__file__).resolve().parent
    multiarch = sysconfig.get_config_var("MULTIARCH") or "."
    # In this wheel; else above this module, as in <prefix>/lib/python3/dist-packages/ktscene.
    for folder in (here / "lib", *list(here.parents)[:3]):
        for place in (folder / NAME, folder / multiarch / NAME):
            if place.is_file():
                yield str(place)
    yield NAME


def _load() -> ctypes.CDLL:
    reason: Optional[OSError] = None
    for place in _places():
        try:
            library = ctypes.CDLL(place)
        except OSError as error:
            reason = reason or error
            continue
        for name, (result, arguments) in FUNCTIONS.items():
            function = getattr(library, name)
            function.restype = result
            function.argtypes = arguments
        return library
    raise ImportError(
        f"ktscene: {NAME} cannot be loaded ({reason}); install libktscene1, or set KTSCENE_LIBRARY to its path"
    )


library = _load()


def error_text() -> str:
    return library.KtCErrorText().decode("utf-8", "replace")


def check(status: int) -> None:
    """Raises Error for a status other than OK."""
    if status != OK:
        raise (Canceled if status == CANCELED else Error)(error_text(), status)


def made(handle: Optional[int]) -> int:
    """The handle; raises Error for null."""
    if not handle:
        raise Error(error_text(), 1)
    return handle


def library_version() -> tuple[int, int, int]:
    """The version of the library that is loaded."""
    version = library.KtSceneVersion()
    return version // 10000, version // 100 % 100, version % 100
