#!/usr/bin/env python3
"""Exact series of the geodesic integrals on the ellipsoid of revolution.

Derives, with rational arithmetic only (fractions), the expansions that the
geodesic routines of the library (src/projection/ox_geodesic.cpp) evaluate,
following C. F. F. Karney, "Algorithms for geodesics", J. Geodesy 87, 43-55
(2013), section 2.  With k^2 = e'^2 cos^2 alpha0 and the small parameter

    eps = (sqrt(1 + k^2) - 1) / (sqrt(1 + k^2) + 1),   k^2 = 4 eps / (1 - eps)^2,

one has sqrt(1 + k^2 sin^2 s) = D / (1 - eps) with D = sqrt(1 - 2 eps cos 2s + eps^2),
so that the three integrals of the geodesic problem are

    I1(s) = int_0^s D / (1 - eps)                              = A1 (s + sum C1_l sin 2ls)   (distance)
    I2(s) = int_0^s (1 - eps) / D                              = A2 (s + sum C2_l sin 2ls)   (reduced length)
    I3(s) = int_0^s 2 (1 - eps) / ((1 + n)(1 - eps) + (1 - n) D) = A3 (s + sum C3_l sin 2ls) (longitude)

in the third flattening n.  The reversion of I1, s = t + sum C1p_l sin 2lt with
t = I1 / A1, solves the direct problem.  A1, C1, C1p, A2 and C2 are carried to
eps^L (default 6); A3 and C3 to total order L - 1 in n and eps (the longitude
integral is multiplied by the flattening, so the longitude is of order L too).

Self-checks: the mean of 1/D agrees with its closed form through the Legendre
generating function (the mean of P_l(cos x) is binomial(l, l/2)^2 / 4^l for
even l, 0 for odd l), the reversion of the reversion of I1 is I1 again, and
A3 and C3 agree with a quadrature of the longitude integrand at a small n
and eps.

Usage: python3 geodesic_series.py [--order L] [--cpp]
"""

import argparse
import os
import sys
from fractions import Fraction as F

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from aux_series import Series, Trig, revert  # noqa: E402  (the same power-series machinery)


def binom_half(alpha, k):
    """binomial(alpha, k) for a rational alpha."""
    r = F(1)
    for i in range(k):
        r = r * (alpha - i) / (i + 1)
    return r


def power_of(w, alpha, L):
    """(1 + w)^alpha for a series w without constant term."""
    out = Series(L, {0: 1})
    wk = Series(L, {0: 1})
    for k in range(1, L + 1):
        wk = wk * w
        out = out + wk.scale(binom_half(F(alpha), k))
    return out


def integrate(s, L):
    """Splits a series of even cosine polynomials into its mean (scalar series) and
    the coefficients of sin 2ls of its integral: ({p: mean_p}, {l: {p: c}})."""
    mean = {}
    sines = {}
    for p, t in enumerate(s.t):
        if t.s:
            raise ValueError(f"sine terms in an integrand at order {p}")
        for m, v in t.c.items():
            if m % 2:
                raise ValueError(f"odd frequency {m} at order {p}")
            if m == 0:
                mean[p] = mean.get(p, F(0)) + v
            else:
                sines.setdefault(m // 2, {})[p] = sines.setdefault(m // 2, {}).get(p, F(0)) + v / m
    return mean, sines


def divide_univariate(num, den, L):
    """num / den for power series given as {p: coefficient}, den[0] != 0, to order L."""
    d = [den.get(p, F(0)) for p in range(L + 1)]
    inv = [F(0)] * (L + 1)
    inv[0] = 1 / d[0]
    for p in range(1, L + 1):
        inv[p] = -sum(d[i] * inv[p - i] for i in range(1, p + 1)) / d[0]
    out = {}
    for p, v in num.items():
        for q in range(L + 1 - p):
            out[p + q] = out.get(p + q, F(0)) + v * inv[q]
    return {p: v for p, v in out.items() if v}


def eps_integrals(L):
    """A1 (1 - eps), C1, C1p, A2 / (1 - eps), C2 as {p: coefficient} / {l: {p: coefficient}}."""
    w = Series(L, {1: Trig.cos(2, -2), 2: 1})  # D^2 - 1 = -2 eps cos 2s + eps^2
    d = power_of(w, F(1, 2), L)
    d_inv = power_of(w, F(-1, 2), L)
    mean1, sines1 = integrate(d, L)
    mean2, sines2 = integrate(d_inv, L)
    c1 = {l: divide_univariate(v, mean1, L) for l, v in sines1.items()}
    c2 = {l: divide_univariate(v, mean2, L) for l, v in sines2.items()}
    # Closed forms of the means (Legendre generating function).
    for p in range(L + 1):
        want2 = F(0) if p % 2 else F(binomial(p, p // 2) ** 2, 4 ** p)
        assert mean2.get(p, F(0)) == want2, "mean of 1/D"
    # Reversion of t = s + sum C1_l sin 2ls.
    fwd = Series(L)
    for l, row in c1.items():
        for p, v in row.items():
            fwd.t[p] = fwd.t[p] + Trig.sin(2 * l, v)
    inv = revert(fwd, L)
    back = revert(inv, L)
    for p in range(L + 1):
        assert (back.t[p] - fwd.t[p]).is_zero(), "double reversion is not the identity"
    c1p = {}
    for p, t in enumerate(inv.t):
        assert not t.c, "reversion has cosine terms"
        for m, v in t.s.items():
            c1p.setdefault(m // 2, {})[p] = v
    return mean1, c1, c1p, mean2, c2


def binomial(n, k):
    r = 1
    for i in range(k):
        r = r * (n - i) // (i + 1)
    return r


def longitude_integral(L):
    """A3 and C3 as bivariate {(j, p): coefficient} of n^j eps^p, to total order L - 1."""
    T = L - 1
    w = Series(T, {1: Trig.cos(2, -2), 2: 1})
    d = power_of(w, F(1, 2), T)
    u = Series(T, {0: 1, 1: -1})  # 1 - eps
    # 1 / (u + D) = 1 / (2 + delta) = (1/2) sum (-delta/2)^k
    delta = u + d - Series(T, {0: 2})
    recip = Series(T)
    term = Series(T, {0: F(1, 2)})
    for _ in range(T + 1):
        recip = recip + term
        term = (term * delta).scale(F(-1, 2))
    h0 = (u * recip).scale(2)
    q = (u - d) * recip
    # g = 2u / ((1 + n) u + (1 - n) D) = h0 sum_j (-n)^j q^j
    a3 = {}
    num = {}
    hj = h0
    for j in range(T + 1):
        mean, sines = integrate(hj, T)
        sign = -1 if j % 2 else 1
        for p, v in mean.items():
            if j + p <= T:
                a3[(j, p)] = a3.get((j, p), F(0)) + sign * v
        for l, row in sines.items():
            for p, v in row.items():
                if j + p <= T:
                    num.setdefault(l, {})[(j, p)] = num.setdefault(l, {}).get((j, p), F(0)) + sign * v
        hj = hj * q
    a3 = {k: v for k, v in a3.items() if v}
    inv = bivariate_reciprocal(a3, T)
    c3 = {}
    for l, row in num.items():
        prod = bivariate_product(row, inv, T)
        if prod:
            c3[l] = prod
    return a3, c3


def bivariate_product(a, b, T):
    out = {}
    for (j1, p1), v1 in a.items():
        for (j2, p2), v2 in b.items():
            if j1 + j2 + p1 + p2 <= T:
                key = (j1 + j2, p1 + p2)
                out[key] = out.get(key, F(0)) + v1 * v2
    return {k: v for k, v in out.items() if v}


def bivariate_reciprocal(a, T):
    """1 / a for a bivariate series with a[(0, 0)] = 1, to total order T."""
    assert a.get((0, 0)) == 1
    rest = {k: -v for k, v in a.items() if k != (0, 0)}
    out = {(0, 0): F(1)}
    power = {(0, 0): F(1)}
    for _ in range(T):
        power = bivariate_product(power, rest, T)
        for k, v in power.items():
            out[k] = out.get(k, F(0)) + v
    return {k: v for k, v in out.items() if v}


def check_numerically(a3, c3, L, n=0.003, eps=0.002, samples=64):
    """A3 and C3 at a small (n, eps) against the mean and the Fourier sine
    coefficients of the integral of the longitude integrand, by the
    trapezoidal rule (exact to rounding for this smooth periodic function);
    the series' truncation error there is below 1e-15."""
    import math
    g = [2 * (1 - eps) / ((1 + n) * (1 - eps) + (1 - n) * math.sqrt(1 - 2 * eps * math.cos(2 * s) + eps * eps))
         for s in (math.pi * k / samples for k in range(samples))]
    mean = sum(g) / samples

    def poly(row):
        return sum(float(v) * n ** j * eps ** p for (j, p), v in row.items())

    assert abs(poly(a3) - mean) < 1e-15, "A3 against quadrature"
    for l, row in c3.items():
        # the integral of cos 2ls terms: coefficient 2 mean(g cos 2ls) / (2l) of sin 2ls, over A3
        cos_mean = sum(gk * math.cos(2 * l * math.pi * k / samples) for k, gk in enumerate(g)) / samples
        assert abs(poly(row) - 2 * cos_mean / (2 * l) / mean) < 1e-15, f"C3_{l} against quadrature"


def cpp_rational(v):
    if v.denominator == 1:
        return f"{v.numerator}.0"
    return f"{v.numerator}.0 / {v.denominator}"


def print_cpp(L):
    mean1, c1, c1p, mean2, c2 = eps_integrals(L)
    a3, c3 = longitude_integral(L)
    T = L - 1
    print(f"// Generated by tools/series/geodesic_series.py --order {L} --cpp; do not edit.")
    print(f"constexpr int kOrder = {L};")

    def even_poly(name, row, first):
        # coefficients of eps^(first + 2i), i = 0..
        count = (L - first) // 2 + 1
        vals = [row.get(first + 2 * i, F(0)) for i in range(count)]
        return vals

    print(f"// A1 (1 - eps) - 1 and A2 / (1 - eps) - 1: coefficients of eps^2, eps^4, ...")
    a1 = [mean1.get(2 * i, F(0)) for i in range(1, L // 2 + 1)]
    a2 = [mean2.get(2 * i, F(0)) for i in range(1, L // 2 + 1)]
    print(f"constexpr double kA1[{len(a1)}] = {{{', '.join(cpp_rational(v) for v in a1)}}};")
    print(f"constexpr double kA2[{len(a2)}] = {{{', '.join(cpp_rational(v) for v in a2)}}};")
    width = (L - 1) // 2 + 1
    for name, table in (("kC1", c1), ("kC1p", c1p), ("kC2", c2)):
        print(f"// {name[1:]}_l / eps^l: coefficients of eps^0, eps^2, ... (row l - 1)")
        print(f"constexpr double {name}[{L}][{width}] = {{")
        for l in range(1, L + 1):
            vals = even_poly(name, table.get(l, {}), l)
            vals += [F(0)] * (width - len(vals))
            print(f"    {{{', '.join(cpp_rational(v) for v in vals)}}},")
        print("};")
    degree = max(j for j, _ in list(a3) + [k for row in c3.values() for k in row])
    print(f"// A3: coefficient of eps^p (row p) as a polynomial in n: n^0 .. n^{degree}")
    print(f"constexpr double kA3[{T + 1}][{degree + 1}] = {{")
    for p in range(T + 1):
        vals = [a3.get((j, p), F(0)) for j in range(degree + 1)]
        print(f"    {{{', '.join(cpp_rational(v) for v in vals)}}},")
    print("};")
    print(f"// C3_l: coefficient of eps^p (p = 1..{T}, column p - 1) of term l (row l - 1) as a")
    print(f"// polynomial in n: n^0 .. n^{degree}")
    print(f"constexpr double kC3[{T}][{T}][{degree + 1}] = {{")
    for l in range(1, T + 1):
        print("    {")
        for p in range(1, T + 1):
            vals = [c3.get(l, {}).get((j, p), F(0)) for j in range(degree + 1)]
            print(f"        {{{', '.join(cpp_rational(v) for v in vals)}}},")
        print("    },")
    print("};")


def print_text(L):
    mean1, c1, c1p, mean2, c2 = eps_integrals(L)
    a3, c3 = longitude_integral(L)

    def uni(row):
        return " + ".join(f"({v})*eps^{p}" for p, v in sorted(row.items()) if v) or "0"

    def bi(row):
        return " + ".join(f"({v})*n^{j}*eps^{p}" for (j, p), v in sorted(row.items(), key=lambda k: (k[0][1], k[0][0])) if v)

    print("A1 (1 - eps) =", uni(mean1))
    for l in sorted(c1):
        print(f"C1_{l} =", uni(c1[l]))
    for l in sorted(c1p):
        print(f"C1p_{l} =", uni(c1p[l]))
    print("A2 / (1 - eps) =", uni(mean2))
    for l in sorted(c2):
        print(f"C2_{l} =", uni(c2[l]))
    print("A3 =", bi(a3))
    for l in sorted(c3):
        print(f"C3_{l} =", bi(c3[l]))


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--order", type=int, default=6)
    ap.add_argument("--cpp", action="store_true", help="print the C++ constants")
    args = ap.parse_args()
    a3, c3 = longitude_integral(args.order)
    check_numerically(a3, c3, args.order)
    if args.cpp:
        print_cpp(args.order)
    else:
        print_text(args.order)


if __name__ == "__main__":
    main()
