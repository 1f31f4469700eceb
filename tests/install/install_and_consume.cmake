# Run by ctest: install, configure and build the consumer, run it.
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "Command failed (${status}): ${ARGN}\n${out}\n${err}")
  endif()
  set(last_output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${VARIMO_BINARY_DIR} --prefix ${prefix})

set(extra_flags "")
if(SANITIZE)
  set(extra_flags "-DCMAKE_CXX_FLAGS=-fsanitize=address,undefined" "-DCMAKE_EXE_LINKER_FLAGS=-fsanitize=address,undefined")
endif()
# The library's own compiler: a sanitized library needs that compiler's
# sanitizer runtime in the program.
run(${CMAKE_COMMAND} -S ${CONSUMER_SOURCE_DIR} -B ${WORK_DIR}/build -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_PREFIX_PATH=${prefix} ${extra_flags})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/varimo_consumer)
if(NOT last_output MATCHES "Column Not Found!")
  message(FATAL_ERROR "Consumer printed an unexpected report:\n${last_output}")
endif()
message(STATUS "Consumer output:\n${last_output}")

if(EXISTS ${WORK_DIR}/build/varimo_mol_consumer)
  run(${WORK_DIR}/build/varimo_mol_consumer)
  # Phenol: 6 x 12.011 + 6 x 1.008 + 15.999.
  if(NOT last_output MATCHES "^94\\.11")
    message(FATAL_ERROR "Molecular consumer printed an unexpected weight:\n${last_output}")
  endif()
endif()

# The Python package, imported from the prefix alone: its module must find
# the installed libraries by itself.
if(PYTHON)
  set(ENV{PYTHONPATH} ${prefix}/${PYTHON_DIR})
  file(WRITE ${WORK_DIR}/use_varimo.py
    "import varimo\n"
    "model = varimo.MolKriging().fit(['CCO', 'CCCO', 'CCCCO', 'CCCCCO', 'OCCO'], [1, 2, 3, 4, 1.5])\n"
    "print(varimo.__file__)\n"
    "print(model.kernel_.name)\n")
  run(${PYTHON} ${WORK_DIR}/use_varimo.py)
  if(NOT last_output MATCHES "^${prefix}")
    message(FATAL_ERROR "Python imported varimo from elsewhere than the prefix:\n${last_output}")
  endif()
  message(STATUS "Python package output:\n${last_output}")
endif()
