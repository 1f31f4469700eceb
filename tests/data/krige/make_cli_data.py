#!/usr/bin/python3
"""Small CSV files for the end-to-end tests of varimo-krige
(tests/tools/varimo_krige_test.cc): 40 seeded training rows with a name
column, two numeric features a and b and a noisy response y, and 6 query
rows, the last with a missing b. Run with /usr/bin/python3; writes
cli_train.csv and cli_query.csv beside this script."""
import os

import numpy as np

rng = np.random.default_rng(7)
X = rng.uniform(0.0, 3.0, (40, 2))
y = np.sin(X[:, 0]) + 0.3 * X[:, 1] ** 2 + rng.normal(0.0, 0.3, 40)
Q = rng.uniform(0.0, 3.0, (5, 2))

here = os.path.dirname(os.path.abspath(__file__))
with open(os.path.join(here, "cli_train.csv"), "w") as f:
    f.write("name,a,b,y\n")
    for i, (x, v) in enumerate(zip(X, y)):
        f.write(f"m{i},{x[0]!r},{x[1]!r},{v!r}\n")
with open(os.path.join(here, "cli_query.csv"), "w") as f:
    f.write("a,b\n")
    for q in Q:
        f.write(f"{q[0]!r},{q[1]!r}\n")
    f.write("1.0,\n")
