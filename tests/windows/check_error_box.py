#!/usr/bin/python3
"""Looks at the error box of a program with windows, on a screen of its own, and closes it.

usage: check_error_box.py PROGRAM PICTURE.png

Uses Xvfb and xdotool. WINEPREFIX is in the environment. PICTURE shows the screen, for people; checked are the window's
title, that something is painted in it, and that the key Return ends the program.
"""
import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import time
import zlib

TITLE = "DXF export error"
SIZE = (640, 480)
# In seconds; Wine starts in a few.
PATIENCE = 60


def start_screen(folder):
    """Xvfb and the name of its display, which it chooses."""
    reading, writing = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-screen", "0", "{}x{}x24".format(*SIZE),
                               "-fbdir", folder, "-nolisten", "tcp"], pass_fds=[writing],
                              stderr=subprocess.DEVNULL)
    os.close(writing)
    with os.fdopen(reading) as number:
        return server, ":" + number.readline().strip()


def rows_of(screen):
    """The rows of pixels, three bytes each, of the file in which Xvfb keeps its screen (XWD, 32 bits a pixel)."""
    data = screen.read_bytes()
    header = struct.unpack(">25I", data[:100])
    width, height, stride, colors = header[4], header[5], header[12], header[19]
    begin = header[0] + 12 * colors
    for y in range(height):
        row = data[begin + y * stride:begin + y * stride + 4 * width]
        yield b"".join(bytes((row[at + 2], row[at + 1], row[at])) for at in range(0, len(row), 4))


def write_png(path, rows):
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    pixels = zlib.compress(b"".join(b"\0" + row for row in rows))
    header = struct.pack(">2I5B", *SIZE, 8, 2, 0, 0, 0)
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", pixels) + chunk(b"IEND", b""))


def xdotool(environment, *words):
    done = subprocess.run(["xdotool", *words], env=environment, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True)
    return done.stdout.strip()


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while not (result := condition()):
        assert time.monotonic() < end, f"no {what} within {PATIENCE} s"
        time.sleep(0.2)
    return result


def main():
    program, picture = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        server, display = start_screen(folder)
        environment = dict(os.environ, DISPLAY=display)
        shown = subprocess.Popen(["wine", program], env=environment)
        try:
            window = wait_for("window", lambda: xdotool(environment, "search", "--name", f"^{TITLE}$"))
            assert xdotool(environment, "getwindowname", window) == TITLE
            screen = pathlib.Path(folder, "Xvfb_screen0")

            def painted():
                rows = list(rows_of(screen))
                # A button, an icon and letters have many colors.
                return rows if len({row[at:at + 3] for row in rows for at in range(0, len(row), 3)}) > 20 else None

            write_png(pathlib.Path(picture), wait_for("picture", painted))
            xdotool(environment, "windowfocus", window)
            xdotool(environment, "key", "Return")
            assert shown.wait(PATIENCE) == 7, shown.returncode
        finally:
            shown.kill()
            server.kill()


if __name__ == "__main__":
    main()
