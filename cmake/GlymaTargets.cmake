# Target helpers: every folder of src/ is one target with explicit sources, headers that compile alone
# (target all_verify_interface_header_sets) and the project's warnings.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)

find_program(GLYMA_CCACHE ccache)
if(GLYMA_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${GLYMA_CCACHE}")
endif()

add_library(glyma_options INTERFACE)
target_compile_options(glyma_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(GLYMA_SANITIZE)
    # Line numbers are all that a report needs of the debugging information.
    target_compile_options(glyma_options INTERFACE "-fsanitize=${GLYMA_SANITIZE}" -g1 -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(glyma_options INTERFACE "-fsanitize=${GLYMA_SANITIZE}")
    # gcc's flow analysis sees uninitialised values in its own instrumentation.
    target_compile_options(glyma_options INTERFACE -Wno-maybe-uninitialized)
endif()

# glyma_library(NAME HEADERS ... SOURCES ... PUBLIC ... PRIVATE ...)
# A static library (header-only when it has no sources), also known as Glyma::<name without the prefix>.
function(glyma_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;SOURCES;PUBLIC;PRIVATE")
    if(arg_SOURCES)
        add_library(${name} STATIC ${arg_SOURCES})
        set(scope PUBLIC)
        target_link_libraries(${name} PRIVATE glyma_options)
    else()
        add_library(${name} INTERFACE)
        set(scope INTERFACE)
    endif()
    string(REPLACE "glyma_" "Glyma::" alias ${name})
    add_library(${alias} ALIAS ${name})
    target_sources(${name} ${scope} FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src" FILES ${arg_HEADERS})
    target_link_libraries(${name} ${scope} ${arg_PUBLIC})
    if(arg_PRIVATE)
        target_link_libraries(${name} PRIVATE ${arg_PRIVATE})
    endif()
endfunction()

# glyma_test(NAME SOURCES ... LIBRARIES ... [LABELS ...] [SERIAL])
# A GoogleTest program; one CTest entry a test case. SERIAL: has the machine to itself, because it tells times.
function(glyma_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "SERIAL" "" "SOURCES;LIBRARIES;LABELS")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE glyma_options ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
    target_compile_definitions(${name} PRIVATE "GLYMA_SOURCE_DIR=\"${PROJECT_SOURCE_DIR}\"")
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES LABELS "${arg_LABELS}" RUN_SERIAL "${arg_SERIAL}")
endfunction()
