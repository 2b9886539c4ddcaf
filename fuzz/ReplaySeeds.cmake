# Regenerates the seeds into a scratch directory and replays them, so that
# a change of the formats that the generator no longer matches, or a seed
# that now crashes, fails a test before the committed corpus is refreshed.
foreach(var MAKE_SEEDS DOCUMENT_REPLAY SETTINGS_REPLAY SEED_DIR)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "${var} is not set")
  endif()
endforeach()

file(REMOVE_RECURSE ${SEED_DIR})
file(MAKE_DIRECTORY ${SEED_DIR}/documents ${SEED_DIR}/settings)
execute_process(COMMAND ${MAKE_SEEDS} ${SEED_DIR}/documents ${SEED_DIR}/settings RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the seed generator failed: ${result}")
endif()
execute_process(COMMAND ${DOCUMENT_REPLAY} ${SEED_DIR}/documents RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "replaying the document seeds failed: ${result}")
endif()
execute_process(COMMAND ${SETTINGS_REPLAY} ${SEED_DIR}/settings RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "replaying the settings seeds failed: ${result}")
endif()
