# What the toolchain files of both Arm builds share: Debian's cross compiler, a root folder with the
# target's packages (scripts/check-arm unpacks it), and qemu to run what was built.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${ARM_TRIPLET}-g++)
set(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/arm-root/${ARM_ROOT})
set(CMAKE_LIBRARY_ARCHITECTURE ${ARM_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR ${ARM_QEMU};-cpu;${ARM_CPU};-L;${CMAKE_SYSROOT})

# Packages of the target, and none of this machine's.
set(ENV{PKG_CONFIG_DIR} "")
set(ENV{PKG_CONFIG_LIBDIR}
    ${CMAKE_SYSROOT}/usr/lib/${ARM_TRIPLET}/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${CMAKE_SYSROOT})
