# The built-in catalogue: tools/gencat compiles the reviewable files of data/
# into constant tables (one generated source) in the same CMake invocation.
# Nothing is read from data/ at run time.

set(OX_CATALOGUE_DATA_DIR ${PROJECT_SOURCE_DIR}/data)
set(OX_GENERATED_INCLUDE_DIR ${PROJECT_BINARY_DIR}/generated)
set(OX_CATALOGUE_SOURCE ${OX_GENERATED_INCLUDE_DIR}/ox_catalogue_data.cpp)
file(MAKE_DIRECTORY ${OX_GENERATED_INCLUDE_DIR})

set(OX_CATALOGUE_FILES
  units.csv primems.csv spheroids.csv datums.csv geogcs.csv projcs.csv
  projcs_families.csv projcs_bands.csv projcs_members.csv vdatums.csv vertcs.csv
  geogtran.csv replaced.csv superseded_codes.csv defstrings.csv superseded_names.csv)
list(TRANSFORM OX_CATALOGUE_FILES PREPEND ${OX_CATALOGUE_DATA_DIR}/)

# The generator is a build tool: built for the host, without the sanitizers
# or the library's flags.
add_executable(ox_gencat ${PROJECT_SOURCE_DIR}/tools/gencat/gencat.cpp)
set_target_properties(ox_gencat PROPERTIES CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON)
target_compile_options(ox_gencat PRIVATE -Wall -Wextra -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # A known false positive of GCC 12 on std::string concatenation.
  target_compile_options(ox_gencat PRIVATE -Wno-restrict)
endif()

add_custom_command(
  OUTPUT ${OX_CATALOGUE_SOURCE}
  COMMAND ox_gencat ${OX_CATALOGUE_DATA_DIR} ${OX_CATALOGUE_SOURCE}
  DEPENDS ox_gencat ${OX_CATALOGUE_FILES}
  COMMENT "Compiling the catalogue tables from data/"
  VERBATIM)
add_custom_target(ox_catalogue_tables DEPENDS ${OX_CATALOGUE_SOURCE})

set(OX_GENERATED_SOURCES ${OX_CATALOGUE_SOURCE})
set(OX_GENERATED_DEPENDS ox_catalogue_tables)
