# Helpers shared by the libraries, tests and benchmarks of the project.

# kez_add_family_library(<Name> ALIAS <Alias> SOURCES ... HEADERS ... [LINK ...])
#
# Builds one shared library of the family (KEZSystem, KEZMathematics, ...):
# SOVERSION, hidden symbols with a generated export header <name>_export.h
# (macro <NAME>_EXPORT), headers beside the sources, installed into the
# package under the alias KEZ::<Alias>.
function(kez_add_family_library name)
    cmake_parse_arguments(ARG "" "ALIAS" "SOURCES;HEADERS;LINK" ${ARGN})
    add_library(${name} SHARED ${ARG_SOURCES} ${ARG_HEADERS})
    add_library(KEZ::${ARG_ALIAS} ALIAS ${name})
    string(TOLOWER ${name} lower)
    string(TOUPPER ${name} upper)
    generate_export_header(${name}
        BASE_NAME ${upper}
        EXPORT_FILE_NAME "${CMAKE_CURRENT_BINARY_DIR}/${lower}_export.h")
    set_target_properties(${name} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        EXPORT_NAME ${ARG_ALIAS})
    target_include_directories(${name} PUBLIC
        "$<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>"
        "$<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}>"
        "$<INSTALL_INTERFACE:${KEZ_INSTALL_INCLUDEDIR}>")
    target_compile_features(${name} PUBLIC cxx_std_17)
    if(ARG_LINK)
        target_link_libraries(${name} PUBLIC ${ARG_LINK})
    endif()
    install(TARGETS ${name} EXPORT KEZVisualizationTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(FILES ${ARG_HEADERS} "${CMAKE_CURRENT_BINARY_DIR}/${lower}_export.h"
        DESTINATION ${KEZ_INSTALL_INCLUDEDIR})
endfunction()

# kez_add_gtest(<Name> SOURCES ... [LINK ...] [LABELS ...])
#
# A GoogleTest executable with the project's test main (a QGuiApplication on
# the offscreen platform), registered with CTest test by test. LABELS become
# CTest labels of every test; executables labelled "threads" also join the
# target KEZThreadTests, which the ThreadSanitizer build (./build.sh tsan)
# builds and runs alone.
function(kez_add_gtest name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE KEZTestMain ${ARG_LINK})
    set(labels "")
    if(ARG_LABELS)
        set(labels LABELS "${ARG_LABELS}")
    endif()
    # Discovered tests take their properties as one flat list, which splits a
    # list-valued ENVIRONMENT into bogus properties; so only the platform goes
    # here, and the sanitizers' options are compiled into the test main.
    gtest_discover_tests(${name}
        DISCOVERY_TIMEOUT 120
        PROPERTIES ${labels} ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
    if("threads" IN_LIST ARG_LABELS)
        set_property(GLOBAL APPEND PROPERTY KEZ_THREAD_TESTS ${name})
    endif()
endfunction()

# kez_add_benchmark(<Name> SOURCES ... [LINK ...])
function(kez_add_benchmark name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE benchmark::benchmark ${ARG_LINK})
endfunction()
