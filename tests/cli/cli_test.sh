#!/bin/sh
# Checks the `ox` command-line tool: output, messages, exit statuses (0 all
# converted, 1 some not, 2 usage or unreadable input, for every command),
# the line-based point input of project and unproject, help texts and the
# manual page.
# Usage: cli_test.sh PATH_TO_OX PATH_TO_OX.1
set -u
ox=$1
manual=$2
failures=0
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
    echo "FAIL: $1" >&2
    failures=$((failures + 1))
}

# expect NAME EXPECTED_STATUS EXPECTED_OUTPUT INPUT ARGS...: runs ox ARGS with
# INPUT (backslash escapes such as \n and \t interpreted) on standard input;
# standard error goes to $scratch/err.
expect() {
    name=$1 status=$2 expected=$3 input=$4
    shift 4
    actual=$(printf '%b' "$input" | "$ox" "$@" 2> "$scratch/err")
    code=$?
    [ "$code" -eq "$status" ] || fail "$name: exit status $code, expected $status ($(cat "$scratch/err"))"
    [ "$actual" = "$expected" ] || fail "$name: output
$actual
expected
$expected"
}

# says NAME TEXT: the last command's standard error contains TEXT.
says() {
    grep -qF -- "$2" "$scratch/err" || fail "$1: standard error lacks '$2': $(cat "$scratch/err")"
}

wgs84='GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]]'
utm='PROJCS["WGS_1984_UTM_Zone_33N",GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],PARAMETER["False_Easting",500000.0],PARAMETER["False_Northing",0.0],PARAMETER["Central_Meridian",15.0],PARAMETER["Scale_Factor",0.9996],PARAMETER["Latitude_Of_Origin",0.0],UNIT["Meter",1.0]]'
plate='PROJCS["pc",GEOGCS["g",DATUM["d",SPHEROID["s",6371000.0,0.0]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]],PROJECTION["Plate_Carree"],PARAMETER["False_Easting",0.0],PARAMETER["False_Northing",0.0],PARAMETER["Central_Meridian",0.0],UNIT["Meter",1.0]]'
printf '%s\n' "$utm" > "$scratch/utm.prj"

# --- Single objects -----------------------------------------------------------
expect "version" 0 "Tessaline Version 9.3.0 (Jan  1 1970)" "" version
expect "--version" 0 "Tessaline Version 9.3.0 (Jan  1 1970)" "" --version
expect "parse normalises" 0 "$wgs84" \
    'geogcs ("GCS_WGS_1984", DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137,298.257223563]],
     PRIMEM["Greenwich",0], UNIT["Degree",0.017453292519943295])' parse
expect "parse with authority" 0 'UNIT["Meter",1.0,AUTHORITY["EPSG",9001]]' 'UNIT["Meter",1,AUTHORITY["EPSG",9001]]' \
    parse --authority 1
expect "parse: unbalanced" 1 "" 'GEOGCS["x"' parse
says "parse: unbalanced" "ends before its quotes and brackets close at line 1, column 11"
expect "parse: where and why" 1 "" 'GEOGCS["a",\n DATUM["d"x]]' parse
says "parse: where and why" "a character out of place ('x') at line 2, column 11"
expect "parse: no object" 1 "" 'GEOGCS["a",DATUM["d",SPHEROID["s",1,0]]]' parse
says "parse: no object" "a part is missing"
expect "parse: no keyword" 1 "" 'hello' parse
printf 'UNIT["m",1]\0junk' | "$ox" parse > /dev/null 2> "$scratch/err"
[ $? -eq 2 ] || fail "parse: a NUL byte: exit status"
says "parse: a NUL byte" "NUL byte"
expect "parse: missing file" 2 "" "" parse "$scratch/missing"
says "parse: missing file" "cannot open"
expect "parse: bad option" 2 "" "" parse --authority 7
expect "defaults" 0 'PARAMETER["False_Easting",0.0]
PARAMETER["False_Northing",0.0]
PARAMETER["Option",0.0]' "" defaults Fuller
expect "defaults by code" 0 'PARAMETER["False_Easting",0.0]
PARAMETER["False_Northing",0.0]
PARAMETER["Central_Meridian",0.0]' "" defaults 43009
expect "defaults of an unknown projection" 1 "" "" defaults Nothing
expect "defaults without argument" 2 "" "" defaults
expect "unknown command" 2 "" "" frobnicate

# --- The catalogue -------------------------------------------------------------
wgs84_auth='GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563,AUTHORITY["EPSG",7030]],AUTHORITY["EPSG",6326]],PRIMEM["Greenwich",0.0,AUTHORITY["EPSG",8901]],UNIT["Degree",0.0174532925199433,AUTHORITY["EPSG",9102]],AUTHORITY["EPSG",4326]]'
expect "info by code" 0 "$wgs84_auth" "" info 4326
expect "info by definition string" 0 "$wgs84_auth" "" info OX_GCS_WGS_1984
expect "info of nothing" 1 "" "" info OX_GCS_NOTHING
"$ox" info 1024 > "$scratch/out" || fail "info of a long transformation: exit status"
grep -q 'AUTHORITY\["EPSG",1024\]\]$' "$scratch/out" || fail "info of a long transformation: its authority"
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
expect "code of junk" 1 "" 'UNIT[' code
expect "code of a missing file" 2 "" "" code "$scratch/missing"

# --- Systems of project and unproject ------------------------------------------
expect "project by code" 0 "500000.0000 5761038.2126" "15 52" project 32633
expect "project by definition string" 0 "500000.0000 5761038.2126" "15 52" project OX_PCS_WGS_1984_UTM_ZONE_33N
expect "project by object string" 0 "500000.0000 5761038.2126" "15 52" project "$utm"
expect "project from a system file" 0 "611350.16 5345174.84" "16.5 48.25" project --precision 2 "$scratch/utm.prj"
expect "a geographic code" 2 "" "15 52" project 4326
says "a geographic code" "the code 4326 names a GEOGCS, not a PROJCS"
expect "an unknown code" 2 "" "15 52" project 99999
says "an unknown code" "no catalogue object has the code 99999"
expect "an unknown definition string" 2 "" "15 52" project OX_PCS_NOTHING
says "an unknown definition string" "'OX_PCS_NOTHING' names no catalogue object"
expect "a missing system file" 2 "" "15 52" project "$scratch/missing.prj"
says "a missing system file" "cannot open '$scratch/missing.prj'"
expect "a GEOGCS for a system" 2 "" "1 2" project "$wgs84"
says "a GEOGCS for a system" "the object string holds a GEOGCS, not a PROJCS"
expect "an unreadable system" 2 "" "1 2" project 'PROJCS["x",GEOGCS["g"'
says "an unreadable system" "at line 1, column 22"
expect "no system" 2 "" "" project
expect "bad precision" 2 "" "" project --precision 18 32633
expect "bad centre" 2 "" "" unproject --center 0x10 32633
expect "unknown option" 2 "" "" project --fast 32633

# --- Points: one per line --------------------------------------------------------
expect "one point per line, columns kept" 0 "500000.0000 5761038.2126 0
567109.4354 5872738.2614 0" "15 52 0\n16 53 0\n" project 32633
expect "forward" 0 "500000.0000 0.0000
611350.1595 5345174.8423" "15 0\n16.5   48.25\n" project "$utm"
expect "inverse" 0 "15.000000000 0.000000000
16.500000000 48.250000000 id7" "500000 0\n611350.1595 5345174.8423 id7\n" unproject --precision 9 "$scratch/utm.prj"
expect "comments, blank lines, tabs and CRLF" 0 "# header
500000.0000 5761038.2126	12.5

  # indented" "# header\n15\t52\t12.5\n\n  # indented\n" project 32633
printf '15 52 h\r\n' | "$ox" project 32633 > "$scratch/out"
printf '500000.0000 5761038.2126 h\r\n' | cmp -s - "$scratch/out" || fail "a carriage return is kept"
expect "lines that are no point" 1 "abc 3
15
0x10 5
nan 4
inf 4
1e400 5
12.5.3 4
500000.0000 5761038.2126" "abc 3\n15\n0x10 5\nnan 4\ninf 4\n1e400 5\n12.5.3 4\n15 52\n" project 32633
says "lines that are no point" "line 1: not a number: 'abc'"
says "lines that are no point" "line 2: not two numbers"
says "lines that are no point" "line 3: not a number: '0x10'"
says "lines that are no point" "line 6: a number out of range: '1e400'"
says "lines that are no point" "line 7: not a number: '12.5.3'"
printf '15\0junk 45\n' | "$ox" project 32633 > "$scratch/out" 2> "$scratch/err"
[ $? -eq 1 ] || fail "a NUL byte: exit status"
says "a NUL byte" "line 1: contains a NUL byte"
printf '15\0junk 45\n' | cmp -s - "$scratch/out" || fail "a line with a NUL byte is copied"
expect "a point that fails" 1 "nan nan
15.000000000 0.000000000" "15 -91e300\n500000 0\n" unproject "$utm"
expect "a latitude beyond the pole" 1 "nan nan rest" "500000 25000000 rest\n" unproject 32633
says "a latitude beyond the pole" "line 1: not converted (a latitude beyond the pole"
expect "centred" 0 "190.0 10.0
170.0 10.0" "-18903377.8 1111950.8\n18903377.8 1111950.8\n" unproject --precision 1 --center 180 "$plate"
expect "not centred" 0 "-170.0 10.0
170.0 10.0" "-18903377.8 1111950.8\n18903377.8 1111950.8\n" unproject --precision 1 "$plate"

# Input file argument, output file, many lines, an overlong line.
awk 'BEGIN { for (i = 0; i < 200000; i++) printf "%.4f %.4f %d\n", 12 + (i % 600) / 100, -70 + (i % 1500) / 10, i }' \
    > "$scratch/many.txt"
"$ox" project --precision 3 --output "$scratch/many.out" 32633 "$scratch/many.txt" 2> "$scratch/err"
[ $? -eq 0 ] || fail "many points: exit status ($(cat "$scratch/err"))"
[ "$(wc -l < "$scratch/many.out")" -eq 200000 ] || fail "many points: line count"
[ "$(tail -n 1 "$scratch/many.out" | awk '{print $3}')" = "199999" ] || fail "many points: last line"
"$ox" unproject --precision 4 32633 - < "$scratch/many.out" > "$scratch/back.txt" 2> "$scratch/err" ||
    fail "many points back: exit status"
cmp -s "$scratch/back.txt" "$scratch/many.txt" || fail "many points: the round trip changed a line"
expect "a missing input file" 2 "" "" project 32633 "$scratch/missing.txt"
says "a missing input file" "cannot open '$scratch/missing.txt'"
expect "an output that cannot be written" 2 "" "15 52" project --output "$scratch/no/such/dir" 32633
awk 'BEGIN { printf "15 52 "; for (i = 0; i < 100000; i++) printf "x"; printf "\n16 53\n" }' > "$scratch/long.txt"
"$ox" project 32633 "$scratch/long.txt" > "$scratch/long.out" 2> "$scratch/err"
[ $? -eq 1 ] || fail "an overlong line: exit status"
says "an overlong line" "line 1: longer than 65536 characters"
head -n 1 "$scratch/long.out" > "$scratch/long1"
head -n 1 "$scratch/long.txt" > "$scratch/long2"
cmp -s "$scratch/long1" "$scratch/long2" || fail "an overlong line is copied"
[ "$(tail -n 1 "$scratch/long.out")" = "567109.4354 5872738.2614" ] || fail "the line after an overlong one"

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

# --- Help texts and the manual page -------------------------------------------------
"$ox" --help | grep -q "usage: ox COMMAND" || fail "--help"
"$ox" --help | grep -q "Exit status: 0" || fail "--help states the exit statuses"
for command in $("$ox" --help | awk '/^  [a-z]/ {print $1}'); do
    "$ox" "$command" --help | grep -q "usage: ox $command" || fail "$command --help"
    grep -Eq "^\.(B|BR|BI) \"?$command|^\\\\fB$command\\\\fP" "$manual" || fail "ox.1 does not describe $command"
done
grep -q "^\.SH EXIT STATUS" "$manual" || fail "ox.1 has no EXIT STATUS"

[ "$failures" -eq 0 ] && echo "cli: all checks passed"
[ "$failures" -eq 0 ]
