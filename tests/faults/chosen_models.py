"""Models of all formats for sweeps that draw each many times."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "models"))

from model_set import MODELS, Expectations  # noqa: E402

# Bytes; larger models take long and are read in the same ways.
LARGEST = 200_000


def chosen_models(count, largest=LARGEST, is_smallest_first=True):
    """The paths of `count` models of at most `largest` bytes, from each format one, then from each
    the next, and so on. Formats that few models have are thus in every choice.
    """
    by_format = {}
    for model in Expectations().models():
        path = MODELS / model
        if path.stat().st_size <= largest:
            by_format.setdefault(path.suffix.lower(), []).append(path)
    for paths in by_format.values():
        paths.sort(key=lambda path: (path.stat().st_size, path),
                   reverse=not is_smallest_first)
    chosen = []
    while len(chosen) < count and by_format:
        for suffix in sorted(by_format):
            chosen.append(by_format[suffix].pop(0))
            if not by_format[suffix]:
                del by_format[suffix]
    return chosen[:count]
