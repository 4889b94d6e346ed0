"""Exports one mutated model and holds what happens against what README promises."""

import os
import re
import select
import signal
import subprocess
import time
from dataclasses import dataclass, field

from crash_site import FRAME_FORMAT, SanitizerReport, site_of_signal
from drawing_facts import DrawingFacts

DONE, INPUT, NOTHING_TO_DRAW, LIMIT = 0, 3, 4, 7
# What the sanitizers are told to end a process with: not one of dxf2d's, so that it shows when they
# end the waiting process.
SANITIZER = 86

# The limit on time is one on processor time. What does nothing, or has little of a busy machine, is
# ended after so many times that limit.
WALL_TIMES = 10
# What a run may take beyond its limits: the system's time to end and clear a process, in seconds; and
# the program itself, in MiB.
TIME_MARGIN = 10
MEMORY_MARGIN = 128

# Bytes of a message: an importer's may quote from the model, but not a page of it.
LONGEST_SENTENCE = 1000

END_OF_DRAWING = b"  0\nEOF\n"

# How a sentence of the program begins.
SENTENCE = b"dxf2d: "

CONTROL_CHARACTER = re.compile(rb"[\x00-\x1f\x7f]|\xc2[\x80-\x9f]")

# Outcomes of a mutant for the tally, by a part of its error message; the first that matches.
OUTCOMES = {
    "crashes the importer (Segmentation fault)": b"(Segmentation fault)",
    "crashes the importer (Aborted)": b"(Aborted)",
    "crashes the importer otherwise": b"crashes the importer",
    "makes the importer exit": b"(exit code",
    "reaches the limit of memory": b"that --max-memory allows",
    "reaches the limit of time": b"that --max-time allows",
    "reaches the limit of nodes": b"that --max-nodes allows",
    "reaches the limit of vertices": b"that --max-vertices allows",
}
PLAIN_OUTCOMES = {DONE: "drawn", INPUT: "refused", NOTHING_TO_DRAW: "holds nothing to draw"}


@dataclass
class Limits:
    """In seconds and MiB."""
    time: int
    memory: int

    def longest(self):
        """Seconds after which a run is over."""
        return WALL_TIMES * self.time + TIME_MARGIN

    def options(self):
        return ["--max-time", str(self.time), "--max-memory", str(self.memory)]


@dataclass
class Run:
    """How one run ended; a negative code is a signal, None a run that had to be ended."""
    code: int | None
    out: bytes
    error: bytes
    seconds: float
    peak: int  # MiB, of the largest process
    complaints: list = field(default_factory=list)
    outcome: str = ""
    site: str = ""


class MutantExport:
    """The export of the model `name`, the bytes of which are `mutants[name]`, in `folder`, where
    nothing else is; the files that stand beside the model stand in `original_folder`."""

    def __init__(self, program, limits, folder, original_folder, name, mutants):
        self.directory = folder / "work"
        self.model = folder / "model" / name
        self.drawing = folder / "drawing" / "plan.dxf"
        self._said = folder / "said"
        for path in (self.directory, self.model.parent, self.drawing.parent, self._said):
            path.mkdir(parents=True)
        for neighbor in original_folder.iterdir():
            if neighbor.name not in mutants:
                (self.model.parent / neighbor.name).symlink_to(neighbor)
        for path, content in mutants.items():
            (self.model.parent / path).write_bytes(content)
        self._limits = limits
        self.command = [program, "export", str(self.model), "-o", str(self.drawing),
                        *limits.options()]

    def run(self, is_sanitized=False, reads_drawing=False, finds_site=False):
        """Exports once; `reads_drawing` reads it back with ezdxf, `finds_site` exports once more
        if the importer crashed, to find in whose code."""
        run = self._run()
        report = b""
        if is_sanitized:
            # Workers keep standard error then. The sentence comes last.
            begin = run.error.rfind(SENTENCE)
            begin = len(run.error) if begin < 0 else begin
            report, run.error = run.error[:begin], run.error[begin:]
        run.complaints = [*self._wrong_files(run), *self._wrong_usage(run, is_sanitized)]
        run.outcome = outcome_of(run)
        run.complaints += wrong_words(run, os.fsencode(self.model))
        self._judge_report(run, report.decode(errors="replace"))
        if run.code == DONE and self.drawing.exists():
            run.complaints += self._wrong_drawing(reads_drawing)
        if finds_site and run.outcome.startswith("crashes the importer"):
            self._judge_site(run, *site_of_signal(self.command, self.directory))
            self.drawing.unlink(missing_ok=True)
        return run

    def _run(self):
        reports = f"exitcode={SANITIZER}:handle_abort=1:stack_trace_format='{FRAME_FORMAT}'"
        environment = {**os.environ}
        for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS"):
            environment[name] = f"{environment.get(name, '')}:{reports}"
        out_path, error_path = self._said / "out", self._said / "error"
        with open(out_path, "wb") as out, open(error_path, "wb") as error:
            start = time.monotonic()
            process = subprocess.Popen(self.command, cwd=self.directory, stdin=subprocess.DEVNULL,
                                       stdout=out, stderr=error, env=environment,
                                       start_new_session=True)
            hangs = not ends_within(process, self._limits.longest())
            if hangs:
                os.killpg(process.pid, signal.SIGKILL)
            _, status, usage = os.wait4(process.pid, 0)
            seconds = time.monotonic() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        return Run(None if hangs else process.returncode, out_path.read_bytes(),
                   error_path.read_bytes(), seconds, usage.ru_maxrss >> 10)

    def _wrong_usage(self, run, is_sanitized):
        if run.code is None:
            yield f"has not ended after {self._limits.longest()} s"
        # The sanitizers take as much as they like.
        if run.peak > self._limits.memory + MEMORY_MARGIN and not is_sanitized:
            yield f"takes {run.peak} MiB where {self._limits.memory} are allowed"

    def _wrong_files(self, run):
        expected = {self.drawing} if run.code == DONE else set()
        found = {*self.drawing.parent.iterdir(), *self.directory.iterdir()}
        for path in sorted(found - expected):
            yield f"leaves {path.name}"
        if expected - found:
            yield "is done, and there is no drawing"

    def _wrong_drawing(self, reads_drawing):
        with open(self.drawing, "rb") as stream:
            stream.seek(-min(len(END_OF_DRAWING), self.drawing.stat().st_size), os.SEEK_END)
            if stream.read() != END_OF_DRAWING:
                yield "the drawing has no end"
                return
        if reads_drawing:
            try:
                yield from DrawingFacts(self.drawing).faults
            except Exception as error:  # Whatever keeps another program from reading it.
                yield f"ezdxf cannot read the drawing: {error!r}"

    def _judge_report(self, run, text):
        # The rest is what libraries say.
        if "Sanitizer" not in text and "runtime error" not in text:
            return
        report = SanitizerReport(text)
        if report.is_about_memory():
            run.outcome = "reaches the limit of memory"
        else:
            run.outcome = "stopped by a sanitizer"
            self._judge_site(run, *report.site())

    def _judge_site(self, run, whose, frame):
        run.site = f"{whose}: {frame}"
        if whose != "reader":
            run.complaints.append(f"{run.outcome}, not in the importer but in {whose}: {frame}")


def ends_within(process, seconds):
    """Does not take the process's status, which wait4 is to tell."""
    descriptor = os.pidfd_open(process.pid)
    try:
        poll = select.poll()
        poll.register(descriptor, select.POLLIN)
        return bool(poll.poll(seconds * 1000))
    finally:
        os.close(descriptor)


def outcome_of(run):
    for outcome, words in OUTCOMES.items():
        if words in run.error:
            return outcome
    return PLAIN_OUTCOMES.get(run.code, "breaks the promise")


def wrong_words(run, model):
    """What is wrong with the exit code and with what the run says."""
    if run.code not in (DONE, INPUT, NOTHING_TO_DRAW, LIMIT):
        yield f"ends with {run.code} and says {run.error}"
        return
    said, silent = (run.out, run.error) if run.code == DONE else (run.error, run.out)
    if silent:
        yield f"ends with {run.code} and says also {silent}"
    if run.code != DONE and not said.startswith(SENTENCE):
        yield f"not a sentence of dxf2d: {said}"
    if not said.endswith(b"\n") or CONTROL_CHARACTER.search(said[:-1]):
        yield f"not one line of plain text: {said}"
    if run.code != DONE and model not in said:
        yield f"the sentence does not name the model: {said}"
    if len(said) - len(model) > LONGEST_SENTENCE:
        yield f"a message of {len(said)} bytes: {said[:LONGEST_SENTENCE]}"

