# What every target of the project is built with.

include(CheckCXXCompilerFlag)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_PCH_INSTANTIATE_TEMPLATES ON)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 14)
    message(FATAL_ERROR "No suitable compiler: GCC before 14 miscompiles coroutines without a word")
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 16)
    message(FATAL_ERROR "No suitable compiler: clang before 16 lacks parts of C++20")
endif()

find_program(NIMBRELLE_CCACHE ccache)
if(NIMBRELLE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        ${NIMBRELLE_CCACHE})
endif()
# A start loads nothing that is only a dependency of a dependency.
add_link_options(-Wl,--as-needed)
find_program(NIMBRELLE_MOLD mold)
if(NIMBRELLE_MOLD)
    add_link_options(-fuse-ld=mold)
endif()

add_compile_options(
    -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough
    $<$<BOOL:${NIMBRELLE_WERROR}>:-Werror>
    "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # It counts members that have a default, and sees dangling references in what returns a member of its own, a
    # shadowed member in each parameter of that name, and an else that dangles in the macros of the tests.
    add_compile_options(
        -Wno-missing-field-initializers -Wno-dangling-reference -Wno-shadow -Wshadow=local -Wno-dangling-else)
else()
    # A member that is not named is empty, as its type has it.
    check_cxx_compiler_flag(-Wmissing-designated-field-initializers NIMBRELLE_HAS_DESIGNATED_WARNING)
    if(NIMBRELLE_HAS_DESIGNATED_WARNING)
        add_compile_options(-Wno-missing-designated-field-initializers)
    endif()
endif()
add_compile_definitions(
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(NIMBRELLE_SANITIZE)
    add_compile_options(-fsanitize=${NIMBRELLE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        add_compile_options(-fsanitize-ignorelist=${CMAKE_SOURCE_DIR}/cmake/sanitize-ignorelist.txt)
    elseif(NIMBRELLE_SANITIZE MATCHES "undefined") # GCC has no list of files to leave out
        add_compile_options(-fno-sanitize=pointer-overflow)
    endif()
    add_link_options(-fsanitize=${NIMBRELLE_SANITIZE})
endif()
# What the built programs run with. The toolkit's libraries are not instrumented: what they do among themselves
# can't be judged, so their calls are left out.
set(NIMBRELLE_RUN_ENVIRONMENT "")
if(NIMBRELLE_SANITIZE MATCHES "thread")
    set(NIMBRELLE_RUN_ENVIRONMENT "TSAN_OPTIONS=ignore_noninstrumented_modules=1")
endif()
if(NIMBRELLE_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Binaries stand at the top of the build folder, where people look for them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
