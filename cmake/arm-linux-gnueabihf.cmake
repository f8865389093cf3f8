# 32-bit ARM, hard float, with Debian's cross compiler (g++-arm-linux-gnueabihf). Programs run on the
# building machine under qemu-user. What the project links besides Qt comes from Debian's packages for
# that processor, which scripts/arm-packages unpacks into one folder: build-arm-packages/, or the one
# that VELMORA_ARM_PACKAGES names.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

get_filename_component(velmora_arm_packages ${CMAKE_CURRENT_LIST_DIR}/../build-arm-packages ABSOLUTE)
if(DEFINED ENV{VELMORA_ARM_PACKAGES})
  set(velmora_arm_packages $ENV{VELMORA_ARM_PACKAGES})
endif()
# Kept, for a later run of CMake may not find it in its environment.
set(VELMORA_ARM_PACKAGES ${velmora_arm_packages} CACHE PATH
  "Debian's packages for 32-bit ARM, unpacked")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELMORA_ARM_PACKAGES)
set(CMAKE_SYSROOT ${VELMORA_ARM_PACKAGES})
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR}
  ${CMAKE_SYSROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L ${CMAKE_SYSROOT})
