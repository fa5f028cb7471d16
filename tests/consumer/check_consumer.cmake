# Builds a small outside project against molcryst, either through
# add_subdirectory or through find_package after an install, and runs it.
# Invoked by ctest in script mode: -DMOLCRYST_SOURCE_DIR -DWORK_DIR -DMODE.
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
set(consumer_src ${CMAKE_CURRENT_LIST_DIR})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed: ${ARGN}\n${out}\n${err}")
  endif()
endfunction()

if(MODE STREQUAL "package")
  run(${CMAKE_COMMAND} -S ${MOLCRYST_SOURCE_DIR} -B ${WORK_DIR}/lib -G Ninja
      -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-O0
      -DMOLCRYST_BUILD_TESTS=OFF -DMOLCRYST_BUILD_EXAMPLES=OFF
      -DCMAKE_INSTALL_PREFIX=${WORK_DIR}/prefix)
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/lib)
  run(${CMAKE_COMMAND} --install ${WORK_DIR}/lib)
  run(${WORK_DIR}/prefix/bin/molcryst --version)  # the command is installed with the library
  run(${CMAKE_COMMAND} -S ${consumer_src}/package -B ${WORK_DIR}/app -G Ninja
      -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix)
else()
  run(${CMAKE_COMMAND} -S ${consumer_src}/subdirectory -B ${WORK_DIR}/app -G Ninja
      -DCMAKE_CXX_FLAGS=-O0 -DMOLCRYST_SOURCE_DIR=${MOLCRYST_SOURCE_DIR})
endif()
run(${CMAKE_COMMAND} --build ${WORK_DIR}/app)
run(${WORK_DIR}/app/consumer)
