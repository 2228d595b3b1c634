find_package(ICU REQUIRED COMPONENTS uc)
find_package(Freetype REQUIRED)
find_package(ZLIB REQUIRED)
if(WIN32)
  # FreeType is static there, and inflates with the same zlib.
  set_property(TARGET Freetype::Freetype APPEND PROPERTY INTERFACE_LINK_LIBRARIES ZLIB::ZLIB)
endif()
find_package(EXPAT REQUIRED)
set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)
if(KW_WITH_FONTCONFIG)
  find_package(Fontconfig REQUIRED)
endif()

# What each part is made with beyond ICU, which the public headers speak of.
set(KW_PLATFORM_DEPENDENCIES Threads::Threads ${CMAKE_DL_LIBS}
  $<$<BOOL:${KW_WITH_FONTCONFIG}>:Fontconfig::Fontconfig>
  $<$<BOOL:${WIN32}>:advapi32> $<$<BOOL:${WIN32}>:shell32>)
set(KW_COMMON_DEPENDENCIES ZLIB::ZLIB EXPAT::EXPAT Threads::Threads)
set(KW_FONTSERVICE_DEPENDENCIES Freetype::Freetype Threads::Threads)
