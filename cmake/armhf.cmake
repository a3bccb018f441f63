# 32-bit Arm as Debian builds for it: ARMv7 with 16 floating-point registers and no NEON.
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(ARM_TRIPLET arm-linux-gnueabihf)
set(ARM_ROOT armhf)
set(ARM_QEMU qemu-arm)
set(ARM_CPU cortex-a7)
# GCC 7 changed how some templates are passed, which it tells at each of them.
string(APPEND CMAKE_CXX_FLAGS_INIT " -Wno-psabi")
if(NOT ARM_VARIANT)
    set(ARM_VARIANT armhf)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/arm-common.cmake)
