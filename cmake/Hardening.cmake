# SPDX-License-Identifier: MIT
# Compiler and linker options that make a bug end the program, and nothing worse, when a damaged file triggers it. Each
# is used where it is available, except in builds without optimisation, which _FORTIFY_SOURCE needs, and under
# sanitizers, which find more.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
include(CMakePushCheckState)

# velmarcon_fortify_level(RESULT): the highest _FORTIFY_SOURCE that compiler and C library have, or 0.
function(velmarcon_fortify_level result)
  set(${result} 0 PARENT_SCOPE)
  cmake_push_check_state(RESET)
  foreach(level 3 2)
    # Some compilers set their own level, which is undone first. A C library without the level either warns or uses a
    # lower one, which glibc reports.
    set(CMAKE_REQUIRED_FLAGS "-Werror -O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level}")
    check_cxx_source_compiles("
      #include <cstdio>
      #include <cstring>
      #if defined(__USE_FORTIFY_LEVEL) && __USE_FORTIFY_LEVEL < ${level}
      #error the C library has no such level
      #endif
      int main(int argc, char** argv) { char text[8]; std::strncpy(text, argv[argc - 1], 7); return std::puts(text); }"
      VELMARCON_HAS_FORTIFY_${level})
    if(VELMARCON_HAS_FORTIFY_${level})
      set(${result} ${level} PARENT_SCOPE)
      break()
    endif()
  endforeach()
  cmake_pop_check_state()
endfunction()

# velmarcon_harden(TARGET): adds the options to TARGET, an INTERFACE library, which passes them on.
function(velmarcon_harden target)
  set(compile_options "")
  # Checked jumps work only if every part of a program supports them. The start-up code of Debian's C library does not,
  # so they do nothing there; elsewhere they may. Some compilers silently accept the flag of another processor.
  set(checked_jumps -fcf-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)")
    set(checked_jumps -mbranch-protection=standard)
  endif()
  # Windows loads every program at any address; its linker has another option for that.
  set(any_address -fPIE)
  set(every_page -fstack-clash-protection)
  set(link_flags -pie LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
  if(WIN32)
    set(any_address "")
    # On Windows, functions touch every page of a large frame anyway, and GCC 12 fails on some functions with the flag.
    set(every_page "")
    # On Windows, this flag links the separate library that holds the guard functions.
    set(link_flags -fstack-protector-strong LINKER:--dynamicbase LINKER:--high-entropy-va LINKER:--nxcompat)
  endif()
  foreach(flag ${any_address} -fstack-protector-strong ${every_page} ${checked_jumps})
    string(MAKE_C_IDENTIFIER "VELMARCON_HAS${flag}" has_flag)
    check_cxx_compiler_flag(${flag} ${has_flag})
    if(${has_flag})
      list(APPEND compile_options ${flag})
    endif()
  endforeach()

  # Checked calls take a third of the compile time of a test; the code under test keeps them.
  velmarcon_fortify_level(level)
  if(level)
    list(APPEND compile_options
      "$<$<NOT:$<BOOL:$<TARGET_PROPERTY:VELMARCON_TEST_CODE>>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${level}>")
  endif()

  set(link_options "")
  foreach(flag ${link_flags})
    string(MAKE_C_IDENTIFIER "VELMARCON_HAS_LINK_${flag}" has_flag)
    check_linker_flag(CXX ${flag} ${has_flag})
    if(${has_flag})
      list(APPEND link_options ${flag})
    endif()
  endforeach()

  target_compile_options(${target} INTERFACE "$<$<NOT:$<CONFIG:Debug>>:${compile_options}>")
  target_compile_definitions(${target} INTERFACE $<$<NOT:$<CONFIG:Debug>>:_GLIBCXX_ASSERTIONS>)
  target_link_options(${target} INTERFACE "$<$<NOT:$<CONFIG:Debug>>:${link_options}>")
endfunction()
