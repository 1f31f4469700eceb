#!/usr/bin/python3
"""Points in three well-separated Gaussian blobs plus uniform background
noise, with their true labels and near-neighbour lists, for
tests/cluster/snn_test.cc.

Run with /usr/bin/python3 (Debian's numpy and scikit-learn); writes
snn_points.txt beside this script. Lines:
  point <index> <label> <x> <y>      label 0, 1, 2 for the blobs, -1 for noise
  nn <index> <j1> ... <j20>          the 20 nearest items by Euclidean
                                     distance, the item itself included
                                     (sklearn.neighbors.NearestNeighbors)
"""
import os

import numpy as np
from sklearn.neighbors import NearestNeighbors

rng = np.random.default_rng(1411)
centres = np.array([[0.0, 0.0], [10.0, 0.0], [5.0, 9.0]])
per_blob = 60
blobs = [rng.normal(c, 0.6, size=(per_blob, 2)) for c in centres]
noise = rng.uniform(-6.0, 16.0, size=(30, 2))
# Keep the noise away from the blobs, so that the truth is unambiguous.
noise = noise[np.min(np.linalg.norm(noise[:, None, :] - centres[None, :, :], axis=2), axis=1) > 3.5][:20]
points = np.vstack(blobs + [noise])
labels = np.r_[np.repeat([0, 1, 2], per_blob), -np.ones(len(noise), dtype=int)]
order = rng.permutation(len(points))  # interleave the classes
points, labels = points[order], labels[order]

nn = NearestNeighbors(n_neighbors=20).fit(points)
_, idx = nn.kneighbors(points)

with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "snn_points.txt"), "w") as out:
    out.write("# Written by make_snn_points.py (numpy, sklearn NearestNeighbors); do not edit.\n")
    for i, (p, l) in enumerate(zip(points, labels)):
        out.write(f"point {i} {l} {p[0]!r} {p[1]!r}\n")
    for i, row in enumerate(idx):
        out.write("nn " + str(i) + " " + " ".join(str(j) for j in row) + "\n")
