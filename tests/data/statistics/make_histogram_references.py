#!/usr/bin/python3
"""Reference values for the histogram and plot-point tests, computed
independently of Varimo with numpy and scipy. Run from anywhere:

    /usr/bin/python3 tests/data/statistics/make_histogram_references.py

Writes histogram_reference.txt beside this script, one case a line:
  data <name> v_1 ... v_n           a sample, sorted ascending; "tpsa" is not
                                    written out but read by the test from
                                    the RDKit NCI file, as here
  width <name> <numBins> <lo> <hi> <xlo> <xhi> <binWidth> <maxHeight> h_1 ...
                                    numpy.histogram(density=True) on
                                    [min(lo, x_1), max(hi, x_n)]
  auto <name> <numBins> <xlo> <xhi> <binWidth> h_1 ...
                                    numBins = round(range / (2.6 IQR / n^(1/3)))
                                    with numpy's median_unbiased (type-8)
                                    quartiles, then numpy.histogram
  freq <name> <numBins> <minWidth> <maxHeight> e_0 ... e_k h_1 ... h_k
                                    edges from numpy.quantile(median_unbiased)
  cv <name> <numBins> <xlo> <xhi> <score>
                                    least-squares cross-validation score from
                                    numpy.histogram counts of the clipped data
  band <numData> <numBins> <xlo> <xhi> <alpha> <c>
                                    sqrt(numBins / ((xhi - xlo) numData)) z / 2,
                                    z = scipy.stats.norm.ppf(1 - alpha / (2 numBins))
  normal <name> z_1 y_1 ... z_n y_n the normal probability plot: z by
                                    scipy.stats.norm.ppf((i - 1/3) / (n + 1/3)),
                                    y = (x - median) / (IQR / 1.34898)
"""
import os

import numpy as np
import scipy
from scipy import stats

HERE = os.path.dirname(os.path.abspath(__file__))
TPSA = "/usr/share/RDKit/Data/NCI/first_5k.tpsa.csv"
HEADER = "# computed by numpy %s and scipy %s (tests/data/statistics/make_histogram_references.py)\n" % (
    np.__version__, scipy.__version__)


def fmt(v):
    return repr(float(v))


def row(*fields):
    out = []
    for f in fields:
        if isinstance(f, (list, np.ndarray)):
            out.extend(fmt(v) for v in f)
        elif isinstance(f, str):
            out.append(f)
        else:
            out.append(fmt(f))
    return " ".join(out) + "\n"


def q8(x, p):
    return np.quantile(x, p, method="median_unbiased")


def tpsa():
    # SMILES may hold '#', so no comment-aware loader: split off the last field.
    lines = [l for l in open(TPSA) if l.strip() and not l.startswith("#")]
    return np.sort(np.array([float(l.rsplit(",", 1)[1]) for l in lines]))


def width_case(name, x, k, lo, hi):
    xlo, xhi = min(lo, x[0]), max(hi, x[-1])
    h, _ = np.histogram(x, bins=k, range=(xlo, xhi), density=True)
    return row("width", name, "%d" % k, lo, hi, xlo, xhi, (xhi - xlo) / k, h.max(), h)


def auto_case(name, x):
    xlo, xhi = x[0], x[-1]
    iqr = q8(x, 0.75) - q8(x, 0.25)
    k = int(np.floor((xhi - xlo) / (2.6 * iqr / np.cbrt(len(x))) + 0.5))
    h, _ = np.histogram(x, bins=k, range=(xlo, xhi), density=True)
    return row("auto", name, "%d" % k, xlo, xhi, (xhi - xlo) / k, h)


def freq_case(name, x, k):
    edges = np.concatenate([[x[0]], q8(x, np.arange(1, k) / k), [x[-1]]])
    widths = np.diff(edges)
    h = (1.0 / k) / widths
    return row("freq", name, "%d" % k, widths.min(), h.max(), edges, h)


def cv_case(name, x, k, xlo, xhi):
    n = len(x)
    clipped = np.clip(x, xlo + 2.220446049250313e-14, xhi - 2.220446049250313e-14)
    counts, _ = np.histogram(clipped, bins=k, range=(xlo, xhi))
    p = counts / n
    h = (xhi - xlo) / k
    return row("cv", name, "%d" % k, xlo, xhi, (2.0 - (n + 1) * np.sum(p * p)) / (h * (n - 1)))


def band_case(n, k, xlo, xhi, alpha):
    z = stats.norm.ppf(1.0 - alpha / (2.0 * k))
    return row("band", "%d" % n, "%d" % k, xlo, xhi, alpha, np.sqrt(k / ((xhi - xlo) * n)) * 0.5 * z)


def normal_case(name, x):
    n = len(x)
    i = np.arange(1, n + 1)
    z = stats.norm.ppf((i - 1.0 / 3.0) / (n + 1.0 / 3.0))
    y = (x - np.median(x)) / ((q8(x, 0.75) - q8(x, 0.25)) / 1.34898)
    return row("normal", name, np.column_stack([z, y]).ravel())


def main():
    rng = np.random.default_rng(33)
    sample = np.sort(rng.normal(1.0, 2.0, 60))
    skewed = np.sort(rng.gamma(2.0, 1.5, 25))
    t = tpsa()
    lines = [row("data", "sample", sample), row("data", "skewed", skewed)]
    lines.append(width_case("sample", sample, 7, -8.0, 9.0))
    lines.append(width_case("sample", sample, 5, 0.0, 0.0))
    lines.append(width_case("tpsa", t, 40, 0.0, 0.0))
    lines.append(auto_case("sample", sample))
    lines.append(auto_case("tpsa", t))
    lines.append(freq_case("sample", sample, 4))
    lines.append(freq_case("skewed", skewed, 5))
    lines.append(cv_case("sample", sample, 7, sample[0], sample[-1]))
    lines.append(cv_case("sample", sample, 12, -2.0, 4.0))
    lines.append(band_case(60, 7, -8.0, 9.0, 0.05))
    lines.append(band_case(4999, 25, 0.0, 400.0, 0.1))
    lines.append(normal_case("skewed", skewed))
    with open(os.path.join(HERE, "histogram_reference.txt"), "w") as out:
        out.write(HEADER)
        out.writelines(lines)


if __name__ == "__main__":
    main()
