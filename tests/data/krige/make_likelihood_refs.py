#!/usr/bin/python3
"""Reference values of the profile log-likelihood of kriging kernels and of
its maximum over the range, for tests/krige/likelihood_fit_test.cc,
computed independently with numpy (direct solves and slogdet) and scipy
(bounded scalar minimisation around the best point of a fine grid).

Run with /usr/bin/python3; writes likelihood_refs.txt beside this script.

Data: 30 seeded points in [0, 1]^2, response sin(3x) + cos(2y) + 0.5x plus
normal noise of sd 0.1; Euclidean distances. The model: y ~ N(F beta,
s2 P), P_ij = 1 - kernel(d_ij) for the kernel with sill 1, nugget 0 and
range r. F: none (simple kriging about the mean of y), ones (ordinary) or
ones and both coordinates (universal). Profile log-likelihood, constants
dropped: -n/2 log s2_hat - 1/2 log det P, with beta_hat and
s2_hat = r' P^-1 r / n by generalised least squares; minus infinity where
P is not clearly positive definite (condition number above 1e12). The
Gaussian kernel is taken at short ranges only: at longer ones P is
numerically singular.

Lines:
  point x y response
  loglik KERNEL MEAN range value
  optimum KERNEL MEAN log2(range / longest distance) value s2
"""
import os

import numpy as np
from scipy.optimize import minimize_scalar

LN10 = np.log(10.0)


def semivariance(kernel, h, r):
    if kernel == "Linear":
        return np.where(h > r, 1.0, h / r)
    if kernel == "Exponential":
        return 1.0 - np.exp(-h / (r / LN10))
    if kernel == "Gaussian":
        return 1.0 - np.exp(-(h * h) / (r * r / LN10))
    if kernel == "Spherical":
        return np.where(h > r, 1.0, 1.5 * h / r - 0.5 * h ** 3 / r ** 3)
    raise ValueError(kernel)


def design(mean, points):
    n = len(points)
    if mean == "simple":
        return None
    if mean == "ordinary":
        return np.ones((n, 1))
    return np.column_stack([np.ones(n), points])


def profile(kernel, mean, points, y, d, r):
    n = len(y)
    big_r = 1.0 - semivariance(kernel, d, r)
    np.fill_diagonal(big_r, 1.0)
    sign, logdet = np.linalg.slogdet(big_r)
    eigenvalues = np.linalg.eigvalsh(big_r)
    if sign <= 0 or eigenvalues.min() <= 1e-12 * eigenvalues.max():
        return -np.inf, np.nan
    f = design(mean, points)
    if f is None:
        res = y - y.mean()
    else:
        ri_f = np.linalg.solve(big_r, f)
        beta = np.linalg.solve(f.T @ ri_f, ri_f.T @ y)
        res = y - f @ beta
    s2 = res @ np.linalg.solve(big_r, res) / n
    return -0.5 * n * np.log(s2) - 0.5 * logdet, s2


def main():
    rng = np.random.default_rng(20261126)
    points = rng.uniform(size=(30, 2))
    y = np.sin(3 * points[:, 0]) + np.cos(2 * points[:, 1]) + 0.5 * points[:, 0] + rng.normal(0, 0.1, 30)
    d = np.sqrt(((points[:, None, :] - points[None, :, :]) ** 2).sum(axis=2))
    longest = d.max()
    lines = [f"# {l}" for l in __doc__.strip().splitlines()]
    lines += [f"point {x:.17g} {z:.17g} {v:.17g}" for (x, z), v in zip(points, y)]
    for kernel in ("Linear", "Exponential", "Gaussian", "Spherical"):
        for mean in ("simple", "ordinary", "universal"):
            for r in ((0.1, 0.2, 0.3) if kernel == "Gaussian" else (0.3, 0.8, 2.5)):
                value, _ = profile(kernel, mean, points, y, d, r)
                lines.append(f"loglik {kernel} {mean} {r} {value:.17g}")
            # The maximum over log2(r / longest) in [-4, 4].
            def negative(v):
                value, _ = profile(kernel, mean, points, y, d, longest * 2.0 ** v)
                return -value if np.isfinite(value) else 1e300
            grid = np.linspace(-4, 4, 801)
            k = int(np.argmin([negative(v) for v in grid]))
            best = minimize_scalar(negative, bounds=(grid[max(k - 1, 0)], grid[min(k + 1, 800)]), method="bounded",
                                   options={"xatol": 1e-10})
            a = best.x if best.fun <= negative(grid[k]) else grid[k]
            value, s2 = profile(kernel, mean, points, y, d, longest * 2.0 ** a)
            lines.append(f"optimum {kernel} {mean} {a:.17g} {value:.17g} {s2:.17g}")
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "likelihood_refs.txt"), "w") as out:
        out.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
