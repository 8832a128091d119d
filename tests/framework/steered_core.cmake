# The core library that tests steer, under the file name and soname of the real one. A program that links it searches
# tests/lib before lib, so the vision library of such a program gets this file for liborvcore.so.8.2, in any link order.
set(STEERED_CORE_DIRECTORY ${PROJECT_BINARY_DIR}/tests/lib)
add_library(steered_core SHARED ${CMAKE_CURRENT_LIST_DIR}/steered_core.c)
target_include_directories(steered_core PUBLIC ${CMAKE_CURRENT_LIST_DIR})
set_target_properties(steered_core PROPERTIES OUTPUT_NAME orvcore SOVERSION 8.2 C_VISIBILITY_PRESET hidden
  LIBRARY_OUTPUT_DIRECTORY ${STEERED_CORE_DIRECTORY})
target_link_options(steered_core INTERFACE -Wl,-rpath,${STEERED_CORE_DIRECTORY})
