# SPDX-License-Identifier: MIT
# The rules for every target: warnings are errors; hardening; sanitizers and clang-tidy by option.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(cmake/Hardening.cmake)

# Files that differ by kind of system are in a folder of this name.
set(VELMARCON_SYSTEM posix)
if(WIN32)
  set(VELMARCON_SYSTEM windows)
endif()

add_library(velmarcon_build_rules INTERFACE)
target_include_directories(velmarcon_build_rules INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(velmarcon_build_rules INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-qual
  -Wcast-align -Wdouble-promotion -Wformat=2 -Wundef -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op>
  # GCC 12 warns of overlaps in the library's string concatenation that cannot happen (GCC bug 105651).
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)

# If a long has 32 bits, this makes it possible to open files of 2 GB and more, and to find them too long.
target_compile_definitions(velmarcon_build_rules INTERFACE _FILE_OFFSET_BITS=64)

# Results are defined in single and double precision, but the x87 unit of 32-bit x86 machines uses more bits.
check_cxx_source_compiles("
  #include <cfloat>
  #if FLT_EVAL_METHOD > 0
  #error intermediate results have more bits than their types
  #endif
  int main() {}"
  VELMARCON_PRECISION_OF_TYPES)
if(NOT VELMARCON_PRECISION_OF_TYPES)
  check_cxx_compiler_flag("-msse2 -mfpmath=sse" VELMARCON_HAS_SSE2)
  if(VELMARCON_HAS_SSE2)
    target_compile_options(velmarcon_build_rules INTERFACE -msse2 -mfpmath=sse)
  endif()
endif()

if(VELMARCON_HARDEN AND NOT VELMARCON_SANITIZE AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  velmarcon_harden(velmarcon_build_rules)
endif()

if(VELMARCON_SANITIZE)
  # The check of vtables (vptr) needs a file descriptor of its own, which tests of a process without any do not leave it.
  # Only the standard library's classes have vtables here.
  set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize=vptr -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
  target_compile_options(velmarcon_build_rules INTERFACE ${sanitizers})
  target_link_options(velmarcon_build_rules INTERFACE ${sanitizers})
endif()

if(VELMARCON_TIDY)
  find_program(CLANG_TIDY NAMES clang-tidy clang-tidy-14 REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY "${CLANG_TIDY}" --warnings-as-errors=* --quiet)
endif()

# velmarcon_library(NAME SOURCES...): a static library of one subsystem.
function(velmarcon_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC velmarcon_build_rules)
endfunction()

# velmarcon_pixel_sources(SOURCES...): files whose loops run over every pixel; optimised for vectors in every
# build but the debug one. Where a processor can multiply and add in one step, it still rounds after each, so that all
# processors give the same results.
function(velmarcon_pixel_sources)
  set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS $<$<NOT:$<CONFIG:Debug>>:-O3> -ffp-contract=off)
endfunction()

# velmarcon_test_code(TARGET): code that is not shipped. It is compiled for short compile times, not for speed, and the
# headers that every test includes are compiled once.
function(velmarcon_test_code target)
  set_target_properties(${target} PROPERTIES VELMARCON_TEST_CODE ON)
  # Without inlining, GCC 12 takes some of the library's string operations for accesses out of bounds.
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O1>
    "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-array-bounds;-Wno-stringop-overflow>")
  if(NOT VELMARCON_TIDY) # which looks at each file by itself
    target_precompile_headers(${target} PRIVATE <gtest/gtest.h> <filesystem> <fstream> <map> <span> <string> <vector>)
  endif()
endfunction()

# velmarcon_needs_only_the_c_library(TARGET): the program starts faster, and runs wherever the C library is installed.
function(velmarcon_needs_only_the_c_library target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT VELMARCON_SANITIZE)
    target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc)
  endif()
endfunction()

# velmarcon_find_header(NAME HEADER): the folder of a library that is all in one header becomes <NAME>_INCLUDE_DIR.
function(velmarcon_find_header name header)
  if(CMAKE_CROSSCOMPILING)
    # This header is the same for every system; the others next to it must stay out.
    find_file(${name}_HEADER ${header} PATHS /usr/include REQUIRED NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    set(folder "${CMAKE_BINARY_DIR}/headers")
    file(COPY "${${name}_HEADER}" DESTINATION "${folder}")
    set(${name}_INCLUDE_DIR "${folder}" PARENT_SCOPE)
  else()
    find_path(${name}_INCLUDE_DIR ${header} REQUIRED)
  endif()
endfunction()

# velmarcon_windows_resources(RESULT): the sources of the manifest and the version of a Windows program.
function(velmarcon_windows_resources result)
  enable_language(RC)
  configure_file("${CMAKE_SOURCE_DIR}/packaging/windows/velmarcon.rc.in" "${CMAKE_BINARY_DIR}/velmarcon.rc" @ONLY)
  configure_file("${CMAKE_SOURCE_DIR}/packaging/windows/velmarcon.manifest" "${CMAKE_BINARY_DIR}/velmarcon.manifest"
    COPYONLY)
  set(${result} "${CMAKE_BINARY_DIR}/velmarcon.rc" PARENT_SCOPE)
endfunction()
