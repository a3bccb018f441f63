# 64-bit Arm: Raspberry Pi OS (64-bit) on a Pi 3 and later.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(ARM_TRIPLET aarch64-linux-gnu)
set(ARM_ROOT arm64)
set(ARM_QEMU qemu-aarch64)
set(ARM_CPU cortex-a53)
set(ARM_VARIANT arm64)
include(${CMAKE_CURRENT_LIST_DIR}/arm-common.cmake)
