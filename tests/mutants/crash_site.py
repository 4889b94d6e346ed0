"""Whether a worker process crashed in the importer's code or in ours."""

import re
import subprocess
from pathlib import Path

# As the sanitizers are to print them, and print_frames.py does: what runs there and its file.
FRAME_FORMAT = "    #%n %f (%m+%o)"
FRAME = re.compile(r"^ *#\d+ +(.*)$", re.MULTILINE)
# Of a frame, where it is in a library of the system; all others are ours.
LIBRARY = re.compile(r"\((?:/usr)?/lib(?:64)?/(?:\S*/)?([^/ +)]+)")
READER = "libassimp"
# Runs under gdb until a crash repeats.
ATTEMPTS = 10
# Frames without information: of a wild jump, a failed allocation, std::terminate's handler, the
# sanitizers themselves.
UNTOLD = re.compile(r"<unknown module>|^operator new|endTerminated|^_*(?:interceptor|asan|sanitizer)_?|"
                    r"^(?:malloc|calloc|realloc|memalign|free|(?:str|mem|wcs)[a-z]+) ")
# A frame as a confined process prints it, which cannot start what looks its name up.
UNNAMED = re.compile(r"^<null> (\((\S+)\+(0x[0-9a-f]+)\))$")


def site_of_signal(command, directory):
    """Runs a command of dxf2d that crashed again, under gdb; see crash_site."""
    # A crash may depend on the memory layout.
    steps = ["set disable-randomization off", "set follow-fork-mode child", "run",
             f"source {Path(__file__).with_name('print_frames.py')}"]
    options = [word for step in steps for word in ("-ex", step)]
    for _ in range(ATTEMPTS):
        result = subprocess.run(["gdb", "-nx", "-batch", *options, "--args", *command],
                                cwd=directory, capture_output=True, text=True, errors="replace",
                                check=False)
        frames = FRAME.findall(result.stdout)
        if frames:
            break
    return crash_site(frames)


def named(frame):
    """The frame with its function, if that was left out and is known."""
    unnamed = UNNAMED.match(frame)
    if not unnamed:
        return frame
    found = subprocess.run(["llvm-symbolizer", "--functions=linkage", "--demangle", "--inlining=false",
                            f"--obj={unnamed[2]}", unnamed[3]],
                           capture_output=True, text=True, check=False).stdout.split("\n")[0]
    return f"{found} {unnamed[1]}"


def crash_site(frames):
    """"reader", "ours", or "unknown" where no frame is of either; and the frame that tells."""
    for frame in map(named, frames):
        if UNTOLD.search(frame):
            continue
        library = LIBRARY.search(frame)
        if library is None:
            return "ours", frame
        # Other libraries of the system fail on behalf of their callers.
        if library[1].startswith(READER):
            return "reader", frame
    return "unknown", frames[0] if frames else "no frames"


class SanitizerReport:
    """What stopped a program that is built with sanitizers."""

    def __init__(self, text):
        self._text = text

    def is_about_memory(self):
        """The address sanitizer gives up where the program as it is used meets std::bad_alloc."""
        return re.search("allocation-size-too-big|out-of-memory|out of memory",
                         self._text) is not None

    def site(self):
        # The first stack is that of the fault; others are those of allocations.
        stack = re.search(r"(?:^ +#\d.*\n)+", self._text, re.MULTILINE)
        return crash_site(FRAME.findall(stack[0] if stack else ""))
