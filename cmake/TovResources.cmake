# Turns a folder of resources into source code.
#
#   tov_embed_resources(<target> <folder> [SYMBOL <name>])
#
# Every file below <folder> (strings.json, dialogs/ID.json, bitmaps/ID.png ...) is compiled into <target>
# as one table. Without SYMBOL the table is exported under the name by which the library finds it in a
# loaded module, so that
#
#   add_library(my_translation MODULE)
#   tov_embed_resources(my_translation res/fr)
#
# is a whole translated resource module.
set(TOV_EMBED_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/TovEmbedResources.cmake")

function(tov_embed_resources target folder)
    cmake_parse_arguments(PARSE_ARGV 2 ARG "" "SYMBOL" "")
    get_filename_component(folder "${folder}" ABSOLUTE)
    file(GLOB_RECURSE files CONFIGURE_DEPENDS "${folder}/*")
    set(output "${CMAKE_CURRENT_BINARY_DIR}/${target}_resources.cpp")
    add_custom_command(
        OUTPUT "${output}"
        COMMAND "${CMAKE_COMMAND}" "-DFOLDER=${folder}" "-DOUTPUT=${output}" "-DSYMBOL=${ARG_SYMBOL}"
                -P "${TOV_EMBED_SCRIPT}"
        DEPENDS ${files} "${TOV_EMBED_SCRIPT}"
        COMMENT "Embedding resources of ${target}"
        VERBATIM)
    target_sources(${target} PRIVATE "${output}")
    set_source_files_properties("${output}" PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    if(NOT ARG_SYMBOL)
        target_link_libraries(${target} PRIVATE Tov310::Core)
    endif()
endfunction()
