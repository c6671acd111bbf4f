# Compiler settings shared by every target of the project.
add_library(qdb_options INTERFACE)
add_library(QDB::options ALIAS qdb_options)

if(MSVC)
  target_compile_options(qdb_options INTERFACE /W4 /permissive- /utf-8)
  if(QDB_WARNINGS_AS_ERRORS)
    target_compile_options(qdb_options INTERFACE /WX)
  endif()
else()
  target_compile_options(qdb_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow
    -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
  if(QDB_WARNINGS_AS_ERRORS)
    target_compile_options(qdb_options INTERFACE -Werror)
  endif()
endif()

target_compile_definitions(qdb_options INTERFACE QT_NO_KEYWORDS QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

# The libraries say which encoding each literal has; tests may use plain literals.
add_library(qdb_library_options INTERFACE)
add_library(QDB::library_options ALIAS qdb_library_options)
target_compile_definitions(qdb_library_options INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
target_link_libraries(qdb_library_options INTERFACE qdb_options)

if(QDB_SANITIZE)
  set(_qdb_san -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_compile_options(qdb_options INTERFACE ${_qdb_san})
  target_link_options(qdb_options INTERFACE ${_qdb_san})
endif()

if(QDB_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "QDB_FUZZ needs clang (CXX=clang++)")
  endif()
  set(_qdb_fuzz -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_compile_options(qdb_options INTERFACE ${_qdb_fuzz})
  target_link_options(qdb_options INTERFACE -fsanitize=address,undefined)
endif()
