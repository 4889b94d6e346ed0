"""Random labels: mostly well formed, some wrong in one place."""

LETTERS = ["A", "b", "i", "l", "!", " ", "7", "ä", "ß", "€", "Ω", "я", "ก", "中", "\U0001f600",
           "\u2028", "\U000e0041", "\ufeff", "\u00ad", "\u00a0", "｜", "\t", "\n", "\r", "\x00",
           "\x1b", "\x7f", "\x81", "\x85", "\x9f", "\\\"", "\\\\", "%", "|", "'"]

ALIGNMENTS = ["C", "C", "L", "L", "R", "R", "X", "c", "0", "\"", "é", "中"]

COLOR_INDICES = [0, 1, 7, 254, 255, 256, -1, -2147483648, 2147483647, 3, 100]


def number(rng):
    kind = rng.random()
    if kind < 0.5:
        return str(rng.randint(-20, 20))
    if kind < 0.7:
        return "%.3f" % rng.uniform(-50, 50)
    return rng.choice(["0", "-0", "+1", "1.", ".5", "-.25", "1e2", "2.5E-1", "1e+1", "1e15",
                       "-1E15", "0.0000004", "1e-400", "00012.50", "0e9999"])


def height(rng):
    return rng.choice(["1", "2.5", "0.5", "3", "10", "0", "-2", "1e15"]) if rng.random() < 0.8 \
        else number(rng)


def angle(rng):
    if rng.random() < 0.5:
        return rng.choice(["0", "0", "30", "90", "-45"])
    return rng.choice(["5e-4", "0.001", "-0.001", "0.0010000001", "1e-5", "0.99999e-5", "-1e-5",
                       "1e-6", "180", "360", "1e15", "-0", "-720.5"])


def color(rng):
    return rng.choice(["0", "1", "0.5", "0.25", "0.15", ".65", "0.33", "-1", "20000", "1e15"])


def line(rng):
    return '"' + "".join(rng.choice(LETTERS if rng.random() < 0.5 else "Ailb! xyz")
                         for _ in range(rng.randint(0, 9))) + '"'


def fields(rng):
    return [number(rng), height(rng), number(rng), number(rng), number(rng), number(rng),
            angle(rng), rng.choice(ALIGNMENTS), rng.choice("01"), color(rng), color(rng),
            color(rng), rng.choice(["0", "7", "4294967295", "0000000001"])]


WRONG_FIELDS = ["", "x", "1e", "1,5", "--1", "1e16", "-1.1e15", "1e400", "0x10", "nan", "inf",
                "1 1", ".", "2", "CC", "\U0001f600", "٣", '"a"', "+", "e5", "1e5.0"]

WRONG_FLAGS = ["4294967296", "00000000001", "-1", "+1", "1.0", "", "9999999999", '0"a"']

WRONG_TAILS = ['"open', '"a""b"', '"a"b', '"\\n"', "bare", '"a\\"', '"', '""x', '\\"a"']


def spoiled(rng, parts):
    kind = rng.random()
    if kind < 0.4:
        parts[rng.randrange(13)] = rng.choice(WRONG_FIELDS)
    elif kind < 0.55:
        parts[12] = rng.choice(WRONG_FLAGS)
    elif kind < 0.85:
        parts.append(rng.choice(WRONG_TAILS))
    else:
        del parts[rng.randrange(len(parts)):]
    return parts


def label_text(rng):
    if rng.random() < 0.05:
        return rng.choice(["", "T", "T:", "T:1", "\U0001f600", "T: ", "  "])
    parts = fields(rng) + [line(rng) for _ in range(rng.choice([0, 1, 1, 1, 2, 2, 3, 5]))]
    if rng.random() < 0.25:
        parts = spoiled(rng, parts)
    blank = rng.choice([" ", " ", " ", "  ", "\t", "\n", " \x01"])
    tag = rng.choice(["T:", "T:", "T:", "  ", "1 ", "ab", "€€"])
    lead = rng.choice(["", "", "", " ", "   ", "\t", "\r\n "])
    tail = rng.choice(["", "", "", " ", "  "]) if len(parts) > 13 else ""
    return tag + lead + blank.join(parts) + tail


def random_label(rng):
    label = {"text": label_text(rng)}
    if rng.random() < 0.6:
        label["colorIndex"] = rng.choice(COLOR_INDICES)
    return label
