# The targets of what is read by means of Windows and its C runtime, with a random driver in place of
# the fuzzer.
add_library(larkspan_windows_fuzz_support OBJECT
  HexText.cpp Library.cpp ParsedLineCheck.cpp Target.cpp windows/OutputFolder.cpp
  windows/RandomDriver.cpp)
build_as_test_code(larkspan_windows_fuzz_support)
compile_alone(ParsedLineCheck.cpp)
target_link_libraries(larkspan_windows_fuzz_support PUBLIC larkspan_core larkspan_files)

function(add_windows_fuzz_target name source)
  add_executable(fuzz_${name} ${source})
  build_as_test_code(fuzz_${name})
  target_link_libraries(fuzz_${name} PRIVATE larkspan_windows_fuzz_support)
  add_dependencies(fuzz_${name} nnotes)
endfunction()

add_windows_fuzz_target(command_line windows/CommandLineFuzz.cpp)
add_windows_fuzz_target(id_table IdTableFuzz.cpp)
add_windows_fuzz_target(marker_file MarkerFileFuzz.cpp)
add_windows_fuzz_target(run_log RunLogFuzz.cpp)
