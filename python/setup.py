"""Puts KtScene's libraries into the wheel if KTSCENE_LIBDIR names the directory that has them.

Without it the wheel is plain Python, and the module finds the libraries that are installed.
"""
import os
import pathlib
import shutil

from setuptools import setup
from setuptools.command.build_py import build_py
from setuptools.dist import Distribution

FILES = ("libKtScene.so.1", "libKtPlatform.so.1", "dxf2d/dxf2d_plugin.so")
LIBDIR = os.environ.get("KTSCENE_LIBDIR")


class BuildWithLibraries(build_py):
    def run(self):
        super().run()
        if not LIBDIR:
            return
        for name in FILES:
            target = pathlib.Path(self.build_lib, "ktscene", "lib", name)
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(pathlib.Path(LIBDIR, name), target)


class PlatformDistribution(Distribution):
    """One wheel for each machine, where it has libraries."""

    def has_ext_modules(self):
        return bool(LIBDIR)


setup(cmdclass={"build_py": BuildWithLibraries}, distclass=PlatformDistribution)
