"""Draws scenes and models with labels, and compares what two readers find with what must be there.

The expectation is computed here from the scene, the readers are ezdxf and dxflib.
"""

import argparse
import json
import pathlib
import subprocess
import tempfile

import chair_model
import label_scene
from placed_texts import read_by_dxflib, read_by_ezdxf

# Letters that each code page has.
PAGES = {
    1250: "abc \u017a\u0159\u0151\u20ac",
    1251: "abc \u0416\u0434\u044f\u2116",
    1252: "abc \u00dc\u00df\u20ac\"\\!il",
    1253: "abc \u03b1\u03a9\u03ce",
    1257: "abc \u0105\u0161\u017e",
}
# Any does: labels of models are ASCII.
MODEL_PAGE = 1252


def export(args, source, drawing, *options):
    subprocess.run([args.dxf2d, "export", source, "-o", drawing, *options], check=True,
                   stdout=subprocess.DEVNULL)


def compare(what, found, expected):
    """Counts the texts that are not as they must be, and shows the first of them."""
    faults = [(mine, theirs) for mine, theirs in zip(expected, found) if mine.differs_from(theirs)]
    for mine, theirs in faults[:3]:
        print(f"{what}: {mine.differs_from(theirs)} differs\n  expected {mine}\n  found    {theirs}")
    if len(found) != len(expected):
        print(f"{what}: {len(found)} texts instead of {len(expected)}")
    print(f"{what}: {len(found)} texts, {len(faults)} of them differ")
    return len(faults) + abs(len(found) - len(expected))


def check(args, drawing, what, page, expected):
    encoding = f"cp{page}"
    by_dxflib = read_by_dxflib(args.dxflib_texts, drawing, encoding)
    return (compare(f"{what}, ezdxf", read_by_ezdxf(drawing, encoding), expected)
            + compare(f"{what}, dxflib", by_dxflib, expected))


def check_scene(args, work, page, letters):
    labels = label_scene.labels(letters)
    source, drawing = work / f"{page}.json", work / f"{page}.dxf"
    source.write_text(json.dumps(label_scene.scene(labels)))
    export(args, source, drawing, "--codepage", str(page))
    expected = [text for label in labels for text in label.texts()]
    return check(args, drawing, f"scene in {page}", page, expected)


def check_model(args, work):
    source, drawing = work / "chairs.gltf", work / "chairs.dxf"
    source.write_text(json.dumps(chair_model.model()))
    export(args, source, drawing, "--labels", "name", "--label-height", str(chair_model.HEIGHT))
    return check(args, drawing, "model", MODEL_PAGE, list(chair_model.texts()))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--dxf2d", required=True)
    parser.add_argument("--dxflib-texts", required=True)
    args = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        work = pathlib.Path(name)
        faults = sum(check_scene(args, work, page, letters) for page, letters in PAGES.items())
        faults += check_model(args, work)
    return 1 if faults else 0


if __name__ == "__main__":
    raise SystemExit(main())
