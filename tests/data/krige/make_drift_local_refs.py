#!/usr/bin/python3
"""Reference values of universal kriging, of its residual variogram pairs,
and of local simple, ordinary and universal kriging with a fixed kernel, for
tests/krige/universal_krige_test.cc, local_krige_test.cc and
krige_model_test.cc, computed independently with numpy.

Run with /usr/bin/python3; writes drift_local_refs.txt beside this script.

Data: 40 seeded points in 3-D with a response that has a strong linear
trend in the coordinates plus a smooth residual and noise; points 5 and 21
are repeated with other responses (copies of one element). Queries: 6
random points, then training point 5 (which has a copy) and training
point 9. The drift properties of an element are its three coordinates.

Residual pairs: numpy lstsq of the responses on [x0 x1 x2 1] over all
records, residual r_i = y_i - fit(x_i), and for every record pair i < j in
order the pair (|x_i - x_j|, r_i - r_j).

Universal kriging (all unique points; a repeated point's response is the
mean of its copies): numpy.linalg.solve of the bordered system
  [C 1 P; 1' 0 0; P' 0 0] [w; mu; nu] = [b; 1; p],
prediction w'y and variance sill - w'b; and the full variance, which adds
the variance of estimating the mean and drift, by the generalised least
squares formula (not from the bordered solve):
  sill - b'C^-1 b + (f - F'C^-1 b)' (F'C^-1 F)^-1 (f - F'C^-1 b),
F = [1 P] for universal and [1] for ordinary kriging, f = (1, p).

Local kriging with K neighbours: the records sorted by (distance to the
query, index); the first K records are taken, then further records in that
order until K unique points are held (copies count once, their responses
averaged); with "predict-training" records at distance below 1e-30 are
left out. On the neighbours: simple kriging (mean of the neighbours' unique
responses), ordinary and universal kriging, solved as above.

Lines: "train x0 x1 x2 y", "query x0 x1 x2",
"pair <distance> <residual difference>",
"universal <kernel> <range> <sill> <nugget> <query> <prediction> <variance> <full variance>",
"local <model> <K> <predict-training 0|1> <kernel> <range> <sill> <nugget> <query> <prediction> <variance>
<full variance>" (the full variance of simple kriging is its variance).
"""
import math
import os

import numpy as np

from make_kernel_refs import exponential, gaussian, spherical

rng = np.random.default_rng(20261124)
points = [list(map(float, p)) for p in rng.uniform(0.0, 4.0, size=(40, 3))]
responses = [3.0 + 2.0 * p[0] - 1.5 * p[1] + 0.5 * p[2] + math.sin(2.0 * p[0]) * math.cos(p[1])
             + float(rng.normal(0.0, 0.05)) for p in points]
points += [points[5], points[21]]
responses += [responses[5] + 0.4, responses[21] - 0.3]
queries = [list(map(float, q)) for q in rng.uniform(0.5, 3.5, size=(6, 3))] + [points[5], points[9]]


def distance(x, y):
    acc = 0.0
    for a, b in zip(x, y):
        t = a - b
        acc += t * t
    return math.sqrt(acc)


def unique_of(records):
    """Unique points in order of first appearance, responses averaged."""
    unique, grouped = [], []
    for p, y in records:
        for u, q in enumerate(unique):
            if distance(p, q) < 1e-30:
                grouped[u].append(y)
                break
        else:
            unique.append(p)
            grouped.append([y])
    return unique, np.array([sum(g) / len(g) for g in grouped])


def solve(kind, unique, y, q, kernel, r, s, nug):
    n = len(unique)
    C = np.array([[s - kernel(distance(a, b), r, s, nug) for b in unique] for a in unique])
    b = np.array([s - kernel(distance(q, u), r, s, nug) for u in unique])
    if kind == "simple":
        m = y.mean()
        w = np.linalg.solve(C, b)
        return m + w @ (y - m), s - w @ b
    drift = 1 if kind == "ordinary" else 4
    A = np.zeros((n + drift, n + drift))
    A[:n, :n] = C
    A[:n, n] = A[n, :n] = 1.0
    rhs = np.append(b, 1.0)
    if kind == "universal":
        P = np.array(unique)
        A[:n, n + 1:] = P
        A[n + 1:, :n] = P.T
        rhs = np.append(rhs, q)
    assert np.linalg.cond(A) < 1e10, (kind, np.linalg.cond(A))
    w = np.linalg.solve(A, rhs)[:n]
    return w @ y, s - w @ b


def full_variance(kind, unique, q, kernel, r, s, nug):
    C = np.array([[s - kernel(distance(a, b), r, s, nug) for b in unique] for a in unique])
    b = np.array([s - kernel(distance(q, u), r, s, nug) for u in unique])
    Cb = np.linalg.solve(C, b)
    if kind == "simple":
        return s - b @ Cb
    F = np.ones((len(unique), 1))
    f = np.array([1.0])
    if kind == "universal":
        F = np.hstack([F, np.array(unique)])
        f = np.append(f, q)
    gap = f - F.T @ Cb
    return s - b @ Cb + gap @ np.linalg.solve(F.T @ np.linalg.solve(C, F), gap)


def neighbours(q, K, predict_training):
    order = sorted(range(len(points)), key=lambda i: (distance(q, points[i]), i))
    if predict_training:
        order = [i for i in order if distance(q, points[i]) >= 1e-30]
    chosen = order[:K]
    rest = order[K:]
    while len(unique_of([(points[i], 0.0) for i in chosen])[0]) < K and rest:
        chosen.append(rest.pop(0))
    return [(points[i], responses[i]) for i in chosen]


KERNELS = [("Gaussian", gaussian, 2.5, 6.0, 0.05),
           ("Spherical", spherical, 4.0, 5.0, 0.02),
           ("Exponential", exponential, 3.0, 5.5, 0.1)]

lines = [f"train {p[0]!r} {p[1]!r} {p[2]!r} {r!r}" for p, r in zip(points, responses)]
lines += [f"query {q[0]!r} {q[1]!r} {q[2]!r}" for q in queries]

X = np.hstack([np.array(points), np.ones((len(points), 1))])
coefficients = np.linalg.lstsq(X, np.array(responses), rcond=None)[0]
residuals = np.array(responses) - X @ coefficients
for i in range(len(points)):
    for j in range(i + 1, len(points)):
        lines.append(f"pair {distance(points[i], points[j])!r} {residuals[i] - residuals[j]!r}")

unique, y = unique_of(list(zip(points, responses)))
for name, kernel, r, s, nug in KERNELS:
    for qi, q in enumerate(queries):
        prediction, variance = solve("universal", unique, y, q, kernel, r, s, nug)
        full = full_variance("universal", unique, q, kernel, r, s, nug)
        lines.append(f"universal {name} {r!r} {s!r} {nug!r} {qi} {prediction!r} {variance!r} {full!r}")

for K in (8, 15):
    for predict_training in (0, 1):
        for name, kernel, r, s, nug in KERNELS[:2]:
            for qi, q in enumerate(queries):
                local_unique, local_y = unique_of(neighbours(q, K, predict_training))
                for kind in ("simple", "ordinary", "universal"):
                    prediction, variance = solve(kind, local_unique, local_y, q, kernel, r, s, nug)
                    full = full_variance(kind, local_unique, q, kernel, r, s, nug)
                    lines.append(f"local {kind} {K} {predict_training} {name} {r!r} {s!r} {nug!r} {qi} "
                                 f"{prediction!r} {variance!r} {full!r}")

here = os.path.dirname(os.path.abspath(__file__))
with open(os.path.join(here, "drift_local_refs.txt"), "w") as out:
    out.write("# generated by make_drift_local_refs.py (numpy lstsq and direct solves); do not edit\n")
    out.write("\n".join(lines) + "\n")
