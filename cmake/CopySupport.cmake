# SPDX-License-Identifier: GPL-3.0-or-later
# Puts files/, firmware/ and Chimes/ from FROM into TO. A file that is there already stays: it may be
# the maker's own.
foreach(folder files firmware Chimes)
  file(GLOB sources RELATIVE "${FROM}" "${FROM}/${folder}/*")
  foreach(source ${sources})
    if(NOT EXISTS "${TO}/${source}")
      get_filename_component(target "${TO}/${source}" DIRECTORY)
      file(COPY "${FROM}/${source}" DESTINATION "${target}")
    endif()
  endforeach()
endforeach()
