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
    CoreMediaIO
    CoreVideo
    Foundation
    IOKit
    Network
    QuartzCore
    Security
    ServiceManagement
    Vision)

file(GLOB SODAM_MAC_SOURCES CONFIGURE_DEPENDS src/mac/*.mm)
list(FILTER SODAM_MAC_SOURCES EXCLUDE REGEX ".*/main\\.mm$")
add_library(sodam_mac STATIC ${SODAM_MAC_SOURCES})
target_link_libraries(sodam_mac PUBLIC sodam_core sodam_posix)
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
             MACOSX_BUNDLE_INFO_PLIST ${PROJECT_SOURCE_DIR}/cmake/Info.plist.in
             MACOSX_BUNDLE_GUI_IDENTIFIER kr.lumenfold.sodamjari
             MACOSX_BUNDLE_BUNDLE_NAME SodamJari
             MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
             MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION})

# The health coach's chat speaks through the system's language model, whose
# framework (FoundationModels, macOS 26 SDK) has only a Swift interface. Its
# one small Swift file is compiled with swiftc directly, so that every
# generator can build it, and only where a Swift compiler and an SDK with the
# framework are found; elsewhere the chat has no model and the rule answer
# stands alone. The framework is weakly linked: older systems start without it.
find_program(SODAM_SWIFTC swiftc)
execute_process(COMMAND xcrun --show-sdk-path OUTPUT_VARIABLE SODAM_SDK
                OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(CMAKE_OSX_SYSROOT)
  set(SODAM_SDK ${CMAKE_OSX_SYSROOT})
endif()
if(SODAM_SWIFTC AND EXISTS "${SODAM_SDK}/System/Library/Frameworks/FoundationModels.framework")
  set(SODAM_SWIFT_ARCH ${CMAKE_HOST_SYSTEM_PROCESSOR})
  if(CMAKE_OSX_ARCHITECTURES)
    list(GET CMAKE_OSX_ARCHITECTURES 0 SODAM_SWIFT_ARCH)
  endif()
  set(SODAM_MODEL_SOURCE ${CMAKE_SOURCE_DIR}/src/mac/system_language_model.swift)
  set(SODAM_MODEL_OBJECT ${CMAKE_BINARY_DIR}/system_language_model.o)
  add_custom_command(
    OUTPUT ${SODAM_MODEL_OBJECT}
    COMMAND ${SODAM_SWIFTC} -parse-as-library -swift-version 5 -O -sdk ${SODAM_SDK} -target
            ${SODAM_SWIFT_ARCH}-apple-macos${CMAKE_OSX_DEPLOYMENT_TARGET} -c ${SODAM_MODEL_SOURCE}
            -o ${SODAM_MODEL_OBJECT}
    DEPENDS ${SODAM_MODEL_SOURCE}
    COMMENT "Compiling the system language model's bridge"
    VERBATIM)
  target_sources(sodam_mac PRIVATE ${SODAM_MODEL_OBJECT})
  target_compile_definitions(sodam_mac PRIVATE SODAM_SYSTEM_MODEL=1)
  # The Swift runtime the object names: the SDK's, and the toolchain's
  # compatibility libraries for systems older than the runtime.
  get_filename_component(SODAM_SWIFT_BIN ${SODAM_SWIFTC} DIRECTORY)
  target_link_directories(sodam_mac PUBLIC ${SODAM_SDK}/usr/lib/swift
                          ${SODAM_SWIFT_BIN}/../lib/swift/macosx)
  target_link_options(sodam_mac PUBLIC "LINKER:-rpath,/usr/lib/swift"
                      "LINKER:-weak_framework,FoundationModels")
endif()
