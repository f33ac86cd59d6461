"""Naming rules of the built-in catalogue.

The catalogue names objects in the library's own style: words joined by "_",
years written in full, datums "D_" plus a short name, geographic systems "GCS_"
plus the datum's short name, projected systems "<prefix>_<zone>" where the
prefix is the geographic system's short form ("NAD_1983", "ED_1950") and the
zone part is rewritten from the registry's text ("UTM zone 33N" becomes
"UTM_Zone_33N").  Names that no rule gives come from the override table
(input/names.csv), applied by the caller.
"""

import re
import unicodedata

# Generic words of long datum names: a datum whose name carries one of them
# (after "Datum" is dropped) or has more than three words is named after its
# geographic system's short form instead ("World Geodetic System 1984" ->
# "WGS_1984").
GENERIC_WORDS = {
    'geodetic', 'geodesique', 'geodesico', 'geodesica', 'geodesic', 'reference', 'referencia',
    'referenz', 'system', 'sistema', 'systeme', 'reseau', 'red', 'frame', 'network', 'triangulation',
    'terrestrial', 'geocentric', 'geocentrico', 'geocentrique', 'national', 'nacional', 'ensemble',
    'spatial', 'realization', 'realisation', 'coordinate', 'coordinates', 'cadastral', 'survey',
}


def ascii_fold(text):
    """Latin letters without accents; other non-ASCII characters dropped."""
    text = unicodedata.normalize('NFKD', text)
    return ''.join(c for c in text if ord(c) < 128)


def expand_year(token, allow_two_digits=True):
    """'NAD83' -> 'NAD_1983', 'ETRS89' -> 'ETRS_1989', 'JGD2000' -> 'JGD_2000',
    '84' -> '1984'; other tokens unchanged."""
    m = re.fullmatch(r'([A-Za-z]*)(\d{2}|\d{4})', token)
    if not m:
        return token
    letters, digits = m.groups()
    if len(digits) == 2:
        if not allow_two_digits:
            return token
        digits = ('19' if int(digits) >= 20 else '20') + digits
    elif not (1800 <= int(digits) <= 2099):
        return token
    return letters + '_' + digits if letters else digits


def expand_word(word):
    """Years inside one word: 'RGNC91-93' -> 'RGNC_1991-93', 'VN-2000' ->
    'VN_2000'; words with other hyphens are kept as they are."""
    m = re.fullmatch(r'([A-Za-z]+)-(\d{4})', word)
    if m:
        return m.group(1) + '_' + m.group(2)
    m = re.fullmatch(r'([A-Za-z]*\d{2})-(\d{2})', word)
    if m:
        return expand_year(m.group(1)) + '-' + m.group(2)
    return word if '-' in word else expand_year(word)


def words_to_name(text, expand_years=True):
    """Registry text to the library's style: words joined by '_', years in
    full, parentheses and punctuation folded into separators."""
    text = ascii_fold(text)
    text = text.replace('(', ' ').replace(')', ' ').replace(',', ' ').replace('[', ' ').replace(']', ' ')
    text = text.replace("'", '').replace('"', '').replace('&', ' ')
    text = re.sub(r'(?<=[A-Za-z])-(?=[A-Za-z])', ' ', text)  # S-JTSK -> S JTSK
    out = []
    for word in text.split():
        word = word.strip('.')
        if not word:
            continue
        if expand_years:
            word = expand_word(word)
        out.append(word)
    name = '_'.join(out)
    name = re.sub(r'_+', '_', name)
    return name.strip('_')


def short_name_of_crs(epsg_name):
    """Short form of a geographic system's registry name, used as the prefix
    of projected systems and transformations: 'NAD83(CSRS)' ->
    'NAD_1983_CSRS', 'WGS 84' -> 'WGS_1984', 'Pulkovo 1942(83)' ->
    'Pulkovo_1942_Adj_1983'."""
    name = ascii_fold(epsg_name).strip()
    m = re.fullmatch(r'(Pulkovo \d{4})\((\d{2})\)', name)  # adjustments of Pulkovo 1942
    if m:
        return words_to_name(m.group(1)) + '_Adj_' + expand_year(m.group(2))
    m = re.fullmatch(r'([^()]*)\(([^()]*)\)(.*)', name)
    if m:
        main, inner, rest = m.groups()
        return '_'.join(p for p in (words_to_name(main), words_to_name(inner, False),
                                    words_to_name(rest, False)) if p)
    return words_to_name(name)


def datum_short_name(epsg_datum_name, crs_short):
    """Short name of a datum: its registry name without 'Datum' when that is
    a plain name of at most three words, else the short form of its
    geographic system."""
    words = [w for w in re.split(r'[\s()]+', ascii_fold(epsg_datum_name)) if w]
    words = [w for w in words if w.lower() not in ('datum', 'de', 'of', 'the', 'du', 'la', 'le', 'des')]
    lowered = {w.lower().strip('.,') for w in words}
    long_word = any(len(w) > 14 for w in words)
    if crs_short and (len(words) > 3 or lowered & GENERIC_WORDS or long_word):
        return crs_short
    text = re.sub(r'\bDatum\b', ' ', ascii_fold(epsg_datum_name))
    name = words_to_name(text)
    return crs_short if crs_short and (not name or name.isdigit()) else name


def ellipsoid_name(epsg_name):
    """'Clarke 1880 (RGS)' -> 'Clarke_1880_RGS', 'WGS 84' -> 'WGS_1984'."""
    return words_to_name(epsg_name)


ROMAN = [(10, 'X'), (9, 'IX'), (5, 'V'), (4, 'IV'), (1, 'I')]


def roman(n):
    out = ''
    for value, text in ROMAN:
        while n >= value:
            out += text
            n -= value
    return out


def from_roman(text):
    values = {'I': 1, 'V': 5, 'X': 10, 'L': 50, 'C': 100}
    total = 0
    for i, c in enumerate(text):
        v = values[c]
        if i + 1 < len(text) and values[text[i + 1]] > v:
            total -= v
        else:
            total += v
    return total


# Phrases of projected zone texts rewritten before the general rule.
ZONE_PHRASES = [
    (r'\b3-degree Gauss-Kruger\b', '3_Degree_GK'),
    (r'\b6-degree Gauss-Kruger\b', '6_Degree_GK'),
    (r'\bGauss-Kruger\b', 'GK'),
    (r'\b3-degree Gauss\b', '3_Degree_Gauss'),
    (r'\bGauss-Boaga\b', 'Gauss_Boaga'),
    (r'\bLambert-93\b', 'Lambert_93'),
    (r'\bLambert-', 'Lambert_'),
    (r'\bMTM zone (\d+)\b', r'MTM_\1'),
    (r'\bBLM (\d+[NS])\b', r'BLM_Zone_\1'),
    (r'\bzone\b', 'Zone'),
]

UNIT_SUFFIXES = [
    (r'\s*\(ftUS\)$', '_ftUS'), (r'\s*\(ft US\)$', '_ftUS'), (r'\s*\(ft\)$', '_ft'),
    (r'\s*\(ftIn\)$', '_ftIn'), (r'\s*\(ftCla\)$', '_ftCla'), (r'\s*\(ftSe\)$', '_ftSe'),
    (r'\s*\(ftGC\)$', '_ftGC'), (r'\s*\(ftBr\)$', '_ftBr'), (r'\s*\(chSe\)$', '_chSe'),
    (r'\s*\(chSe T\)$', '_chSe_T'), (r'\s*\(yd\)$', '_yd'), (r'\s*\(ydIn\)$', '_ydIn'),
    (r'\s*\(m\)$', '_m'), (r'\s*\(km\)$', '_km'),
]


def split_unit_suffix(zone):
    """'Arizona East (ft)' -> ('Arizona East', '(ft)')."""
    m = re.search(r'\s*(\((?:ftUS|ft US|ft|ftIn|ftCla|ftSe|ftGC|ftBr|chSe|chSe T|yd|ydIn|m|km)\))$', zone)
    if m:
        return zone[:m.start()], m.group(1)
    return zone, ''


def zone_to_name(zone):
    """Zone part of a projected system's registry name in the library's
    style: 'UTM zone 33N' -> 'UTM_Zone_33N', 'Gauss-Kruger CM 21E' ->
    'GK_CM_21E', 'TM 5 NW' -> 'TM_5_NW'.  Hyphens inside words ('TM-3',
    'ETRS-GK19FIN') and decimal points ('46.2') are kept."""
    zone = ascii_fold(zone).strip()
    suffix = ''
    for pattern, repl in UNIT_SUFFIXES:
        if re.search(pattern, zone):
            zone = re.sub(pattern, '', zone)
            suffix = repl
            break
    for pattern, repl in ZONE_PHRASES:
        zone = re.sub(pattern, repl, zone)
    zone = zone.replace('(', ' ').replace(')', ' ').replace(',', '_').replace("'", '')
    zone = zone.replace('&', ' ').replace('/', '_')
    out = []
    for word in zone.split():
        word = word.strip('.')
        if word:
            out.append(word)
    name = '_'.join(out) + suffix
    return re.sub(r'_+', '_', name).strip('_')


def defstring(prefix, name):
    """Definition string of a name: 'OX_' + kind prefix + upper-case words,
    with every character other than letters and digits folded into '_'."""
    text = re.sub(r'[^A-Za-z0-9]+', '_', ascii_fold(name)).strip('_').upper()
    return prefix + text
