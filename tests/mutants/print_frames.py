"""For gdb: prints the stack as the address sanitizer does, each frame with its file."""

import gdb

# More than a crash is deep; a stack that has overflowed is cut.
FRAMES = 200


def print_frames():
    frame = gdb.newest_frame()
    for number in range(FRAMES):
        if frame is None or not frame.is_valid():
            return
        name, library = frame.name(), gdb.solib_name(frame.pc())
        # The program itself has names for all of its frames; what has none is a wild jump.
        file = library or (gdb.current_progspace().filename if name else "<unknown module>")
        print(f"#{number} {name or '??'} ({file})")
        frame = frame.older()


print_frames()
