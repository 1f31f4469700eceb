#!/usr/bin/python3
"""Shared-nearest-neighbour clustering and the ROC area beside scikit-learn,
on the same data in one run.

    /usr/bin/python3 bench/cluster/compare_sklearn.py BUILD/bench/cluster/varimo_cluster_bench

Data (seeded, written to a temporary folder for both sides): 10000 points in
the plane, nine tenths in ten Gaussian blobs and a tenth uniform background;
their 20 nearest neighbours (sklearn NearestNeighbors, the point included);
2000 active and 2000 decoy scores on a 0.1 grid (many ties).
Timed (median of 3 runs each):
  ours   ZqGetSNNCluster on the lists (nbrCt 20, topic 15, noise 10, merge
         12, label 10; its per-neighbour lines to /dev/null);
         ZqCalculateAUC(actives, decoys, true).
  peer   DBSCAN(eps=1.0, min_samples=10) on the points, the closest density
         clustering scikit-learn has (another method: a scale, not a race),
         also with the neighbour search it needs; roc_auc_score; in a
         process on OpenBLAS.
Prints the BLAS of each side, the times, ours / peer, and the clusters each
finds.
"""
import os
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from peer_timing import PeerProcess, print_blas, run_benchmark, timed_call  # noqa: E402

import numpy as np
from sklearn.cluster import DBSCAN
from sklearn.metrics import roc_auc_score
from sklearn.neighbors import NearestNeighbors


def make_data():
    rng = np.random.default_rng(12)
    i = np.arange(10000)
    background = i % 10 == 9
    x = np.where(background, rng.uniform(0, 100, 10000), 10.0 * (i % 10) + 5.0 + rng.normal(size=10000))
    y = np.where(background, rng.uniform(0, 100, 10000), 50.0 + 10.0 * ((i % 10) % 3) + rng.normal(size=10000))
    points = np.column_stack([x, y])
    _, lists = NearestNeighbors(n_neighbors=20).fit(points).kneighbors(points)
    actives = np.round(10.0 * (rng.normal(size=2000) + 1.0)) / 10.0
    decoys = np.round(10.0 * rng.normal(size=2000)) / 10.0
    return points, lists.astype(np.uint32), actives, decoys


def dbscan(points):
    return DBSCAN(eps=1.0, min_samples=10).fit(points).labels_


def main(program):
    points, lists, actives, decoys = make_data()
    with tempfile.TemporaryDirectory() as tmp:
        lists.tofile(os.path.join(tmp, "snn_lists.u32"))
        np.concatenate([actives, decoys]).tofile(os.path.join(tmp, "auc_scores.f64"))
        runs = run_benchmark(program, "cluster_data", tmp)
    ours = {name: b["real_time"] / 1e3 for name, b in runs.items()}
    snn_clusters = runs["BM_SNNCluster"]["clusters"]
    y = np.r_[np.ones(2000), np.zeros(2000)]
    s = np.r_[actives, decoys]
    rows = [("BM_SNNCluster", "DBSCAN(eps 1, min 10)", dbscan, (points,)),
            ("BM_AUCFromScores", "roc_auc_score", roc_auc_score, (y, s))]
    with PeerProcess("openblas") as peer:
        print_blas(run_benchmark.last_context.get("dense_backend", "not reported"), {"scikit-learn": peer})
        labels = peer.call(dbscan, points)
        print("%-18s %10s  %-24s %10s %8s" % ("ours", "s", "peer", "s", "ratio"))
        for name, label, function, arguments in rows:
            theirs = peer.call(timed_call, function, arguments)
            print("%-18s %10.5f  %-24s %10.5f %8.2f" % (name[3:], ours[name], label, theirs, ours[name] / theirs))
    print("clusters: SNN %d, DBSCAN %d" % (snn_clusters, len(set(labels)) - (1 if -1 in labels else 0)))


if __name__ == "__main__":
    main(sys.argv[1])
