"""Installs the build tree, builds the examples against what was installed, and runs them.

The examples see nothing of the source tree: they are copied out of the installed one, and that one is
moved after the installation, as a package's files are.
"""
import argparse
import json
import os
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile

SQUARE = {
    "nodes": [
        {
            "graphicName": "square",
            "objectId": "A",
            "realObjectId": "A",
            "geometry": [
                {"faceSet": {"coords": [0, 0, 0, 2, 0, 0, 2, 2, 0, 0, 2, 0], "indices": [0, 1, 2, 3, -7]}}
            ],
        }
    ]
}

COUNTS = "nodes 2, instances refused 1, face sets 2, line sets 0, labels 0, materials 0\n"


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build tree")
    parser.add_argument("--cmake", required=True)
    parser.add_argument("--generator", required=True)
    parser.add_argument("--make-program", required=True)
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--config", required=True, help="the build type")
    parser.add_argument("--flags", default="", help="compiler flags that the libraries were built with")
    parser.add_argument("--libdir", required=True, help="of the installation, below its prefix")
    parser.add_argument("--bindir", required=True, help="of the installation, below its prefix")
    return parser.parse_args()


def run(*command, environment=None, expect=0):
    """The standard output of `command`, which must end with the exit code `expect`."""
    words = [str(word) for word in command]
    done = subprocess.run(
        words, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True
    )
    assert done.returncode == expect, (
        f"{shlex.join(words)} ended with {done.returncode}\n{done.stdout}\n{done.stderr}"
    )
    return done.stdout


def install(args, work):
    """Installs into one place and moves the tree to another. Returns its prefix."""
    staged = work / "staged"
    environment = {key: value for key, value in os.environ.items() if key != "DESTDIR"}
    run(args.cmake, "--install", args.build, "--config", args.config, "--prefix", staged,
        environment=environment)
    prefix = work / "moved here"
    staged.rename(prefix)
    return prefix


def check_components(args, work):
    """Each component installs what it says, and together they are everything."""
    environment = {key: value for key, value in os.environ.items() if key != "DESTDIR"}

    def place_of(*component):
        return work / "-".join(("part", *component))

    def files_of(*component):
        prefix = place_of(*component)
        run(args.cmake, "--install", args.build, "--config", args.config, "--prefix", prefix, *component,
            environment=environment)
        return {path.relative_to(prefix).as_posix() for path in prefix.rglob("*") if not path.is_dir()}

    parts = {name: files_of("--component", name)
             for name in ("runtime", "development", "tools", "documentation")}
    lib = args.libdir
    assert {f"{lib}/libKtScene.so.1", f"{lib}/libKtPlatform.so.1", f"{lib}/dxf2d/dxf2d_plugin.so",
            "lib/python3/dist-packages/ktscene/__init__.py"} <= parts["runtime"], parts["runtime"]
    assert {f"{lib}/libKtScene.so", f"{lib}/pkgconfig/ktscene.pc", f"{lib}/cmake/KtScene/KtSceneConfig.cmake",
            "include/ktscene-1/ktscene/ktscene_c.h"} <= parts["development"], parts["development"]
    assert not [name for name in parts["runtime"] if name.endswith((".h", ".cmake", ".pc", ".so"))
                and not name.endswith("dxf2d_plugin.so")], parts["runtime"]
    assert sum(map(len, parts.values())) == len(set().union(*parts.values()))
    assert set().union(*parts.values()) == files_of(), set().union(*parts.values()) ^ files_of()

    # Programs are built with two of them, and run with one.
    runtime = place_of("--component", "runtime")
    both = work / "runtime and development"
    shutil.copytree(runtime, both, symlinks=True)
    shutil.copytree(place_of("--component", "development"), both, symlinks=True, dirs_exist_ok=True)
    [examples] = place_of("--component", "documentation").glob("share/doc/*/examples")
    host = build_with_pkg_config(args, examples / "minimal_host", both)
    both.rename(work / "not there any more")
    [plugin] = runtime.rglob("dxf2d_plugin.so")
    drawing = work / "runtime.dxf"
    run(host, drawing, plugin, environment=dict(os.environ, LD_LIBRARY_PATH=str(runtime / lib)))
    check_two_crates(drawing)


def check_headers(prefix):
    """The SDK has the public headers and no others."""
    headers = prefix / "include" / "ktscene-1"
    found = {path.relative_to(headers).as_posix() for path in headers.rglob("*") if path.is_file()}
    assert "ktscene/kt_traverser.h" in found and "platform/cfile_exception.h" in found, found
    private = {name for name in found if name.startswith("ktscene/") and not name.startswith(
        ("ktscene/kt_", "ktscene/export.h", "ktscene/ktscene_c.h", "ktscene/zu_message.h"))}
    assert not private, private
    assert not [name for name in found if not name.endswith(".h")], found
    assert "platform/decimal_point.h" not in found


def build_with_cmake(args, source, prefix):
    build = source / "build"
    run(args.cmake, "-S", source, "-B", build, "-G", args.generator,
        f"-DCMAKE_MAKE_PROGRAM={args.make_program}", f"-DCMAKE_CXX_COMPILER={args.compiler}",
        f"-DCMAKE_BUILD_TYPE={args.config}",
        f"-DCMAKE_CXX_FLAGS={args.flags} -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror",
        f"-DCMAKE_PREFIX_PATH={prefix}")
    run(args.cmake, "--build", build)
    return build


def pkg_config(args, prefix, *what):
    """The words that pkg-config prints, as a shell takes them."""
    environment = dict(os.environ, PKG_CONFIG_PATH=str(prefix / args.libdir / "pkgconfig"))
    return shlex.split(run("pkg-config", *what, "ktscene", environment=environment))


def build_with_pkg_config(args, source, prefix):
    flags = pkg_config(args, prefix, "--cflags")
    assert "-ffp-contract=off" in flags, flags
    assert not [flag for flag in pkg_config(args, prefix, "--cflags", "--libs", "--variable=plugin") if "//" in flag]
    host = source / "host_by_pkg_config"
    plugin = pkg_config(args, prefix, "--variable=plugin")
    run(args.compiler, "-std=c++20", *shlex.split(args.flags), *flags,
        f'-DDEFAULT_PLUGIN="{" ".join(plugin)}"', source / "main.cpp", "-o", host,
        *pkg_config(args, prefix, "--libs"), f"-Wl,-rpath,{prefix / args.libdir}", "-ldl")
    return host


def check_translations(args, prefix, work):
    """A program finds the catalog beside the library, wherever the tree is."""
    program = work / "translated_text"
    run(args.compiler, "-std=c++20", *shlex.split(args.flags), *pkg_config(args, prefix, "--cflags"),
        pathlib.Path(__file__).with_name("translated_text.cpp"), "-o", program,
        *pkg_config(args, prefix, "--libs"))

    def text(place):
        environment = dict(os.environ, LC_ALL="C.UTF-8", LANGUAGE="de",
                           LD_LIBRARY_PATH=str(place / args.libdir))
        return run(program, environment=environment)

    assert text(prefix) == "DXF-Exportfehler\n", text(prefix)
    elsewhere = work / "elsewhere"
    prefix.rename(elsewhere)
    assert text(elsewhere) == "DXF-Exportfehler\n", text(elsewhere)
    # It was the tree's own catalog, not one that this system happens to have.
    [catalog] = elsewhere.rglob("de/LC_MESSAGES/ktscene.mo")
    catalog.unlink()
    assert text(elsewhere) == "DXF export error\n", text(elsewhere)


def groups(drawing):
    """The (code, value) pairs of a drawing."""
    lines = drawing.read_text(encoding="latin-1").split("\n")
    assert lines[-3:] == ["  0", "EOF", ""], lines[-3:]
    return list(zip(lines[0:-1:2], lines[1:-1:2]))


def placements(drawing):
    """The (block name, x, y) of every INSERT in the ENTITIES section."""
    pairs = groups(drawing)
    entities = pairs[pairs.index(("  2", "ENTITIES")):]
    starts = [at for at, pair in enumerate(entities) if pair == ("  0", "INSERT")]
    placed = []
    for start in starts:
        entity = dict(entities[start + 1:start + 6])
        placed.append((entity["  2"], entity[" 10"], entity[" 20"]))
    return placed


def check_two_crates(drawing):
    """The second crate is placed as an instance: under the first one's name."""
    assert placements(drawing) == [
        ("GO_1", "0.000000", "0.000000"),
        ("GO_1", "5.000000", "3.000000"),
    ], placements(drawing)


def check_hosts(hosts, plugin, work):
    for host in hosts:
        drawing = work / f"{host.name}.dxf"
        run(host, drawing)
        check_two_crates(drawing)
        drawing.unlink()

        assert run(host, drawing, plugin) == COUNTS
        assert not drawing.exists()

        run(host, work / "no such directory" / "a.dxf", expect=1)
        run(host, drawing, work / "no such plug-in.so", expect=1)
        # On a full disk the drawing fails half way, and no part of it is left.
        if os.path.exists("/dev/full"):
            full = work / "full.dxf"
            os.symlink("/dev/full", full)
            run(host, full, expect=1)
            assert os.path.islink(full) and not list(work.glob(".*"))
            full.unlink()


def check_program(program, plugin, svg_plugin, work):
    """dxf2d of the installed tree draws with the plug-in beside it, and looks into another."""
    scene = work / "square.json"
    scene.write_text(json.dumps(SQUARE), encoding="utf-8")
    drawing = work / "square.dxf"
    run(program, "export", scene, "-o", drawing)
    assert placements(drawing) == [("GO_1", "0.000000", "0.000000")], placements(drawing)
    assert "InitializeTraverser" in run(program, "inspect", plugin)
    picture = work / "square.svg"
    run(program, "export", "--plugin", svg_plugin, scene, "-o", picture)
    assert 'd="M0 0L2 0L2 2L0 2Z"' in picture.read_text(encoding="utf-8").replace("-", "")


def check(args, work):
    check_components(args, work)
    prefix = install(args, work)
    check_headers(prefix)
    examples = work / "examples"
    [installed] = (prefix / "share" / "doc").glob("*/examples")
    shutil.copytree(installed, examples)

    host_build = build_with_cmake(args, examples / "minimal_host", prefix)
    plugin = build_with_cmake(args, examples / "minimal_plugin", prefix) / "minimal_plugin.so"
    hosts = [
        host_build / "minimal_host",
        build_with_pkg_config(args, examples / "minimal_host", prefix),
    ]
    check_hosts(hosts, plugin, work)
    # It finds the installed plug-in by itself.
    c_host = build_with_cmake(args, examples / "c_host", prefix) / "c_host"
    run(sys.executable, pathlib.Path(__file__).with_name("check_c_host.py"), c_host)
    program = prefix / args.bindir / "dxf2d"
    if program.exists():
        svg_plugin = build_with_cmake(args, examples / "svg_plugin", prefix) / "svg_plugin.so"
        check_program(program, plugin, svg_plugin, work)
    # Last: it moves the tree once more.
    check_translations(args, prefix, work)


def main():
    args = arguments()
    with tempfile.TemporaryDirectory(prefix="dxf2d-sdk-") as work:
        check(args, pathlib.Path(work))


if __name__ == "__main__":
    main()
