# Toolchain of ARM Linux with hardware floating point and NEON, from the tree of tools/fetch_arm.sh. Programs run under
# an emulator.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7)

get_filename_component(tree ${CMAKE_CURRENT_LIST_DIR}/../build/armhf ABSOLUTE)
set(SCROLL2D_TREE ${tree} CACHE PATH "Tree of the target's libraries")
set(SCROLL2D_TRIPLET arm-linux-gnueabihf CACHE STRING "The target's folder in its usr/lib")
set(SCROLL2D_FETCH tools/fetch_arm.sh CACHE STRING "The script that fetches it")

set(CMAKE_C_COMPILER ${tree}/bin/gcc-12)
set(CMAKE_CXX_COMPILER ${tree}/bin/g++-12)
set(CMAKE_AR ${tree}/bin/ar)
set(CMAKE_RANLIB ${tree}/bin/ranlib)
set(CMAKE_OBJCOPY ${tree}/bin/objcopy)
set(CMAKE_STRIP ${tree}/bin/strip)
foreach(language C CXX)
    set(CMAKE_${language}_FLAGS_INIT "--sysroot=${tree} -mfpu=neon")
endforeach()
find_program(SCROLL2D_QEMU qemu-arm REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${SCROLL2D_QEMU} -L ${tree}/usr/arm-linux-gnueabihf)
