# Dorn200: reads and writes image files by FreeImage. Loaded at run time; everything else does without it.
find_path(FREEIMAGE_INCLUDE_DIR FreeImage.h)
find_library(FREEIMAGE_LIBRARY freeimage)
mark_as_advanced(FREEIMAGE_INCLUDE_DIR FREEIMAGE_LIBRARY)
if(NOT FREEIMAGE_INCLUDE_DIR OR NOT FREEIMAGE_LIBRARY)
    message(STATUS "FreeImage was not found: the module Dorn200 is left out")
    return()
endif()

add_library(Dorn200 MODULE
    dorn200/dorn200.cpp dorn200/image_headers.cpp dorn200/image_pixels.cpp dorn200/image_save.cpp
    dorn200/image_source.cpp)
tov_compile_settings(Dorn200)
set_target_properties(Dorn200 PROPERTIES PREFIX "" SUFFIX ".so")
target_include_directories(Dorn200 PRIVATE "${PROJECT_SOURCE_DIR}")
target_include_directories(Dorn200 SYSTEM PRIVATE "${FREEIMAGE_INCLUDE_DIR}")
target_link_libraries(Dorn200 PRIVATE "${FREEIMAGE_LIBRARY}")
if(NOT TOV_SANITIZE)
    target_link_options(Dorn200 PRIVATE -Wl,--no-undefined)
endif()

# It is looked for beside the library.
install(TARGETS Dorn200 LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
