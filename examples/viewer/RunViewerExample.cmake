# Runs the viewer example for a few frames with a screenshot, then checks
# that the picture shows its objects.
set(picture "${WORK_DIR}/viewer_example.png")
file(REMOVE "${picture}")
execute_process(COMMAND "${VIEWER}" --frames 20 --screenshot "${picture}" RESULT_VARIABLE run_result TIMEOUT 60)
if(NOT run_result EQUAL 0)
  message(FATAL_ERROR "the viewer example failed: ${run_result}")
endif()
execute_process(COMMAND "${CHECK}" "${picture}" RESULT_VARIABLE check_result)
if(NOT check_result EQUAL 0)
  message(FATAL_ERROR "the example's picture does not show its objects: ${picture}")
endif()
