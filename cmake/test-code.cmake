# How the code is built that nobody ships: the tests and the stand-in library. Nearly all of their
# build time goes into the headers and templates of GoogleTest, JSON and the standard library, so
# several files of one program are compiled as one, and debug information is lines alone.
option(LARKSPAN_BATCHES "Compile several files of the tests and of the stand-in as one" ON)
set(LARKSPAN_DEBUG_INFO lines CACHE STRING
    "Debug information of the tests and of the stand-in: full, lines or none")
set_property(CACHE LARKSPAN_DEBUG_INFO PROPERTY STRINGS full lines none)

set(debug_info_full "")
set(debug_info_lines -g1)
set(debug_info_none -g0)
if(NOT DEFINED debug_info_${LARKSPAN_DEBUG_INFO})
  message(FATAL_ERROR "LARKSPAN_DEBUG_INFO is full, lines or none, not ${LARKSPAN_DEBUG_INFO}")
endif()

# In a batch GCC takes the files for headers, in which an anonymous namespace would be a fault.
set(batch_options "")
if(LARKSPAN_BATCHES AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  set(batch_options -Wno-subobject-linkage)
endif()

# Optimising, GCC 12 takes the end of a joined text for one that could lie before its beginning, and
# the members of a list in braces for ones that nobody has set.
set(optimising_options "")
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13
   AND CMAKE_BUILD_TYPE STREQUAL Release)
  set(optimising_options -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread
                         -Wno-maybe-uninitialized)
endif()

function(build_as_test_code target)
  target_compile_options(${target} PRIVATE ${debug_info_${LARKSPAN_DEBUG_INFO}} ${batch_options}
                         ${optimising_options})
  set_target_properties(${target} PROPERTIES
    UNITY_BUILD ${LARKSPAN_BATCHES} UNITY_BUILD_BATCH_SIZE 6)
endfunction()

# For files that have a name of their own which another file of the program has too.
function(compile_alone)
  set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()
