# Installs the build tree BUILD_DIR into WORK/prefix, builds the consumer project SOURCE against it
# (MODE "cmake": find_package; MODE "pkgconfig": the compiler with pkg-config's flags), runs it on
# DOCUMENT and checks its answer. FLAGS are the build's sanitizer flags, which a program linking an
# instrumented library must share; TEST_ENV is the environment of the run.
function(run what)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${what} failed (${status}):\n${out}\n${err}")
    endif()
    set(output "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK}/prefix)
file(REMOVE_RECURSE ${WORK})
run("cmake --install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
foreach(installed lib/vantry-plugins/modeldll.txt lib/vantry-plugins/libRegressionModel920r.so bin/vantry-score
        include/vantry/host/Scorer.h lib/cmake/vantrylib920r/vantrylib920rConfig.cmake
        lib/pkgconfig/vantrylib920r.pc)
    string(REPLACE "lib/" "${LIBDIR}/" installed ${installed})
    if(NOT EXISTS ${prefix}/${installed})
        message(FATAL_ERROR "not installed: ${installed}")
    endif()
endforeach()

separate_arguments(flags UNIX_COMMAND "${FLAGS}")
if(MODE STREQUAL "cmake")
    run("configuring the consumer" ${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/build -DCMAKE_PREFIX_PATH=${prefix}
        -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${FLAGS}")
    run("building the consumer" ${CMAKE_COMMAND} --build ${WORK}/build)
    set(program ${WORK}/build/consumer)
else()
    set(pkgconfig ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig pkg-config)
    run("pkg-config" ${pkgconfig} --cflags --libs vantrylib920r)
    separate_arguments(packageFlags UNIX_COMMAND "${output}")
    run("pkg-config" ${pkgconfig} --variable=libdir vantrylib920r)
    string(STRIP "${output}" libdir)
    set(program ${WORK}/consumer)
    run("compiling the consumer" ${CXX} -std=c++17 ${flags} ${SOURCE}/main.cpp ${packageFlags}
        -Wl,-rpath,${libdir} -o ${program})
endif()

# The consumer finds the library by its run path and the plug-ins by the library's; the plug-in folder
# is named all the same, since the sanitizer's dlopen hides run paths from the loader.
run("running the consumer" ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/${LIBDIR}/vantry-plugins ${TEST_ENV}
    ${program} ${DOCUMENT})
if(NOT output STREQUAL "y=4.5\n")
    message(FATAL_ERROR "the consumer printed \"${output}\", not \"y=4.5\"")
endif()
