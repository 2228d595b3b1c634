# Object libraries collect the rooms; from them come the two shared libraries and one static
# library, in which tests reach what the shared ones hide. The seam to the operating system keeps
# no state and is no part of any interface: each shared library has its own, hidden copy.

set(KWCommon15_VERSION 15.0.0)

set(KW_PLATFORM_ROOMS platform)
set(KW_COMMON_ROOMS common)
set(KW_FONTSERVICE_ROOMS type1 cff layout fonts raster embed registry service)

function(kw_add_objects target)
  add_library(${target} OBJECT)
  set_target_properties(${target} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PRIVATE
    "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}/src")
  kw_set_warnings(${target})
endfunction()

function(kw_add_rooms)
  foreach(room IN LISTS ARGN)
    add_subdirectory("${PROJECT_SOURCE_DIR}/src/${room}" "${PROJECT_BINARY_DIR}/src/${room}")
  endforeach()
endfunction()

kw_add_objects(kwplatform_objects)
target_compile_definitions(kwplatform_objects PRIVATE
  $<$<BOOL:${KW_WITH_FONTCONFIG}>:KW_WITH_FONTCONFIG=1>)
target_link_libraries(kwplatform_objects PRIVATE ${KW_PLATFORM_DEPENDENCIES})

kw_add_objects(kwcommon_objects)
target_compile_definitions(kwcommon_objects PRIVATE KWCOMMON_BUILD)
target_link_libraries(kwcommon_objects PRIVATE ICU::uc ${KW_COMMON_DEPENDENCIES})

kw_add_objects(kwfontservice_objects)
target_compile_definitions(kwfontservice_objects PRIVATE KWFONTSERVICE_BUILD)
target_link_libraries(kwfontservice_objects PRIVATE ICU::uc ${KW_FONTSERVICE_DEPENDENCIES})

kw_add_rooms(${KW_PLATFORM_ROOMS})
kw_add_rooms(${KW_COMMON_ROOMS})
kw_add_rooms(${KW_FONTSERVICE_ROOMS})

# The generation is part of the name (17, 15); the SONAME counts incompatible changes within it.
function(kw_add_shared target export_name objects)
  add_library(${target} SHARED
    $<TARGET_OBJECTS:${objects}> $<TARGET_OBJECTS:kwplatform_objects>)
  add_library(KW::${export_name} ALIAS ${target})
  file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/include/${target}/*.h")
  target_sources(${target} PUBLIC
    FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/include" FILES ${headers})
  # The two libraries find each other wherever the installed tree is moved to.
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${export_name}
    VERSION 0.0.0
    SOVERSION 0
    INSTALL_RPATH "$<$<PLATFORM_ID:Linux>:$ORIGIN>"
    LINKER_LANGUAGE CXX
    VERIFY_INTERFACE_HEADER_SETS ON)
  target_compile_features(${target} INTERFACE cxx_std_20)
  if(WIN32)
    # "X.dll" under every compiler, with the version where Windows looks for it.
    set(version_target ${target})
    set(version "${${target}_VERSION}")
    string(REPLACE "." "," version_numbers "${version},0")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/windows/version.rc.in"
      "${PROJECT_BINARY_DIR}/version/${target}.rc" @ONLY)
    target_sources(${target} PRIVATE "${PROJECT_BINARY_DIR}/version/${target}.rc")
    set_target_properties(${target} PROPERTIES PREFIX "")
  endif()
  # clang leaves its sanitizer runtime to the program, so its symbols are open here by design.
  if(UNIX AND NOT APPLE AND NOT (KW_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES "Clang"))
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
endfunction()

kw_add_shared(KWCommon15 Common kwcommon_objects)
target_link_libraries(KWCommon15
  PUBLIC ICU::uc
  PRIVATE ${KW_COMMON_DEPENDENCIES} ${KW_PLATFORM_DEPENDENCIES})

kw_add_shared(KWFontService17 FontService kwfontservice_objects)
target_link_libraries(KWFontService17
  PUBLIC KWCommon15 ICU::uc
  PRIVATE ${KW_FONTSERVICE_DEPENDENCIES} ${KW_PLATFORM_DEPENDENCIES})

# On Windows a call into another library differs from one within: the tests' form of the font
# service is compiled for itself.
set(fontservice_objects kwfontservice_objects)
if(WIN32)
  set(fontservice_objects kwfontservice_static_objects)
  kw_add_objects(${fontservice_objects})
  target_sources(${fontservice_objects} PRIVATE
    $<TARGET_PROPERTY:kwfontservice_objects,SOURCES>)
  target_compile_definitions(${fontservice_objects} PRIVATE KW_STATIC)
  target_link_libraries(${fontservice_objects} PRIVATE ICU::uc ${KW_FONTSERVICE_DEPENDENCIES})
endif()

add_library(kw_internal STATIC EXCLUDE_FROM_ALL
  $<TARGET_OBJECTS:kwplatform_objects>
  $<TARGET_OBJECTS:kwcommon_objects>
  $<TARGET_OBJECTS:${fontservice_objects}>)
set_target_properties(kw_internal PROPERTIES LINKER_LANGUAGE CXX)
target_include_directories(kw_internal PUBLIC
  "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}/src")
target_compile_definitions(kw_internal INTERFACE KW_STATIC)
target_link_libraries(kw_internal PUBLIC
  ICU::uc ${KW_PLATFORM_DEPENDENCIES} ${KW_COMMON_DEPENDENCIES} ${KW_FONTSERVICE_DEPENDENCIES})
