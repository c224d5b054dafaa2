# The macOS shell and the menu-bar application bundle SodamJari.app.

enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)

# Every system framework the shell links, in one place.
set(SODAM_MAC_FRAMEWORKS
    AppKit
    AVFoundation
    CoreFoundation
    CoreGraphics
    CoreImage
    CoreMedia
    CoreVideo
    Foundation
    IOKit
    QuartzCore
    Security
    ServiceManagement
    Vision)

file(GLOB SODAM_MAC_SOURCES CONFIGURE_DEPENDS src/mac/*.mm)
list(FILTER SODAM_MAC_SOURCES EXCLUDE REGEX ".*/main\\.mm$")
add_library(sodam_mac STATIC ${SODAM_MAC_SOURCES})
target_link_libraries(sodam_mac PUBLIC sodam_core)
target_compile_options(sodam_mac PRIVATE -fobjc-arc)
foreach(framework ${SODAM_MAC_FRAMEWORKS})
  target_link_libraries(sodam_mac PUBLIC "-framework ${framework}")
endforeach()
sodam_warnings(sodam_mac)

add_executable(sodamjari MACOSX_BUNDLE src/mac/main.mm)
target_link_libraries(sodamjari PRIVATE sodam_mac)
target_compile_options(sodamjari PRIVATE -fobjc-arc)
sodam_warnings(sodamjari)
set_target_properties(
  sodamjari
  PROPERTIES OUTPUT_NAME SodamJari
             MACOSX_BUNDLE_INFO_PLIST ${CMAKE_SOURCE_DIR}/cmake/Info.plist.in
             MACOSX_BUNDLE_GUI_IDENTIFIER kr.lumenfold.sodamjari
             MACOSX_BUNDLE_BUNDLE_NAME SodamJari
             MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
             MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION})
