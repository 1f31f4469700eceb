#!/usr/bin/python3
"""Retrospective active learning: how fast each strategy finds the best
molecules of a set whose responses are all known, ours next to a numpy
Gaussian process, in the same run under the same protocol and seeds.

Sets: CHEMBL2321810 (rdkit-data's Free-Wilson set, pIC50 as given) and
bzr.sdf (ACTIVITY). Protocol, per seed: a random 5 % start; then rounds
that each add 5 % of the set chosen from the rest (the pool) by the
strategy, up to 30 % acquired. Strategies: random, greedy (the mean),
ucb (mean + 2 sd), ei-believer (expected improvement, each pick taken in
at its prediction before the next), thompson (one joint posterior draw per
pick over the 2000 pool members of largest ucb).

Figures per set, strategy and side, means over the seeds: the fraction of
the true top 5 % found at 10, 20 and 30 % acquired, and the area under
that curve from 5 to 30 % acquired (trapezoids over the rounds, divided by
the 25 % width: 1 is finding all of them at once); for each of our sides,
its best strategy's area minus the peer's best, as the mean and standard
error of the differences seed by seed (the seeds share their random
start). Then, from a 5-fold
cross-validation of the whole set, the Spearman correlation of |error|
with sd, the miscalibration area (mean |observed - expected coverage| over
the levels 0.05 to 0.95) and the coverage of the normal 90 % interval; for
ours also both figures of the conformal intervals (calibrated on the
training folds' own cross-validation, applied to the held-out fold), with
the kriging variance and with the full variance.

Ours: varimo.MolKriging and its suggest, with the default settings
("ours", kernels fitted to the variogram) and with kernel_fit="likelihood"
("ours-lik", kernels by the likelihood of the training responses); and
varimo.Kriging(metric="minmax", kernel_fit="likelihood") on the peer's own
Morgan count fingerprints ("ours-mm"). Where the
model has a valid prediction for fewer pool members than the batch needs
(a kernel of short range fitted to a clustered training set leaves the far
molecules without one), the batch takes those and is filled at random; the
script prints how often that happened. The peer: a
Gaussian process in numpy with a Tanimoto (min-max) kernel on Morgan count
fingerprints (radius 2, 2048 bits), a constant mean, signal and noise
variances grid-searched on the marginal likelihood each round; its batches
made the same ways (the believer by refitting on the fantasies).

    PYTHONPATH=build/test/python /usr/bin/python3 bench/active_learning.py [--seeds 10] [--calibration-only]
"""
import argparse
import warnings

import numpy as np
from rdkit import Chem, RDLogger
from rdkit.Chem import rdFingerprintGenerator
from scipy import stats

import varimo

RDLogger.DisableLog("rdApp.*")
FREE_WILSON = "/usr/share/RDKit/Contrib/FreeWilson/data/CHEMBL2321810"
BZR = "/usr/share/RDKit/Projects/DbCLI/testData/bzr.sdf"
STRATEGIES = ("random", "greedy", "ucb", "ei-believer", "thompson")


def load_sets():
    act = dict(line.strip().split(",") for line in open(FREE_WILSON + "_act.csv").readlines()[1:])
    chembl = [(Chem.MolFromSmiles(s), float(act[n])) for s, n in (l.split() for l in open(FREE_WILSON + ".smi"))
              if n in act]
    bzr = [(m, float(m.GetProp("ACTIVITY"))) for m in Chem.SDMolSupplier(BZR) if m is not None]
    return {"CHEMBL2321810": chembl, "bzr": bzr}


# --- The peer: a numpy Gaussian process on Tanimoto --------------------------

def morgan_counts(mols):
    generator = rdFingerprintGenerator.GetMorganGenerator(radius=2, fpSize=2048)
    return np.array([generator.GetCountFingerprintAsNumPy(m) for m in mols], dtype=float)


def minmax(a, b):
    mins = np.array([np.minimum(a[i], b).sum(axis=1) for i in range(len(a))])
    maxs = np.array([np.maximum(a[i], b).sum(axis=1) for i in range(len(a))])
    return mins / np.maximum(maxs, 1e-12)


class TanimotoGP:
    SIGNALS = (0.25, 0.5, 1.0, 2.0, 4.0)
    NOISES = (0.01, 0.05, 0.1, 0.2, 0.4, 0.8)

    def __init__(self, similarity):
        self.similarity = similarity  # of the whole set, computed once

    def fit(self, rows, y):
        self.rows, self.mean = np.asarray(rows), float(np.mean(y))
        r = np.asarray(y) - self.mean
        t = self.similarity[np.ix_(self.rows, self.rows)]
        best = -np.inf
        for signal in np.multiply(self.SIGNALS, np.var(y)):
            for noise in np.multiply(self.NOISES, np.var(y)):
                factor = np.linalg.cholesky(signal * t + noise * np.eye(len(r)))
                alpha = np.linalg.solve(factor.T, np.linalg.solve(factor, r))
                evidence = -0.5 * r @ alpha - np.log(np.diag(factor)).sum()
                if evidence > best:
                    best, self.signal, self.noise, self.factor, self.alpha = evidence, signal, noise, factor, alpha
        return self

    def predict(self, rows, cov=False):
        k = self.signal * self.similarity[np.ix_(rows, self.rows)]
        mean = self.mean + k @ self.alpha
        v = np.linalg.solve(self.factor, k.T)
        if cov:
            return mean, self.signal * self.similarity[np.ix_(rows, rows)] - v.T @ v
        return mean, np.sqrt(np.maximum(self.signal - (v * v).sum(axis=0), 1e-12))


def ei(mean, sd, best):
    z = (mean - best) / sd
    return sd * (z * stats.norm.cdf(z) + stats.norm.pdf(z))


def peer_batch(gp, acquired, y, pool, size, strategy, rng):
    mean, sd = gp.predict(pool)
    if strategy == "greedy":
        return list(pool[np.argsort(-mean, kind="stable")[:size]])
    if strategy == "ucb":
        return list(pool[np.argsort(-(mean + 2 * sd), kind="stable")[:size]])
    if strategy == "thompson":
        top = pool[np.argsort(-(mean + 2 * sd), kind="stable")[:2000]]
        m, c = gp.predict(top, cov=True)
        factor = np.linalg.cholesky(c + 1e-8 * np.mean(np.diag(c)) * np.eye(len(top)))
        picks = []
        while len(picks) < size:
            draw = m + factor @ rng.standard_normal(len(top))
            draw[np.isin(top, picks)] = -np.inf
            picks.append(top[int(np.argmax(draw))])
        return picks
    # ei-believer: refit on the fantasies, kernel kept
    rows, values, picks = list(acquired), list(y[acquired]), []
    for _ in range(size):
        g = TanimotoGP(gp.similarity)
        g.SIGNALS, g.NOISES = (gp.signal / np.var(values),), (gp.noise / np.var(values),)
        g.fit(rows, values)
        left = np.array([p for p in pool if p not in picks])
        m, s = g.predict(left)
        pick = int(left[np.argmax(ei(m, s, max(values)))])
        picks.append(pick)
        rows.append(pick)
        values.append(float(m[list(left).index(pick)]))
    return picks


# --- Ours ---------------------------------------------------------------------

OURS = {"greedy": dict(acquisition="greedy", batch=None), "ucb": dict(acquisition="ucb", batch=None),
        "ei-believer": dict(acquisition="ei", batch="believer"), "thompson": dict(batch="thompson")}


FILLED = []  # (strategy, picks short): batches where our model could not fill the batch


# The settings of each of our sides. Those with a metric are varimo.Kriging
# on the peer's own Morgan count fingerprints; the others MolKriging on the
# molecules.
OUR_SIDES = {"ours": {}, "ours-lik": {"kernel_fit": "likelihood"},
             "ours-mm": {"metric": "minmax", "kernel_fit": "likelihood"}}


def our_model(side, data, rows, y, variance="kriging"):
    """Our side's model trained on the rows of data, a pair (molecules,
    count fingerprints); and a function from rows to the model's inputs."""
    mols, fps = data
    settings = OUR_SIDES[side]
    if "metric" in settings:
        if variance != "kriging":
            raise ValueError("Kriging has the kriging variance only")
        inputs = lambda r: fps[np.asarray(r)]
        return varimo.Kriging(**settings).fit(inputs(rows), y[rows]), inputs
    inputs = lambda r: [mols[i] for i in r]
    return varimo.MolKriging(variance=variance, **settings).fit(inputs(rows), y[rows]), inputs


def our_batch(side, data, acquired, y, pool, size, strategy, seed):
    model, inputs = our_model(side, data, acquired, y)
    pool_mols = inputs(pool)
    # A kernel of short range leaves the molecules far from every training
    # one without a valid prediction; those cannot be picked. The batch then
    # takes what can be picked and fills the rest at random from the pool,
    # as a chemist would, and the shortfall is counted and printed.
    _, sd = model.predict(pool_mols, return_std=True)
    usable = int(np.isfinite(sd).sum())
    wanted = min(size, usable)
    picks = list(pool[model.suggest(pool_mols, wanted, seed=seed, **OURS[strategy])["row"].to_numpy()]) if wanted else []
    if wanted < size:
        FILLED.append((strategy, size - wanted))
        rest = np.array([p for p in pool if p not in picks])
        picks += list(np.random.default_rng(seed).choice(rest, size - wanted, replace=False))
    return picks


def campaign(side, data, y, similarity, strategy, seed):
    n = len(y)
    rng = np.random.default_rng(seed)
    top = set(np.argsort(-y, kind="stable")[: max(1, round(0.05 * n))])
    step = round(0.05 * n)
    acquired = list(rng.choice(n, step, replace=False))
    found = [len(top & set(acquired)) / len(top)]
    for _ in range(5):  # to 30 %
        pool = np.array(sorted(set(range(n)) - set(acquired)))
        if strategy == "random":
            batch = list(rng.choice(pool, step, replace=False))
        elif side in OUR_SIDES:
            batch = our_batch(side, data, np.array(acquired), y, pool, step, strategy, seed)
        else:
            gp = TanimotoGP(similarity).fit(acquired, y[acquired])
            batch = peer_batch(gp, np.array(acquired), y, pool, step, strategy, rng)
        acquired += batch
        found.append(len(top & set(acquired)) / len(top))
    return np.array(found)  # at 5, 10, ..., 30 %


# --- Calibration from cross-validation ------------------------------------------

def calibration(side, data, y, similarity, seed=1, variance="kriging"):
    n = len(y)
    fold = np.random.default_rng(seed).permutation(n) % 5
    levels = np.arange(1, 20) * 0.05
    mean, sd = np.full(n, np.nan), np.full(n, np.nan)
    # The conformal interval of each held-out row at every level, calibrated
    # on the training folds alone.
    lower, upper = np.full((len(levels), n), np.nan), np.full((len(levels), n), np.nan)
    for k in range(5):
        train, held = np.flatnonzero(fold != k), np.flatnonzero(fold == k)
        if side in OUR_SIDES:
            model, inputs = our_model(side, data, train, y, variance)
            held_mols = inputs(held)
            mean[held], sd[held] = model.predict(held_mols, return_std=True)
            for j, q in enumerate(levels):
                lower[j, held], upper[j, held] = model.predict_interval(held_mols, alpha=1.0 - q)
        else:
            mean[held], sd[held] = TanimotoGP(similarity).fit(train, y[train]).predict(held)
    ok = np.isfinite(mean) & np.isfinite(sd)
    err, s = np.abs(y - mean)[ok], sd[ok]
    coverage = np.array([np.mean(err <= stats.norm.ppf(0.5 + q / 2) * s) for q in levels])
    figures = dict(spearman=stats.spearmanr(err, s).correlation,
                   area=float(np.mean(np.abs(coverage - levels))), normal90=coverage[17])
    if side in OUR_SIDES:
        inside = (y[ok] >= lower[:, ok]) & (y[ok] <= upper[:, ok])
        conformal = inside.mean(axis=1)
        figures["conformal_area"] = float(np.mean(np.abs(conformal - levels)))
        figures["conformal90"] = float(conformal[17])
    return figures


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--seeds", type=int, default=10)
    parser.add_argument("--calibration-only", action="store_true", help="skip the campaigns")
    parser.add_argument("--sets", default="CHEMBL2321810,bzr", help="comma-separated names of the sets")
    parser.add_argument("--sides", default="ours,ours-lik,ours-mm,peer", help="comma-separated sides to run")
    options = parser.parse_args()
    warnings.simplefilter("ignore")
    from threadpoolctl import threadpool_info

    blas = ", ".join(f"{i['internal_api']} ({i['filepath']})" for i in threadpool_info()) or "unknown"
    print(f"peer: numpy {np.__version__} on {blas}; ours: libvarimo (Eigen, LAPACK for the large factorisations)")
    for name, data in load_sets().items():
        if name not in options.sets.split(","):
            continue
        mols, y = [m for m, _ in data], np.array([v for _, v in data])
        fps = morgan_counts(mols)
        similarity = minmax(fps, fps)
        data = (mols, fps)
        print(f"\n{name}: {len(y)} molecules, top 5 % = {max(1, round(0.05 * len(y)))}, {options.seeds} seeds")
        print(f"{'side':8s} {'strategy':12s} {'@10%':>6s} {'@20%':>6s} {'@30%':>6s} {'area':>6s}")
        sides = options.sides.split(",")
        if not set(sides) <= set(OUR_SIDES) | {"peer"}:
            parser.error(f"--sides takes {', '.join(OUR_SIDES)} and peer, not {options.sides}")
        areas = {}  # (side, strategy): the area of each seed
        for side in sides if not options.calibration_only else ():
            for strategy in STRATEGIES:
                if side != sides[0] and strategy == "random":
                    continue  # the same draws whatever the side
                per_seed = np.array([campaign(side, data, y, similarity, strategy, seed)
                                     for seed in range(options.seeds)])
                areas[side, strategy] = np.trapz(per_seed, dx=1.0, axis=1) / (per_seed.shape[1] - 1)
                curves = per_seed.mean(axis=0)
                area = areas[side, strategy].mean()
                print(f"{side:8s} {strategy:12s} {curves[1]:6.2f} {curves[3]:6.2f} {curves[5]:6.2f} {area:6.2f}",
                      flush=True)
                if side in OUR_SIDES and FILLED:
                    print(f"      {len(FILLED)} of its batches filled at random, {sum(n for _, n in FILLED)} picks in all:"
                          " too few pool members had a valid prediction", flush=True)
                    FILLED.clear()
        if "peer" in sides and areas:
            # The best strategy of each side by its mean area, and the
            # difference to the peer's best seed by seed: the seeds share
            # their random start, so the spread of the differences, not of
            # the areas, says whether a gap is more than the draw.
            best = {side: max((s for (d, s) in areas if d == side), key=lambda s: areas[side, s].mean())
                    for side in {d for d, _ in areas}}
            for side in (s for s in sides if s != "peer" and s in best):
                diff = areas[side, best[side]] - areas["peer", best["peer"]]
                print(f"{side} {best[side]} minus peer {best['peer']}: area {diff.mean():+.3f} "
                      f"+- {diff.std(ddof=1) / np.sqrt(len(diff)):.3f} (standard error over {len(diff)} seeds)",
                      flush=True)
        for side, variance in (("ours", "kriging"), ("ours", "full"), ("ours-lik", "kriging"), ("ours-lik", "full"),
                               ("ours-mm", "kriging"), ("peer", None)):
            if side not in sides:
                continue
            label = f"{side}, {variance} variance" if variance else side
            print(f"{label} calibration (5-fold):", {k: round(float(v), 3) for k, v in
                                                     calibration(side, data, y, similarity,
                                                                 variance=variance).items()}, flush=True)


if __name__ == "__main__":
    main()
