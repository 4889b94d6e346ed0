"""Holds the JSON Schema of scene files against the reader: of thousands of scenes, most of them faulty
in one or two places, both take and refuse the same ones."""
import copy
import json
import pathlib
import random
import re
import subprocess
import sys

import jsonschema

IDENTITY = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]

# Every key that there is, and every kind of list with something in it.
BASE = {
    "format": "ktscene",
    "version": 1,
    "nodes": [
        {
            "graphicName": "g",
            "objectId": "o",
            "realObjectId": "r",
            "item": True,
            "matrix": IDENTITY,
            "color": [0, 0.5, 1],
            "geometry": [
                {"faceSet": {"coords": [0, 0, 0.25], "indices": [0, -7],
                             "reverseOrientation": True, "closedSurface": False}},
                {"lineSet": {"coords": [], "indices": [0, -6]}},
                {"box": [1, 2.5, 3]},
                {"cylinder": [0.5, 2]},
            ],
            "label": {"text": "T:", "colorIndex": 3},
            "bounds": {"min": [0, 0, 0], "max": [1, 1, 1.5]},
            "children": [{"lod": {"ranges": [10], "levels": [{}, {"item": False}]}}],
        },
    ],
}

VALUES = [
    None, True, False, 0, 1, -1, 0.5, -0.25, 2, 1e-300, 10**15, 10**15 + 1, -(10**15), -(10**15) - 1,
    1e300, 2**31 - 1, 2**31, -(2**31), -(2**31) - 1, 2**64, "", "x", "ktscene", "\u00e9\U0001F600\n\0",
    [], [0], [1, 1], [1, 1, 1], [0.5, 0.5, 0.5], [[0, 0, 0]], IDENTITY, [{}], [[]], {}, {"x": 1},
    {"text": ""}, {"min": [0, 0, 0], "max": [0, 0, 0]}, {"levels": []}, {"lod": {"levels": []}},
    {"coords": [], "indices": []}, {"box": [1, 1, 1]}, {"box": [1, 1, 0]}, {"nodes": []},
]

KEYS = [
    "format", "version", "nodes", "graphicName", "objectId", "realObjectId", "item", "matrix", "color",
    "geometry", "label", "bounds", "lod", "children", "faceSet", "lineSet", "box", "cylinder", "coords",
    "indices", "reverseOrientation", "closedSurface", "text", "colorIndex", "min", "max", "ranges",
    "levels", "", "Nodes", "comment",
]

# What the reader refuses and a schema cannot see.
UNSEEN = [
    '{"nodes": [], "nodes": []}',
    '{"nodes": [{"item": true, "item": true}]}',
    '{"version": 1.0, "nodes": []}',
    '{"nodes": [{"label": {"text": "", "colorIndex": 3.0}}]}',
    '{"nodes": [{"geometry": [{"lineSet": {"coords": [], "indices": [0, 1e0, -1]}}]}]}',
    '{"nodes": [{"objectId": "\\ud800"}]}',
    '{"nodes": [{"label": {"text": "\\udc00\\ud800"}}]}',
]


def containers(value):
    """Every list and object in `value`, itself included."""
    if isinstance(value, (dict, list)):
        yield value
        for child in value.values() if isinstance(value, dict) else value:
            yield from containers(child)


def edits(scene):
    """Every change of one place in `scene`, as the number of its container and what to do with it."""
    for number, container in enumerate(containers(scene)):
        places = list(container) if isinstance(container, dict) else range(len(container))
        for place in places:
            yield number, "delete", place, None
            for value in VALUES:
                yield number, "set", place, value
        if isinstance(container, dict):
            for key in KEYS:
                if key not in container:
                    for value in VALUES:
                        yield number, "set", key, value
        else:
            for value in VALUES:
                yield number, "append", None, value


def edited(scene, edit):
    number, action, place, value = edit
    scene = copy.deepcopy(scene)
    container = next(c for i, c in enumerate(containers(scene)) if i == number)
    if action == "delete":
        del container[place]
    elif action == "append":
        container.append(copy.deepcopy(value))
    else:
        container[place] = copy.deepcopy(value)
    return scene


def scenes():
    """The base, every value as a scene, a sample of single changes, and changes of changes."""
    yield BASE
    yield from VALUES
    chance = random.Random(20)
    single = list(edits(BASE))
    for edit in chance.sample(single, 3500):
        yield edited(BASE, edit)
    # Of two faults each must be seen beside the other, and two changes may be none.
    small = {"nodes": [{"geometry": [{"box": [1, 2, 3]}], "label": {"text": ""}}, {"lod": {"levels": []}}]}
    double = list(edits(small))
    for edit in double:
        yield edited(small, edit)
    for edit in chance.sample(double, 1500):
        scene = edited(small, edit)
        yield edited(scene, chance.choice(list(edits(scene))))


def verdicts(tool, texts):
    assert not any("\n" in text for text in texts)
    done = subprocess.run([tool], input="\n".join(texts) + "\n", stdout=subprocess.PIPE, text=True,
                          encoding="utf-8", check=True)
    lines = done.stdout.splitlines()
    assert len(lines) == len(texts), (len(lines), len(texts))
    return lines


def check_agreement(tool, validator):
    texts = sorted({json.dumps(scene) for scene in scenes()})
    seen = {True: 0, False: 0}
    for text, verdict in zip(texts, verdicts(tool, texts)):
        valid = validator.is_valid(json.loads(text))
        assert valid == (verdict == "valid"), f"schema: {valid}, reader: {verdict}\n{text}"
        seen[valid] += 1
    assert seen[True] > 100 and seen[False] > 2000, seen
    return seen


def check_unseen(tool, validator):
    for text, verdict in zip(UNSEEN, verdicts(tool, UNSEEN)):
        assert validator.is_valid(json.loads(text)), text
        assert verdict != "valid", text


def check_examples(tool, validator, sources):
    """The scenes of the page about the format, and those that drawings are held against."""
    page = (sources / "docs" / "scene-format.md").read_text(encoding="utf-8")
    texts = re.findall(r"```json\n(.*?)```", page, flags=re.DOTALL)
    assert len(texts) >= 5, len(texts)
    golden = [path.read_text(encoding="utf-8") for path in (sources / "tests" / "golden").glob("*.json")]
    flat = [text.replace("\n", " ") for text in texts + golden]
    for text, verdict in zip(flat, verdicts(tool, flat)):
        assert verdict == "valid", (verdict, text)
        validator.validate(json.loads(text))


def main():
    tool, sources = sys.argv[1], pathlib.Path(sys.argv[2])
    schema = json.loads((sources / "docs" / "scene.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    seen = check_agreement(tool, validator)
    check_unseen(tool, validator)
    check_examples(tool, validator, sources)
    print(f"{seen[True]} valid and {seen[False]} invalid scenes")


if __name__ == "__main__":
    main()
