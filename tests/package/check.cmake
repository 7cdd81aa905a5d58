# cmake -D QV_BUILD_DIR=<build folder> -D QV_GENERATOR=<generator>
#       -D QV_BUILD_TYPE=<type> -P check.cmake
# Installs the engine from the build folder into a fresh prefix, configures and
# builds the outside project beside this file against it, and runs its program
# headless. Any failing step fails the test with that step's output.

set(work ${QV_BUILD_DIR}/package-test)
file(REMOVE_RECURSE ${work})

function(step)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${work}/build
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "Failed (${result}): ${ARGN}\n${output}")
  endif()
endfunction()

file(MAKE_DIRECTORY ${work}/build)
step(${CMAKE_COMMAND} --install ${QV_BUILD_DIR} --prefix ${work}/prefix)
step(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${work}/build -G ${QV_GENERATOR}
  -D CMAKE_BUILD_TYPE=${QV_BUILD_TYPE} -D CMAKE_PREFIX_PATH=${work}/prefix)
step(${CMAKE_COMMAND} --build ${work}/build)
file(WRITE ${work}/build/qv-config.txt "headless:true,\nnetworking:false,\n")
step(${work}/build/outside-game)
message(STATUS "Built and ran an outside project on the engine installed in ${work}/prefix")
