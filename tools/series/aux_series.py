#!/usr/bin/env python3
"""Exact Fourier series of the auxiliary latitudes in the third flattening n.

Derives, with rational arithmetic only (fractions), the coefficients of

    eta = zeta + sum_{k=1..K} c_k(n) sin(2k zeta),   c_k(n) = sum_{p=k..L} a_{k,p} n^p

for the conversions between the geodetic latitude phi and the conformal
latitude chi, the authalic latitude beta and the rectifying latitude mu, in
both directions (forward: phi -> auxiliary, inverse: auxiliary -> phi), and
the periodic coefficients of the meridian arc used by the library's ox_q.
The method follows the structure of C. F. F. Karney, "On auxiliary
latitudes", Survey Review (2023): each relation is expanded as a power
series in n whose coefficients are trigonometric polynomials; the inverse
series come from reverting the forward series.

    conformal:  chi = gd(gd^-1(phi) - e atanh(e sin phi))
                expanded by Taylor's theorem about gd^-1(phi), using
                gd'(psi) = cos(gd psi);
    authalic:   sin beta = q(phi)/q_p, q(phi)/(1-e^2) = sin phi/(1-e^2 sin^2 phi)
                + atanh(e sin phi)/e, expanded by Taylor's theorem of asin
                about sin phi;
    rectifying: mu = (pi/2) M(phi)/M(pi/2), M the meridian arc,
                M = a (1-n)^2 (1+n) int (1 + 2n cos 2phi + n^2)^(-3/2) dphi.

Every even power of e is a rational series in n, e^2 = 4n/(1+n)^2, so no
irrational number enters.  Self-checks: the reduced latitude tan eta =
(1-n)/(1+n) tan phi has the exact series sum (-n)^k/k sin 2k phi, and the
reversion of a series and of its inverse must give the identity.

Usage: python3 aux_series.py [--order L] [--cpp]   (default L = 9)
"""

import argparse
from fractions import Fraction as F
from math import factorial


class Trig:
    """Trigonometric polynomial sum C[m] cos(m x) + S[m] sin(m x), rational coefficients."""

    __slots__ = ("c", "s")

    def __init__(self, c=None, s=None):
        self.c = {m: v for m, v in (c or {}).items() if v != 0}
        self.s = {m: v for m, v in (s or {}).items() if v != 0 and m != 0}

    @staticmethod
    def const(v):
        return Trig({0: F(v)})

    @staticmethod
    def cos(m, v=1):
        return Trig({m: F(v)})

    @staticmethod
    def sin(m, v=1):
        return Trig(s={m: F(v)})

    def is_zero(self):
        return not self.c and not self.s

    def __add__(self, o):
        c = dict(self.c)
        s = dict(self.s)
        for m, v in o.c.items():
            c[m] = c.get(m, 0) + v
        for m, v in o.s.items():
            s[m] = s.get(m, 0) + v
        return Trig(c, s)

    def __neg__(self):
        return Trig({m: -v for m, v in self.c.items()}, {m: -v for m, v in self.s.items()})

    def __sub__(self, o):
        return self + (-o)

    def scale(self, k):
        k = F(k)
        return Trig({m: v * k for m, v in self.c.items()}, {m: v * k for m, v in self.s.items()})

    def __mul__(self, o):
        c, s = {}, {}

        def addc(m, v):
            c[abs(m)] = c.get(abs(m), 0) + v

        def adds(m, v):
            if m < 0:
                m, v = -m, -v
            s[m] = s.get(m, 0) + v

        for a, u in self.c.items():
            for b, v in o.c.items():  # cos a cos b
                addc(a - b, u * v / 2)
                addc(a + b, u * v / 2)
            for b, v in o.s.items():  # cos a sin b
                adds(a + b, u * v / 2)
                adds(b - a, u * v / 2)
        for a, u in self.s.items():
            for b, v in o.c.items():  # sin a cos b
                adds(a + b, u * v / 2)
                adds(a - b, u * v / 2)
            for b, v in o.s.items():  # sin a sin b
                addc(a - b, u * v / 2)
                addc(a + b, -u * v / 2)
        return Trig(c, s)

    def derivative(self):
        c = {m: m * v for m, v in self.s.items()}
        s = {m: -m * v for m, v in self.c.items()}
        return Trig(c, s)

    def div_cos(self):
        """Exact quotient by cos x; raises if cos x does not divide the polynomial."""
        rest = Trig(self.c, self.s)
        q = Trig()
        while not rest.is_zero():
            top = max(list(rest.c) + list(rest.s))
            if top == 0:
                raise ArithmeticError("not divisible by cos")
            if top in rest.c:
                # cos(m) cos x = (cos(m-1) + cos(m+1))/2, cos 0 cos x = cos x
                v = rest.c[top]
                term = Trig.cos(top - 1, v if top == 1 else 2 * v)
            else:
                v = rest.s[top]
                if top == 1:
                    raise ArithmeticError("not divisible by cos")
                term = Trig.sin(top - 1, 2 * v)
            q = q + term
            rest = rest - term * Trig.cos(1)
        return q


SIN = Trig.sin(1)
COS = Trig.cos(1)
ONE = Trig.const(1)


class Series:
    """Power series in n, truncated after n^L, with Trig (or scalar-as-Trig) coefficients."""

    def __init__(self, L, terms=None):
        self.L = L
        self.t = [Trig() for _ in range(L + 1)]
        for p, v in (terms or {}).items():
            if p <= L:
                self.t[p] = v if isinstance(v, Trig) else Trig.const(v)

    def copy(self):
        s = Series(self.L)
        s.t = list(self.t)
        return s

    def __add__(self, o):
        s = Series(self.L)
        s.t = [a + b for a, b in zip(self.t, o.t)]
        return s

    def __sub__(self, o):
        s = Series(self.L)
        s.t = [a - b for a, b in zip(self.t, o.t)]
        return s

    def __neg__(self):
        s = Series(self.L)
        s.t = [-a for a in self.t]
        return s

    def scale(self, k):
        s = Series(self.L)
        s.t = [a.scale(k) for a in self.t]
        return s

    def times_trig(self, g):
        s = Series(self.L)
        s.t = [a * g for a in self.t]
        return s

    def __mul__(self, o):
        s = Series(self.L)
        for i, a in enumerate(self.t):
            if a.is_zero():
                continue
            for j in range(self.L + 1 - i):
                if not o.t[j].is_zero():
                    s.t[i + j] = s.t[i + j] + a * o.t[j]
        return s

    def pow(self, k):
        r = Series(self.L, {0: 1})
        for _ in range(k):
            r = r * self
        return r

    def derivative(self):
        s = Series(self.L)
        s.t = [a.derivative() for a in self.t]
        return s

    def div_cos(self):
        s = Series(self.L)
        s.t = [a.div_cos() for a in self.t]
        return s

    def scalar(self, p):
        """The constant coefficient of n^p (the series must be scalar)."""
        a = self.t[p]
        if a.s or any(m != 0 for m in a.c):
            raise ValueError("not a scalar series")
        return a.c.get(0, F(0))

    def reciprocal(self):
        """1/self for a scalar series with nonzero constant term."""
        a = [self.scalar(p) for p in range(self.L + 1)]
        b = [F(0)] * (self.L + 1)
        b[0] = 1 / a[0]
        for p in range(1, self.L + 1):
            b[p] = -sum(a[i] * b[p - i] for i in range(1, p + 1)) / a[0]
        return Series(self.L, {p: b[p] for p in range(self.L + 1)})


def e2_series(L):
    """e^2 = 4n/(1+n)^2 = 4 sum_{j>=0} (-1)^j (j+1) n^(j+1)."""
    return Series(L, {j + 1: F(4 * (-1) ** j * (j + 1)) for j in range(L)})


def sine_coefficients(s, K):
    """Coefficients a[k][p] of sin(2k x) n^p of a series that must be a pure even-frequency sine series."""
    out = [[F(0)] * (s.L + 1) for _ in range(K + 1)]
    for p, t in enumerate(s.t):
        if t.c:
            raise ValueError(f"cosine terms at n^{p}: {t.c}")
        for m, v in t.s.items():
            if m % 2:
                raise ValueError(f"odd frequency {m} at n^{p}")
            k = m // 2
            if k > K:
                if p <= s.L:
                    raise ValueError(f"frequency {m} at n^{p} beyond K")
                continue
            out[k][p] = v
    return out


def from_coefficients(a, L):
    s = Series(L)
    for k, row in enumerate(a):
        for p, v in enumerate(row):
            if v:
                s.t[p] = s.t[p] + Trig.sin(2 * k, v)
    return s


def revert(f, L):
    """Given eta = zeta + f(zeta), returns g with zeta = eta + g(eta), to n^L."""
    derivs = [f]
    for _ in range(L):
        derivs.append(derivs[-1].derivative())
    g = Series(L)
    for _ in range(L):
        acc = Series(L)
        gp = Series(L, {0: 1})
        for j in range(L + 1):
            acc = acc + (gp * derivs[j]).scale(F(1, factorial(j)))
            gp = gp * g
        g = -acc
    return g


def conformal_forward(L):
    e2 = e2_series(L)
    s = Series(L, {0: SIN})
    s2 = s * s
    # delta psi = e atanh(e sin phi) = sum_m e^(2m+2) sin^(2m+1) phi / (2m+1)
    dpsi = Series(L)
    e2m = e2
    sp = s
    for m in range(L):
        dpsi = dpsi + (e2m * sp).scale(F(1, 2 * m + 1))
        e2m = e2m * e2
        sp = sp * s2
    # chi = phi + sum_j (-dpsi)^j / j! * D_j,  D_1 = cos phi, D_{j+1} = cos phi d/dphi D_j
    chi = Series(L)
    d = COS
    term = Series(L, {0: 1})
    for j in range(1, L + 1):
        term = term * (-dpsi)
        chi = chi + term.times_trig(d).scale(F(1, factorial(j)))
        d = COS * d.derivative()
    return chi


def authalic_forward(L):
    e2 = e2_series(L)
    s = Series(L, {0: SIN})
    s2 = s * s
    num = Series(L)
    den = Series(L)
    e2m = Series(L, {0: 1})
    sp = s
    for m in range(L + 1):
        w = F(2 * m + 2, 2 * m + 1)
        num = num + (e2m * sp).scale(w)
        den = den + e2m.scale(w)
        e2m = e2m * e2
        sp = sp * s2
    f = num * den.reciprocal()
    r = f - s
    rt = r.div_cos().div_cos()  # r / cos^2 phi
    # beta = asin(sin phi + r) = phi + sum_j r~^j cos phi P_j(sin phi) / j!,
    # P_1 = 1, P_{j+1} = (1 - x^2) P_j' + (2j - 1) x P_j
    poly = [F(1)]  # coefficients of P_j in x
    beta = Series(L)
    rp = Series(L, {0: 1})
    for j in range(1, L + 1):
        rp = rp * rt
        pj = Trig()
        xp = ONE
        for c in poly:
            pj = pj + xp.scale(c)
            xp = xp * SIN
        beta = beta + rp.times_trig(COS * pj).scale(F(1, factorial(j)))
        dp = [i * poly[i] for i in range(1, len(poly))] + [F(0)]
        nxt = [F(0)] * (len(poly) + 2)
        for i, c in enumerate(dp):  # (1 - x^2) P'
            nxt[i] += c
            nxt[i + 2] -= c
        for i, c in enumerate(poly):  # (2j - 1) x P
            nxt[i + 1] += (2 * j - 1) * c
        while len(nxt) > 1 and nxt[-1] == 0:
            nxt.pop()
        poly = nxt
    return beta


def binomial(alpha, j):
    r = F(1)
    for i in range(j):
        r = r * (alpha - i) / (i + 1)
    return r


def meridian_integrand(L):
    """(1 + n^2 + 2n cos 2phi)^(-3/2) as a series in n."""
    u = Series(L, {1: Trig.cos(2, 2), 2: 1})
    out = Series(L)
    up = Series(L, {0: 1})
    for j in range(L + 1):
        out = out + up.scale(binomial(F(-3, 2), j))
        up = up * u
    return out


def rectifying_forward(L):
    g = meridian_integrand(L)
    # int g dphi = A phi + sum B_m sin(m phi)/m ;  mu = phi + sum (B/A) ...
    a = Series(L)
    periodic = Series(L)
    for p, t in enumerate(g.t):
        if t.s:
            raise ValueError("odd integrand")
        a.t[p] = Trig.const(t.c.get(0, 0))
        periodic.t[p] = Trig(s={m: v / m for m, v in t.c.items() if m != 0})
    return periodic * a.reciprocal()


def meridian_arc(L):
    """A0 and B_k of M = a/(1+n) [A0 phi + sum B_k sin 2k phi]."""
    g = meridian_integrand(L)
    factor = Series(L, {0: 1, 2: -2, 4: 1})  # (1 - n^2)^2
    a0 = Series(L)
    periodic = Series(L)
    for p, t in enumerate(g.t):
        a0.t[p] = Trig.const(t.c.get(0, 0))
        periodic.t[p] = Trig(s={m: v / m for m, v in t.c.items() if m != 0})
    return [(factor * a0).scalar(p) for p in range(L + 1)], factor * periodic


def check_parametric(L, K):
    """The reduced latitude has the closed series sum (-n)^k/k sin 2k phi; its reversion is n -> -n."""
    exact = [[F(0)] * (L + 1) for _ in range(K + 1)]
    inv = [[F(0)] * (L + 1) for _ in range(K + 1)]
    for k in range(1, K + 1):
        exact[k][k] = F((-1) ** k, k)
        inv[k][k] = F(1, k)
    got = sine_coefficients(revert(from_coefficients(exact, L), L), K)
    assert got == inv, "reversion fails on the reduced latitude"


def check_revert_twice(fwd, L):
    back = revert(revert(fwd, L), L)
    for p in range(L + 1):
        assert (back.t[p] - fwd.t[p]).is_zero(), "double reversion is not the identity"


def derive(L):
    K = L
    check_parametric(L, K)
    result = {}
    for name, fwd in (("conformal", conformal_forward(L)), ("authalic", authalic_forward(L)),
                      ("rectifying", rectifying_forward(L))):
        inv = revert(fwd, L)
        check_revert_twice(fwd, L)
        result[name] = (sine_coefficients(fwd, K), sine_coefficients(inv, K))
    return result


def cpp_rational(v):
    if v.denominator == 1:
        return f"{v.numerator}.0"
    if abs(v.numerator) < 2 ** 53 and v.denominator < 2 ** 53:
        return f"{v.numerator}.0 / {v.denominator}.0"
    return repr(float(v))


def print_cpp(result, L):
    titles = {
        ("conformal", 0): "kConformalForward",
        ("conformal", 1): "kConformalInverse",
        ("authalic", 0): "kAuthalicForward",
        ("authalic", 1): "kAuthalicInverse",
        ("rectifying", 0): "kRectifyingForward",
        ("rectifying", 1): "kRectifyingInverse",
    }
    size = L * (L + 1) // 2
    for (name, which), title in titles.items():
        a = result[name][which]
        print(f"constexpr double {title}[{size}] = {{")
        for k in range(1, L + 1):
            print(f"    // sin {2 * k} x: n^{k} .. n^{L}")
            line = "   "
            for p in range(k, L + 1):
                item = f" {cpp_rational(a[k][p])},"
                if len(line) + len(item) > 110:
                    print(line)
                    line = "   "
                line += item
            print(line)
        print("};")


def print_text(result, L):
    for name, (fwd, inv) in result.items():
        for label, a in (("forward", fwd), ("inverse", inv)):
            print(f"{name} {label}")
            for k in range(1, L + 1):
                terms = " ".join(f"{a[k][p]}*n^{p}" for p in range(k, L + 1))
                print(f"  sin {2 * k}x: {terms}")


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--order", type=int, default=9)
    ap.add_argument("--cpp", action="store_true", help="print the C++ constants blocks")
    ap.add_argument("--meridian", type=int, default=0, help="print the meridian-arc coefficients to this order")
    args = ap.parse_args()
    if args.meridian:
        a0, periodic = meridian_arc(args.meridian)
        print("A0:", " ".join(f"{v}*n^{p}" for p, v in enumerate(a0) if v))
        b = sine_coefficients(periodic, args.meridian)
        for k in range(1, args.meridian + 1):
            print(f"B{k}:", " ".join(f"{b[k][p]}*n^{p}" for p in range(k, args.meridian + 1) if b[k][p]))
        return
    result = derive(args.order)
    if args.cpp:
        print_cpp(result, args.order)
    else:
        print_text(result, args.order)


if __name__ == "__main__":
    main()
