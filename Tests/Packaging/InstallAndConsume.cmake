# Installs the build tree into a fresh prefix, then builds and runs a consumer of it twice: as a
# CMake project (find_package(tov), tov::tov) and with the flags of the pkg-config file.
#   cmake -DBUILD_DIR=... -DSOURCE_DIR=... -DWORK_DIR=... -P InstallAndConsume.cmake
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN} failed (${result}):\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

set(expected "{name = \"Untitled\", channels = 6}\n")
function(expect_output label)
  if(NOT output STREQUAL expected)
    message(FATAL_ERROR "${label} printed:\n${output}\ninstead of:\n${expected}")
  endif()
  message(STATUS "${label}: ok")
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
foreach(file include/Tov/Core/Object.h include/Tov/TovLibrary.h lib/cmake/tov/tovConfig.cmake lib/pkgconfig/tov.pc)
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "the install has no ${file}")
  endif()
endforeach()

run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/Tests/Packaging/Consumer -B ${WORK_DIR}/consumer -G Ninja
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Debug)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/consumer)
run(${WORK_DIR}/consumer/Consumer)
expect_output("find_package(tov)")

run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/lib/pkgconfig pkg-config --cflags --libs tov)
string(STRIP "${output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(c++ ${SOURCE_DIR}/Tests/Packaging/Consumer/Consumer.cpp ${flags} -o ${WORK_DIR}/pkgconfig-consumer)
run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${WORK_DIR}/pkgconfig-consumer)
expect_output("pkg-config --cflags --libs tov")
file(REMOVE_RECURSE ${WORK_DIR})
