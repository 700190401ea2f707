# Compiler settings that every target shares.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Executables are compiled like libraries, so that both can use one precompiled header.
set(CMAKE_CXX_COMPILE_OPTIONS_PIE -fPIC)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(VEXOR_CCACHE ccache)
if(VEXOR_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}
      ${VEXOR_CCACHE})
  add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>)
endif()

find_program(VEXOR_MOLD mold)
if(VEXOR_MOLD)
  add_link_options(-fuse-ld=mold)
endif()

add_compile_options(-Wall -Wextra -Wno-missing-field-initializers)
add_compile_definitions(QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII)

set(VEXOR_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")
if(VEXOR_SANITIZE)
  add_compile_options(-fsanitize=${VEXOR_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VEXOR_SANITIZE})
endif()
