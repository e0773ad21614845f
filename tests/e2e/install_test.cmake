# Installs the build tree into a fresh prefix, the simulated tools with it,
# and builds a one-file project with the installed orvhost: the plug-in and
# its modules must be found in the installation, not in the build tree.
#   cmake -DBUILD=<build tree> -DWORK=<scratch folder> -DTOOLS=<tools folder
#         below the prefix> -DEXE=<executable suffix> -P install_test.cmake
set(prefix ${WORK}/prefix)
set(project_dir ${WORK}/project)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${project_dir})

function(run expected_status)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${project_dir}
                  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT status STREQUAL expected_status)
    message(FATAL_ERROR "${ARGN}: status ${status}, not ${expected_status}:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect text)
  string(FIND "${output}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "expected '${text}' in:\n${output}")
  endif()
endfunction()

run(0 ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix})
run(0 ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix} --component simulated_tools)

# Settings of the test's own, never the user's.
set(ENV{ORVANE_CONFIG} ${WORK}/orvhost.conf)
set(ENV{ORVANE_REGISTRY} ${WORK}/registry.reg)
set(orvhost ${prefix}/bin/orvhost${EXE})

run(1 ${orvhost} config show)
expect("plug-in: ${prefix}/")
expect("found: no")
run(0 ${orvhost} config set-tools-dir ${prefix}/${TOOLS})
run(0 ${orvhost} config show)
expect("found: yes")

file(WRITE ${project_dir}/main.c "int main(void) { return 0; }\n")
run(0 ${orvhost} new p.orv)
run(0 ${orvhost} add-target p.orv Debug)
run(0 ${orvhost} add-file p.orv main.c)
run(0 ${orvhost} build p.orv)
expect("0 error(s), 0 warning(s)")
if(NOT EXISTS ${project_dir}/Debug/p.axf)
  message(FATAL_ERROR "the build made no image:\n${output}")
endif()
file(REMOVE_RECURSE ${WORK})
