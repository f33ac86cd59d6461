# `ox project` and `ox unproject` end to end: output format, precision, the
# centred inverse, failed points and exit statuses.  Run by CTest with
# -DOX=<path of the ox tool> -DWORK=<scratch directory>.
set(UTM "PROJCS[\"WGS_1984_UTM_Zone_33N\",GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Central_Meridian\",15.0],PARAMETER[\"Scale_Factor\",0.9996],PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT[\"Meter\",1.0]]")
set(PC "PROJCS[\"pc\",GEOGCS[\"g\",DATUM[\"d\",SPHEROID[\"s\",6371000.0,0.0]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Plate_Carree\"],PARAMETER[\"False_Easting\",0.0],PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Central_Meridian\",0.0],UNIT[\"Meter\",1.0]]")
file(MAKE_DIRECTORY "${WORK}")
file(WRITE "${WORK}/utm.prj" "${UTM}\n")

include(${CMAKE_CURRENT_LIST_DIR}/tool_check.cmake)

check(forward 0 "500000.0000 0.0000\n611350.1595 5345174.8423\n" "15 0\n16.5   48.25\n" ${OX} project ${UTM})
check(from_file 0 "611350.16 5345174.84\n" "16.5 48.25" ${OX} project --precision 2 "${WORK}/utm.prj")
check(inverse 0 "15.000000000 0.000000000\n16.500000000 48.250000000\n"
      "500000 0 611350.1595 5345174.8423\n" ${OX} unproject --precision 9 "${WORK}/utm.prj")
check(failed_point 1 "nan nan\n611350.1595 5345174.8423\n" "nan 5 16.5 48.25\n" ${OX} project ${UTM})
check(not_a_number 1 "nan nan\n" "abc 3\n" ${OX} project ${UTM})
check(odd_count 1 "500000.0000 0.0000\n" "15 0 7\n" ${OX} project ${UTM})
check(centred 0 "190.0 10.0\n170.0 10.0\n" "-18903377.8 1111950.8 18903377.8 1111950.8\n"
      ${OX} unproject --precision 1 --center 180 ${PC})
execute_process(COMMAND ${OX} unproject --precision 1 ${PC} INPUT_FILE "${WORK}/centred.in"
                OUTPUT_VARIABLE out RESULT_VARIABLE rc)
if(NOT out STREQUAL "-170.0 10.0\n170.0 10.0\n")
  message(FATAL_ERROR "uncentred inverse: ${out}")
endif()
check(bad_precision 2 "" "" ${OX} project --precision 18 ${UTM})
check(no_system 2 "" "" ${OX} project)
check(unreadable_system 2 "" "1 2" ${OX} project "${WORK}/missing.prj")
check(not_projected 2 "" "1 2" ${OX} project "GEOGCS[\"g\"]")
