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

# The headers that most sources of a library include.
function(qnl_precompile_std target)
  if(QNL_PRECOMPILE_STD)
    target_precompile_headers(${target} PRIVATE <algorithm> <array> <cmath> <cstdint> <filesystem> <functional>
      <iostream> <memory> <optional> <string> <string_view> <vector>)
  endif()
endfunction()
