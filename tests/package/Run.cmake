cmake_minimum_required(VERSION 3.25)

# run(COMMAND...): fails with what the command said; otherwise that is in "output".
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}: ${result}\n${output}${errors}")
    endif()
    return(PROPAGATE output)
endfunction()
