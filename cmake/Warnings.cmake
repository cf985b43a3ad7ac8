# What our own code is compiled with; foreign headers come as system headers and stay out of it.
add_library(kelvane_warnings INTERFACE)
target_compile_options(kelvane_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${PROJECT_IS_TOP_LEVEL}>:-Werror>
  # Qt's logging macros leave their variadic part empty, which clang tells at every place that uses them.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
  # An enumerator of a class hides none of the namespace: its name is not looked for there.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-shadow>
  # IEEE arithmetic as written: results must not depend on the optimisation level.
  -ffp-contract=off
  # A project around this one may have taken them away for itself.
  $<$<NOT:$<BOOL:${PROJECT_IS_TOP_LEVEL}>>:-fno-fast-math>)
if(KELVANE_SANITIZE)
  target_compile_options(kelvane_warnings INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    # Between the instrumented lines gcc loses sight of what is initialised, in the standard library's <regex> too. The
    # other builds look.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(kelvane_warnings INTERFACE -fsanitize=address,undefined)
endif()
if(KELVANE_FUZZ)
  # Coverage counters in the library too: without them a fuzzer sees nothing of what an input does there.
  target_compile_options(kelvane_warnings INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(KELVANE_TSAN)
  target_compile_options(kelvane_warnings INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(kelvane_warnings INTERFACE -fsanitize=thread)
endif()
