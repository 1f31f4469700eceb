#!/usr/bin/python3
"""Reference values of the kernel functions and the similarity kernels,
written independently in Python from their defining formulas, for
tests/smoothers/variogram_test.cc.

Run with /usr/bin/python3; writes kernel_refs.txt beside this script, lines
"kernel TYPE u value" and "similarity TYPE s p value". C is the double one
plus ten units in the last place, taken from its bit pattern.
"""
import math
import os
import struct

C = struct.unpack(">d", bytes.fromhex("3FF000000000000A"))[0]


def kernel(t, u):
    a = abs(u)
    if t == 1:
        return 0.3989422804014327 * math.exp(-0.5 * u * u)
    if t == 2:
        return 0.5 if a <= 1 else 0.0
    if t == 3:
        return 0.75 * (1 - u * u) if a < 1 else 0.0
    if t == 4:
        return 0.9375 * (1 - u * u) ** 2 if a < 1 else 0.0
    if t == 5:
        return 0.8641975308641975 * (1 - a ** 3) ** 3 if a < 1 else 0.0
    raise ValueError(t)


def similarity(t, s, p):
    d = C - s
    x = p * d
    inside = 0 <= s <= C
    if t == 1:
        return math.exp(-x * x) if inside else 0.0
    if t == 2:
        return math.exp(-x) if inside else 0.0
    if t == 3:
        return 1 - x * x if 0 <= x < 1 else 0.0
    if t == 4:
        return 1.0 if 0 <= x <= 1 else 0.0
    if t == 5:
        return 1 - x if 0 <= x < 1 else 0.0
    if t == 6:
        return (1 - x * x) ** 2 if 0 <= x < 1 else 0.0
    if t == 7:
        return (1 - x ** 3) ** 3 if 0 <= x < 1 else 0.0
    if t == 8:
        return 1 / (1 + 10 ** (20 * (d - p))) if 0 <= d < 1 else 0.0
    if t == 9:
        return (s / C) ** p if inside and p > 0 else 0.0
    if t == 10:
        return math.exp(-math.sqrt(x)) if inside and p > 0 else 0.0
    if t == 11:
        return 1 - x * (1.5 - 0.5 * x * x) if inside and 0 <= x <= 1 else 0.0
    raise ValueError(t)


def main():
    out = os.path.join(os.path.dirname(os.path.abspath(__file__)), "kernel_refs.txt")
    with open(out, "w") as f:
        f.write("# written by make_kernel_refs.py\n")
        for t in range(1, 6):
            for u in (-1.5, -1.0, -0.5, 0.0, 0.25, 0.9, 1.0, 2.0):
                f.write("kernel %d %r %r\n" % (t, u, kernel(t, u)))
        for t in range(1, 12):
            for p in (0.5, 1.0, 2.0, 7.5):
                for s in (-0.2, 0.0, 0.3, 0.5, 0.75, 0.95, 1.0, C, 1.2):
                    f.write("similarity %d %r %r %r\n" % (t, s, p, similarity(t, s, p)))


if __name__ == "__main__":
    main()
