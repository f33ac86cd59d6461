#!/usr/bin/env python3
"""Copies the registry definitions and the peer's points that the catalogue
audit tests use into tests/data, cut to the columns they need.

    python3 tools/catalogue/cut_reference.py PATH/TO/shared

reads epsg/ (the EPSG extract) and reference/ (the points an open-source peer
computed from the registry's own definitions) and writes

- tests/data/epsg_projcs_definitions.csv: every projected system of the
  extract with what its definition resolves to (datum, ellipsoid axis and
  inverse flattening, prime meridian in degrees, angular unit of the base
  system in radians, linear unit in metres, method, parameters as
  "code=value;..." in decimal degrees and the system's linear unit);
- tests/data/epsg_geogtran_definitions.csv: every transformation of the
  extract (method, ends, parameters as the extract gives them);
- tests/data/epsg_projected_points.csv and epsg_transformation_points.csv:
  the peer's points without the method columns.

Nothing is computed: the rows are the extract's and the peer's values,
joined and cut.  Standard library only; the output is deterministic.
"""

import csv
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
TEST_DATA = os.path.normpath(os.path.join(HERE, '..', '..', 'tests', 'data'))
DEGREE = '0.017453292519943295'  # angular units written as text (DMS) are degrees


def read(path):
    with open(path, newline='', encoding='utf-8') as f:
        return list(csv.DictReader(f))


def write(name, header, rows, note):
    with open(os.path.join(TEST_DATA, name), 'w', newline='', encoding='utf-8') as f:
        for line in note:
            f.write('# ' + line + '\n')
        w = csv.writer(f, lineterminator='\n')
        w.writerow(header)
        w.writerows(rows)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    shared = sys.argv[1]
    epsg = lambda name: {r['code']: r for r in read(os.path.join(shared, 'epsg', name))}
    units, ells, pms = epsg('units.csv'), epsg('ellipsoids.csv'), epsg('prime_meridians.csv')
    datums, gcs = epsg('datums.csv'), epsg('geographic_crs.csv')
    source = 'EPSG Geodetic Parameter Dataset v10.076 (IOGP), cut by tools/catalogue/cut_reference.py'
    rows = []
    for r in read(os.path.join(shared, 'epsg', 'projected_crs.csv')):
        g = gcs[r['geographic_crs_code']]
        d = datums[g['datum_code']]
        e = ells[d['ellipsoid_code']]
        params = ';'.join('%s=%s' % (r['param%d_code' % i], r['param%d_value' % i])
                          for i in range(1, 8) if r['param%d_code' % i])
        rows.append([r['code'], g['datum_code'], e['semi_major_axis_m'], e['inverse_flattening'],
                     pms[d['prime_meridian_code']]['longitude_deg'],
                     units[g['angular_unit_code']]['factor'] or DEGREE, units[r['linear_unit_code']]['factor'],
                     r['method_code'], params, r['deprecated'], r['in_bands']])
    write('epsg_projcs_definitions.csv',
          ['code', 'datum', 'axis', 'inverse_flattening', 'primem', 'angular_unit', 'linear_unit', 'method',
           'parameters', 'deprecated', 'in_bands'], rows,
          [source + ' from projected_crs.csv and the files it refers to.',
           'Angles in decimal degrees, lengths in the linear unit, units as factors to radians or metres.'])
    rows = []
    cols = ['tx', 'ty', 'tz', 'rx', 'ry', 'rz', 'scale_ppm', 'px', 'py', 'pz', 'lon_offset_deg', 'grid_file']
    for r in read(os.path.join(shared, 'epsg', 'transformations.csv')):
        rows.append([r['code'], r['method_code'], r['source_crs_code'], r['target_crs_code']] +
                    [r[c] for c in cols] + [r['deprecated'], r['in_bands']])
    write('epsg_geogtran_definitions.csv', ['code', 'method', 'source', 'target'] + cols + ['deprecated', 'in_bands'],
          rows, [source + ' from transformations.csv.'])
    peer = 'Points of an open-source peer from the registry\'s definitions (reference vectors, seed 1), '
    rows = [[r['code'], r['lon'], r['lat'], r['x'], r['y'], r['axes'], r['lon_native'], r['lat_native'],
             r['in_bands']] for r in read(os.path.join(shared, 'reference', 'epsg_projected.csv'))]
    write('epsg_projected_points.csv',
          ['code', 'lon', 'lat', 'x', 'y', 'axes', 'lon_native', 'lat_native', 'in_bands'], rows,
          [peer + 'cut by tools/catalogue/cut_reference.py (the method columns left out).',
           'Inputs are lon_native and lat_native where filled, else lon and lat; x and y in the linear unit.'])
    cols = ['code', 'lon', 'lat', 'lon2', 'lat2', 'lon_native', 'lat_native', 'lon2_native', 'lat2_native',
            'in_bands']
    rows = [[r[c] for c in cols] for r in read(os.path.join(shared, 'reference', 'epsg_transformations.csv'))]
    write('epsg_transformation_points.csv', cols, rows,
          [peer + 'cut by tools/catalogue/cut_reference.py (the method and system columns left out).',
           'Inputs are the native columns where filled, else lon and lat.'])


if __name__ == '__main__':
    main()
