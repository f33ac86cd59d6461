#!/usr/bin/env python3
"""Exact derivation of the series of the transverse Mercator projection in the
third flattening n = f / (2 - f).

Everything is done in exact rational arithmetic (fractions.Fraction): a
function of the latitude is a trigonometric polynomial whose coefficients are
polynomials in n truncated after n^N.  From the defining relations of the
auxiliary latitudes the script derives

  * the conformal latitude chi of the geodetic latitude phi, and its inverse,
        chi = phi + sum_k c_k sin 2k phi,   phi = chi + sum_k d_k sin 2k chi;
  * the rectifying radius A = a / (1 + n) * A0(n);
  * Krueger's series between the conformal sphere (xi', eta') and the
    transverse Mercator coordinates (xi, eta) = (y, x) / A:
        zeta = zeta' + sum_k alpha_k sin 2k zeta',
        zeta' = zeta - sum_k beta_k sin 2k zeta,      zeta = xi + i eta,
    where alpha_k are the coefficients of the rectifying latitude mu as a
    function of chi (the central meridian, eta = 0, maps chi to mu) and
    beta_k those of the reverse relation (L. Krueger, "Konforme Abbildung des
    Erdellipsoids in der Ebene", 1912; C. F. F. Karney, "Transverse Mercator
    with an accuracy of a few nanometers", J. Geodesy 85, 2011).

Method:
  * conformal latitude: gd^-1(chi) = gd^-1(phi) - e atanh(e sin phi), hence
        chi = gd(u - q),  u = gd^-1(phi),  q = e atanh(e sin phi)
            = phi + sum_{m>=1} (-q)^m / m! g_m(phi),
    with g_1 = cos phi and g_{m+1} = cos phi d/dphi g_m (d/du = cos phi
    d/dphi, gd' = sech u = cos phi), and q = sum_j e^(2j+2) sin^(2j+1) phi /
    (2j+1), e^2 = 4n / (1 + n)^2;
  * rectifying latitude: the meridian radius is
        rho = a (1 - n^2)^2 / (1 + n) / |1 + n exp(2i phi)|^3,
    expanded with the binomial series of (1 + z)^(-3/2) and integrated;
  * reversion y = x + F(x)  ->  x = y + G(y) by the fixed point
    G(y) = -F(y + G(y)), one order of n per pass, and composition
    F(x + G(x)) = sum_m G^m / m! F^(m)(x) by Taylor's theorem.

The script checks its results against the published leading terms of the
Krueger coefficients and against direct high-precision evaluation (mpmath,
if installed) of the conformal and rectifying latitudes.

Usage:
  krueger_series.py --order 8 --cpp           tables for src/projection/ox_tm_complex.cpp
  krueger_series.py --order 16 --reference    data for the tests (reference series)
  krueger_series.py --order 8 --show          the coefficients as fractions
"""

import argparse
import sys
from fractions import Fraction as Fr
from math import factorial

# ---------------------------------------------------------------------------
# Truncated power series in n: lists of N + 1 Fractions (index = power).
# ---------------------------------------------------------------------------

N = 8


def pzero():
    return [Fr(0)] * (N + 1)


def pconst(c):
    p = pzero()
    p[0] = Fr(c)
    return p


def padd(p, q):
    return [a + b for a, b in zip(p, q)]


def pscale(p, c):
    return [a * c for a in p]


def pmul(p, q):
    r = pzero()
    for i, a in enumerate(p):
        if a == 0:
            continue
        for j in range(N + 1 - i):
            if q[j] != 0:
                r[i + j] += a * q[j]
    return r


def pinv(p):
    """1 / p for p[0] != 0."""
    r = pzero()
    r[0] = 1 / p[0]
    for k in range(1, N + 1):
        s = sum(p[j] * r[k - j] for j in range(1, k + 1))
        r[k] = -s / p[0]
    return r


def piszero(p):
    return all(a == 0 for a in p)


# ---------------------------------------------------------------------------
# Trigonometric polynomials: dict {('c'|'s', k): series}, k >= 0 (('s', 0)
# never stored).  cos k phi and sin k phi with coefficients in n.
# ---------------------------------------------------------------------------


def tnorm(t):
    return {key: v for key, v in t.items() if not piszero(v) and not (key[0] == 's' and key[1] == 0)}


def tadd(a, b):
    r = dict(a)
    for key, v in b.items():
        r[key] = padd(r[key], v) if key in r else list(v)
    return tnorm(r)


def tscale(a, c):
    """Multiply by a rational or by a series in n."""
    if isinstance(c, list):
        return tnorm({key: pmul(v, c) for key, v in a.items()})
    return tnorm({key: pscale(v, Fr(c)) for key, v in a.items()})


def _put(r, kind, k, v):
    if k < 0:
        k = -k
        if kind == 's':
            v = pscale(v, -1)
    if kind == 's' and k == 0:
        return
    key = (kind, k)
    r[key] = padd(r[key], v) if key in r else v


def tmul(a, b):
    r = {}
    half = Fr(1, 2)
    for (ka, i), va in a.items():
        for (kb, j), vb in b.items():
            v = pscale(pmul(va, vb), half)
            if piszero(v):
                continue
            if ka == 'c' and kb == 'c':      # cos i cos j
                _put(r, 'c', i - j, v)
                _put(r, 'c', i + j, v)
            elif ka == 's' and kb == 's':    # sin i sin j
                _put(r, 'c', i - j, v)
                _put(r, 'c', i + j, pscale(v, -1))
            elif ka == 's':                  # sin i cos j
                _put(r, 's', i + j, v)
                _put(r, 's', i - j, v)
            else:                            # cos i sin j
                _put(r, 's', i + j, v)
                _put(r, 's', j - i, v)
    return tnorm(r)


def tderiv(a):
    r = {}
    for (kind, k), v in a.items():
        if k == 0:
            continue
        if kind == 'c':
            _put(r, 's', k, pscale(v, -k))
        else:
            _put(r, 'c', k, pscale(v, k))
    return tnorm(r)


def tone():
    return {('c', 0): pconst(1)}


def tcos1():
    return {('c', 1): pconst(1)}


def tsin1():
    return {('s', 1): pconst(1)}


def compose(f, g):
    """f(x + g(x)) - f(x) + f(x)  =  sum_m g^m / m! f^(m)(x), g = O(n)."""
    result = dict(f)
    deriv = f
    power = tone()
    for m in range(1, N + 1):
        deriv = tderiv(deriv)
        power = tmul(power, g)
        if not power:
            break
        result = tadd(result, tscale(tmul(power, deriv), Fr(1, factorial(m))))
    return result


def revert(f):
    """Given y = x + f(x), the periodic part g of x = y + g(y)."""
    g = {}
    for _ in range(N + 1):
        g = tscale(compose(f, g), -1)
    return g


def sine_coefficients(t, name):
    """The coefficients s_k of sum_k s_k sin 2k x; checks that nothing else is there."""
    out = {}
    for (kind, k), v in t.items():
        if kind != 's' or k % 2 != 0:
            raise SystemExit(f'{name}: unexpected term {kind}{k}')
        out[k // 2] = v
    return [out.get(k, pzero()) for k in range(1, N + 1)]


# ---------------------------------------------------------------------------
# The auxiliary latitudes.
# ---------------------------------------------------------------------------


def e2_series():
    """e^2 = 4n / (1 + n)^2."""
    one_plus_n = pzero()
    one_plus_n[0] = Fr(1)
    one_plus_n[1] = Fr(1)
    four_n = pzero()
    four_n[1] = Fr(4)
    return pmul(four_n, pinv(pmul(one_plus_n, one_plus_n)))


def conformal():
    """Periodic part of chi(phi)."""
    e2 = e2_series()
    # q = e atanh(e sin phi) = sum_j e^(2j+2) sin^(2j+1) phi / (2j+1)
    q = {}
    e2pow = list(e2)
    sinpow = tsin1()
    sin2 = tmul(tsin1(), tsin1())
    for j in range(N):
        q = tadd(q, tscale(tscale(sinpow, e2pow), Fr(1, 2 * j + 1)))
        e2pow = pmul(e2pow, e2)
        sinpow = tmul(sinpow, sin2)
    # chi - phi = sum_{m>=1} (-q)^m / m! g_m
    minus_q = tscale(q, -1)
    g = tcos1()
    power = tone()
    result = {}
    for m in range(1, N + 1):
        power = tmul(power, minus_q)
        result = tadd(result, tscale(tmul(power, g), Fr(1, factorial(m))))
        g = tmul(tcos1(), tderiv(g))
    return result


def binomial_series(alpha, count):
    """Coefficients of (1 + z)^alpha up to z^count."""
    c = [Fr(1)]
    for j in range(1, count + 1):
        c.append(c[-1] * (alpha - (j - 1)) / j)
    return c


def rectifying():
    """(A0, periodic part of mu(phi)), A = a / (1 + n) A0."""
    c = binomial_series(Fr(-3, 2), N)
    # |1 + n e^{2i phi}|^-3 = sum_{j,l} c_j c_l n^(j+l) cos 2(j-l) phi
    density = {}
    for j in range(N + 1):
        for l in range(N + 1 - j):
            v = pzero()
            v[j + l] = c[j] * c[l]
            _put(density, 'c', 2 * (j - l), v)
    density = tnorm(density)
    one_minus_n2_sq = pzero()
    one_minus_n2_sq[0] = Fr(1)
    if N >= 2:
        one_minus_n2_sq[2] = Fr(-2)
    if N >= 4:
        one_minus_n2_sq[4] = Fr(1)
    density = tscale(density, one_minus_n2_sq)
    a0 = density.get(('c', 0), pzero())
    periodic = {}
    for (kind, k), v in density.items():
        if k > 0:
            _put(periodic, 's', k, pscale(v, Fr(1, k)))
    return a0, tscale(tnorm(periodic), pinv(a0))


def derive():
    chi_of_phi = conformal()
    phi_of_chi = revert(chi_of_phi)
    a0, mu_of_phi = rectifying()
    # mu(chi) = chi + G(chi) + F_mu(chi + G(chi)), G = phi_of_chi
    mu_of_chi = tadd(phi_of_chi, compose(mu_of_phi, phi_of_chi))
    chi_of_mu = revert(mu_of_chi)
    return {
        'a0': a0,
        'alpha': sine_coefficients(mu_of_chi, 'alpha'),
        'beta': [pscale(p, -1) for p in sine_coefficients(chi_of_mu, 'beta')],
        'chi': sine_coefficients(chi_of_phi, 'chi'),
        'phi': sine_coefficients(phi_of_chi, 'phi'),
        'mu': sine_coefficients(mu_of_phi, 'mu'),
    }


# ---------------------------------------------------------------------------
# Checks.
# ---------------------------------------------------------------------------

# Leading terms of the Krueger coefficients as published (Krueger 1912,
# Karney 2011 eqs. 35 and 36).
PUBLISHED = {
    ('alpha', 1): [0, Fr(1, 2), Fr(-2, 3), Fr(5, 16), Fr(41, 180)],
    ('alpha', 2): [0, 0, Fr(13, 48), Fr(-3, 5), Fr(557, 1440)],
    ('alpha', 3): [0, 0, 0, Fr(61, 240), Fr(-103, 140)],
    ('beta', 1): [0, Fr(1, 2), Fr(-2, 3), Fr(37, 96), Fr(-1, 360)],
    ('beta', 2): [0, 0, Fr(1, 48), Fr(1, 15), Fr(-437, 1440)],
    ('beta', 3): [0, 0, 0, Fr(17, 480), Fr(-37, 840)],
}


def check(series):
    for (name, k), terms in PUBLISHED.items():
        got = series[name][k - 1][:len(terms)]
        want = [Fr(t) for t in terms][:len(got)]
        if got != want:
            raise SystemExit(f'{name}_{k} disagrees with the published terms: {got} vs {want}')
    # A0 = sum_j binom(1/2, j)^2 n^2j
    half = binomial_series(Fr(1, 2), N // 2)
    want = pzero()
    for j, c in enumerate(half):
        if 2 * j <= N:
            want[2 * j] = c * c
    if series['a0'] != want:
        raise SystemExit('A0 is not sum binom(1/2, j)^2 n^2j')
    try:
        import mpmath
    except ImportError:
        print('mpmath not installed: numerical check skipped', file=sys.stderr)
        return
    mpmath.mp.dps = 60
    f = mpmath.mpf(1) / 298.257223563
    n = f / (2 - f)
    e2 = f * (2 - f)
    e = mpmath.sqrt(e2)

    def evaluate(coeffs, x):
        total = mpmath.mpf(0)
        for k, p in enumerate(coeffs, start=1):
            pk = sum(mpmath.mpf(c.numerator) / c.denominator * n ** j for j, c in enumerate(p))
            total += pk * mpmath.sin(2 * k * x)
        return x + total

    worst = {'chi': 0, 'phi': 0, 'mu': 0}
    a0 = sum(mpmath.mpf(c.numerator) / c.denominator * n ** j for j, c in enumerate(series['a0']))
    for deg in range(-89, 90, 7):
        phi = mpmath.radians(deg)
        chi = mpmath.atan(mpmath.sinh(mpmath.asinh(mpmath.tan(phi)) - e * mpmath.atanh(e * mpmath.sin(phi))))
        worst['chi'] = max(worst['chi'], abs(evaluate(series['chi'], phi) - chi))
        worst['phi'] = max(worst['phi'], abs(evaluate(series['phi'], chi) - phi))
        # mu = M(phi) / (a / (1 + n) A0), M by quadrature of the meridian radius
        arc = mpmath.quad(lambda t: (1 - e2) / (1 - e2 * mpmath.sin(t) ** 2) ** 1.5, [0, phi])
        mu = arc * (1 + n) / a0
        worst['mu'] = max(worst['mu'], abs(evaluate(series['mu'], phi) - mu))
    bound = (3 * n) ** (N + 1)
    for name, err in worst.items():
        if err > bound:
            raise SystemExit(f'{name}: series differs from direct evaluation by {float(err):.3g} rad')
    print('checks passed (max rad errors vs direct evaluation: ' +
          ', '.join(f'{k} {float(v):.2g}' for k, v in worst.items()) + ')', file=sys.stderr)


# ---------------------------------------------------------------------------
# Output.
# ---------------------------------------------------------------------------


def cpp_number(c):
    if c.denominator == 1:
        return f'{c.numerator}.0'
    return f'{c.numerator}.0 / {c.denominator}'


def emit_cpp(series):
    """Rows of coefficients of n^0 .. n^N, for Horner evaluation."""
    out = []
    out.append(f'// Generated by tools/series/krueger_series.py --order {N} --cpp; do not edit.')
    out.append(f'constexpr int kSeriesOrder = {N};')
    out.append('// A0 of the rectifying radius A = a / (1 + n) * A0: n^0..n^%d.' % N)
    out.extend(wrap_row([cpp_number(c) for c in series['a0']],
                        f'constexpr double kRectifyingPoly[{N + 1}] = {{', '};'))
    out.append(f'// Leading coefficient of the first neglected term: alpha_{N + 1} = c n^{N + 1} + ...')
    out.append(f'constexpr double kAlphaNextLeading = {cpp_number(series["alpha_next"])};')
    names = [
        ('kAlphaPoly', 'alpha', 'alpha_k: conformal sphere to transverse Mercator'),
        ('kBetaPoly', 'beta', 'beta_k: transverse Mercator to conformal sphere'),
    ]
    for cname, key, what in names:
        out.append(f'// {what}; row k-1: n^0..n^{N} of term k.')
        out.append(f'constexpr double {cname}[{N}][{N + 1}] = {{')
        for p in series[key]:
            out.extend(wrap_row([cpp_number(c) for c in p], '    {', '},'))
        out.append('};')
    return '\n'.join(out) + '\n'


def wrap_row(items, opening, closing, width=100):
    """One initializer row, wrapped before `width` columns."""
    lines = []
    line = opening
    for i, item in enumerate(items):
        text = item + (closing if i == len(items) - 1 else ',')
        if len(line) + len(text) + 1 > width and line.strip() not in ('{', ''):
            lines.append(line.rstrip())
            line = ' ' * len(opening)
        line += text if line.endswith(('{', ' ')) else ' ' + text
    lines.append(line)
    return lines


def ld_number(c):
    if c == 0:
        return '0.0L'
    from decimal import Decimal, getcontext
    getcontext().prec = 36
    v = Decimal(c.numerator) / Decimal(c.denominator)
    return f'{v:.24E}L'.replace('E+00', '').replace('E', 'e')


def emit_reference(series):
    """Text data for the tests: one line per series coefficient, its name, its
    index k (0 for the rectifying factor) and the coefficients of n^0 to n^N
    to 24 significant digits."""
    out = [f'# Generated by tools/series/krueger_series.py --order {N} --reference; do not edit.',
           '# Reference transverse Mercator series carried to a high order in the third',
           '# flattening, for checking the truncation of the library\'s series.',
           '# name k c_0 ... c_N (coefficients of n^0 .. n^N)']
    def line(name, k, coefficients):
        return ' '.join([name, str(k)] + [ld_number(c).rstrip('L') for c in coefficients])
    out.append(line('rectifying', 0, series['a0']))
    for key in ('alpha', 'beta', 'chi', 'phi'):
        for k, p in enumerate(series[key], start=1):
            out.append(line(key, k, p))
    return '\n'.join(out) + '\n'


def show(series):
    for key in ('a0',):
        print(key, ' + '.join(f'{c} n^{j}' for j, c in enumerate(series[key]) if c))
    for key in ('alpha', 'beta', 'chi', 'phi', 'mu'):
        for k, p in enumerate(series[key], start=1):
            print(f'{key}_{k} =', ' + '.join(f'({c}) n^{j}' for j, c in enumerate(p) if c))


def truncate(series):
    """Cuts series derived to order N + 1 at order N; keeps the leading
    coefficient of alpha_{N+1} as 'alpha_next'."""
    out = {'alpha_next': series['alpha'][N - 1][N]}
    for key, value in series.items():
        if key == 'a0':
            out[key] = value[:N]
        else:
            out[key] = [p[:N] for p in value[:N - 1]]
    return out


def main():
    global N
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--order', type=int, default=8)
    group = parser.add_mutually_exclusive_group()
    group.add_argument('--cpp', action='store_true')
    group.add_argument('--reference', action='store_true')
    group.add_argument('--show', action='store_true')
    parser.add_argument('--no-check', action='store_true')
    args = parser.parse_args()
    if args.order < 4:
        raise SystemExit('order must be at least 4')
    # Derive one order further: the leading term of alpha_{N+1} estimates the
    # truncation error; the exact series cut at n^N are the same either way.
    N = args.order + 1
    series = truncate(derive())
    N = args.order
    if not args.no_check:
        check(series)
    if args.cpp:
        sys.stdout.write(emit_cpp(series))
    elif args.reference:
        sys.stdout.write(emit_reference(series))
    else:
        show(series)


if __name__ == '__main__':
    main()
