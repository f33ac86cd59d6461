# `ox transform` end to end: a geocentric translation against a reference
# row, heights and passed-through columns, an NTv2 grid from --datahome both
# ways, points outside the grid, --between, and exit statuses.  Run by CTest
# with -DOX=<path of the ox tool> -DDATA=<tests/data> -DWORK=<scratch directory>.
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}/home/ntv2")
# 15958 names its grid "rgf93_ntf"; the file is the French NTF grid.
file(COPY_FILE "${DATA}/grids/ntv2/ntf_r93.gsb" "${WORK}/home/ntv2/rgf93_ntf.gsb")

include(${CMAKE_CURRENT_LIST_DIR}/tool_check.cmake)

# 1173 (NAD27 to WGS 84, geocentric translation): the reference gives
# -95.850272246678 36.895068305723.
check(geocentric 0 "# NAD27\n-95.850272247 36.895068306\n\n-95.850272247 36.895068306 -37.1418 id7\n"
      "# NAD27\n-95.85 36.895\n\n-95.85 36.895 0 id7\n" ${OX} transform EPSG:1173)
execute_process(COMMAND ${OX} info --kind geogtran 1173 OUTPUT_FILE "${WORK}/1173.txt")
check(from_file 0 "-95.850272 36.895068\n" "-95.85 36.895\n" ${OX} transform --precision 6 "${WORK}/1173.txt")

# NTv2 through the data home, forward and back; a point off the grid is
# reported and copied, and the exit status says so.
check(ntv2 0 "1.999277685 48.999932260\n" "2 49\n" ${OX} transform 15958 --datahome "${WORK}/home")
check(ntv2_inverse 0 "2.000000 49.000000\n" "1.999277685 48.999932260\n"
      ${OX} transform 15958 --inverse --precision 6 --datahome "${WORK}/home")
check(outside 1 "50 10\n1.999277685 48.999932260\n" "50 10\n2 49\n"
      ${OX} transform 15958 --datahome "${WORK}/home")
execute_process(COMMAND ${OX} transform 15958 --datahome "${WORK}/home" INPUT_FILE "${WORK}/outside.in"
                OUTPUT_QUIET ERROR_VARIABLE err)
if(NOT err MATCHES "line 1: point not converted")
  message(FATAL_ERROR "outside: no message on stderr (${err})")
endif()
check(no_grid 1 "2 49\n" "2 49\n" ${OX} transform 15958 --datahome "${WORK}/nowhere")
check(not_a_point 1 "abc 3\n-95.850272 36.895068\n" "abc 3\n-95.85 36.895\n"
      ${OX} transform --precision 6 1173)

check(between 0 "1241 NAD_1927_To_NAD_1983_NADCON NADCON\n1243 NAD_1927_To_NAD_1983_2 NADCON\n1313 NAD_1927_To_NAD_1983_4 NTv2\n1573 NAD_1927_To_NAD_1983_6 NTv2\n"
      "" ${OX} transform --between 4267 EPSG:4269)
check(between_reverse 0 "15958 RGF_1993_To_NTF_2 NTv2 (use --inverse)\n" "" ${OX} transform --between 4275 4171)

check(no_transformation 2 "" "" ${OX} transform)
check(unknown_option 2 "" "" ${OX} transform --bogus 1173)
check(unreadable 2 "" "1 2\n" ${OX} transform "${WORK}/missing.txt")
check(not_geogtran 2 "" "1 2\n" ${OX} transform "GEOGCS[\"g\"]")
check(bad_precision 2 "" "1 2\n" ${OX} transform --precision 18 1173)
