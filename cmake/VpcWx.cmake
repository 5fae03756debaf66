# Makes the interface target `name` of the wxWidgets base library, which brings no CMake package of
# its own on every system. Its headers are not ours to warn about.
macro(vpc_add_wx name)
  find_package(wxWidgets 3.0 REQUIRED COMPONENTS base)
  add_library(${name} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${name} SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
  target_compile_definitions(${name} INTERFACE ${wxWidgets_DEFINITIONS})
  target_link_libraries(${name} INTERFACE ${wxWidgets_LIBRARIES})
endmacro()
