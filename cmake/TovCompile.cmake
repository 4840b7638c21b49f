# How every target of this project is compiled: the language, the warnings and the sanitizers.
function(tov_compile_settings target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    # The same numbers on every processor: products and sums are fused only where the source says so.
    target_compile_options(${target} PRIVATE -ffp-contract=off)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
        -Wold-style-cast -Woverloaded-virtual -Wcast-align -Wformat=2 -Wundef
        $<$<BOOL:${TOV_WARNINGS_AS_ERRORS}>:-Werror>)
    if(TOV_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${TOV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=${TOV_SANITIZE})
        # Fences, of which g++ warns here, stand in Asio.
        if(TOV_SANITIZE MATCHES "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            target_compile_options(${target} PRIVATE -Wno-tsan)
        endif()
    endif()
endfunction()
