#!/bin/sh
# Checks the `ox` command-line tool: output, exit status and help texts.
# Usage: cli_test.sh PATH_TO_OX
set -u
ox=$1
failures=0

fail() {
    echo "FAIL: $1" >&2
    failures=$((failures + 1))
}

# expect NAME EXPECTED_STATUS EXPECTED_OUTPUT INPUT ARGS...
expect() {
    name=$1 status=$2 expected=$3 input=$4
    shift 4
    actual=$(printf '%s' "$input" | "$ox" "$@" 2>/dev/null)
    code=$?
    [ "$code" -eq "$status" ] || fail "$name: exit status $code, expected $status"
    [ "$actual" = "$expected" ] || fail "$name: output
$actual
expected
$expected"
}

wgs84='GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]]'

expect "version" 0 "Tessaline Version 9.3.0 (Jan  1 1970)" "" version
expect "parse normalises" 0 "$wgs84" \
    'geogcs ("GCS_WGS_1984", DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137,298.257223563]],
     PRIMEM["Greenwich",0], UNIT["Degree",0.017453292519943295])' parse
expect "parse with authority" 0 'UNIT["Meter",1.0,AUTHORITY["EPSG",9001]]' 'UNIT["Meter",1,AUTHORITY["EPSG",9001]]' \
    parse --authority 1
expect "parse rejects junk" 1 "" 'GEOGCS["x"' parse
expect "defaults" 0 'PARAMETER["False_Easting",0.0]
PARAMETER["False_Northing",0.0]
PARAMETER["Option",0.0]' "" defaults Fuller
expect "defaults by code" 0 'PARAMETER["False_Easting",0.0]
PARAMETER["False_Northing",0.0]
PARAMETER["Central_Meridian",0.0]' "" defaults 43009
expect "defaults of an unknown projection" 1 "" "" defaults Nothing
expect "unknown command" 2 "" "" frobnicate

# The catalogue commands.
wgs84_auth='GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563,AUTHORITY["EPSG",7030]],AUTHORITY["EPSG",6326]],PRIMEM["Greenwich",0.0,AUTHORITY["EPSG",8901]],UNIT["Degree",0.0174532925199433,AUTHORITY["EPSG",9102]],AUTHORITY["EPSG",4326]]'
expect "info by code" 0 "$wgs84_auth" "" info 4326
expect "info by definition string" 0 "$wgs84_auth" "" info OX_GCS_WGS_1984
expect "info of nothing" 1 "" "" info OX_GCS_NOTHING
expect "info by EPSG code" 0 "$wgs84_auth" "" info EPSG:4326
expect "info of an unknown kind" 2 "" "" info --kind things 4326
expect "info without a kind" 2 "" "" info 4326 --kind
expect "identify with an unknown option" 2 "" "" identify --frobnicate
# A plain code is a coordinate system first; --kind chooses another kind.
"$ox" info 6677 | grep -q '^PROJCS\["JGD_2011_Japan_Plane_Rectangular_CS_IX"' || fail "info 6677 is the projected system"
"$ox" info --kind datum 6677 | grep -q '^DATUM\[' || fail "info --kind datum 6677 is the datum"
"$ox" info EPSG:7855 | grep -q 'AUTHORITY\["EPSG",7855\]\]$' || fail "info EPSG:7855"
# What info prints, parse reads back, long transformations included.
for code in 1314 4326 EPSG:7855 103971 9603; do
    "$ox" info "$code" | "$ox" parse --authority 1 >/dev/null || fail "info $code | parse"
done
expect "project by EPSG code" 0 "500000.0000 5761038.2126" "15 52" project EPSG:32633
expect "identify" 0 "32633 100 WGS_1984_UTM_Zone_33N" "$("$ox" info 32633)" identify --limit 1
expect "identify nothing" 1 "" 'GEOGCS["x",DATUM["x",SPHEROID["x",6000000,300]],PRIMEM["Greenwich",0],UNIT["Degree",0.0174532925199433]]' identify
expect "identify junk" 2 "" 'UNIT["Meter",1]' identify
expect "list" 0 '119625 2D_Projective_Parametric
119624 Affine_Parametric' "" list htmethod
expect "list of an unknown kind" 2 "" "" list things
expect "code" 0 "4326 OX_GCS_WGS_1984" "$wgs84" code
expect "code of no catalogue object" 1 "0" 'UNIT["Furlong",201.168]' code -
expect "code of junk" 2 "" 'UNIT[' code
expect "project by code" 0 "500000.0000 5761038.2126" "15 52" project 32633
expect "project by definition string" 0 "500000.0000 5761038.2126" "15 52" project OX_PCS_WGS_1984_UTM_ZONE_33N
expect "project with a geographic code" 2 "" "15 52" project 4326

# Legacy projection files.
expect "prj write" 0 'Projection    STATEPLANE
Fipszone      405
Datum         NAD83
Spheroid      GRS1980
Units         METERS
Zunits        NO' "" prj write 26945
expect "prj write with a vertical system" 0 'Projection    GEOGRAPHIC
Datum         WGS84
Spheroid      WGS84
Units         DD
Zunits        METERS /* NAVD_1988 - VCS# =   5703' "" prj write --vertcs 5703 "$wgs84"
expect "prj write explicit" 0 'Projection    TRANSVERSE
Datum         WGS84
Spheroid      WGS84
Units         METERS
Zunits        NO
Parameters          0.9996 /* scale factor at central meridian
  15  0  0.0 /* longitude of central meridian
   0  0  0.0 /* latitude of origin
    500000.0 /* false easting (meters)
         0.0 /* false northing (meters)' "" prj write --explicit 32633
expect "prj write of a system without a legacy form" 1 "" "" prj write 3035
expect "prj write of no system" 2 "" "" prj write 9001
expect "prj read" 0 "$wgs84" 'Projection GEOGRAPHIC
Datum WGS84
Units DD
' prj read -
expect "prj read of a bad file" 1 "" 'PROJECTION MARS
ZONE 10
' prj read -
expect "prj read of a missing file" 2 "" "" prj read /nonexistent/file.prj
expect "prj without a subcommand" 2 "" "" prj
"$ox" prj read /nonexistent/file.prj 2>&1 | grep -q "error -101: the file cannot be opened or read" ||
    fail "prj read error text"
# The summary of a projected system after its object string, and horizons.
"$ox" info 32633 | grep -qx '# projection: Transverse_Mercator (43006), Cylindrical, conformal' || fail "info summary"
"$ox" info 32633 | grep -qx '# central meridian: 15, latitude of origin: 0 (degrees)' || fail "info summary origin"
[ "$("$ox" info 4326 | grep -c '^#')" -eq 0 ] || fail "no summary for a geographic system"
"$ox" horizon 32633 | head -1 | grep -qx '{"type":"FeatureCollection","features":\[' || fail "horizon GeoJSON"
[ "$("$ox" horizon --projected 32633 | grep -c '"type":"Feature"')" -eq 1 ] || fail "horizon one ring"
fuller='PROJCS["f",GEOGCS["g",DATUM["d",SPHEROID["s",6371000,0]],PRIMEM["Greenwich",0],UNIT["Degree",0.0174532925199433]],PROJECTION["Fuller"],PARAMETER["False_Easting",0],PARAMETER["False_Northing",0],PARAMETER["Option",0],UNIT["Meter",1]]'
[ "$("$ox" horizon --raster "$fuller" | grep -c '"type":"Feature"')" -eq 20 ] || fail "horizon raster faces"
expect "horizon of no projected system" 2 "" "" horizon 4326
expect "horizon without raster" 1 "" "" horizon --raster 32633
expect "horizon bad precision" 2 "" "" horizon --precision 99 32633
expect "horizon unknown option" 2 "" "" horizon --frobnicate 32633

"$ox" --help | grep -q "usage: ox COMMAND" || fail "--help"
for command in $("$ox" --help | awk '/^  [a-z]/ {print $1}'); do
    "$ox" "$command" --help | grep -q "usage: ox $command" || fail "$command --help"
done

[ "$failures" -eq 0 ] && echo "cli: all checks passed"
[ "$failures" -eq 0 ]
