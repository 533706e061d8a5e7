# One set of warnings and hardening flags for every target of the project.
# -Wno-restrict: GCC 12 reports it wrongly for joined strings (its bug 105651).
add_library(zr5_compiler INTERFACE)
target_compile_options(zr5_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual -Wswitch-enum
    -fstack-protector-strong -fstack-clash-protection)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i[3-6]86")
    target_compile_options(zr5_compiler INTERFACE -fcf-protection=full)
endif()
target_compile_definitions(zr5_compiler INTERFACE _GLIBCXX_ASSERTIONS)
target_link_options(zr5_compiler INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)

include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

option(ZR5_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(ZR5_FUZZ "Also prepare the code for the fuzzers, which need clang" OFF)
if(ZR5_SANITIZE)
    target_compile_options(zr5_compiler INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(zr5_compiler INTERFACE -fsanitize=address,undefined)
    if(ZR5_FUZZ)
        target_compile_options(zr5_compiler INTERFACE -fsanitize=fuzzer-no-link)
    endif()
elseif(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    target_compile_options(zr5_compiler INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
endif()

# Assertions stay on: a program that keeps people's only copies stops rather than goes on wrongly.
string(REPLACE "-DNDEBUG" "" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")
string(REPLACE "-DNDEBUG" "" CMAKE_CXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")
