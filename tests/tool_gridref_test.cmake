# `ox georef`, `ox mgrs` and `ox geodesic` end to end: both directions, the
# options, columns passed through, comments, lines that are not converted
# and exit statuses.  Run by CTest with -DOX=<path of the ox tool>
# -DWORK=<scratch directory>.
file(MAKE_DIRECTORY "${WORK}")

include(${CMAKE_CURRENT_LIST_DIR}/tool_check.cmake)

# GEOREF
check(georef 0 "AAAA3030\nMKPG1204 kept columns\n" "-179.5 -89.5\n-1.8 51.06666666667 kept columns\n"
      ${OX} georef --digits 2)
check(georef_digits 0 "MKPG12000400\n" "-1.8 51.06666666667\n" ${OX} georef)
check(georef_reverse 0 "-1.800000 51.066667\n# comment\n\n-2.000000 51.000000 x\n"
      " MKPG1204 \n# comment\n\nMKPG x\n" ${OX} georef --reverse --precision 6)
check(georef_bad 1 "nan 3\n0x10 5\n15\n1e999 2\nNGBC0000 3\n" "nan 3\n0x10 5\n15\n1e999 2\n1 2 3\n" ${OX} georef --digits 2)
check(georef_reverse_bad 1 "MKPI1204\nmkpg1204\nMKPG123\n" "MKPI1204\nmkpg1204\nMKPG123\n" ${OX} georef --reverse)

# MGRS
check(mgrs 0 "33UWT0000061038\nZAH0000000000 x\n# c\n" "15 52\n0 90 x\n# c\n" ${OX} mgrs)
check(mgrs_options 0 "33U WT 0000 6104\n" "15 52\n" ${OX} mgrs --digits 4 --round --spaces)
check(mgrs_reverse 0 "15.000007 52.000003\n15.000007 52.000003 tail\n"
      "33UWT0000061038\n33U WT 00000 61038 tail\n" ${OX} mgrs --reverse --precision 6 --centre)
check(mgrs_reverse_corner 0 "15.000000 51.999998\n" "33UWT0000061038\n" ${OX} mgrs --reverse --precision 6)
check(mgrs_nad27 0 "18TVV5747455414\n" "-75.5 40.25\n" ${OX} mgrs --system 4267)
check(mgrs_nad27_current 0 "18TVK5747455414\n" "-75.5 40.25\n" ${OX} mgrs --system 4267 --lettering current)
check(mgrs_refused 1 "33uwt0000061038\n0 91\n" "33uwt0000061038\n0 91\n" ${OX} mgrs --reverse)
check(mgrs_bad_digits 2 "" "" ${OX} mgrs --digits 12)
check(mgrs_bad_lettering 2 "" "" ${OX} mgrs --lettering new)
check(mgrs_bad_system 2 "" "15 52\n" ${OX} mgrs --system "${WORK}/missing.prj")
check(mgrs_unknown_option 2 "" "" ${OX} mgrs --direct)

# Geodesics
check(geodesic_inverse 0 "10001965.729312724 0.000000000 180.000000000\n" "0 0 0 90\n" ${OX} geodesic --precision 9)
check(geodesic_direct 0 "8.983152841 0.000000000 x\n" "0 0 90 1000000 x\n" ${OX} geodesic --direct)
check(geodesic_sphere 0 "10007543.398010 90.000000 -90.000000\n" "0 0 90 0\n" ${OX} geodesic --precision 6 --system
      "GEOGCS[\"s\",DATUM[\"d\",SPHEROID[\"s\",6371000.0,0.0]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]")
check(geodesic_bad 1 "0 0 0\n0 91 0 0\n" "0 0 0\n0 91 0 0\n" ${OX} geodesic)
check(geodesic_flattened 2 "" "0 0 1 1\n" ${OX} geodesic --system
      "GEOGCS[\"s\",DATUM[\"d\",SPHEROID[\"s\",6371000.0,10.0]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]")
