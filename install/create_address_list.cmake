# Run by the build: makes the postal address list LIST of a small town list, SOURCE, in the layout that Japan Post
# publishes, with KOVACALL (a command, with an emulator in front when the build is for another system).
file(REMOVE ${LIST})
execute_process(COMMAND ${KOVACALL} import-address ${SOURCE} ${LIST}
  OUTPUT_VARIABLE result ERROR_VARIABLE error RESULT_VARIABLE code)
if(NOT code EQUAL 0)
  message(FATAL_ERROR "${LIST} could not be made: exit code ${code} ${error}")
endif()
