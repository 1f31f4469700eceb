#!/usr/bin/python3
"""Reference values of the multivariate laws, their marginals and of
univariate mixtures, computed with scipy.stats, for
tests/pdf/multivariate_test.cc.

Run with /usr/bin/python3; writes multivariate_refs.txt beside this script.
Each line is a key and its numbers:

  mvn_pdf x1 x2 x3 value          multivariate_normal(MEAN, COV).pdf(x)
  mvn_marginal_b x value          norm(MEAN[1], sqrt(COV[1][1])).pdf(x)
  mvn_marginal_ac x1 x2 value     multivariate_normal of variables a and c
  mvt_pdf x1 x2 x3 value          multivariate_t(MEAN, COV, df=DF).pdf(x)
  mix_pdf x value / mix_cdf x value / mix_ppf p value
                                  the Gaussian mixture MIX (weights, means,
                                  variances); the percentile by brentq on
                                  its CDF to 1e-14
  mix_mean value / mix_variance value
  tmix_pdf x value / tmix_cdf x value
                                  the Students-T mixture TMIX (weights, dof,
                                  locations, precisions; scale 1/sqrt(prec))
"""
import os

import numpy as np
from scipy import optimize, stats

MEAN = [1.0, -2.0, 0.5]
COV = [[2.0, 0.6, -0.3], [0.6, 1.5, 0.2], [-0.3, 0.2, 0.8]]
DF = 5.0
POINTS = [[1.0, -2.0, 0.5], [0.0, 0.0, 0.0], [2.5, -1.0, -0.5], [-1.0, -4.0, 2.0]]
MIX = ([0.3, 0.7], [-1.0, 2.0], [0.25, 1.5])
TMIX = ([0.4, 0.6], [3.0, 8.0], [0.0, 4.0], [1.0, 0.5])


def main():
    out = os.path.join(os.path.dirname(os.path.abspath(__file__)), "multivariate_refs.txt")
    lines = ["# written by make_multivariate_refs.py with scipy %s" % __import__("scipy").__version__]
    mvn = stats.multivariate_normal(MEAN, COV)
    mvt = stats.multivariate_t(MEAN, COV, df=DF)
    for x in POINTS:
        lines.append("mvn_pdf %s %r" % (" ".join(repr(v) for v in x), float(mvn.pdf(x))))
        lines.append("mvt_pdf %s %r" % (" ".join(repr(v) for v in x), float(mvt.pdf(x))))
    b = stats.norm(MEAN[1], np.sqrt(COV[1][1]))
    for x in [-3.0, -2.0, 0.25]:
        lines.append("mvn_marginal_b %r %r" % (x, float(b.pdf(x))))
    ac = stats.multivariate_normal([MEAN[0], MEAN[2]], [[COV[0][0], COV[0][2]], [COV[2][0], COV[2][2]]])
    for x in [[1.0, 0.5], [0.0, 1.0]]:
        lines.append("mvn_marginal_ac %r %r %r" % (x[0], x[1], float(ac.pdf(x))))

    w, m, v = (np.array(a) for a in MIX)
    comps = [stats.norm(mk, np.sqrt(vk)) for mk, vk in zip(m, v)]
    pdf = lambda x: sum(wk * c.pdf(x) for wk, c in zip(w, comps))
    cdf = lambda x: sum(wk * c.cdf(x) for wk, c in zip(w, comps))
    for x in [-2.0, -1.0, 0.3, 2.0, 4.5]:
        lines.append("mix_pdf %r %r" % (x, float(pdf(x))))
        lines.append("mix_cdf %r %r" % (x, float(cdf(x))))
    for p in [0.05, 0.3, 0.5, 0.9]:
        x = optimize.brentq(lambda t: cdf(t) - p, -20, 20, xtol=1e-14, rtol=4 * np.finfo(float).eps)
        lines.append("mix_ppf %r %r" % (p, x))
    mean = float(np.sum(w * m))
    lines.append("mix_mean %r" % mean)
    lines.append("mix_variance %r" % float(np.sum(w * (v + m * m)) - mean * mean))

    tw, tdf, tloc, tprec = (np.array(a) for a in TMIX)
    tcomps = [stats.t(d, loc=l, scale=1 / np.sqrt(p)) for d, l, p in zip(tdf, tloc, tprec)]
    for x in [-1.0, 0.5, 3.0, 6.0]:
        lines.append("tmix_pdf %r %r" % (x, float(sum(wk * c.pdf(x) for wk, c in zip(tw, tcomps)))))
        lines.append("tmix_cdf %r %r" % (x, float(sum(wk * c.cdf(x) for wk, c in zip(tw, tcomps)))))
    with open(out, "w") as f:
        f.write("\n".join(lines) + "\n")


if __name__ == "__main__":
    main()
