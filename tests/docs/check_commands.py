"""Runs the commands of the SDK's pages as a reader would, on an installed SDK, and looks at what they make.

usage: check_commands.py SOURCE_TREE CMAKE BUILD_TREE CONFIG

The SDK is installed in ~/.local of a home of the test's own. Of host-recipes.md these are all commands, and the programs
above them; of other pages, the blocks that begin by telling pkg-config where the SDK is.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import ezdxf

from pages import parts_of

PAGES = ("host-guide.md", "plugin-guide.md", "languages.md")
SETTING = "export PKG_CONFIG_PATH="


def run(page, script, work):
    environment = {name: value for name, value in os.environ.items()
                   if name not in ("DESTDIR", "PKG_CONFIG_PATH", "LD_LIBRARY_PATH")}
    done = subprocess.run(["bash", "-euo", "pipefail", "-c", script], cwd=work, text=True,
                          env=dict(environment, HOME=str(work)), stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    assert done.returncode == 0, f"{page}:\n{script}\nended with {done.returncode}\n{done.stdout}"
    return done.stdout


def run_page(page, work):
    scripts = [text for part in parts_of(page) for _, text in part.blocks if text.startswith(SETTING)]
    assert scripts, f"{page} has no commands that begin with {SETTING}"
    return "".join(run(page.name, script, work) for script in scripts)


def run_recipes(page, work):
    """Returns what the commands of each program print."""
    first, *recipes = [part for part in parts_of(page) if part.blocks]
    [(_, setting)] = first.blocks
    printed = {}
    for recipe in recipes:
        name = re.fullmatch(r".*`(\w+\.cpp)`", recipe.title)[1]
        (_, program), (_, commands) = recipe.blocks
        (work / name).write_text(program + "\n", encoding="utf-8")
        strict = "flags+=' -Wall -Wextra -Wpedantic -Wshadow -Werror'"
        printed[name] = run(f"{page.name}: {recipe.title}", f"{setting}\n{strict}\n{commands}", work)
    return printed


def blocks_and_colors(path):
    """How often each block is placed, and the color of its lines."""
    drawing = ezdxf.readfile(path)
    names = [insert.dxf.name for insert in drawing.modelspace().query("INSERT")]
    return sorted((names.count(name), *{line.dxf.color for line in drawing.blocks[name].query("POLYLINE")})
                  for name in set(names))


def main():
    source, cmake, build, config = sys.argv[1:]
    docs = pathlib.Path(source, "docs")
    with tempfile.TemporaryDirectory(prefix="dxf2d-commands-") as folder:
        work = pathlib.Path(folder)
        (work / "examples").symlink_to(pathlib.Path(source, "examples"))
        subprocess.run([cmake, "--install", build, "--config", config, "--prefix", work / ".local"], check=True,
                       env={name: value for name, value in os.environ.items() if name != "DESTDIR"},
                       stdout=subprocess.DEVNULL)
        printed = {page: run_page(docs / page, work) for page in PAGES}
        assert blocks_and_colors(work / "crates.dxf") == [(2, 254)], blocks_and_colors(work / "crates.dxf")
        assert "SVG plan" in printed["plugin-guide.md"], printed["plugin-guide.md"]
        assert (work / "bracket.svg").read_text(encoding="utf-8").count("<path ") > 200
        assert ezdxf.readfile(work / "table.dxf").modelspace().query("INSERT")

        printed = run_recipes(docs / "host-recipes.md", work)
        assert list(printed) == ["progress.cpp", "stream.cpp", "colors.cpp", "services.cpp"], printed
        assert "99 %" in printed["progress.cpp"], printed
        assert printed["services.cpp"].startswith("services: warning: labels left out"), printed
        assert "<title>crate.svg</title>" in (work / "crate.svg").read_text(encoding="utf-8")
        assert blocks_and_colors(work / "crates.dxf") == [(100, 254)], blocks_and_colors(work / "crates.dxf")
        assert not (work / "nothing.dxf").exists() and not list(work.glob(".nothing*"))
        assert len(ezdxf.readfile(work / "drums.dxf").modelspace().query("INSERT")) == 1000
        # The receiver goes away: the plug-in's next write fails, and the program ends.
        ends = run("host-recipes.md: stream.cpp", "set +e; ./stream .local/lib/dxf2d/dxf2d_plugin.so | head -c 100 >head;"
                   "echo ${PIPESTATUS[0]}", work)
        assert ends.startswith("stream: ") and ends.endswith("\n1\n"), ends
        # Red is 1, and blue 5.
        assert blocks_and_colors(work / "chairs.dxf") == [(3, 1), (3, 5)], blocks_and_colors(work / "chairs.dxf")


if __name__ == "__main__":
    main()
