#!/usr/bin/python3
"""Reads a model as assimp does without any processing, and prints the seconds that takes.

usage: read_assimp.py MODEL
"""
import ctypes
import ctypes.util
import sys
import time


def main():
    library = ctypes.CDLL(ctypes.util.find_library("assimp"))
    library.aiImportFile.restype = ctypes.c_void_p
    library.aiImportFile.argtypes = (ctypes.c_char_p, ctypes.c_uint)
    start = time.perf_counter()
    scene = library.aiImportFile(sys.argv[1].encode(), 0)
    seconds = time.perf_counter() - start
    if not scene:
        sys.exit(f"read_assimp.py: {sys.argv[1]}: assimp cannot read it")
    print(f"seconds {seconds:.4f}")


main()
