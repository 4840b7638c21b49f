# libTov310Core: everything that needs no toolkit.
find_package(SQLite3 REQUIRED)
find_package(nlohmann_json 3.11 REQUIRED)
find_package(Threads REQUIRED)
find_path(TOV_ASIO_INCLUDE_DIR asio.hpp REQUIRED)

# One list for the shared library and for the objects that tests of hidden functions link.
file(GLOB TOV_CORE_SOURCES CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/vesk/*.cpp"
    "${PROJECT_SOURCE_DIR}/frame/*.cpp"
    "${PROJECT_SOURCE_DIR}/util/*.cpp"
    "${PROJECT_SOURCE_DIR}/values/*.cpp"
    "${PROJECT_SOURCE_DIR}/controls/*.cpp"
    "${PROJECT_SOURCE_DIR}/views/*.cpp"
    "${PROJECT_SOURCE_DIR}/reports/*.cpp"
    "${PROJECT_SOURCE_DIR}/imaging/*.cpp"
    "${PROJECT_SOURCE_DIR}/mail/*.cpp")

# What needs the toolkit stands beside it, and is libTov310's.
list(FILTER TOV_CORE_SOURCES EXCLUDE REGEX "_widget\\.cpp$")

add_library(Tov310CoreObjects OBJECT ${TOV_CORE_SOURCES})
tov_compile_settings(Tov310CoreObjects)
set_target_properties(Tov310CoreObjects PROPERTIES UNITY_BUILD_BATCH_SIZE 8)
target_compile_definitions(Tov310CoreObjects PRIVATE TOV_CORE_BUILD ASIO_STANDALONE ASIO_NO_DEPRECATED)
target_include_directories(Tov310CoreObjects
    PUBLIC "${PROJECT_SOURCE_DIR}/include"
    PRIVATE "${PROJECT_SOURCE_DIR}")
target_include_directories(Tov310CoreObjects SYSTEM PRIVATE "${TOV_ASIO_INCLUDE_DIR}")
target_link_libraries(Tov310CoreObjects
    PUBLIC Threads::Threads
    PRIVATE SQLite::SQLite3 nlohmann_json::nlohmann_json ${CMAKE_DL_LIBS})
tov_embed_resources(Tov310CoreObjects "${PROJECT_SOURCE_DIR}/res/zh_CN" SYMBOL builtInResources)

add_library(Tov310Core SHARED)
add_library(Tov310::Core ALIAS Tov310Core)
tov_compile_settings(Tov310Core)
set_target_properties(Tov310Core PROPERTIES
    EXPORT_NAME Core
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
target_include_directories(Tov310Core PUBLIC
    "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
target_link_libraries(Tov310Core
    PUBLIC Threads::Threads
    PRIVATE $<BUILD_INTERFACE:Tov310CoreObjects> SQLite::SQLite3 ${CMAKE_DL_LIBS})
if(NOT TOV_SANITIZE)
    set(tov_core_map "${PROJECT_SOURCE_DIR}/cmake/tov310-core.map")
    target_link_options(Tov310Core PRIVATE -Wl,--no-undefined "-Wl,--version-script=${tov_core_map}")
    set_target_properties(Tov310Core PROPERTIES LINK_DEPENDS "${tov_core_map}")
endif()
