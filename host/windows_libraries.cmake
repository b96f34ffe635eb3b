# What the reference host is linked with for Windows on another system: headers that are the same on
# every system come from the system's own packages, and the SQLite library from the Python for
# Windows that the tests use; see docs/decisions/0007-windows-is-tested-on-wine.md.
set(headers "${CMAKE_CURRENT_BINARY_DIR}/include")
file(MAKE_DIRECTORY "${headers}")
# The system's folder itself must not be searched: the rest of it is for another system.
foreach(header IN ITEMS nlohmann sqlite3.h)
  if(NOT EXISTS "/usr/include/${header}")
    message(FATAL_ERROR "There is no /usr/include/${header}; './dev setup' installs it")
  endif()
  file(CREATE_LINK "/usr/include/${header}" "${headers}/${header}" SYMBOLIC)
endforeach()

set(sqlite "${CMAKE_SOURCE_DIR}/build/windows-python/lib/sqlite3.dll")
add_custom_command(
  OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/libsqlite3.a" "${CMAKE_BINARY_DIR}/bin/sqlite3.dll"
  COMMAND gendef - "${sqlite}" > sqlite3.def
  COMMAND "${CMAKE_DLLTOOL}" -d sqlite3.def -D sqlite3.dll -l libsqlite3.a
  COMMAND "${CMAKE_COMMAND}" -E copy "${sqlite}" "${CMAKE_BINARY_DIR}/bin/sqlite3.dll"
  DEPENDS "${sqlite}"
  WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
  COMMENT "Making the import library of SQLite")
add_custom_target(host_sqlite DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/libsqlite3.a")

add_dependencies(host_libraries host_sqlite)
target_include_directories(host_libraries SYSTEM INTERFACE "${headers}")
target_link_libraries(host_libraries INTERFACE
  "${CMAKE_CURRENT_BINARY_DIR}/libsqlite3.a" windowscodecs ole32 uuid gdi32 user32 shell32)
