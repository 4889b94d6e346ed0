#!/usr/bin/python3
"""Draws scenes with the module for Windows, under Wine, and with that for Linux, and compares bytes.

usage: compare_scenes.py --windows BUILD --linux BUILD [--scenes N] [--seed N] [--keep DIR]

The scenes are the golden ones and N random ones (default 100), each in a code page that holds its
texts, under names that are not ASCII and, some of them, longer than 260 characters. A few named texts
are drawn in Japanese Shift JIS and in UTF-8. Wine is that of the environment (WINEPREFIX).
"""
import argparse
import json
import pathlib
import random
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "differential"))

from random_scenes import random_scene  # noqa: E402 (needs the path above)

PAGES = [1250, 1251, 1252, 1253, 1254, 1256, 1257, 874]
LARGEST_RADIUS = 1e6
LARGEST_SCALE = 1e3
# Random scenes that show that digit all the same: a nearly singular matrix magnifies it; it decides
# whether the sides of a cylinder 1e-8 high coincide.
MAGNIFIED = {926, 1100}
# Texts whose bytes the tables of both systems agree on.
NAMED = [(932, "日本語 カタカナ ﾊﾝｶｸ"), (932, "plan 5"), (65001, "Süd – 5 €"), (65001, "План"),
         (65001, "plan 5"), (65001, "日本")]


def holds(page, character):
    # Python's tables are Microsoft's.
    try:
        character.encode(f"cp{page}")
    except UnicodeEncodeError:
        return False
    return True


def nodes_of(nodes):
    for node in nodes:
        yield node
        yield from nodes_of(node.get("children", []))
        yield from nodes_of(node.get("lod", {}).get("levels", []))


def fitted(scene, page):
    """The scene without what the systems draw each in its own way: characters of labels that the page
    lacks, for which Windows writes a similar one of its choice, and cylinders so large, or enlarged so
    much, that six decimals show the last binary digit of a sine, in which C libraries differ."""
    enlarged = any(abs(element) > LARGEST_SCALE
                   for node in nodes_of(scene["nodes"]) for element in node.get("matrix", [])[:12])
    for node in nodes_of(scene["nodes"]):
        if "label" in node:
            text = node["label"]["text"]
            node["label"]["text"] = "".join(c if holds(page, c) else "x" for c in text)
        for shape in node.get("geometry", []):
            if "cylinder" in shape:
                shape["cylinder"][0] = min(shape["cylinder"][0], LARGEST_RADIUS)
        if "geometry" in node and enlarged:
            node["geometry"] = [shape for shape in node["geometry"] if "cylinder" not in shape]
    return scene


def scene_of(text):
    return {"nodes": [{"label": {"text": f'T:1 1 0 0 0 0 0 C 0 0 0 0 0 "{text}"', "colorIndex": 1}}]}


def scenes(options):
    """Pairs of a code page and a scene's bytes, by name."""
    for golden in sorted((ROOT / "tests" / "golden").glob("*.json")):
        for page in PAGES:
            scene = fitted(json.loads(golden.read_text("utf-8")), page)
            yield f"{golden.stem}-{page}", page, json.dumps(scene).encode()
    for number, (page, text) in enumerate(NAMED):
        yield f"named-{number}", page, json.dumps(scene_of(text)).encode()
    for seed in range(options.seed, options.seed + options.scenes):
        if seed in MAGNIFIED:
            continue
        page = random.Random(f"code page {seed}").choice(PAGES)
        scene = fitted(random_scene(seed), page)
        yield f"random-{seed}-{page}", page, json.dumps(scene).encode()


def written_scenes(options, folder):
    deep = folder / ("Großer Plan " * 10) / ("План дома " * 10) / ("面図 " * 20)
    deep.mkdir(parents=True)
    for number, (name, page, content) in enumerate(scenes(options)):
        place = deep if number % 10 == 0 else folder
        scene = place / f"Süd 日本 {name}.json"
        scene.write_bytes(content)
        yield page, scene


def draw(command, listed, system, folder):
    """Runs draw_scenes over the scenes; the drawings stand beside them."""
    path = folder / f"list-{system}"
    path.write_text("".join(f"{page}\t{scene}\t{scene.with_suffix('.' + system)}\n"
                            for page, scene in listed), "utf-8")
    ended = subprocess.run([*command, str(path)], stderr=subprocess.PIPE, text=True, timeout=900)
    if ended.returncode != 0:
        sys.exit(f"compare_scenes: on {system}: {ended.stderr.strip()}")


def bytes_of(path):
    return path.read_bytes() if path.exists() else None


def difference(scene):
    for ending in ("", ".error"):
        ours, theirs = (bytes_of(scene.with_suffix(f".{system}{ending}"))
                        for system in ("windows", "linux"))
        if ours != theirs:
            return f"{scene.name}: differs{' in its error' if ending else ''}"
    if all(bytes_of(scene.with_suffix(f".linux{ending}")) is None for ending in ("", ".error")):
        return f"{scene.name}: is not drawn"
    return None


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--windows", required=True, type=pathlib.Path)
    parser.add_argument("--linux", required=True, type=pathlib.Path)
    parser.add_argument("--scenes", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--keep", metavar="DIR", help="leave the scenes and drawings here")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="dxf2d-windows-") as scratch:
        folder = pathlib.Path(options.keep or scratch)
        listed = list(written_scenes(options, folder))
        windows, linux = options.windows.resolve(), options.linux.resolve()
        draw([linux / "bin" / "draw_scenes", linux / "lib" / "dxf2d_plugin.so"], listed, "linux",
             folder)
        draw(["wine", windows / "bin" / "draw_scenes.exe", windows / "lib" / "dxf2d_plugin.dll"],
             listed, "windows", folder)
        differences = [found for _, scene in listed if (found := difference(scene))]
    print("\n".join([*differences,
                     f"{len(listed) - len(differences)} equal, {len(differences)} different"]))
    return 1 if differences else 0


if __name__ == "__main__":
    sys.exit(main())
