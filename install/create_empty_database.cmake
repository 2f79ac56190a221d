# Run by the build in its folder: makes KovaEmptyDB anew with KOVACALL (a command, with an emulator in front when
# the build is for another system).
file(REMOVE_RECURSE KovaEmptyDB)
execute_process(COMMAND ${KOVACALL} create-db KovaEmptyDB
  OUTPUT_VARIABLE result ERROR_VARIABLE error RESULT_VARIABLE code)
string(STRIP "${result}" result)
if(NOT code EQUAL 0 OR NOT result STREQUAL "0")
  file(REMOVE_RECURSE KovaEmptyDB)
  message(FATAL_ERROR "KovaEmptyDB could not be made: exit code ${code}, result ${result} ${error}")
endif()
