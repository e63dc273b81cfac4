# Compile options shared by every target: strict warnings, and floating-point arithmetic that gives the
# same bits on every compiler.
add_library(qnl_options INTERFACE)
if(MSVC)
  target_compile_options(qnl_options INTERFACE /W4 /WX /fp:precise /utf-8)
else()
  target_compile_options(qnl_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -ffp-contract=off -fno-fast-math)
endif()
if(QNL_AUDIT)
  target_compile_definitions(qnl_options INTERFACE QNL_AUDIT)
endif()

# Types and functions of one name and different content are seen only where a whole program is linked with what the
# compiler knew of them. Objects carry that beside their code; the code itself does not change, and only target odr
# links with what they carry.
if(QNL_ODR)
  target_compile_options(qnl_options INTERFACE -flto -ffat-lto-objects)
  target_link_options(qnl_options INTERFACE $<$<NOT:$<BOOL:$<TARGET_PROPERTY:CHECKS_ODR>>>:-fno-lto>)
  add_custom_target(odr)
endif()

# With QNL_ODR links `program` a second time, for target `odr`, where such a clash is an error.
function(qnl_check_odr program)
  if(NOT QNL_ODR)
    return()
  endif()
  add_executable(odr_${program} EXCLUDE_FROM_ALL $<TARGET_PROPERTY:${program},SOURCES>)
  foreach(property IN ITEMS INCLUDE_DIRECTORIES COMPILE_DEFINITIONS LINK_LIBRARIES)
    get_target_property(value ${program} ${property})
    if(value)
      set_property(TARGET odr_${program} PROPERTY ${property} ${value})
    endif()
  endforeach()
  set_property(TARGET odr_${program} PROPERTY CHECKS_ODR ON)
  target_link_options(odr_${program} PRIVATE
    -O0 -flto=auto -Wodr -Werror=odr -Wlto-type-mismatch -Werror=lto-type-mismatch -Wno-alloc-size-larger-than)
  add_dependencies(odr odr_${program})
endfunction()

# The headers that most sources of a library include.
function(qnl_precompile_std target)
  if(QNL_PRECOMPILE_STD)
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <cmath> <cstdint> <filesystem> <functional>
      <iostream> <memory> <optional> <string> <string_view> <vector>)
  endif()
endfunction()
