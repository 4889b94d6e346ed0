#!/usr/bin/python3
"""Reads a drawing with ezdxf and writes it again: the yardstick of `dxf2d finish` in bench/run.

usage: rewrite_ezdxf.py DRAWING OUTPUT
"""
import sys

import ezdxf

ezdxf.readfile(sys.argv[1]).saveas(sys.argv[2])
