# Shared compile settings and the helpers that define modules, tests and benchmarks.

function(quillon_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wold-style-cast -Wnon-virtual-dtor)
    # GCC 12's flow-sensitive checks misfire inside inlined libstdc++ code at -O2 (GCC bugs 105329,
    # 105651, 107138), and under the sanitizers' instrumentation at any level; they stay on in plain
    # Debug builds, where they see the code as written.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND (QUILLON_ENABLE_ASAN OR QUILLON_ENABLE_TSAN OR NOT CMAKE_BUILD_TYPE STREQUAL "Debug"))
        target_compile_options(${target} PRIVATE -Wno-restrict -Wno-array-bounds -Wno-stringop-overflow
                                                 -Wno-stringop-overread -Wno-maybe-uninitialized)
    endif()
    if(QUILLON_WERROR OR CMAKE_BUILD_TYPE STREQUAL "Debug")
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(QUILLON_ENABLE_ASAN)
        # Undefined behaviour fails the test that meets it instead of scrolling past in its output.
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                 -fno-omit-frame-pointer -g1)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    if(QUILLON_ENABLE_TSAN)
        target_compile_options(${target} PRIVATE -fsanitize=thread -fno-omit-frame-pointer -g1)
        # Asio fences each handler it runs (std::atomic_thread_fence), which ThreadSanitizer does
        # not model; its handoffs between threads go through a mutex, which it does, so GCC's
        # warning about the fence (an error with -Werror) says nothing about this program.
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            target_compile_options(${target} PRIVATE -Wno-tsan)
        endif()
        target_link_options(${target} PRIVATE -fsanitize=thread)
    endif()
endfunction()

# quillon_module(<name> SOURCES ... [DEPENDS ...]) defines the static library quillon_<name>
# with the alias quillon::<name>; public headers are included as "<name>/Header.h".
function(quillon_module name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_library(quillon_${name} STATIC ${ARG_SOURCES})
    add_library(quillon::${name} ALIAS quillon_${name})
    target_include_directories(quillon_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(quillon_${name} PUBLIC ${ARG_DEPENDS})
    quillon_set_warnings(quillon_${name})
endfunction()

# quillon_test(<name> SOURCES ... DEPENDS ...) builds one GoogleTest executable and registers
# it as one CTest entry.
function(quillon_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} quillon::test_support GTest::gtest GTest::gmock GTest::gtest_main)
    quillon_set_warnings(${name})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "QUILLON_SOURCE_DIR=${PROJECT_SOURCE_DIR}")
endfunction()

# quillon_benchmark(<name> SOURCES ... DEPENDS ...) builds one Google Benchmark program;
# `make bench` runs every program named *_bench in the bin folder.
function(quillon_benchmark name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} benchmark::benchmark)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/bench)
    quillon_set_warnings(${name})
endfunction()
