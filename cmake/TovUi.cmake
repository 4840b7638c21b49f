# libTov310: windows, controls and dialogs on Qt Widgets. In the folders that it shares with libTov310Core its
# sources end in _widget.cpp; platform/ is all its own.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets PrintSupport)

file(GLOB TOV_UI_SOURCES CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/platform/*.cpp"
    "${PROJECT_SOURCE_DIR}/controls/*_widget.cpp"
    "${PROJECT_SOURCE_DIR}/imaging/*_widget.cpp"
    "${PROJECT_SOURCE_DIR}/reports/*_widget.cpp"
    "${PROJECT_SOURCE_DIR}/views/*_widget.cpp")

# Classes with signals have their meta-objects made.
set(TOV_MOC_HEADERS "")
file(GLOB tov_headers CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/include/tov310/*.h" "${PROJECT_SOURCE_DIR}/platform/*.h")
foreach(header IN LISTS tov_headers)
    file(STRINGS "${header}" objects REGEX "Q_OBJECT" LIMIT_COUNT 1)
    if(objects)
        list(APPEND TOV_MOC_HEADERS "${header}")
    endif()
endforeach()

add_library(Tov310 SHARED ${TOV_UI_SOURCES} ${TOV_MOC_HEADERS})
add_library(Tov310::Tov310 ALIAS Tov310)
tov_compile_settings(Tov310)
set_target_properties(Tov310 PROPERTIES
    AUTOMOC ON
    UNITY_BUILD_BATCH_SIZE 8
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
target_compile_definitions(Tov310 PRIVATE TOV_UI_BUILD QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)
target_include_directories(Tov310
    PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>"
           "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>"
    PRIVATE "${PROJECT_SOURCE_DIR}")
target_link_libraries(Tov310
    PUBLIC Tov310::Core Qt6::Widgets
    PRIVATE Qt6::PrintSupport nlohmann_json::nlohmann_json)
