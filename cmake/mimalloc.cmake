# The programs' allocator: loading XML is mostly asking for small pieces of memory and giving them back.
# docs/performance.md has what it is worth. Off by this switch, and where a sanitizer brings its own.
option(TOPOMINE_MIMALLOC "Link the programs with the allocator mimalloc, where there is one" ON)
find_library(MIMALLOC_LIBRARY mimalloc)
mark_as_advanced(MIMALLOC_LIBRARY)
if(TOPOMINE_MIMALLOC AND NOT MIMALLOC_LIBRARY)
  message(STATUS "The programs use the C library's allocator (Debian: libmimalloc-dev is faster)")
endif()

function(avec_mimalloc programme)
  if(TOPOMINE_MIMALLOC AND MIMALLOC_LIBRARY AND NOT TOPOMINE_SANITIZE AND NOT TOPOMINE_FUZZ)
    target_sources(${programme} PRIVATE ${PROJECT_SOURCE_DIR}/app/allocateur.cpp)
    # Nothing calls it by name: without this the linker would leave it out.
    target_link_libraries(${programme} PRIVATE
      "-Wl,--push-state,--no-as-needed" ${MIMALLOC_LIBRARY} "-Wl,--pop-state")
  endif()
endfunction()
