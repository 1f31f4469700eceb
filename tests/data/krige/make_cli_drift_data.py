#!/usr/bin/python3
"""CSV files for the universal-kriging tests of varimo-krige
(tests/tools/varimo_krige_test.cc): 60 seeded training rows with two
features a and b, a constant column k, two drift columns d1 and d2 and a
response y with a linear trend in d1 and d2; the row 7 lacks d2. 7 query
rows with the same columns but y, the last without d1. Run with
/usr/bin/python3; writes cli_drift_train.csv and cli_drift_query.csv beside
this script."""
import os

import numpy as np

rng = np.random.default_rng(11)
X = rng.uniform(0.0, 3.0, (60, 2))
D = rng.uniform(0.0, 5.0, (60, 2))
y = np.sin(X[:, 0]) + 0.3 * X[:, 1] ** 2 + 1.5 * D[:, 0] - 0.8 * D[:, 1] + rng.normal(0.0, 0.2, 60)
QX = rng.uniform(0.0, 3.0, (6, 2))
QD = rng.uniform(0.0, 5.0, (6, 2))


def cells(values):
    return ",".join(repr(float(v)) for v in values)


here = os.path.dirname(os.path.abspath(__file__))
with open(os.path.join(here, "cli_drift_train.csv"), "w") as f:
    f.write("a,b,k,d1,d2,y\n")
    for i in range(60):
        d2 = "" if i == 7 else repr(float(D[i, 1]))
        f.write(f"{cells(X[i])},2.5,{D[i, 0]!r},{d2},{y[i]!r}\n")
with open(os.path.join(here, "cli_drift_query.csv"), "w") as f:
    f.write("a,b,k,d1,d2\n")
    for x, d in zip(QX, QD):
        f.write(f"{cells(x)},2.5,{cells(d)}\n")
    f.write("1.0,1.0,2.5,,2.0\n")
