# nimbrelle_wayland_code(<variable> <folder> PROTOCOL...)
# The code of protocols, made into the folder from their files; the variable lists what is made.
function(nimbrelle_wayland_code variable folder)
    pkg_get_variable(scanner wayland-scanner wayland_scanner)
    set(codes)
    foreach(protocol IN LISTS ARGN)
        cmake_path(GET protocol STEM LAST_ONLY name)
        cmake_path(ABSOLUTE_PATH protocol)
        foreach(kind IN ITEMS client-header.h private-code.c)
            string(REGEX MATCH "^[^.]*" mode "${kind}")
            string(REGEX MATCH "[^.]*$" ending "${kind}")
            set(file "${folder}/${name}.${ending}")
            add_custom_command(OUTPUT "${file}"
                COMMAND ${CMAKE_COMMAND} -E make_directory "${folder}"
                COMMAND ${scanner} ${mode} "${protocol}" "${file}"
                DEPENDS "${protocol}" VERBATIM)
            list(APPEND codes "${file}")
        endforeach()
    endforeach()
    set(${variable} "${codes}" PARENT_SCOPE)
endfunction()
