"""The caller's numbers as addresses, without a copy if they are buffers of the right type."""
from __future__ import annotations

import array
import ctypes
from typing import Any, Iterable, Sequence

# Formats of the buffer protocol, without their byte order: native for all of them.
FLOATS = {"f": 4, "d": 8}
INTEGERS = {"i": 4, "I": 4, "l": 4, "L": 4}
# PyBUF_C_CONTIGUOUS | PyBUF_STRIDES | PyBUF_ND | PyBUF_FORMAT.
_FLAGS = 0x0020 | 0x0010 | 0x0008 | 0x0004


class _PyBuffer(ctypes.Structure):
    _fields_ = [
        ("buf", ctypes.c_void_p),
        ("obj", ctypes.c_void_p),
        ("len", ctypes.c_ssize_t),
        ("itemsize", ctypes.c_ssize_t),
        ("readonly", ctypes.c_int),
        ("ndim", ctypes.c_int),
        ("format", ctypes.c_char_p),
        ("shape", ctypes.c_void_p),
        ("strides", ctypes.c_void_p),
        ("suboffsets", ctypes.c_void_p),
        ("internal", ctypes.c_void_p),
    ]


_get_buffer = ctypes.pythonapi.PyObject_GetBuffer
_get_buffer.argtypes = (ctypes.py_object, ctypes.POINTER(_PyBuffer), ctypes.c_int)
_get_buffer.restype = ctypes.c_int
_release_buffer = ctypes.pythonapi.PyBuffer_Release
_release_buffer.argtypes = (ctypes.POINTER(_PyBuffer),)
_release_buffer.restype = None


class Numbers:
    """A list of numbers that stays where it is, and cannot be resized, until ``release``."""

    def __init__(self, owner: Any) -> None:
        self._buffer = _PyBuffer()
        # Rows in order, one after the other.
        _get_buffer(owner, ctypes.byref(self._buffer), _FLAGS)
        self.address: int = self._buffer.buf or 0
        self.itemsize: int = self._buffer.itemsize
        self.count: int = self._buffer.len // self._buffer.itemsize

    def release(self) -> None:
        _release_buffer(ctypes.byref(self._buffer))


def _flatten(values: Iterable[Any]) -> Iterable[Any]:
    for value in values:
        if isinstance(value, Iterable):
            yield from _flatten(value)
        else:
            yield value


def _is_fit(values: Any, formats: dict[str, int]) -> bool:
    """Whether the buffer can be read as it is."""
    view = memoryview(values)
    code = view.format.lstrip("@=<") if view.format[:1] != ">" else ""
    return view.c_contiguous and formats.get(code) == view.itemsize


def _is_buffer(values: Any) -> bool:
    try:
        memoryview(values)
    except TypeError:
        return False
    return True


def floats(values: Any) -> Numbers:
    """Coordinates as 32- or 64-bit floats."""
    if _is_buffer(values):
        if _is_fit(values, FLOATS):
            return Numbers(values)
        if hasattr(values, "astype"):
            return Numbers(values.astype("f8", order="C"))
        values = memoryview(values).tolist()
    return Numbers(array.array("d", _flatten(values)))


def integers(values: Any) -> Numbers:
    """Point numbers or counts as 32-bit integers. Raises ValueError for what does not fit."""
    if _is_buffer(values):
        if _is_fit(values, INTEGERS):
            return Numbers(values)
        if hasattr(values, "astype"):
            converted = values.astype("i4", order="C")
            if (converted != values).any():
                raise ValueError("an index is no 32-bit integer; pass point numbers")
            return Numbers(converted)
        values = memoryview(values).tolist()
    try:
        return Numbers(array.array("i", _flatten(values)))
    except (OverflowError, TypeError):
        raise ValueError("an index is no 32-bit integer; pass point numbers") from None


def matrix(values: Any) -> Sequence[float]:
    """16 doubles for ctypes, of a flat or nested sequence or an array."""
    flat = list(_flatten(values.tolist() if hasattr(values, "tolist") else values))
    if len(flat) != 16:
        raise ValueError(f"a matrix of {len(flat)} numbers; pass 16")
    return (ctypes.c_double * 16)(*flat)
