#!/usr/bin/python3
"""Reference fits of binary regression for tests/latent/logistic_regression_test.cc.

Run with /usr/bin/python3 (Debian's scikit-learn, scipy, numpy); writes
binary_regression_refs.txt beside this script.

Data: the Wisconsin breast-cancer table bundled with scikit-learn, columns
"mean radius", "mean texture" and "mean smoothness" standardised, with a
leading column of ones; label +1 for malignant (target 0), -1 for benign.
Lines:
  x <row> <x0> <x1> <x2> <x3>
  y <row> <label>
  logit_beta <b0..b3>       sklearn LogisticRegression(penalty=None,
                            fit_intercept=False, solver="newton-cg", tol=1e-12)
  logit_sigma <s0..s3>      sqrt of the diagonal of inv(X' diag(p(1-p)) X) at
                            that beta (numpy)
  logit_loglik <value>      -n * sklearn.metrics.log_loss at that beta
  probit_beta <b0..b3>      scipy.optimize.minimize (BFGS, gtol 1e-11) of
                            -sum log Phi(y x.b), with scipy.special.log_ndtr
  probit_sigma <s0..s3>     sqrt of the diagonal of the inverse of a central
                            finite-difference Hessian of that objective
  probit_loglik <value>
  link <z> <pdf> <cdf>      scipy.stats.norm.pdf and norm.cdf at z
"""
import os

import numpy as np
from scipy.optimize import minimize
from scipy.special import log_ndtr
from scipy.stats import norm
from sklearn.datasets import load_breast_cancer
from sklearn.linear_model import LogisticRegression
from sklearn.metrics import log_loss

data = load_breast_cancer()
cols = [list(data.feature_names).index(c) for c in ("mean radius", "mean texture", "mean smoothness")]
raw = data.data[:, cols]
z = (raw - raw.mean(axis=0)) / raw.std(axis=0, ddof=1)
X = np.hstack([np.ones((len(z), 1)), z])
y = np.where(data.target == 0, 1, -1)
n, p = X.shape

lr = LogisticRegression(penalty=None, fit_intercept=False, solver="newton-cg", tol=1e-12, max_iter=1000)
lr.fit(X, (y + 1) // 2)
beta = lr.coef_.ravel()
prob = 1.0 / (1.0 + np.exp(-X @ beta))
H = X.T @ (X * (prob * (1 - prob))[:, None])
logit_sigma = np.sqrt(np.diag(np.linalg.inv(H)))
logit_loglik = -n * log_loss((y + 1) // 2, prob)


def probit_nll(b):
    return -np.sum(log_ndtr(y * (X @ b)))


res = minimize(probit_nll, np.zeros(p), method="BFGS", options={"gtol": 1e-11, "maxiter": 10000})
pb = res.x
h = 1e-4
Hp = np.zeros((p, p))
for i in range(p):
    for j in range(p):
        ei = np.eye(p)[i] * h
        ej = np.eye(p)[j] * h
        Hp[i, j] = (probit_nll(pb + ei + ej) - probit_nll(pb + ei - ej) - probit_nll(pb - ei + ej)
                    + probit_nll(pb - ei - ej)) / (4 * h * h)
probit_sigma = np.sqrt(np.diag(np.linalg.inv(Hp)))


def fmt(v):
    return " ".join(repr(float(a)) for a in np.atleast_1d(v))


with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "binary_regression_refs.txt"), "w") as out:
    out.write("# Written by make_binary_regression_refs.py (scikit-learn, scipy, numpy); do not edit.\n")
    for i in range(n):
        out.write(f"x {i} {fmt(X[i])}\n")
    for i in range(n):
        out.write(f"y {i} {y[i]}\n")
    out.write(f"logit_beta {fmt(beta)}\nlogit_sigma {fmt(logit_sigma)}\nlogit_loglik {fmt(logit_loglik)}\n")
    for zz in (-7.5, -3.0, -1.25, -0.1, 0.0, 0.3, 1.0, 2.5, 6.0):
        out.write(f"link {zz!r} {norm.pdf(zz)!r} {norm.cdf(zz)!r}\n")
    out.write(f"probit_beta {fmt(pb)}\nprobit_sigma {fmt(probit_sigma)}\nprobit_loglik {fmt(-res.fun)}\n")
