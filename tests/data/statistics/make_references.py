#!/usr/bin/python3
"""Reference values for the statistics tests, computed independently of
Varimo with numpy and scipy. Run from anywhere:

    /usr/bin/python3 tests/data/statistics/make_references.py

Writes beside this script:
  quantile_cases.txt   lines "type p expected n x_1 ... x_n": numpy.quantile
                       with the method of each Hyndman-Fan type
  tpsa_reference.txt   lines "name value": every one-sample statistic of the
                       TPSA column of the RDKit NCI sample, by numpy/scipy
  two_sample_reference.txt  lines "name value" for a fixed paired sample
  incomplete_beta.txt  lines "a b x betainc(a,b,x) gammaln(a)" by scipy.special
"""
import os

import numpy as np
from scipy import special, stats

HERE = os.path.dirname(os.path.abspath(__file__))
TPSA = "/usr/share/RDKit/Data/NCI/first_5k.tpsa.csv"
HEADER = "# computed by numpy %s and scipy %s (tests/data/statistics/make_references.py)\n"

# numpy's names for types 1, 2, 4 to 9 of Hyndman and Fan. Type 3 is left
# out: numpy rounds to the even order statistic, Varimo by the sample size.
METHODS = {1: "inverted_cdf", 2: "averaged_inverted_cdf", 4: "interpolated_inverted_cdf",
           5: "hazen", 6: "weibull", 7: "linear", 8: "median_unbiased", 9: "normal_unbiased"}


def fmt(v):
    return repr(float(v))


def header():
    import scipy
    return HEADER % (np.__version__, scipy.__version__)


def quantile_cases():
    rng = np.random.default_rng(20240611)
    samples = [
        [1.0, 2.0, 3.0, 4.0],
        [5.0, 7.0],
        [3.0, 1.0, 2.0],
        [2.0, 2.0, 2.0, 5.0, 5.0, 9.0],           # ties
        [0.0, 0.0, 1.0, 1.0, 1.0, 1.0, 8.0],      # heavy ties
        list(rng.normal(10.0, 3.0, 11)),
        list(rng.integers(0, 5, 25).astype(float)),  # tied integers
    ]
    lines = []
    for x in samples:
        s = np.sort(np.array(x))
        n = len(s)
        # p from 1/n up: below it every type gives the negative bad value.
        ps = sorted(set([1.0 / n, 0.25, 0.5, 0.75, 0.9, 1.0 - 1e-12, 1.0] +
                        list(np.linspace(1.0 / n, 1.0, 7))))
        for t, method in METHODS.items():
            for p in ps:
                if p < 1.0 / n:
                    continue
                q = np.quantile(s, p, method=method)
                lines.append(" ".join([str(t), fmt(p), fmt(q), str(n)] + [fmt(v) for v in x]))
    with open(os.path.join(HERE, "quantile_cases.txt"), "w") as out:
        out.write(header())
        out.write("\n".join(lines) + "\n")


def type8(x, p):
    return np.quantile(x, p, method="median_unbiased")


def tpsa_reference():
    values = []
    with open(TPSA) as f:
        for line in f:
            if line.startswith("#") or not line.strip():
                continue
            values.append(float(line.strip().split(",")[1]))
    x = np.array(values)
    n = len(x)
    s = np.sort(x)
    mean = x.mean()
    ref = {"count": n, "mean": mean}
    for t in (0.1, 0.25, 0.5):
        k = int(np.floor(n * 0.5 * t + 0.5))   # round half away from zero
        ref["trimmed_mean_%g" % t] = s[k:n - k].mean()
    med = type8(x, 0.5)
    ref["median"] = med
    for p in (0.05, 0.25, 0.9, 1.0):
        ref["quantile_%g" % p] = type8(x, p)
    ref["min"] = x.min()
    ref["max"] = x.max()
    ref["range"] = np.ptp(x)
    ref["variance"] = x.var(ddof=1)
    ref["rms_value"] = np.sqrt(np.mean(x * x))
    ref["rms_deviation"] = x.std(ddof=0)
    ref["mean_abs_deviation"] = np.mean(np.abs(x - mean))
    ref["median_abs_deviation"] = type8(np.abs(x - med), 0.5)
    ref["iqr"] = type8(x, 0.75) - type8(x, 0.25)
    ref["skewness"] = stats.skew(x, bias=True)
    ref["kurtosis"] = stats.kurtosis(x, fisher=True, bias=True)
    ref["ecdf_50"] = np.count_nonzero(x <= 50.0) / n
    ref["robust_center"] = np.median(x)
    ref["robust_scale"] = (type8(x, 0.75) - type8(x, 0.25)) / 1.34898
    ref["plain_scale"] = x.std(ddof=1)
    with open(os.path.join(HERE, "tpsa_reference.txt"), "w") as out:
        out.write(header())
        for k, v in ref.items():
            out.write("%s %s\n" % (k, fmt(v)))


def distance_moments(x, y):
    a = np.abs(x[:, None] - x[None, :])
    b = np.abs(y[:, None] - y[None, :])
    A = a - a.mean(axis=0)[None, :] - a.mean(axis=1)[:, None] + a.mean()
    B = b - b.mean(axis=0)[None, :] - b.mean(axis=1)[:, None] + b.mean()
    n2 = len(x) ** 2
    return (A * B).sum() / n2, (A * A).sum() / n2, (B * B).sum() / n2, a.mean(), b.mean()


def lms_brute_force(x, y):
    """Least median of squares by an exhaustive scan of slopes."""
    n = len(x)
    h = n // 2
    best = (np.inf, None, None)
    for b in np.linspace(-5.0, 5.0, 200001):
        r = np.sort(y - b * x)
        w = r[h:] - r[:n - h]
        k = int(np.argmin(w))
        if w[k] < best[0]:
            best = (w[k], b, 0.5 * (r[k + h] + r[k]))
    return best[1], best[2], 0.5 * best[0]


def two_sample_reference():
    rng = np.random.default_rng(7)
    n = 40
    x = np.round(rng.normal(5.0, 2.0, n), 1)   # rounding makes ties
    y = np.round(0.7 * x + rng.normal(0.0, 1.0, n), 1)
    y[::9] += 6.0                               # a few outliers for the LMS fit
    ref = {}
    c = np.cov(x, y, bias=True)
    ref["covariance"] = c[0, 1]
    ref["pearson"] = stats.pearsonr(x, y)[0]
    ref["slope"] = stats.linregress(x, y).slope
    ref["ols_intercept"] = stats.linregress(x, y).intercept
    ref["r_squared"] = stats.pearsonr(x, y)[0] ** 2
    ref["spearman"] = stats.spearmanr(x, y).correlation
    ref["kendall"] = stats.kendalltau(x, y, variant="b").correlation
    dcov2, dvarx, dvary, abar, bbar = distance_moments(x, y)
    ref["distance_correlation"] = np.sqrt(dcov2 / np.sqrt(dvarx * dvary))
    ref["distance_covar_test_stat"] = n * dcov2 / (abar * bbar)
    ref["mean_x"] = x.mean()
    ref["mean_y"] = y.mean()
    ref["variance_x"] = x.var(ddof=1)
    ref["variance_y"] = y.var(ddof=1)
    t = stats.ttest_rel(y, x).statistic
    ref["paired_t"] = t
    ref["paired_t_upper_p"] = stats.t.sf(t, n - 1)
    slope, intercept, score = lms_brute_force(x, y)
    ref["lms_slope"] = slope
    ref["lms_intercept"] = intercept
    ref["lms_score"] = score
    with open(os.path.join(HERE, "two_sample_reference.txt"), "w") as out:
        out.write(header())
        out.write("x " + " ".join(fmt(v) for v in x) + "\n")
        out.write("y " + " ".join(fmt(v) for v in y) + "\n")
        for k, v in ref.items():
            out.write("%s %s\n" % (k, fmt(v)))


def incomplete_beta():
    lines = []
    for a, b in [(0.5, 0.5), (1.0, 1.0), (2.0, 3.0), (5.5, 1.25), (10.0, 20.0), (0.3, 7.0), (40.0, 35.0)]:
        for x in (0.0, 0.01, 0.2, 0.5, 0.73, 0.99, 1.0):
            lines.append(" ".join(fmt(v) for v in (a, b, x, special.betainc(a, b, x), special.gammaln(a))))
    with open(os.path.join(HERE, "incomplete_beta.txt"), "w") as out:
        out.write(header())
        out.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    quantile_cases()
    tpsa_reference()
    two_sample_reference()
    incomplete_beta()
