"""Ways to mutate a file. Each takes dice (a random.Random), the bytes, and those of another file of
the same format; the same dice make the same mutant."""

import io
import re
import struct
import zipfile
import zlib

NUMBER = re.compile(rb"(?<![\w.])[-+]?\d+(?:\.\d*)?(?:[eE][-+]?\d+)?(?![\w.])")

# What readers may take for a count, an index or a coordinate. 4294967295 and its neighbors wrap
# around; 1e39 is infinite in single precision, 1e308 times anything in double.
NUMBERS = [b"nan", b"inf", b"-inf", b"1e38", b"-1e39", b"1e308", b"1e-45", b"1e999999", b"0",
           b"-0.0", b"-1", b"255", b"256", b"65536", b"1000000", b"100000000", b"2147483647",
           b"-2147483648", b"4294967295", b"4294967296", b"18446744073709551615", b"9" * 400,
           b"0." + b"1" * 400]

BYTES = [0x00, 0x01, 0x7f, 0x80, 0xfe, 0xff, 0x0a, 0x1b, 0x22, 0x25]

# By struct's letter: 16 and 32 bits, and the bits of not-a-number, infinity and the largest float.
LENGTHS = {"H": [0, 1, 0x7fff, 0x8000, 0xffff],
           "I": [0, 1, 0x10000, 0x100000, 0x7fffffff, 0x80000000, 0xfffffff0, 0xffffffff]}
FLOAT_BITS = [0x7fc00000, 0x7f800000, 0xff800000, 0x7f7fffff, 0x00000001, 0x80000000]

ARCHIVE, GZIP, ZLIB = b"PK\3\4", b"\x1f\x8b", b"\x78\xda"
PACKED = (ARCHIVE, GZIP, ZLIB)

# No mutant is longer; what grows it is left out.
LONGEST = 8 << 20


def mutant_of(dice, data, partner):
    """A mutant of `data` and the names of what was done to it."""
    # What is inside a compressed file is protected by checksums otherwise.
    if data.startswith(PACKED) and dice.random() < 0.7:
        return repacked(dice, data)
    steps = []
    for _ in range(dice.choice([1, 1, 1, 2, 3, 5])):
        step = dice.choice(steps_for(data))
        data = step(dice, data, partner)[:LONGEST]
        steps.append(step.__name__)
    return data, steps


def repacked(dice, data):
    if data.startswith(ARCHIVE):
        return repacked_archive(dice, data)
    inside = zlib.decompress(data, wbits=zlib.MAX_WBITS | 32)
    mutant, steps = mutant_of(dice, inside, inside)
    wbits = zlib.MAX_WBITS | (16 if data.startswith(GZIP) else 0)
    return zlib.compress(mutant, level=1, wbits=wbits), ["repacked", *steps]


def repacked_archive(dice, data):
    archive = zipfile.ZipFile(io.BytesIO(data))
    files = {entry: archive.read(entry) for entry in archive.infolist()}
    # In formats that are archives, the other files are pictures and lists of contents.
    model = next((entry for entry in files if entry.filename.lower().endswith((".dae", ".model"))),
                 max(files, key=lambda entry: len(files[entry])))
    files[model], steps = mutant_of(dice, files[model], files[model])
    packed = io.BytesIO()
    with zipfile.ZipFile(packed, "w", zipfile.ZIP_DEFLATED) as copy:
        for entry, content in files.items():
            copy.writestr(entry, content)
    return packed.getvalue(), ["repacked", *steps]


def steps_for(data):
    steps = [flipped_bits, overwritten_bytes, truncated, inserted_block, deleted_block,
             duplicated_block, swapped_blocks, spliced]
    if is_text(data):
        return steps + [replaced_numbers] * 8
    return steps + [changed_length] * 3 + [changed_float] * 3


def is_text(data):
    return b"\0" not in data and len(NUMBER.findall(data[:4096])) > 1


def flipped_bits(dice, data, _):
    mutated = bytearray(data)
    for _ in range(dice.choice([1, 4, 16]) if data else 0):
        mutated[dice.randrange(len(data))] ^= 1 << dice.randrange(8)
    return bytes(mutated)


def overwritten_bytes(dice, data, _):
    mutated = bytearray(data)
    for _ in range(dice.choice([1, 4, 16]) if data else 0):
        mutated[dice.randrange(len(data))] = dice.choice(BYTES)
    return bytes(mutated)


def truncated(dice, data, _):
    return data[:dice.randint(0, len(data))]


def inserted_block(dice, data, _):
    place = dice.randint(0, len(data))
    return data[:place] + dice.randbytes(dice.choice([1, 3, 64, 5000])) + data[place:]


def deleted_block(dice, data, _):
    start, end = block(dice, data)
    return data[:start] + data[end:]


def duplicated_block(dice, data, _):
    start, end = block(dice, data)
    place = dice.choice([end, dice.randint(0, len(data))])
    times = min(dice.choice([1, 1, 2, 1000]), LONGEST // max(1, end - start))
    return data[:place] + data[start:end] * times + data[place:]


def swapped_blocks(dice, data, _):
    edges = sorted((*block(dice, data), *block(dice, data)))
    a, b, c, d = edges
    return data[:a] + data[c:d] + data[b:c] + data[a:b] + data[d:]


def spliced(dice, data, partner):
    share = dice.random()
    return data[:int(len(data) * share)] + partner[int(len(partner) * share):]


def block(dice, data):
    """The start and the end of some block; half of the time, those of whole lines."""
    start = dice.randint(0, len(data))
    end = min(len(data), start + dice.choice([1, 4, 16, 100, 2000, len(data)]))
    if dice.random() < 0.5:
        start = data.rfind(b"\n", 0, start) + 1
        end = data.find(b"\n", end) + 1 or len(data)
    return start, end


def replaced_numbers(dice, data, _):
    numbers = list(NUMBER.finditer(data))
    picked = dice.sample(numbers, min(len(numbers), dice.choice([1, 1, 3, 10])))
    for number in sorted(picked, key=lambda number: number.start(), reverse=True):
        data = data[:number.start()] + dice.choice(NUMBERS) + data[number.end():]
    return data


def changed_length(dice, data, _):
    """Changes what looks like a length or a count: a number that the file is long enough for."""
    form = dice.choice("<>") + dice.choice("HI")
    size = struct.calcsize(form)
    if len(data) < size:
        return data
    for _ in range(64):
        place = dice.randint(0, len(data) - size)
        value = struct.unpack_from(form, data, place)[0]
        if 0 < value <= len(data):
            break
    nearby = [value + 1, value - 1, value * 2, value * 16]
    changed = dice.choice(nearby + LENGTHS[form[1]]) % (1 << 8 * size)
    return data[:place] + struct.pack(form, changed) + data[place + size:]


def changed_float(dice, data, _):
    for _ in range(dice.choice([1, 3, 10]) if len(data) >= 4 else 0):
        place = dice.randint(0, len(data) - 4) // 4 * 4
        data = data[:place] + struct.pack("<I", dice.choice(FLOAT_BITS)) + data[place + 4:]
    return data
