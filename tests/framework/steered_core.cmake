# The core library that tests steer, under the file name and soname of the real one. Programs link steered_core; it is
# given to them as linker flags, since CMake refuses to order two directories that hold files of one name: tests/lib is
# searched before lib, by the linker (options precede the directories that CMake adds) and by the loader, so the vision
# library of such a program gets the steered file, in any link order.
set(STEERED_CORE_DIRECTORY ${PROJECT_BINARY_DIR}/tests/lib)
add_library(steered_core_file SHARED ${CMAKE_CURRENT_LIST_DIR}/steered_core.c)
set_target_properties(steered_core_file PROPERTIES OUTPUT_NAME orvcore SOVERSION 8.2 C_VISIBILITY_PRESET hidden
  LIBRARY_OUTPUT_DIRECTORY ${STEERED_CORE_DIRECTORY})
add_library(steered_core INTERFACE)
add_dependencies(steered_core steered_core_file)
target_include_directories(steered_core INTERFACE ${CMAKE_CURRENT_LIST_DIR})
target_link_options(steered_core INTERFACE -L${STEERED_CORE_DIRECTORY} -Wl,-rpath,${STEERED_CORE_DIRECTORY})
target_link_libraries(steered_core INTERFACE -l:liborvcore.so.8.2)
