# 32-bit Arm for the Raspberry Pi 2 and later alone, which have NEON.
set(CMAKE_CXX_FLAGS_INIT "-mcpu=cortex-a7 -mfpu=neon-vfpv4 -mfp16-format=ieee")
set(ARM_VARIANT armhf-neon)
include(${CMAKE_CURRENT_LIST_DIR}/armhf.cmake)
