# Installs the build tree under a fresh prefix, then configures, builds and runs the consumer
# project against that copy alone.
#   cmake -DBUILD_DIR=... -DCONSUMER=... -DWORK=... -DGENERATOR=... -DCXX=... -DBUILD_TYPE=... -P InstallAndConsume.cmake
file(REMOVE_RECURSE ${WORK})

function(step what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${what} failed (${result}):\n${out}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

step("Installing" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK}/prefix)
set(launcher)
find_program(CCACHE ccache)
if(CCACHE)
  set(launcher -DCMAKE_CXX_COMPILER_LAUNCHER=${CCACHE})
endif()
step("Configuring the consumer" ${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/build -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=${BUILD_TYPE} -DCMAKE_PREFIX_PATH=${WORK}/prefix ${launcher})
step("Building the consumer" ${CMAKE_COMMAND} --build ${WORK}/build)
step("Running the consumer" ${WORK}/build/itemsviewer --check)
if(NOT output MATCHES "3 columns, 3 records, bolt")
  message(FATAL_ERROR "The consumer showed: ${output}")
endif()
message(STATUS "${output}")
