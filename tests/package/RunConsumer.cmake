# Script mode: install, build the consumer against the installed package, run it.

function(run_step)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "Step failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
    set(step_output "${out}" PARENT_SCOPE)
endfunction()

set(prefix "${KEZ_WORK_DIR}/prefix")
set(consumer_build "${KEZ_WORK_DIR}/build")
file(REMOVE_RECURSE "${KEZ_WORK_DIR}")

if(KEZ_BUILD_TYPE)
    run_step("${CMAKE_COMMAND}" --install "${KEZ_BUILD_DIR}" --prefix "${prefix}" --config "${KEZ_BUILD_TYPE}")
else()
    run_step("${CMAKE_COMMAND}" --install "${KEZ_BUILD_DIR}" --prefix "${prefix}")
endif()

# The package ships the German translation of the library's labels.
file(GLOB_RECURSE qm_files "${prefix}/*/KEZVisualization/translations/KEZVisualization_de.qm")
if(NOT qm_files)
    message(FATAL_ERROR "The installed package lacks translations/KEZVisualization_de.qm")
endif()

run_step("${CMAKE_COMMAND}" -S "${KEZ_CONSUMER_SOURCE_DIR}" -B "${consumer_build}"
    -G "${KEZ_GENERATOR}" "-DCMAKE_PREFIX_PATH=${prefix}" -DCMAKE_BUILD_TYPE=Debug
    "-DCMAKE_CXX_FLAGS=${KEZ_SANITIZE_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${KEZ_SANITIZE_FLAGS}")
run_step("${CMAKE_COMMAND}" --build "${consumer_build}")
run_step("${consumer_build}/KEZConsumer")
message(STATUS "${step_output}")

# The pkg-config file must resolve against the installed prefix.
find_program(PKG_CONFIG_EXECUTABLE pkg-config)
if(PKG_CONFIG_EXECUTABLE)
    file(GLOB_RECURSE pc_files "${prefix}/*/KEZVisualization.pc")
    list(LENGTH pc_files pc_count)
    if(NOT pc_count EQUAL 1)
        message(FATAL_ERROR "Expected one installed KEZVisualization.pc, found: ${pc_files}")
    endif()
    get_filename_component(pc_dir "${pc_files}" DIRECTORY)
    set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
    run_step("${PKG_CONFIG_EXECUTABLE}" --cflags --libs KEZVisualization)
    file(REAL_PATH "${prefix}" real_prefix)
    if(NOT step_output MATCHES "-lKEZVisualization" OR NOT step_output MATCHES "include/KEZ")
        message(FATAL_ERROR "pkg-config gives unexpected flags: ${step_output}")
    endif()
    execute_process(COMMAND "${PKG_CONFIG_EXECUTABLE}" --variable=includedir KEZVisualization
        OUTPUT_VARIABLE includedir OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT EXISTS "${includedir}/KEZVisualization.h")
        message(FATAL_ERROR "pkg-config includedir '${includedir}' lacks KEZVisualization.h")
    endif()
endif()
