# SPDX-License-Identifier: MIT
# What compiler and linker can do so that a bug which a damaged file finds ends the program, and no more than that.
# Each measure is taken where it is to be had. Not in builds without optimisation, which _FORTIFY_SOURCE needs, and not
# under sanitizers, which see more.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
include(CMakePushCheckState)

# velmarcon_fortify_level(RESULT): the highest _FORTIFY_SOURCE that compiler and C library have, or 0.
function(velmarcon_fortify_level result)
  set(${result} 0 PARENT_SCOPE)
  cmake_push_check_state(RESET)
  foreach(level 3 2)
    # Some compilers set a level of their own, which is undone first. A C library without the level either warns or
    # falls back to a lower one, which glibc tells.
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

# velmarcon_harden(TARGET): adds the measures to what TARGET, an INTERFACE library, hands on.
function(velmarcon_harden target)
  set(compile_options "")
  # Checked jumps take effect only in a program whose every part is made for them. The start-up code of Debian's C library
  # is not, so there they do nothing; elsewhere they may. Some compilers take the flag of another processor in silence.
  set(checked_jumps -fcf-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)")
    set(checked_jumps -mbranch-protection=standard)
  endif()
  # Windows loads every program at any address; how the linker says that there is another matter.
  set(any_address -fPIE)
  set(every_page -fstack-clash-protection)
  set(link_flags -pie LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
  if(WIN32)
    set(any_address "")
    # Functions there touch every page of a large frame as it is; and GCC 12 fails at some functions with the flag.
    set(every_page "")
    # The guard functions have a library of their own there, which this flag links.
    set(link_flags -fstack-protector-strong LINKER:--dynamicbase LINKER:--high-entropy-va LINKER:--nxcompat)
  endif()
  foreach(flag ${any_address} -fstack-protector-strong ${every_page} ${checked_jumps})
    string(MAKE_C_IDENTIFIER "VELMARCON_HAS${flag}" has_flag)
    check_cxx_compiler_flag(${flag} ${has_flag})
    if(${has_flag})
      list(APPEND compile_options ${flag})
    endif()
  endforeach()

  # Calls that are checked take a third of a test's compilation; what the tests run keeps them.
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
