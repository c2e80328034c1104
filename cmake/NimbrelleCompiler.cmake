# Chooses the compiler where nobody else has: clang from 16 on, else GCC from 14 on; the system's own, or else the
# oldest, since newer ones may refuse the system's headers.
# To be included before project().
if(DEFINED CMAKE_CXX_COMPILER OR DEFINED ENV{CXX})
    return()
endif()

# OUT gets whether the program is at least of this major version and can read the libraries that are installed.
function(nimbrelle_is_suitable program oldest out)
    execute_process(COMMAND "${program}" -dumpversion OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE
        ERROR_QUIET)
    if(version VERSION_LESS oldest)
        return()
    endif()
    execute_process(
        COMMAND "${program}" -std=c++20 -fsyntax-only "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/CompilerProbe.cpp"
        RESULT_VARIABLE failure OUTPUT_QUIET ERROR_QUIET)
    if(failure)
        message(STATUS "Not used, for it refuses this system's headers: ${program}")
    else()
        set(${out} TRUE PARENT_SCOPE)
    endif()
endfunction()

set(oldest_of_clang++ 16)
set(oldest_of_g++ 14)
foreach(name clang++ g++)
    set(versioned "")
    foreach(version RANGE ${oldest_of_${name}} 30)
        list(APPEND versioned ${name}-${version})
    endforeach()
    foreach(candidate ${name} ${versioned})
        find_program(found ${candidate} NO_CACHE)
        set(is_suitable FALSE)
        if(found)
            nimbrelle_is_suitable("${found}" ${oldest_of_${name}} is_suitable)
        endif()
        if(is_suitable)
            set(CMAKE_CXX_COMPILER "${found}")
            return()
        endif()
        unset(found)
    endforeach()
endforeach()
message(FATAL_ERROR "No suitable compiler: clang 16 or newer, or GCC 14 or newer, is needed")
