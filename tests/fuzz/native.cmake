# The native targets. The fuzzer follows the product's code alone, not that of the stand-in library.
target_compile_options(larkspan_readers PRIVATE -fsanitize=fuzzer-no-link)

add_library(larkspan_fuzz_support STATIC
  EntryChecks.cpp Library.cpp PrintedValues.cpp PrintedXml.cpp Target.cpp)
target_link_libraries(larkspan_fuzz_support PUBLIC larkspan_readers larkspan_xml_reader)

# What reads the files of the output folder and the arguments. What of it is the system's has a
# stand-in in native/.
add_library(larkspan_fuzzed_files STATIC
  ${CMAKE_SOURCE_DIR}/app/CommandLine.cpp ${CMAKE_SOURCE_DIR}/base/HexNumberFile.cpp
  ${CMAKE_SOURCE_DIR}/base/OutputPaths.cpp ${CMAKE_SOURCE_DIR}/base/Settings.cpp
  ${CMAKE_SOURCE_DIR}/export/IdTableFile.cpp ${CMAKE_SOURCE_DIR}/notes/IdTables.cpp
  ${CMAKE_SOURCE_DIR}/report/MarkerFile.cpp ${CMAKE_SOURCE_DIR}/supervision/LogCounts.cpp)
target_link_libraries(larkspan_fuzzed_files PUBLIC larkspan_readers)
target_compile_options(larkspan_fuzzed_files PRIVATE -fsanitize=fuzzer-no-link)
add_library(larkspan_fuzzed_files_support OBJECT
  HexText.cpp ParsedLineCheck.cpp native/Formats.cpp native/MemoryFiles.cpp
  native/OutputFolder.cpp native/Silence.cpp)
target_link_libraries(larkspan_fuzzed_files_support PUBLIC larkspan_fuzzed_files
                      larkspan_fuzz_support)

function(add_fuzz_target name)
  add_executable(fuzz_${name} ${ARGN})
  target_link_libraries(fuzz_${name} PRIVATE larkspan_fuzz_support)
  target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
endfunction()

function(add_file_fuzz_target name source)
  add_fuzz_target(${name} ${source})
  target_link_libraries(fuzz_${name} PRIVATE larkspan_fuzzed_files_support)
endfunction()

add_fuzz_target(database_info DatabaseInfoFuzz.cpp ${CMAKE_SOURCE_DIR}/notes/Properties.cpp)
add_fuzz_target(dxl_text DxlTextFuzz.cpp)
add_fuzz_target(item_value ItemValueFuzz.cpp)
add_fuzz_target(summary SummaryFuzz.cpp)
add_fuzz_target(text_list TextListFuzz.cpp)
add_fuzz_target(view_entries ViewEntriesFuzz.cpp)
add_fuzz_target(view_format ViewFormatFuzz.cpp)
add_file_fuzz_target(arguments ArgumentsFuzz.cpp)
add_file_fuzz_target(id_table IdTableFuzz.cpp)
add_file_fuzz_target(marker_file MarkerFileFuzz.cpp)
add_file_fuzz_target(run_log RunLogFuzz.cpp)
set_source_files_properties(${CMAKE_SOURCE_DIR}/notes/Properties.cpp PROPERTIES
  COMPILE_OPTIONS -fsanitize=fuzzer-no-link)
