"""Holds one model's drawing against the model."""

import re

from drawing_facts import Bounds, DrawingFacts

SUMMARY = re.compile(
    r": (?P<objects>\d+) objects? \(\d+ instances? shared\), \d+ parts?, "
    r"(?P<polylines>\d+) polylines?, (?P<vertices>\d+) (?:vertex|vertices); "
    r"x (?P<min_x>\S+) to (?P<max_x>\S+), y (?P<min_y>\S+) to (?P<max_y>\S+); ")


def complaints_about(model, programs, expectations, drawing, up="auto", view="top", scale=1):
    """Draws the model and returns a sentence for each thing that is wrong; none if all is well."""
    result = programs.export(model, drawing, "--up", up, "--view", view, "--scale", str(scale))
    if result.returncode != 0:
        return [f"is not drawn: exit code {result.returncode}, {result.stderr.strip()}"]
    facts = DrawingFacts(drawing)
    measured, unshared, tolerance = programs.measured(model, up, view, scale)
    tolerance = max(tolerance, expectations.coarse.get(model, 0))
    return [*facts.faults,
            *differing_counts(facts, programs.counted_by_dxflib(drawing)),
            *wrong_summary(result.stdout, facts, measured, tolerance),
            *wrong_reach(facts.bounds, measured, unshared, tolerance,
                         expectations.falls_short.get((model, view)))]


def differing_counts(facts, dxflib_counts):
    if facts.counts != dxflib_counts:
        yield f"ezdxf counts {facts.counts}, dxflib {dxflib_counts}"


def wrong_summary(text, facts, measured, tolerance):
    summary = SUMMARY.search(text)
    if summary is None:
        yield f"has no summary: {text!r}"
        return
    counts = {"objects": sum(facts.placed.values()),
              "polylines": facts.counts["polylines"], "vertices": facts.counts["vertices"]}
    for name, count in counts.items():
        if int(summary[name]) != count:
            yield f"holds {count} {name}, its summary says {summary[name]}"
    said = Bounds(*(float(summary[side]) for side in Bounds.SIDES))
    for side, distance in said.inside_by(measured).items():
        # Six digits.
        if abs(distance) > tolerance + 5.1e-6 * abs(getattr(measured, side)):
            yield f"is {measured} in size, its summary says {said}"
            return


def wrong_reach(drawn, measured, unshared, tolerance, known):
    inside_by = drawn.inside_by(measured)
    if min(inside_by.values()) < -tolerance:
        yield f"reaches {drawn}, the model {measured} only"
    short = {side for side in Bounds.SIDES if inside_by[side] > tolerance}
    expected = set(known["sides"]) if known else set()
    if short != expected:
        yield (f"falls short at {sorted(short)}, expected at {sorted(expected)}: reaches {drawn}, "
               f"the model {measured}, its edges of one or two faces {unshared}")
    elif known and known["shared"]:
        distances = drawn.inside_by(unshared).values()
        if max(map(abs, distances)) > tolerance:
            yield f"reaches {drawn}, its edges of one or two faces {unshared}"
