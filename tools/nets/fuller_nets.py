#!/usr/bin/env python3
"""Derives the nets of the "Fuller" projection and prints them as C++ tables
(src/projection/ox_fuller.cpp pastes the output of `fuller_nets.py --cpp`).

The icosahedron is Fuller's: one vertex at 64.7 N 10.536199 E and a second
on the great circle towards 2.300882 N 5.245390 W (Fuller 1954; Gray 1995,
"Exact transformation equations for Fuller's world map", Cartographica
32(3)); the other ten follow from the solid.  Vertices are numbered as in
Fuller's table (1-6 the northern ring, 7-12 their antipodes: 7 = -5, 8 = -6,
9 = -2, 10 = -3, 11 = -4, 12 = -1).

A net is a spanning tree of the faces' adjacency (19 of the 30 edges kept
joined), laid out edge to edge on the triangular lattice; a face is the
reflection of its parent across their common edge.  Lattice point (i, j) is
i (1, 0) + j (1/2, sqrt 3 / 2) in units of the edge.

  Option 0, "world island": the tree of greatest weight that lays out without
  overlap, each edge weighed by how much land it crosses (LAND_SAMPLES: of 59
  points spaced evenly along the edge, those on land in Natural Earth's
  1:110m land polygons, Antarctica south of 80 S included), so that the cuts
  run through the oceans and the continents stay joined.
  Option 1, "strip": the ten faces of the equatorial band in a row, cut
  between the faces on either side of edge 5-9 (the north Pacific), the five
  northern faces joined above it and the five southern ones below.

Each net is turned by a multiple of 60 degrees to be widest along x (the north
up, of two such turns), and its
outline is traced counter-clockwise from its lowest-leftmost lattice point.
"""
import math
import sys

DEG = math.pi / 180
FULLER_1 = (10.536199, 64.7)
FULLER_2 = (-5.245390, 2.300882)
ANTIPODES = {7: 5, 8: 6, 9: 2, 10: 3, 11: 4, 12: 1}
LAND_SAMPLES = {(1, 2): 45, (1, 3): 42, (1, 4): 33, (1, 5): 21, (2, 3): 41, (2, 7): 1, (2, 11): 1, (3, 4): 39,
                (3, 8): 1, (4, 5): 20, (4, 8): 18, (4, 9): 6, (5, 6): 35, (6, 10): 5, (6, 11): 45, (7, 12): 26,
                (8, 9): 29, (8, 12): 10, (9, 12): 1, (10, 11): 11, (10, 12): 1, (11, 12): 3}
STRIP_CUT = (5, 9)


def vec(lon, lat):
    return (math.cos(lat * DEG) * math.cos(lon * DEG), math.cos(lat * DEG) * math.sin(lon * DEG), math.sin(lat * DEG))


def dot(a, b):
    return sum(x * y for x, y in zip(a, b))


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    n = math.sqrt(dot(a, a))
    return tuple(x / n for x in a)


def rotate(v, axis, angle):
    c, s = math.cos(angle), math.sin(angle)
    k = cross(axis, v)
    d = dot(axis, v) * (1 - c)
    return tuple(v[i] * c + k[i] * s + axis[i] * d for i in range(3))


def vertices():
    v1 = vec(*FULLER_1)
    p2 = vec(*FULLER_2)
    t = unit(tuple(p2[i] - dot(p2, v1) * v1[i] for i in range(3)))
    edge = math.atan(2.0)
    v2 = tuple(v1[i] * math.cos(edge) + t[i] * math.sin(edge) for i in range(3))
    ring = [rotate(v2, v1, k * 2 * math.pi / 5) for k in range(5)]
    if dot(ring[1], vec(58.157706, 10.447378)) < 0.99:  # Fuller's vertex 3 follows vertex 2 eastwards
        ring = [rotate(v2, v1, -k * 2 * math.pi / 5) for k in range(5)]
    v = {1: v1}
    for k in range(5):
        v[2 + k] = ring[k]
    for a, b in ANTIPODES.items():
        v[a] = tuple(-x for x in v[b])
    return v


V = vertices()
ADJACENT = sorted((a, b) for a in V for b in V if a < b and abs(dot(V[a], V[b]) - 1 / math.sqrt(5)) < 1e-9)
FACES = sorted((a, b, c) for a in V for b in V for c in V if a < b < c and {(a, b), (b, c), (a, c)} <= set(ADJACENT))
assert len(ADJACENT) == 30 and len(FACES) == 20


def shared(f, g):
    return tuple(sorted(set(f) & set(g)))


DUAL = [(a, b) for a in range(20) for b in range(a + 1, 20) if len(shared(FACES[a], FACES[b])) == 2]


def cart(p):
    return (p[0] + 0.5 * p[1], p[1] * math.sqrt(3) / 2)


def layout(tree, root=0):
    """Lattice positions of every face's vertices, the root counter-clockwise
    as seen from outside the sphere."""
    a, b, c = FACES[root]
    if dot(V[a], cross(V[b], V[c])) < 0:
        b, c = c, b
    pos = {root: {a: (0, 0), b: (1, 0), c: (0, 1)}}
    children = {}
    for f, g in tree:
        children.setdefault(f, []).append(g)
        children.setdefault(g, []).append(f)
    stack = [root]
    while stack:
        f = stack.pop()
        for g in children.get(f, []):
            if g in pos:
                continue
            e = shared(FACES[f], FACES[g])
            (r,) = set(FACES[f]) - set(e)
            (t,) = set(FACES[g]) - set(e)
            p, q, s = pos[f][e[0]], pos[f][e[1]], pos[f][r]
            pos[g] = {e[0]: p, e[1]: q, t: (p[0] + q[0] - s[0], p[1] + q[1] - s[1])}
            stack.append(g)
    return pos


def overlaps(pos):
    centres = [tuple(sum(p[k] for p in d.values()) for k in range(2)) for d in pos.values()]
    return len(set(centres)) != len(centres)


def world_island():
    order = sorted(DUAL, key=lambda d: (-LAND_SAMPLES.get(shared(FACES[d[0]], FACES[d[1]]), 0), d))
    group = list(range(20))

    def find(x):
        while group[x] != x:
            x = group[x]
        return x

    tree = []
    for f, g in order:
        rf, rg = find(f), find(g)
        if rf == rg or overlaps(layout(tree + [(f, g)], f)):
            continue
        group[rf] = rg
        tree.append((f, g))
    assert len(tree) == 19
    return tree


def strip():
    band = [f for f in range(20) if 1 not in FACES[f] and 12 not in FACES[f]]
    cut = [f for f in band if set(STRIP_CUT) <= set(FACES[f])]
    chain = [cut[0]]
    while len(chain) < 10:
        nxt = [g for g in band if g not in chain and len(shared(FACES[chain[-1]], FACES[g])) == 2 and
               not (len(chain) == 1 and g == cut[1])]
        chain.append(nxt[0])
    tree = list(zip(chain, chain[1:]))
    for f in range(20):
        if f not in band:
            (g,) = [g for g in band if len(shared(FACES[f], FACES[g])) == 2]
            tree.append((g, f))
    return tree


def rot60(p, k):
    for _ in range(k % 6):
        p = (-p[1], p[0] + p[1])
    return p


def widest(pos):
    """The net turned to be widest along x; of two such turns, the one that
    puts the north pole's faces (around vertex 1) higher."""
    best = None
    for k in range(6):
        turned = {f: {v: rot60(p, k) for v, p in d.items()} for f, d in pos.items()}
        pts = [cart(p) for d in turned.values() for p in d.values()]
        w = max(x for x, _ in pts) - min(x for x, _ in pts)
        h = max(y for _, y in pts) - min(y for _, y in pts)
        north = sum(cart(p)[1] for d in turned.values() if 1 in d for p in d.values()) - 5 * sum(
            y for _, y in pts) / len(pts) * 3
        key = (round(w / h, 9), north)
        if best is None or key > best[0]:
            best = (key, turned)
    return best[1]


def ccw(d):
    vs = list(d)
    p = [cart(d[v]) for v in vs]
    area = (p[1][0] - p[0][0]) * (p[2][1] - p[0][1]) - (p[1][1] - p[0][1]) * (p[2][0] - p[0][0])
    return vs if area > 0 else [vs[0], vs[2], vs[1]]


def outline(pos):
    edges = [(d[vs[k]], d[vs[(k + 1) % 3]]) for d in pos.values() for vs in [ccw(d)] for k in range(3)]
    boundary = [e for e in edges if (e[1], e[0]) not in set(edges)]
    start = min(boundary, key=lambda e: (cart(e[0])[1], cart(e[0])[0]))
    ring, cur, used = [start[0]], start, {start}
    while True:
        v = cur[1]
        ring.append(v)
        cands = [e[1] for e in boundary if e[0] == v and e not in used]
        if not cands:
            break
        din = tuple(cart(cur[1])[k] - cart(cur[0])[k] for k in range(2))

        def turn(w):  # the rightmost turn keeps to the outline at a point where faces touch
            dw = tuple(cart(w)[k] - cart(v)[k] for k in range(2))
            return math.atan2(din[0] * dw[1] - din[1] * dw[0], din[0] * dw[0] + din[1] * dw[1])

        cur = (v, min(cands, key=turn))
        used.add(cur)
    assert len(used) == len(boundary) and ring[0] == ring[-1]
    return ring


def emit(name, comment, pos):
    ring = outline(pos)
    print(f"// {comment}")
    print(f"constexpr NetFace k{name}Faces[kFaces] = {{")
    for f in range(20):
        vs = ccw(pos[f])
        cells = ", ".join(f"{{{v - 1}, {pos[f][v][0]}, {pos[f][v][1]}}}" for v in vs)
        print(f"    {{{{{cells}}}}},")
    print("};")
    pts = ", ".join(f"{{{i}, {j}}}" for i, j in ring[:-1])
    print(f"constexpr LatticePoint k{name}Outline[] = {{{pts}}};")


if __name__ == "__main__":
    if "--cpp" not in sys.argv:
        for n, p in sorted(V.items()):
            lon = math.atan2(p[1], p[0]) / DEG
            lat = math.asin(p[2]) / DEG
            print(f"vertex {n}: {lon:.9f} {lat:.9f}")
        sys.exit(0)
    print("// Generated by tools/nets/fuller_nets.py --cpp: each face's vertices (Fuller's")
    print("// numbers less one) counter-clockwise with their lattice points, and the")
    print("// outline of the net counter-clockwise.")
    emit("WorldIsland", "Option 0: the world island.", widest(layout(world_island())))
    emit("Strip", "Option 1: the strip.", widest(layout(strip())))
