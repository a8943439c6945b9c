# What goes into the packages; on Windows everything stands in one folder.
install(TARGETS tessaly tessaly-cli RUNTIME DESTINATION .)
foreach(folder files firmware Chimes)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/support/${folder}" DESTINATION .)
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION doc)
