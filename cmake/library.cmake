# The vision library: one source list compiled as two variants, the stubs that choose between them, and the link.
file(GLOB_RECURSE ORVCV_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*.cpp)

# Each source, or test, has the names of its own directory besides those of core.
function(orvcv_own_names)
  foreach(source ${ARGN})
    get_filename_component(directory ${source} DIRECTORY)
    get_filename_component(subsystem ${directory} NAME)
    if(EXISTS ${PROJECT_SOURCE_DIR}/src/${subsystem}/names.h AND NOT subsystem STREQUAL core)
      set_property(SOURCE ${source} APPEND PROPERTY COMPILE_DEFINITIONS "ORV_OWN_NAMES=\"${subsystem}/names.h\"")
    endif()
  endforeach()
endfunction()
orvcv_own_names(${ORVCV_SOURCES})

# The sources of a list that the n8 variant needs: all but those whose head says that u8 serves both. The linker finds
# a wrong claim, since a body of n8, or what it calls, would be undefined. Claims are read when the build is configured.
function(orvcv_two_bodies result)
  set(kept)
  foreach(source ${ARGN})
    file(STRINGS ${source} claim REGEX "^// One body serves both variants\\.$" LIMIT_COUNT 1)
    if(NOT claim)
      list(APPEND kept ${source})
    endif()
  endforeach()
  set(${result} ${kept} PARENT_SCOPE)
endfunction()

# Flags of every object. Results must not depend on the compiler's freedom: no contraction, wrapping integers.
add_library(orvcv_flags INTERFACE)
target_include_directories(orvcv_flags INTERFACE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
target_compile_options(orvcv_flags INTERFACE
  -fvisibility=hidden -ffunction-sections -fdata-sections -fcf-protection=full
  -ffp-contract=off -fwrapv -fno-math-errno -fno-trapping-math -ftree-vectorize
  $<$<CXX_COMPILER_ID:GNU>:-fvect-cost-model=dynamic>
  $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fvisibility-inlines-hidden>)
if(ORVCV_SANITIZE)
  # A kernel is inlined hundreds of times. Watching the scope of each temporary, and checks that a fault on a protected
  # page makes anyway, would turn seconds of compilation into many minutes. Images lie at odd addresses, and the vector
  # header loads single lanes through plain pointers: the check of alignment would object to what is meant.
  target_compile_options(orvcv_flags INTERFACE -fno-tree-vectorize -fno-sanitize-address-use-after-scope
    -fno-sanitize=null,pointer-overflow,object-size,vptr,return,alignment)
endif()
target_link_libraries(orvcv_flags INTERFACE OpenMP::OpenMP_CXX)

function(orvcv_variant name is_n8 sources)
  add_library(${name} OBJECT ${sources})
  target_compile_options(${name} PRIVATE -mssse3 ${ARGN})
  # What the compiler leaves out of line of the vector header, it shall keep in this variant.
  target_compile_definitions(${name} PRIVATE ORV_VARIANT=${name}_ ORV_IS_N8=${is_n8} hwy=${name}_hwy)
  target_link_libraries(${name} PRIVATE orvcv_flags)
endfunction()
orvcv_variant(u8 0 "${ORVCV_SOURCES}" -mtune=generic)
orvcv_two_bodies(ORVCV_N8_SOURCES ${ORVCV_SOURCES})
orvcv_variant(n8 1 "${ORVCV_N8_SOURCES}" -mmovbe -mtune=silvermont)

set(DISPATCH ${PROJECT_SOURCE_DIR}/src/dispatch)
file(GLOB ORVCV_NAMES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*/names.def)
add_library(orvcv_dispatch OBJECT ${DISPATCH}/stubs.S ${DISPATCH}/select.c)
add_library(orvcv_width OBJECT ${PROJECT_SOURCE_DIR}/src/core/width.c)
add_library(orvcv_width_forced OBJECT ${PROJECT_SOURCE_DIR}/src/core/width_forced.c)
foreach(object orvcv_dispatch orvcv_width orvcv_width_forced)
  target_link_libraries(${object} PRIVATE orvcv_flags)
endforeach()
set_source_files_properties(${DISPATCH}/stubs.S PROPERTIES OBJECT_DEPENDS "${DISPATCH}/manifest.def;${ORVCV_NAMES}")

# The export list, from the manifest.
set(EXPORT_MAP ${PROJECT_BINARY_DIR}/exports.map)
add_custom_command(OUTPUT ${EXPORT_MAP}
  COMMAND ${CMAKE_C_COMPILER} -E -P -x c -I${PROJECT_SOURCE_DIR}/src ${DISPATCH}/exports.map.in -o ${EXPORT_MAP}
  DEPENDS ${DISPATCH}/exports.map.in ${DISPATCH}/manifest.def ${ORVCV_NAMES})
add_custom_target(orvcv_exports DEPENDS ${EXPORT_MAP})

add_library(orvcv SHARED $<TARGET_OBJECTS:orvcv_dispatch> $<TARGET_OBJECTS:u8> $<TARGET_OBJECTS:n8>
  $<TARGET_OBJECTS:orvcv_width>)
add_dependencies(orvcv orvcv_exports)
set_target_properties(orvcv PROPERTIES OUTPUT_NAME orvcvu8 SOVERSION 8.2 LINKER_LANGUAGE CXX
  LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib LINK_DEPENDS ${EXPORT_MAP})
# One init entry and no constructors; bodies that no table names are dropped; bfd for the word of core/width.c.
target_link_options(orvcv PRIVATE -Wl,-init=ownInit -nostartfiles -fuse-ld=bfd -Wl,--gc-sections
  -Wl,--version-script=${EXPORT_MAP} -Wl,-z,defs -Wl,-z,relro -Wl,-z,now)
target_link_libraries(orvcv PRIVATE orvcore OpenMP::OpenMP_CXX m)
target_include_directories(orvcv INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
add_library(orvcv::orvcv ALIAS orvcv)
