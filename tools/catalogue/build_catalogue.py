#!/usr/bin/env python3
"""Derives the library's built-in catalogue from the EPSG extract.

    python3 tools/catalogue/build_catalogue.py PATH/TO/shared/epsg

reads the registry extract and the hand-written tables of input/ and writes
the reviewable catalogue files of data/ (compiled into constant tables by
tools/gencat at build time), the expectation tables of tests/data/ and the
counts of data/COUNTS.md.  Standard library only; the output is deterministic.
"""

import csv
import math
import os
import re
import sys
from collections import Counter, OrderedDict, defaultdict
from fractions import Fraction

import naming

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.normpath(os.path.join(HERE, '..', '..'))
INPUT = os.path.join(HERE, 'input')
DATA = os.path.join(ROOT, 'data')
TEST_DATA = os.path.join(ROOT, 'tests', 'data')

# Registry codes used below.
PRJ_TM, PRJ_GK = 43006, 43005
PRJ = {
    'Plate_Carree': 43001, 'Equidistant_Cylindrical': 43002, 'Mercator': 43004,
    'Albers': 43007, 'Lambert_Conformal_Conic': 43020, 'Polyconic': 43021,
    'Hotine_Oblique_Mercator_Azimuth_Natural_Origin': 43036,
    'Hotine_Oblique_Mercator_Azimuth_Center': 43037, 'Stereographic': 43026,
    'Stereographic_North_Pole': 43050, 'Stereographic_South_Pole': 43051, 'Cassini': 43028,
    'Lambert_Azimuthal_Equal_Area': 43033, 'Cylindrical_Equal_Area': 43034,
    'Double_Stereographic': 43038, 'Krovak': 43039, 'New_Zealand_Map_Grid': 43040,
    'Rectified_Skew_Orthomorphic_Natural_Origin': 43053, 'Rectified_Skew_Orthomorphic_Center': 43054,
}
ANGULAR_PARAMETERS = {
    'Central_Meridian', 'Longitude_Of_Origin', 'Standard_Parallel_1', 'Standard_Parallel_2',
    'Latitude_Of_Origin', 'Central_Parallel', 'Azimuth', 'Longitude_Of_1st_Point',
    'Longitude_Of_2nd_Point', 'Latitude_Of_1st_Point', 'Latitude_Of_2nd_Point', 'Longitude_Of_Center',
    'Latitude_Of_Center', 'Pseudo_Standard_Parallel_1', 'XY_Plane_Rotation',
}
GRAD_UNIT = 9105
TM_PARAMETERS = ('False_Easting', 'False_Northing', 'Central_Meridian', 'Scale_Factor', 'Latitude_Of_Origin')
# Code bands of each definition-string kind (the library's code-range sets).
KIND_BANDS = {
    'GCS': [(4000, 4999), (37000, 37999), (104000, 104999)],
    'PCS': [(2000, 3999), (20000, 32799), (53000, 54999), (65000, 65199), (102000, 103999)],
    'VCS': [(5600, 5799), (105600, 105799), (115600, 115799)],
    'D': [(6000, 6999), (106000, 106999)],
    'VERTD': [(5100, 5299), (105100, 105299)],
    'GT': [(1000, 1999), (8000, 8899), (10000, 10099), (15698, 15999), (108000, 108899)],
    'U': [(9000, 9099), (9100, 9199), (109000, 109099)],
    'PM': [(8900, 8999), (108900, 108999)],
    'S': [(7000, 7999), (107000, 107999)],
    'MTH': [(9600, 9699), (109600, 109699)],
    'HTMTH': [(119600, 119699)],
    'PRJ': [(43000, 43499)],
    'PAR': [(100000, 100099)],
}


def die(message):
    sys.exit('build_catalogue: ' + message)


def read_csv(path):
    with open(path, newline='', encoding='utf-8') as f:
        return list(csv.DictReader(f))


def write_csv(path, header, rows):
    with open(path, 'w', newline='', encoding='utf-8') as f:
        w = csv.writer(f, lineterminator='\n')
        w.writerow(header)
        for row in rows:
            w.writerow(row)


def num(x):
    """A double written so that it reads back exactly (shortest repr)."""
    x = float(x)
    if x == 0:
        x = 0.0
    if x == int(x) and abs(x) < 1e15:
        return repr(float(int(x)))
    return repr(x)


def tidy(x):
    """The shortest decimal within a few units in the last place of x: values
    converted between units (degrees to grads) read as their intended
    decimals."""
    for digits in range(1, 17):
        y = float('%.*g' % (digits, x))
        if abs(y - x) <= 4 * abs(x) * 2.0 ** -52:
            return y
    return x


def params_text(params):
    return ';'.join('%s=%s' % (k, num(v)) for k, v in params)


class Catalogue:
    def __init__(self, epsg_dir):
        self.epsg_dir = epsg_dir
        self.notes = defaultdict(Counter)    # kind -> reason -> count
        self.sources = defaultdict(Counter)  # kind -> source -> count
        load = lambda name: {int(r['code']): r for r in read_csv(os.path.join(epsg_dir, name))}
        # The classic catalogue reads the rows of the classic code bands
        # (e_*); the modern systems outside them (m_*) are added afterwards.
        # Ellipsoids, prime meridians and datums are taken whole: rows inside
        # the bands use some of those outside them.
        classic = lambda rows: {c: r for c, r in rows.items() if r['in_bands'] == '1'}
        modern = lambda rows: {c: r for c, r in rows.items() if r['in_bands'] == '0'}
        self.a_units = load('units.csv')
        self.e_pms = load('prime_meridians.csv')
        self.e_ells = load('ellipsoids.csv')
        self.e_datums = load('datums.csv')
        gcs, pcs, gt = load('geographic_crs.csv'), load('projected_crs.csv'), load('transformations.csv')
        self.e_gcs, self.m_gcs = classic(gcs), modern(gcs)
        self.e_pcs, self.m_pcs = classic(pcs), modern(pcs)
        self.e_gt, self.m_gt = classic(gt), modern(gt)
        self.e_vd = classic(load('vertical_datums.csv'))
        self.e_vcs = classic(load('vertical_crs.csv'))
        # Units: those of the bands and those that the projected systems use.
        used_units = {int(r['linear_unit_code']) for r in pcs.values()}
        self.e_units = {c: r for c, r in self.a_units.items() if r['in_bands'] == '1' or c in used_units}
        self.e_repl = read_csv(os.path.join(epsg_dir, 'replacements.csv'))
        inp = lambda name: read_csv(os.path.join(INPUT, name))
        self.overrides = defaultdict(dict)
        for r in inp('names.csv'):
            self.overrides[r['kind']][int(r['code'])] = r['name']
        self.keep = defaultdict(set)
        for r in inp('keep_deprecated.csv'):
            self.keep[r['kind']].add(int(r['code']))
        self.inp = inp

        self.units = OrderedDict()      # code -> (name, factor)
        self.pms = OrderedDict()        # code -> (name, longitude)
        self.ells = OrderedDict()       # code -> (name, a, invf)
        self.datums = OrderedDict()     # code -> (name, ellipsoid)
        self.gcs = OrderedDict()        # code -> (name, datum, pm, unit)
        self.prefix = {}                # gcs code -> short form for projected/transformation names
        self.projcs = OrderedDict()     # code -> (group, name, gcs, projection, unit, params)
        self.families = []              # dicts
        self.bands = []                 # (family index, low, high, first zone)
        self.members = []               # (family index, code, zone, zone2, fe, fn, cm, k, lat0)
        self.vdatums = OrderedDict()    # code -> name
        self.vertcs = OrderedDict()     # code -> (name, datum kind, datum, unit, params)
        self.geogtran = OrderedDict()   # code -> (name, method, gcs1, gcs2, params)
        self.replaced = []              # (kind, old, new)
        self.defstrings = []            # (kind, defstring, code)
        self.superseded = []            # (defstring, code)
        self.superseded_codes = []      # (kind, code)
        self.expect_zones = []          # rows of tests/data/zone_families.csv

    # ------------------------------------------------------------------ helpers
    def override(self, kind, code, default):
        return self.overrides[kind].get(code, default)

    def wanted(self, kind, code, row):
        return row['deprecated'] == '0' or code in self.keep[kind]

    # ------------------------------------------------------------------ units
    def build_units(self):
        pi = math.pi
        exact_angles = {9101: 1.0, 9102: pi / 180, 9103: pi / 10800, 9104: pi / 648000,
                        9105: pi / 200, 9106: pi / 200, 9109: 1e-6, 9112: pi / 20000,
                        9113: pi / 2000000, 9114: pi / 3200}
        for code, r in sorted(self.e_units.items()):
            if r['factor'] == '' or code == 9122:
                self.notes['unit']['textual or duplicate angle encodings left out'] += 1
                continue
            factor = exact_angles.get(code, float(r['factor']))
            name = self.override('unit', code, naming.words_to_name(r['name'].title()))
            self.units[code] = (name, factor)
            self.sources['unit']['EPSG'] += 1
        for r in self.inp('mavo_units.csv'):
            self.units[int(r['code'])] = (r['name'], float(r['factor']))
            self.sources['unit']['authority band'] += 1

    def angular_unit(self, code):
        # Geographic systems in the textual degree encodings use the degree.
        return 9102 if code in (9122, 9108, 9110, 9107, 9115, 9116, 9117, 9118, 9119, 9120, 9121) else code

    # ------------------------------------------------------------------ prime meridians
    def build_primems(self):
        for code, r in sorted(self.e_pms.items()):
            self.pms[code] = (self.override('primem', code, naming.words_to_name(r['name'])),
                              float(r['longitude_deg']))
            self.sources['primem']['EPSG'] += 1
        for r in self.inp('mavo_primems.csv'):
            self.pms[int(r['code'])] = (r['name'], float(r['longitude']))
            self.sources['primem']['authority band'] += 1

    # ------------------------------------------------------------------ spheroids
    def build_spheroids(self, used):
        for code, r in sorted(self.e_ells.items()):
            if not (self.wanted('spheroid', code, r) or code in used):
                self.notes['spheroid']['deprecated, unused'] += 1
                continue
            name = self.override('spheroid', code, naming.ellipsoid_name(r['name']))
            self.ells[code] = (name, float(r['semi_major_axis_m']), float(r['inverse_flattening']))
            self.sources['spheroid']['EPSG'] += 1
        for r in self.inp('mavo_spheroids.csv'):
            self.ells[int(r['code'])] = (r['name'], float(r['semi_major_axis']), float(r['inverse_flattening']))
            self.sources['spheroid']['authority band'] += 1
        for i, r in enumerate(self.inp('planets.csv')):
            a, b = float(r['equatorial_radius']), float(r['polar_radius'])
            invf = 0.0 if a == b else a / (a - b)
            self.ells[107900 + i] = ('XT_' + r['body'], a, invf)
            self.sources['spheroid']['planetary bodies'] += 1

    def e2(self, ellipsoid):
        invf = self.ells[ellipsoid][2]
        if invf == 0:
            return 0.0
        f = 1.0 / invf
        return f * (2 - f)

    # ------------------------------------------------------------------ geographic systems and datums
    def gcs_wanted(self):
        """EPSG geographic systems of the catalogue: current rows of 4000-4999,
        the kept deprecated ones, the 'ellipsoid only' systems 4001-4055 and the
        systems outside the band that a kept projected system or
        transformation uses."""
        wanted = set()
        for code, r in self.e_gcs.items():
            ellipsoid_only = r['name'].startswith(('Unknown datum based upon', 'Unspecified datum based upon'))
            if 4000 <= code <= 4999 and (self.wanted('geogcs', code, r) or ellipsoid_only):
                wanted.add(code)
            elif 4000 <= code <= 4999:
                self.notes['geogcs']['deprecated, left out'] += 1
        return wanted

    def build_geographic(self):
        wanted = self.gcs_wanted()
        # Systems outside the band used by current projected systems and transformations.
        for code, r in self.e_pcs.items():
            g = int(r['geographic_crs_code'])
            if r['deprecated'] == '0' and not 4000 <= g <= 4999 and g in self.e_gcs \
                    and self.e_gcs[g]['deprecated'] == '0':
                wanted.add(g)
        for code, r in self.e_gt.items():
            for g in (int(r['source_crs_code']), int(r['target_crs_code'])):
                if r['deprecated'] == '0' and not 4000 <= g <= 4999 and self.e_gcs[g]['deprecated'] == '0':
                    wanted.add(g)
        # Systems of the zone families, whose bands are built whatever the
        # registry now says of their rows.
        for f in self.inp('families.csv'):
            for c in range(int(f['low']), int(f['high']) + 1):
                if c in self.e_pcs:
                    wanted.add(int(self.e_pcs[c]['geographic_crs_code']))
        # The special superseded systems are built by the factory itself.
        wanted.discard(4635)
        for code in sorted(wanted):
            ell = int(self.e_datums[int(self.e_gcs[code]['datum_code'])]['ellipsoid_code'])
            if ell not in self.e_ells:
                wanted.discard(code)
                self.notes['geogcs']['ellipsoid missing from the extract'] += 1
        # Short names (prefixes) of the geographic systems.
        for code in sorted(wanted):
            r = self.e_gcs[code]
            m = re.match(r'(?:Unknown|Unspecified) datum based upon (?:the )?(.*?)(?: ellipsoid)?$', r['name'])
            if m:
                ell = int(self.e_datums[int(r['datum_code'])]['ellipsoid_code'])
                short = self.override('spheroid', ell, naming.ellipsoid_name(self.e_ells[ell]['name'])) \
                    if ell in self.e_ells else naming.words_to_name(m.group(1))
            else:
                short = naming.short_name_of_crs(r['name'])
            self.prefix[code] = self.override('prefix', code, short)
        # Datums: short name from the registry's datum name or the system's prefix.
        datum_short = {}
        for code in sorted(wanted):
            r = self.e_gcs[code]
            d = int(r['datum_code'])
            if d in datum_short:
                continue
            dr = self.e_datums[d]
            if r['name'].startswith(('Unknown datum', 'Unspecified datum')):
                short = self.prefix[code]
            elif re.fullmatch(r'Pulkovo \d{4}\(\d{2}\)', dr['name']):
                short = self.prefix[code]
            else:
                short = naming.datum_short_name(dr['name'], self.prefix[code])
            datum_short[d] = self.override('datum', d, short)
        gcs_short = dict(datum_short)
        # A datum that differs from its Greenwich twin only by its prime
        # meridian (the two ends of a longitude rotation) takes the twin's name,
        # so that the rotation can check that both ends share one datum.
        for code, r in self.e_gt.items():
            if r['method_code'] == '9601' and r['deprecated'] == '0':
                s, t = int(r['source_crs_code']), int(r['target_crs_code'])
                if s in wanted and t in wanted:
                    ds, dt = int(self.e_gcs[s]['datum_code']), int(self.e_gcs[t]['datum_code'])
                    if self.e_datums[dt]['prime_meridian_code'] == '8901' and \
                            self.e_datums[ds]['ellipsoid_code'] == self.e_datums[dt]['ellipsoid_code']:
                        datum_short[ds] = datum_short[dt]
        used_ellipsoids = {int(self.e_datums[d]['ellipsoid_code']) for d in datum_short}
        used_ellipsoids |= {7022, 7053}  # special superseded datum 6635, replaced spheroid target
        self.build_spheroids(used_ellipsoids)
        for d in sorted(datum_short):
            ell = int(self.e_datums[d]['ellipsoid_code'])
            if ell not in self.ells:
                die('datum %d: ellipsoid %d missing' % (d, ell))
            self.datums[d] = ('D_' + datum_short[d], ell)
            self.sources['datum']['EPSG'] += 1
        for code in sorted(wanted):
            r = self.e_gcs[code]
            d = int(r['datum_code'])
            pm = int(self.e_datums[d]['prime_meridian_code'])
            unit = self.angular_unit(int(r['angular_unit_code']))
            name = self.override('geogcs', code, 'GCS_' + gcs_short[d])
            self.gcs[code] = (name, d, pm, unit)
            self.sources['geogcs']['EPSG'] += 1
        # A system named after its ellipsoid alone ('Unknown datum based upon
        # the WGS 84 ellipsoid') must not take the name of a real system built
        # on that ellipsoid: the reverse look-up would find it first.
        only = lambda code: self.e_gcs[code]['name'].startswith(('Unknown datum', 'Unspecified datum'))
        real_gcs = {g[0] for c, g in self.gcs.items() if not only(c)}
        real_datums = {self.datums[g[1]][0] for c, g in self.gcs.items() if not only(c)}
        for code in list(self.gcs):
            name, d = self.gcs[code][0], self.gcs[code][1]
            if only(code) and (name in real_gcs or self.datums[d][0] in real_datums):
                del self.gcs[code]
                del self.datums[d]
                self.notes['geogcs']['ellipsoid-only system named like a real one'] += 1
                self.notes['datum']['ellipsoid-only datum named like a real one'] += 1
                self.sources['geogcs']['EPSG'] -= 1
                self.sources['datum']['EPSG'] -= 1
        # The authority's own datums and systems, and the planetary bodies.
        for r in self.inp('mavo_datums.csv'):
            self.datums[int(r['code'])] = (r['name'], int(r['spheroid']))
            self.sources['datum']['authority band'] += 1
        for r in self.inp('mavo_geogcs.csv'):
            code = int(r['code'])
            self.gcs[code] = (r['name'], int(r['datum']), int(r['primem']), int(r['unit']))
            self.prefix[code] = r['prefix']
            self.sources['geogcs']['authority band'] += 1
        for i, r in enumerate(self.inp('planets.csv')):
            body = r['body']
            self.datums[106900 + i] = ('D_' + body, 107900 + i)
            self.gcs[104900 + i] = ('GCS_' + body, 106900 + i, 108900, 9102)
            self.prefix[104900 + i] = body
            self.sources['datum']['planetary bodies'] += 1
            self.sources['geogcs']['planetary bodies'] += 1

    # ------------------------------------------------------------------ projected systems
    def pcs_parameters(self, code, r):
        """(projection, [(parameter, value)]) of an EPSG projected system, or
        (None, reason) when its method has no projection in the registry."""
        p = {}
        for i in range(1, 8):
            c = r['param%d_code' % i]
            if c:
                p[int(c)] = float(r['param%d_value' % i])
        method = int(r['method_code'])
        name = r['name']
        fe_fn = [('False_Easting', p.get(8806, 0.0)), ('False_Northing', p.get(8807, 0.0))]
        if method == 9807:
            prj = PRJ_GK if re.search(r'Gauss|GK', name) else PRJ_TM
            return prj, fe_fn + [('Central_Meridian', p[8802]), ('Scale_Factor', p[8805]),
                                 ('Latitude_Of_Origin', p[8801])]
        if method == 9801:
            return PRJ['Lambert_Conformal_Conic'], fe_fn + [
                ('Central_Meridian', p[8802]), ('Standard_Parallel_1', p[8801]), ('Scale_Factor', p[8805]),
                ('Latitude_Of_Origin', p[8801])]
        if method in (9802, 9822):
            prj = PRJ['Lambert_Conformal_Conic'] if method == 9802 else PRJ['Albers']
            return prj, [('False_Easting', p[8826]), ('False_Northing', p[8827]),
                         ('Central_Meridian', p[8822]), ('Standard_Parallel_1', p[8823]),
                         ('Standard_Parallel_2', p[8824]), ('Latitude_Of_Origin', p[8821])]
        if method == 9829:
            prj = PRJ['Stereographic_North_Pole'] if p[8832] > 0 else PRJ['Stereographic_South_Pole']
            return prj, fe_fn + [('Central_Meridian', p[8833]), ('Standard_Parallel_1', p[8832])]
        if method in (9810, 9809):
            prj = PRJ['Stereographic'] if method == 9810 else PRJ['Double_Stereographic']
            return prj, fe_fn + [('Central_Meridian', p[8802]), ('Scale_Factor', p[8805]),
                                 ('Latitude_Of_Origin', p[8801])]
        if method == 9806:
            return PRJ['Cassini'], fe_fn + [('Central_Meridian', p[8802]), ('Scale_Factor', 1.0),
                                            ('Latitude_Of_Origin', p[8801])]
        if method in (9812, 9815):
            skew = abs(p[8814] - p[8813]) > 1e-9
            if method == 9812:
                prj = 'Rectified_Skew_Orthomorphic_Natural_Origin' if skew else \
                    'Hotine_Oblique_Mercator_Azimuth_Natural_Origin'
                out = list(fe_fn)
            else:
                prj = 'Rectified_Skew_Orthomorphic_Center' if skew else 'Hotine_Oblique_Mercator_Azimuth_Center'
                out = [('False_Easting', p[8816]), ('False_Northing', p[8817])]
            out += [('Scale_Factor', p[8815]), ('Azimuth', p[8813]), ('Longitude_Of_Center', p[8812]),
                    ('Latitude_Of_Center', p[8811])]
            if skew:
                out.append(('XY_Plane_Rotation', p[8814]))
            return PRJ[prj], out
        if method == 9804:
            if p[8801] != 0:
                return None, 'Mercator (variant A) with a latitude of origin'
            k0 = p[8805]
            e2 = self.e2(self.datums[self.gcs[int(r['geographic_crs_code'])][1]][1])
            # k0 = cos(phi1) / sqrt(1 - e2 sin^2 phi1) solved for phi1 (IOGP GN 7-2, 3.5.1).
            s2 = (1 - k0 * k0) / (1 - k0 * k0 * e2)
            phi1 = math.degrees(math.asin(math.sqrt(max(s2, 0.0))))
            return PRJ['Mercator'], fe_fn + [('Central_Meridian', p[8802]), ('Standard_Parallel_1', phi1)]
        if method == 9805:
            return PRJ['Mercator'], fe_fn + [('Central_Meridian', p[8802]), ('Standard_Parallel_1', p[8823])]
        if method == 1024:
            return PRJ['Mercator'], fe_fn + [('Central_Meridian', p[8802]), ('Standard_Parallel_1', 0.0)]
        if method == 9820:
            return PRJ['Lambert_Azimuthal_Equal_Area'], fe_fn + [('Central_Meridian', p[8802]),
                                                                 ('Latitude_Of_Origin', p[8801])]
        if method == 9818:
            return PRJ['Polyconic'], fe_fn + [('Central_Meridian', p[8802]), ('Latitude_Of_Origin', p[8801])]
        if method == 9819:
            return PRJ['Krovak'], fe_fn + [
                ('Pseudo_Standard_Parallel_1', p[8818]), ('Scale_Factor', p[8819]), ('Azimuth', p[1036]),
                ('Longitude_Of_Center', p[8833]), ('Latitude_Of_Center', p[8811]), ('X_Scale', 1.0),
                ('Y_Scale', 1.0), ('XY_Plane_Rotation', 0.0)]
        if method == 1041:  # Krovak (North Orientated): east and north by the plane's rotation
            return PRJ['Krovak'], fe_fn + [
                ('Pseudo_Standard_Parallel_1', p[8818]), ('Scale_Factor', p[8819]), ('Azimuth', p[1036]),
                ('Longitude_Of_Center', p[8833]), ('Latitude_Of_Center', p[8811]), ('X_Scale', -1.0),
                ('Y_Scale', 1.0), ('XY_Plane_Rotation', 90.0)]
        if method == 9835:
            return PRJ['Cylindrical_Equal_Area'], fe_fn + [('Central_Meridian', p[8802]),
                                                           ('Standard_Parallel_1', p[8823])]
        if method == 1028:
            return PRJ['Equidistant_Cylindrical'], fe_fn + [('Central_Meridian', p[8802]),
                                                            ('Standard_Parallel_1', p[8823])]
        if method == 9811:
            return PRJ['New_Zealand_Map_Grid'], fe_fn + [('Longitude_Of_Origin', p[8802]),
                                                         ('Latitude_Of_Origin', p[8801])]
        return None, 'method without a registry projection: ' + r['method_name']

    def to_gcs_unit(self, gcs, params):
        """Angular parameters in the geographic system's angular unit."""
        unit = self.gcs[gcs][3]
        if unit == 9102:
            return params
        factor = Fraction(math.pi / 180) / Fraction(self.units[unit][1])
        if unit == GRAD_UNIT:
            factor = Fraction(10, 9)
        return [(k, tidy(float(Fraction(v) * factor)) if k in ANGULAR_PARAMETERS else v) for k, v in params]

    def state_plane_zone(self, zone):
        base, suffix = naming.split_unit_suffix(zone)
        hit = self.sp_zones.get(base)
        return (hit, suffix) if hit else (None, suffix)

    def pcs_name(self, code, r):
        if code in self.overrides['projcs']:
            return self.overrides['projcs'][code]
        gcs = int(r['geographic_crs_code'])
        prefix = self.prefix[gcs]
        zone = r['name'].split(' / ', 1)[1] if ' / ' in r['name'] else r['name']
        sp, suffix = self.state_plane_zone(zone)
        if not sp and ' / ' not in r['name']:
            return naming.zone_to_name(r['name'])  # a name of its own ('SWEREF99 TM')
        if sp:
            text, fips = sp
            unit = int(r['linear_unit_code'])
            tail = ''
            if prefix.startswith('NAD_1983'):
                tail = {9003: '_Feet', 9002: '_Feet_Intl'}.get(unit, '')
            name = '%s_StatePlane_%s_FIPS_%s%s' % (prefix, text, fips, tail)
            # Object names keep 63 characters: long ones take the short unit
            # and state plane words.
            for long_form, short_form in (('_Feet_Intl', '_Ft_Intl'), ('_Feet', '_Ft'), ('_StatePlane_', '_SP_')):
                if len(name) > 63:
                    name = name.replace(long_form, short_form)
            return name
        return prefix + '_' + naming.zone_to_name(zone)

    def pcs_group(self, code, name, gcs, unit):
        def inside(bands):
            return any(lo <= code <= hi for lo, hi in bands)
        if inside([(26729, 26799), (32001, 32060), (32099, 32099), (65061, 65061), (2204, 2204),
                   (26801, 26803), (26811, 26813)]):
            return 'sp27'
        if inside([(26929, 26998), (32100, 32161), (32199, 32199), (65161, 65161), (3088, 3088),
                   (2205, 2205)]):
            return 'sp83m'
        if self.prefix.get(gcs) == 'NAD_1983_HARN' and re.search(r'_(StatePlane|SP)_', name):
            return 'harn'
        if '_StatePlane_' in name and self.prefix.get(gcs) == 'NAD_1983' and unit != 9001:
            return 'sp83ft1' if code < 3000 else 'sp83ft2'
        if re.search(r'UTM|_Zone_|_GK_|Gauss|_MTM_|_TM_?\d', name):
            return 'zone'
        return 'misc'

    def build_projected(self):
        self.sp_zones = {r['epsg_zone']: (r['zone'], r['fips']) for r in self.inp('state_plane_zones.csv')}
        band_families = self.inp('families.csv')
        listed = self.inp('listed_families.csv')
        in_band = {}
        for f in band_families:
            for c in range(int(f['low']), int(f['high']) + 1):
                in_band[c] = f
        supersede_keep = {26761, 26762, 26763, 26764, 26765, 2979, 26432}
        special = {2983, 2990}
        candidates = {}  # code -> (name, gcs, projection, unit, params) from EPSG rows
        for code, r in sorted(self.e_pcs.items()):
            if not (2000 <= code <= 3999 or 20000 <= code <= 32799):
                continue
            if r['deprecated'] == '1' and code not in self.keep['projcs'] and code not in special \
                    and code not in in_band:
                self.notes['projcs']['deprecated, left out'] += 1
                continue
            gcs = int(r['geographic_crs_code'])
            if gcs not in self.gcs and code not in special:
                self.notes['projcs']['geographic system not in the catalogue'] += 1
                continue
            unit = int(r['linear_unit_code'])
            if unit not in self.units:
                self.notes['projcs']['linear unit not in the catalogue'] += 1
                continue
            if code in special:
                continue
            prj, params = self.pcs_parameters(code, r)
            if prj is None:
                self.notes['projcs'][params] += 1
                continue
            if int(r['method_code']) == 1024:
                gcs = 4055  # the auxiliary sphere
            name = self.pcs_name(code, r)
            candidates[code] = (name, gcs, prj, unit, self.to_gcs_unit(gcs, params), r)
        self.method_counts = Counter()
        self.method_counts_modern = Counter()
        # Band families.
        self.family_index = {}
        for f in band_families:
            key = f['template']
            if key not in self.family_index:
                self.family_index[key] = len(self.families)
                self.families.append(self.fit_band_family(f, candidates, band_families))
            fi = self.family_index[key]
            self.bands.append((fi, int(f['low']), int(f['high']), int(f['first_zone'])))
        for code in list(candidates):
            if code in in_band:
                self.check_band_member(code, candidates[code], in_band[code])
                del candidates[code]
        # Listed families.
        for f in listed:
            pattern = re.compile(f['epsg_name_pattern'])
            fam = None
            for code in sorted(candidates):
                name, gcs, prj, unit, params, r = candidates[code]
                m = pattern.match(r['name'])
                if not m:
                    continue
                if fam is None:
                    if f['template'] in self.family_index:
                        fam = self.families[self.family_index[f['template']]]
                    else:
                        fam = {'template': f['template'], 'geogcs': gcs, 'projection': prj, 'unit': unit,
                               'form': f['zone_form']}
                        self.family_index[f['template']] = len(self.families)
                        self.families.append(fam)
                if (fam['geogcs'], fam['projection'], fam['unit']) != (gcs, prj, unit):
                    die('listed family %s: member %d differs in its parts' % (f['template'], code))
                groups = m.groups()
                zones = [naming.from_roman(g) if f['zone_form'] == 'roman' else int(g) for g in groups]
                zone2 = zones[1] if len(zones) > 1 else 0
                pv = dict(params)
                if set(pv) != {'False_Easting', 'False_Northing', 'Central_Meridian', 'Scale_Factor',
                               'Latitude_Of_Origin'}:
                    die('listed family %s: member %d is not a transverse Mercator' % (f['template'], code))
                self.members.append((self.family_index[f['template']], code, zones[0], zone2,
                                     pv['False_Easting'], pv['False_Northing'], pv['Central_Meridian'],
                                     pv['Scale_Factor'], pv['Latitude_Of_Origin']))
                self.method_counts[r['method_name']] += 1
                self.sources['projcs']['EPSG, zone families with a list'] += 1
                del candidates[code]
            if fam is None:
                self.notes['projcs']['zone family without a row in the extract: ' + f['template']] += 1
        # Explicit rows.
        for code, (name, gcs, prj, unit, params, r) in sorted(candidates.items()):
            if len(name) > 63:
                die('projected %d: name longer than 63 characters: %s' % (code, name))
            group = self.pcs_group(code, name, gcs, unit)
            self.projcs[code] = (group, name, gcs, prj, unit, params)
            self.method_counts[r['method_name']] += 1
            self.sources['projcs']['EPSG, ' + group] += 1
        # Rows of the authority's own bands and the superseded copies.
        for r in self.inp('mavo_projcs.csv'):
            code = int(r['code'])
            if r['copy_of']:
                src = self.projcs[int(r['copy_of'])]
                self.projcs[code] = (r['group'], r['name'] or src[1], src[2], src[3], src[4], src[5])
                self.sources['projcs']['superseded copies'] += 1
                continue
            params = [(k, float(v)) for k, v in (p.split('=') for p in r['parameters'].split(';'))]
            self.projcs[code] = (r['group'], r['name'], int(r['geogcs']), int(r['projection']), int(r['unit']),
                                 params)
            self.sources['projcs']['authority band' if code >= 37000 else 'EPSG, kept'] += 1
        # The superseded definitions built by the factory's last step.
        for code in sorted(special):
            r = self.e_pcs[code]
            prj, params = self.pcs_parameters(code, r)
            gcs = int(r['geographic_crs_code'])
            self.projcs[code] = ('special', self.overrides['projcs'][code], gcs, prj, int(r['linear_unit_code']),
                                 params)
        for code in supersede_keep:
            if code not in self.projcs:
                die('superseded projected code %d has no row' % code)

    def fit_band_family(self, f, candidates, all_families):
        """Parameters of a band family: given in the table, or fitted to the
        registry's rows of the band (false easting and central meridian linear
        in the zone number, the rest constant)."""
        template = f['template']
        rows = []
        for g in all_families:
            if g['template'] != template:
                continue
            off = int(g['first_zone']) - int(g['low'])
            for c in range(int(g['low']), int(g['high']) + 1):
                if c in candidates and \
                        set(dict(candidates[c][4])) == set(TM_PARAMETERS):
                    rows.append((c + off, candidates[c]))
        fam = {'template': template, 'form': 'int'}
        # A row with its false easting gives the whole rule; a row with only
        # a geographic system keeps that system and fits the rest (the
        # registry reused the band's codes for a newer frame with the same
        # zones).
        if f['false_easting'] != '':
            fam.update(geogcs=int(f['geogcs']), projection=int(f['projection']), unit=int(f['unit']),
                       fe=float(f['false_easting']), fe_step=float(f['fe_per_zone']),
                       fn=float(f['false_northing']), cm0=float(f['cm_origin']), cm_step=float(f['cm_per_zone']),
                       k=float(f['scale_factor']), lat0=float(f['latitude_of_origin']))
            return fam
        if not rows:
            die('band family %s has neither parameters nor registry rows' % template)
        # The rule is the one that most rows of the band follow: each pair of
        # rows proposes the rule through both, and every row votes (a band may
        # hold a system of another kind that the registry gave a freed code).
        best = None
        for i, (z0, c0) in enumerate(rows):
            proposals = [(0.0, 6.0)] if len(rows) == 1 else []
            for z1, c1 in rows[i + 1:]:
                p0, p1 = dict(c0[4]), dict(c1[4])
                proposals.append(((p1['False_Easting'] - p0['False_Easting']) / (z1 - z0),
                                  (p1['Central_Meridian'] - p0['Central_Meridian']) / (z1 - z0)))
            for fe_step, cm_step in proposals:
                p0 = dict(c0[4])
                trial = {'template': template, 'form': 'int', 'fn': p0['False_Northing'], 'k': p0['Scale_Factor'],
                         'lat0': p0['Latitude_Of_Origin'], 'fe_step': fe_step, 'cm_step': cm_step,
                         'fe': p0['False_Easting'] - fe_step * z0, 'cm0': p0['Central_Meridian'] - cm_step * z0}
                votes = sum(1 for z, c in rows if self.follows_rule(trial, z, c[4]))
                if best is None or votes > best[0]:
                    best = (votes, trial, c0)
        _, trial, (name, gcs, prj, unit, params, r) = best
        fam.update(trial)
        fam.update(geogcs=int(f['geogcs']) if f['geogcs'] else gcs,
                   projection=int(f['projection']) if f['projection'] else PRJ_TM, unit=unit)
        return fam

    def follows_rule(self, fam, zone, params):
        pv = dict(params)
        return all(abs(pv.get(k, math.nan) - v) < 1e-9 for k, v in self.family_member(fam, zone))

    def family_name_matches(self, template, zone, candidate):
        """A registry row names its zone (some bands also hold a newer system
        the registry gave a freed code)."""
        name, gcs, prj, unit, params, r = candidate
        zone_part = r['name'].split(' / ', 1)[-1]
        return re.search(r'\b%d\b' % zone, zone_part) is not None or re.search(r'%d[NS]?\b' % zone, zone_part)

    def family_member(self, fam, zone):
        cm = fam['cm0'] + fam['cm_step'] * zone
        if cm > 180:  # zones past the antimeridian
            cm -= 360
        return [('False_Easting', fam['fe'] + fam['fe_step'] * zone), ('False_Northing', fam['fn']),
                ('Central_Meridian', cm), ('Scale_Factor', fam['k']), ('Latitude_Of_Origin', fam['lat0'])]

    def check_band_member(self, code, candidate, f):
        name, gcs, prj, unit, params, r = candidate
        fam = self.families[self.family_index[f['template']]]
        zone = code - int(f['low']) + int(f['first_zone'])
        computed = self.family_member(fam, zone)
        overridden = bool(f['geogcs'])
        same = (overridden or gcs == fam['geogcs']) and unit == fam['unit'] and self.follows_rule(fam, zone, params)
        if not same and not self.family_name_matches(f['template'], zone, candidate):
            self.notes['projcs']['registry row inside a zone band for another system (band wins)'] += 1
            return
        if not same and r['deprecated'] == '1':
            self.notes['projcs']['deprecated registry row in a zone band that differs from the family rule'] += 1
            return
        if not same:
            die('band family %s: zone %d (code %d) differs from its registry row %s' %
                (f['template'], zone, code, params))
        self.expect_zones.append([code, f['template'].replace('%d', str(zone)), fam['geogcs'], fam['projection'], unit] +
                                 [num(v) for _, v in computed])
        self.method_counts[r['method_name']] += 1
        self.sources['projcs']['EPSG, zone families with a band'] += 1

    # ------------------------------------------------------------------ transformations
    def build_transformations(self, rows=None, note=''):
        """The registry's transformations of `rows` (the classic ones by
        default); a name takes the registry's variant number unless its pair
        of systems has one transformation only."""
        superseded = {1894, 1915, 1911}
        kept = {}
        for code, r in sorted((self.e_gt if rows is None else rows).items()):
            if r['deprecated'] == '1' and code not in superseded and code not in self.keep['geogtran']:
                self.notes['geogtran'][note + 'deprecated, left out'] += 1
                continue
            s, t = int(r['source_crs_code']), int(r['target_crs_code'])
            if s not in self.gcs or t not in self.gcs:
                self.notes['geogtran'][note + 'end system not in the catalogue'] += 1
                continue
            # A longitude rotation turns by the difference of the two prime
            # meridians; one whose published offset is another angle has no
            # form here.
            pm_difference = self.pms[self.gcs[s][2]][1] - self.pms[self.gcs[t][2]][1]
            if r['method_code'] == '9601' and abs(pm_difference - float(r['lon_offset_deg'])) > 1e-9:
                self.notes['geogtran'][note + 'longitude rotation by another angle than its prime meridians'] += 1
                continue
            kept[code] = r
        pairs = Counter((int(r['source_crs_code']), int(r['target_crs_code'])) for r in kept.values())
        pairs.update((row[2], row[3]) for row in self.geogtran.values())
        for code, r in kept.items():
            s, t = int(r['source_crs_code']), int(r['target_crs_code'])
            m = re.search(r'\((\d+)\)\s*$', r['name'])
            n = int(m.group(1)) if m else 1
            name = '%s_To_%s' % (self.prefix[s], self.prefix[t])
            if not (n == 1 and pairs[(s, t)] == 1):
                name += '_%d' % n
            name = self.override('geogtran', code, name)
            method = int(r['method_code'])
            f = lambda c: float(r[c]) if r[c] else 0.0
            params = []
            if method in (9603, 9606, 9607, 9636):
                params += [('X_Axis_Translation', f('tx')), ('Y_Axis_Translation', f('ty')),
                           ('Z_Axis_Translation', f('tz'))]
            if method in (9606, 9607, 9636):
                params += [('X_Axis_Rotation', f('rx')), ('Y_Axis_Rotation', f('ry')), ('Z_Axis_Rotation', f('rz')),
                           ('Scale_Difference', f('scale_ppm'))]
            if method == 9636:
                params += [('X_Coordinate_of_Rotation_Origin', f('px')), ('Y_Coordinate_of_Rotation_Origin', f('py')),
                           ('Z_Coordinate_of_Rotation_Origin', f('pz'))]
            if method == 9613:
                params.append(('Dataset_' + os.path.splitext(r['grid_file'])[0], 0.0))
            if method == 9615:
                grid = r['grid_file']
                if grid.lower().endswith('.gsb'):
                    grid = grid[:-4]
                params.append(('Dataset_' + grid, 0.0))
            self.geogtran[code] = (name, method, s, t, params)
            self.sources['geogtran']['EPSG' if rows is None else 'EPSG, modern'] += 1

    # ------------------------------------------------------------------ vertical
    def build_vertical(self):
        vcs_names = {}
        for code, r in sorted(self.e_vcs.items()):
            if not self.wanted('vertcs', code, r):
                self.notes['vertcs']['deprecated, left out'] += 1
                continue
            text = re.sub(r'\b(height|depth)\b', '', r['name'])
            name = naming.words_to_name(text)
            if r['direction'] == 'down':
                name += '_depth'
            vcs_names[code] = self.override('vertcs', code, name)
        for code, r in sorted(self.e_vd.items()):
            if not self.wanted('vdatum', code, r):
                self.notes['vdatum']['deprecated, left out'] += 1
                continue
            users = [c for c, v in sorted(self.e_vcs.items()) if int(v['vertical_datum_code']) == code
                     and c in vcs_names and v['direction'] == 'up' and '(' not in v['name']]
            name = vcs_names[users[0]] if users else naming.words_to_name(r['name'])
            self.vdatums[code] = self.override('vdatum', code, name)
            self.sources['vdatum']['EPSG'] += 1
        for code, name in vcs_names.items():
            r = self.e_vcs[code]
            vd = int(r['vertical_datum_code'])
            if vd not in self.vdatums:
                self.notes['vertcs']['vertical datum not in the catalogue'] += 1
                continue
            direction = -1.0 if r['direction'] == 'down' else 1.0
            self.vertcs[code] = (name, 'vdatum', vd, int(r['unit_code']),
                                 [('Vertical_Shift', 0.0), ('Direction', direction)])
            self.sources['vertcs']['EPSG'] += 1
        for r in self.inp('mavo_vdatums.csv'):
            self.vdatums[int(r['code'])] = r['name']
            self.sources['vdatum']['authority band'] += 1
        for r in self.inp('mavo_vertcs.csv'):
            self.vertcs[int(r['code'])] = (r['name'], r['datum_kind'], int(r['datum']), int(r['unit']),
                                           [('Vertical_Shift', 0.0), ('Direction', float(r['direction']))])
            self.sources['vertcs']['authority band'] += 1

    # ------------------------------------------------------------------ modern systems
    def build_modern(self):
        """Current registry systems outside the classic bands: geographic and
        projected systems and transformations by their own codes (a datum, an
        ellipsoid or a unit they need joins the catalogue too)."""
        for code, r in sorted(self.m_gcs.items()):
            if r['deprecated'] == '1':
                self.notes['geogcs']['modern: deprecated, left out'] += 1
                continue
            d = int(r['datum_code'])
            dr = self.e_datums[d]
            ell = int(dr['ellipsoid_code'])
            if ell not in self.ells:
                er = self.e_ells[ell]
                self.ells[ell] = (self.override('spheroid', ell, naming.ellipsoid_name(er['name'])),
                                  float(er['semi_major_axis_m']), float(er['inverse_flattening']))
                self.sources['spheroid']['EPSG, modern'] += 1
            prefix = self.override('prefix', code, naming.short_name_of_crs(r['name']))
            self.prefix[code] = prefix
            short = self.override('datum', d, naming.datum_short_name(dr['name'], prefix))
            if d not in self.datums:
                self.datums[d] = ('D_' + short, ell)
                self.sources['datum']['EPSG, modern'] += 1
            self.gcs[code] = (self.override('geogcs', code, 'GCS_' + short), d,
                              int(dr['prime_meridian_code']), self.angular_unit(int(r['angular_unit_code'])))
            self.sources['geogcs']['EPSG, modern'] += 1
        for code, r in sorted(self.m_pcs.items()):
            if r['deprecated'] == '1':
                self.notes['projcs']['modern: deprecated, left out'] += 1
                continue
            gcs, unit = int(r['geographic_crs_code']), int(r['linear_unit_code'])
            if gcs not in self.gcs:
                self.notes['projcs']['modern: geographic system not in the catalogue'] += 1
                continue
            if unit not in self.units:
                ur = self.a_units[unit]
                self.units[unit] = (self.override('unit', unit, naming.words_to_name(ur['name'].title())),
                                    float(ur['factor']))
                self.sources['unit']['EPSG, modern'] += 1
            prj, params = self.pcs_parameters(code, r)
            if prj is None:
                self.notes['projcs']['modern: ' + params] += 1
                continue
            name = self.pcs_name(code, r)
            if len(name) > 63:
                die('projected %d: name longer than 63 characters: %s' % (code, name))
            self.projcs[code] = ('epsg', name, gcs, prj, unit, self.to_gcs_unit(gcs, params))
            self.method_counts_modern[r['method_name']] += 1
            self.sources['projcs']['EPSG, modern'] += 1
        self.build_transformations(self.m_gt, 'modern: ')

    def build_wiscrs(self):
        """The Wisconsin county systems: one system per county in metres
        (103800 + n) and in US survey feet (103900 + n), n the county's place
        in alphabetical order; the parameters are the registry's for the
        county's WISCRS zone on NAD 1983 (HARN)."""
        counties = {}
        for code, r in sorted(self.m_pcs.items()):
            m = re.fullmatch(r'NAD83\(HARN\) / WISCRS (.*) \((m|ftUS)\)', r['name'])
            if not m or r['deprecated'] == '1':
                continue
            for county in re.split(r', | and ', m.group(1)):
                counties.setdefault(county, {})[m.group(2)] = code
        if len(counties) != 72:
            die('Wisconsin has 72 counties, the registry\'s WISCRS zones name %d' % len(counties))
        for n, county in enumerate(sorted(counties)):
            word = naming.words_to_name(county)
            for unit_text, base, suffix in (('m', 103800, 'Meters'), ('ftUS', 103900, 'Feet')):
                row = self.projcs[counties[county][unit_text]]
                self.projcs[base + n] = ('wiscrs', 'NAD_1983_HARN_WISCRS_%s_County_%s' % (word, suffix)) + row[2:]
                self.sources['projcs']['Wisconsin county systems (WISCRS)'] += 1

    # ------------------------------------------------------------------ replaced codes
    def build_replaced(self):
        for r in self.inp('replaced.csv'):
            self.replaced.append((r['kind'], int(r['old_code']), int(r['new_code'])))
        kinds = {'projected_crs': ('projcs', self.projcs, [(2000, 3999), (20000, 32799)]),
                 'vertical_datum': ('vdatum', self.vdatums, [(5100, 5299)]),
                 'vertical_crs': ('vertcs', self.vertcs, [(5600, 5799)]),
                 'helmert_transformation': ('geogtran', self.geogtran, None),
                 'grid_transformation': ('geogtran', self.geogtran, None),
                 'other_transformation': ('geogtran', self.geogtran, None)}
        gt_bands = [(1000, 1999), (8000, 8899), (10000, 10099), (15698, 15999)]
        special = {2983, 2990}
        chosen = {}
        for r in sorted(self.e_repl, key=lambda r: (int(r['old_code']), r['source'] != 'deprecation',
                                                    int(r['new_code']))):
            if r['object_kind'] not in kinds:
                continue
            kind, table, bands = kinds[r['object_kind']]
            old, new = int(r['old_code']), int(r['new_code'])
            bands = bands or gt_bands
            if old in table or old in special or (kind, old) in chosen:
                continue
            seen = {old}
            while new not in table and new not in seen:  # follow a chain of replacements
                seen.add(new)
                nxt = [int(x['new_code']) for x in self.e_repl
                       if int(x['old_code']) == new and x['object_kind'] == r['object_kind']]
                if not nxt:
                    break
                new = min(nxt)
            if not any(lo <= old <= hi for lo, hi in bands) or new not in table:
                continue
            if kind == 'projcs' and table[new][0] == 'special':
                continue
            chosen[(kind, old)] = new
        for (kind, old), new in sorted(chosen.items()):
            self.replaced.append((kind, old, new))

    # ------------------------------------------------------------------ definition strings
    def build_defstrings(self):
        names = []  # (kind, defstring, code, priority)
        for code, (name, factor) in self.units.items():
            names.append(('U', naming.defstring('OX_U_', name), code))
        for code, (name, lon) in self.pms.items():
            names.append(('PM', naming.defstring('OX_PM_', name), code))
        for code, (name, a, invf) in self.ells.items():
            names.append(('S', naming.defstring('OX_S_', name), code))
        for code, (name, ell) in self.datums.items():
            names.append(('D', naming.defstring('OX_D_', name[2:] if name.startswith('D_') else name), code))
        for code in self.gcs:
            names.append(('GCS', naming.defstring('OX_GCS_', self.prefix[code]), code))
        for code, row in self.projcs.items():
            if row[0] != 'special':
                names.append(('PCS', naming.defstring('OX_PCS_', row[1]), code))
        for fi, low, high, first in self.bands:
            for c in range(low, high + 1):
                name = self.families[fi]['template'].replace('%d', str(c - low + first))
                names.append(('PCS', naming.defstring('OX_PCS_', name), c))
        for m in self.members:
            names.append(('PCS', naming.defstring('OX_PCS_', self.member_name(m)), m[1]))
        for code, name in self.vdatums.items():
            names.append(('VERTD', naming.defstring('OX_VERTD_', name), code))
        for code, row in self.vertcs.items():
            names.append(('VCS', naming.defstring('OX_VCS_', row[0]), code))
        for code, row in self.geogtran.items():
            names.append(('GT', naming.defstring('OX_GT_', row[0]), code))
        for r in self.inp('registry.csv'):
            names.append((r['kind'], r['defstring'], int(r['code'])))
        for r in self.inp('synonyms.csv'):
            names.append((r['kind'], r['defstring'], int(r['code'])))
        omit = {(r['kind'], r['defstring']) for r in self.inp('defstring_omit.csv')}
        by_name = {}
        for kind, ds, code in names:
            # Codes outside the kind's bands (the modern systems and the
            # systems on the registry's newer datum codes) build by code but
            # carry no definition string: a table's codes are those that
            # `ox_factory` builds and that turn back into their names.
            if not any(lo <= code <= hi for lo, hi in KIND_BANDS[kind]) or (kind, ds) in omit:
                continue
            # A definition string is a name field of 64 characters.
            if len(ds) > 63:
                self.notes['defstrings']['name longer than 63 characters (the object builds by code)'] += 1
                continue
            key = (kind, ds)
            # One name, one code: the lowest code of the registry's bands wins.
            if key not in by_name or (code >= 100000, code) < (by_name[key] >= 100000, by_name[key]):
                by_name[key] = code
        self.defstrings = sorted((k, ds, c) for (k, ds), c in by_name.items())
        for r in self.inp('superseded_names.csv'):
            self.superseded.append((r['defstring'], int(r['code'])))
        for r in self.inp('superseded_codes.csv'):
            self.superseded_codes.append((r['kind'], int(r['code'])))

    def member_name(self, m):
        fam = self.families[m[0]]
        t = fam['template']
        if fam['form'] == 'roman':
            return t.replace('%s', naming.roman(m[2]))
        if t.count('%d') == 2:
            return t.replace('%d', str(m[2]), 1).replace('%d', str(m[3]), 1)
        return t.replace('%d', str(m[2]))

    # ------------------------------------------------------------------ output
    def write(self):
        os.makedirs(DATA, exist_ok=True)
        os.makedirs(TEST_DATA, exist_ok=True)
        write_csv(os.path.join(DATA, 'units.csv'), ['code', 'name', 'factor'],
                  [[c, n, num(f)] for c, (n, f) in sorted(self.units.items())])
        write_csv(os.path.join(DATA, 'primems.csv'), ['code', 'name', 'longitude'],
                  [[c, n, num(l)] for c, (n, l) in sorted(self.pms.items())])
        write_csv(os.path.join(DATA, 'spheroids.csv'), ['code', 'name', 'semi_major_axis', 'inverse_flattening'],
                  [[c, n, num(a), num(i)] for c, (n, a, i) in sorted(self.ells.items())])
        write_csv(os.path.join(DATA, 'datums.csv'), ['code', 'name', 'spheroid'],
                  [[c, n, e] for c, (n, e) in sorted(self.datums.items())])
        write_csv(os.path.join(DATA, 'geogcs.csv'), ['code', 'name', 'datum', 'primem', 'unit'],
                  [[c, n, d, p, u] for c, (n, d, p, u) in sorted(self.gcs.items())])
        write_csv(os.path.join(DATA, 'projcs.csv'),
                  ['code', 'group', 'name', 'geogcs', 'projection', 'unit', 'parameters'],
                  [[c, g, n, gc, p, u, params_text(pr)] for c, (g, n, gc, p, u, pr) in sorted(self.projcs.items())])
        write_csv(os.path.join(DATA, 'projcs_families.csv'),
                  ['family', 'template', 'geogcs', 'projection', 'unit', 'false_easting', 'fe_per_zone',
                   'false_northing', 'cm_origin', 'cm_per_zone', 'scale_factor', 'latitude_of_origin'],
                  [[i, f['template'], f['geogcs'], f['projection'], f['unit']] +
                   [num(f.get(k, 0.0)) for k in ('fe', 'fe_step', 'fn', 'cm0', 'cm_step', 'k', 'lat0')]
                   for i, f in enumerate(self.families)])
        write_csv(os.path.join(DATA, 'projcs_bands.csv'), ['family', 'low', 'high', 'first_zone'],
                  sorted(self.bands, key=lambda b: b[1]))
        write_csv(os.path.join(DATA, 'projcs_members.csv'),
                  ['family', 'code', 'zone', 'zone2', 'false_easting', 'false_northing', 'central_meridian',
                   'scale_factor', 'latitude_of_origin'],
                  [[m[0], m[1], m[2], m[3]] + [num(v) for v in m[4:]] for m in sorted(self.members,
                                                                                     key=lambda m: m[1])])
        write_csv(os.path.join(DATA, 'vdatums.csv'), ['code', 'name'], sorted(self.vdatums.items()))
        write_csv(os.path.join(DATA, 'vertcs.csv'), ['code', 'name', 'datum_kind', 'datum', 'unit', 'parameters'],
                  [[c, n, k, d, u, params_text(p)] for c, (n, k, d, u, p) in sorted(self.vertcs.items())])
        write_csv(os.path.join(DATA, 'geogtran.csv'), ['code', 'name', 'method', 'geogcs1', 'geogcs2', 'parameters'],
                  [[c, n, m, s, t, params_text(p)] for c, (n, m, s, t, p) in sorted(self.geogtran.items())])
        write_csv(os.path.join(DATA, 'replaced.csv'), ['kind', 'old_code', 'new_code'], self.replaced)
        write_csv(os.path.join(DATA, 'defstrings.csv'), ['kind', 'defstring', 'code'], self.defstrings)
        write_csv(os.path.join(DATA, 'superseded_names.csv'), ['defstring', 'code'], self.superseded)
        write_csv(os.path.join(DATA, 'superseded_codes.csv'), ['kind', 'code'], self.superseded_codes)
        write_csv(os.path.join(TEST_DATA, 'zone_families.csv'),
                  ['code', 'name', 'geogcs', 'projection', 'unit', 'false_easting', 'false_northing',
                   'central_meridian', 'scale_factor', 'latitude_of_origin'], sorted(self.expect_zones))
        self.write_counts()

    def audit_counts(self):
        """Codes of each projected group that name a registry projected
        system, and those whose differences from it the reviewed exceptions
        file of the audit test lists."""
        exceptions = defaultdict(set)  # code -> checks
        for r in read_csv(os.path.join(TEST_DATA, 'catalogue_exceptions.csv')):
            low, _, high = r['code'].partition('-')
            for c in range(int(low), int(high or low) + 1):
                exceptions[c].add(r['check'])
        names = OrderedDict([('misc', '1. miscellaneous national and regional systems'),
                             ('zone', '2. zone families and single zones'),
                             ('sp27', '3. state plane 1927'), ('sp83m', '4. state plane 1983, metres'),
                             ('sp83ft1', '5. state plane 1983, feet (first group)'),
                             ('sp83ft2', '6. state plane 1983, feet (second group)'),
                             ('harn', '7. HARN state plane'), ('wiscrs', '8. Wisconsin county systems (WISCRS)'),
                             ('epsg', 'registry systems outside the classic bands')])
        group_of = {c: row[0] for c, row in self.projcs.items()}
        for fi, low, high, first in self.bands:
            for c in range(low, high + 1):
                group_of[c] = 'zone'
        for m in self.members:
            group_of[m[1]] = 'zone'
        registry = set(self.e_pcs) | set(self.m_pcs)
        lines = ['', '## Projected systems against the registry (the audit test)', '',
                 'Catalogue codes that name a registry projected system are compared with it by parameters '
                 '(`tests/catalogue_audit_test.cpp`); the differences are those of the reviewed exceptions file '
                 '`tests/data/catalogue_exceptions.csv`.', '',
                 '| group | codes | naming a registry system | identical | listed differences |', '|---|---|---|---|---|']
        checks = {'datum', 'spheroid', 'primem', 'angular_unit', 'linear_unit', 'projection', 'parameters'}
        for key, title in names.items():
            codes = [c for c, g in group_of.items() if g == key]
            named = [c for c in codes if c in registry]
            differing = [c for c in named if exceptions[c] & checks]
            lines.append('| %s | %d | %d | %d | %d |' % (title, len(codes), len(named), len(named) - len(differing),
                                                         len(differing)))
        unbuilt = sum(1 for c, v in exceptions.items() if 'built' in v)
        lines += ['', 'Registry projected systems that build nothing because the registry of projections has no '
                  'method for them: %d (listed with their method in the exceptions file).' % unbuilt,
                  'Groups 7 and 9 of the adjusted county systems (`NAD_1983_HARN_Adj_MN_...`, '
                  '`NAD_1983_HARN_Adj_WI_...`) are not built: the registry has no definition of them.']
        return lines

    def write_counts(self):
        prefixes = OrderedDict([('GCS', 'OX_GCS_'), ('PCS', 'OX_PCS_'), ('VCS', 'OX_VCS_'), ('D', 'OX_D_'),
                                ('VERTD', 'OX_VERTD_'), ('GT', 'OX_GT_'), ('U', 'OX_U_'), ('PM', 'OX_PM_'),
                                ('S', 'OX_S_'), ('MTH', 'OX_MTH_'), ('HTMTH', 'OX_HTMTH_'), ('PRJ', 'OX_PRJ_'),
                                ('PAR', 'OX_PAR_')])
        lines = ['# Catalogue counts', '',
                 'Written by `tools/catalogue/build_catalogue.py`; do not edit.', '',
                 '## Definition-string tables', '',
                 '| prefix | rows | codes with synonyms | lowest code | highest code | first row | last row |',
                 '|---|---|---|---|---|---|---|']
        for kind, prefix in prefixes.items():
            rows = sorted((ds, c) for k, ds, c in self.defstrings if k == kind)
            rows.sort(key=lambda r: r[0].encode())
            codes = Counter(c for _, c in rows)
            lines.append('| "%s" | %d | %d | %d | %d | "%s" | "%s" |' % (
                prefix, len(rows), sum(1 for v in codes.values() if v > 1), min(codes), max(codes),
                rows[0][0], rows[-1][0]))
        lines += ['', '## Catalogue rows by source', '']
        for kind in ('unit', 'primem', 'spheroid', 'datum', 'geogcs', 'projcs', 'vdatum', 'vertcs', 'geogtran'):
            for src, n in sorted(self.sources[kind].items()):
                lines.append('- %s, %s: %d' % (kind, src, n))
        lines += ['', '## Projected systems by registry method (EPSG rows built)', '']
        for m, n in sorted(self.method_counts.items(), key=lambda t: (-t[1], t[0])):
            lines.append('- %s: %d' % (m, n))
        lines += ['', '## Modern projected systems by registry method (codes outside the classic bands)', '']
        for m, n in sorted(self.method_counts_modern.items(), key=lambda t: (-t[1], t[0])):
            lines.append('- %s: %d' % (m, n))
        lines += self.audit_counts()
        lines += ['', '## Left out', '']
        for kind in sorted(self.notes):
            for reason, n in sorted(self.notes[kind].items()):
                lines.append('- %s: %s: %d' % (kind, reason, n))
        replaced = Counter(k for k, _, _ in self.replaced)
        lines += ['', '## Replaced-code tables', '']
        for k, n in sorted(replaced.items()):
            lines.append('- %s: %d' % (k, n))
        with open(os.path.join(DATA, 'COUNTS.md'), 'w') as f:
            f.write('\n'.join(lines) + '\n')


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    cat = Catalogue(sys.argv[1])
    cat.build_units()
    cat.build_primems()
    cat.build_geographic()
    cat.build_projected()
    cat.build_transformations()
    cat.build_vertical()
    cat.build_modern()
    cat.build_wiscrs()
    cat.build_replaced()
    cat.build_defstrings()
    cat.write()


if __name__ == '__main__':
    main()
