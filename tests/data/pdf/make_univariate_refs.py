#!/usr/bin/python3
"""Reference densities, distribution functions and percentiles of the
univariate laws, computed with scipy.stats, for tests/pdf/univariate_test.cc.

Run with /usr/bin/python3; writes univariate_refs.txt beside this script,
lines "law p1 p2 [p3] kind x value" in the library's parametrisation, kind
being pdf, cdf or ppf (for ppf, x is the probability). The laws are mapped
onto scipy's parametrisations:

  gauss mean variance            norm(loc=mean, scale=sqrt(variance))
  studentst dof location prec    t(dof, loc=location, scale=1/sqrt(prec))
  gamma shape inverse_scale      gamma(shape, scale=1/inverse_scale)
  chisquare dof                  chi2(dof)
  snedecorsf d1 d2               f(d1, d2)
  beta alpha beta                beta(alpha, beta)
  gumbel location scale          gumbel_r(loc, scale)
  gev location scale shape       genextreme(-shape, loc, scale): scipy's
                                 shape has the opposite sign

Points are the 1%, 5%, 25%, 50%, 75%, 95% and 99% quantiles, so that the
comparison stays away from the far tails.
"""
import os

import numpy as np
from scipy import stats

LAWS = [
    ("gauss", (0.0, 1.0), stats.norm(loc=0.0, scale=1.0)),
    ("gauss", (-3.5, 0.04), stats.norm(loc=-3.5, scale=0.2)),
    ("gauss", (120.0, 400.0), stats.norm(loc=120.0, scale=20.0)),
    ("studentst", (3.0, 0.0, 1.0), stats.t(3.0, loc=0.0, scale=1.0)),
    ("studentst", (7.5, 2.0, 4.0), stats.t(7.5, loc=2.0, scale=0.5)),
    ("studentst", (1.0, -1.0, 0.25), stats.t(1.0, loc=-1.0, scale=2.0)),
    ("gamma", (0.5, 1.0), stats.gamma(0.5, scale=1.0)),
    ("gamma", (3.0, 2.0), stats.gamma(3.0, scale=0.5)),
    ("gamma", (40.0, 0.1), stats.gamma(40.0, scale=10.0)),
    ("chisquare", (1.0,), stats.chi2(1.0)),
    ("chisquare", (4.0,), stats.chi2(4.0)),
    ("chisquare", (25.5,), stats.chi2(25.5)),
    ("snedecorsf", (3.0, 12.0), stats.f(3.0, 12.0)),
    ("snedecorsf", (10.0, 2.5), stats.f(10.0, 2.5)),
    ("beta", (0.5, 0.5), stats.beta(0.5, 0.5)),
    ("beta", (2.0, 5.0), stats.beta(2.0, 5.0)),
    ("beta", (30.0, 3.0), stats.beta(30.0, 3.0)),
    ("gumbel", (0.0, 1.0), stats.gumbel_r(loc=0.0, scale=1.0)),
    ("gumbel", (5.0, 0.3), stats.gumbel_r(loc=5.0, scale=0.3)),
    ("gev", (0.0, 1.0, 0.2), stats.genextreme(-0.2, loc=0.0, scale=1.0)),
    ("gev", (1.0, 2.0, -0.3), stats.genextreme(0.3, loc=1.0, scale=2.0)),
    ("gev", (-2.0, 0.5, 0.0), stats.genextreme(0.0, loc=-2.0, scale=0.5)),
]

QUANTILES = [0.01, 0.05, 0.25, 0.5, 0.75, 0.95, 0.99]


def main():
    out = os.path.join(os.path.dirname(os.path.abspath(__file__)), "univariate_refs.txt")
    with open(out, "w") as f:
        f.write("# written by make_univariate_refs.py with scipy %s; law params kind x value\n"
                % __import__("scipy").__version__)
        for name, params, law in LAWS:
            head = " ".join([name] + [repr(float(p)) for p in params])
            for q in QUANTILES:
                x = float(law.ppf(q))
                f.write("%s ppf %r %r\n" % (head, q, x))
                f.write("%s pdf %r %r\n" % (head, x, float(law.pdf(x))))
                f.write("%s cdf %r %r\n" % (head, x, float(law.cdf(x))))


if __name__ == "__main__":
    main()
