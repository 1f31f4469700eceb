# RDKit from Debian's librdkit-dev, which ships no CMake package: headers
# under /usr/include/rdkit, libraries libRDKit<Component>.so. Defines an
# imported target RDKit::<Component> for each component asked for, and
# VARIMO_RDKIT_FOUND when all of them are there.
#
#   varimo_find_rdkit(GraphMol SmilesParse FileParsers ...)
function(varimo_find_rdkit)
  find_path(RDKIT_INCLUDE_DIR GraphMol/ROMol.h PATH_SUFFIXES rdkit)
  set(found TRUE)
  if(NOT RDKIT_INCLUDE_DIR)
    set(found FALSE)
  endif()
  foreach(component IN LISTS ARGN)
    find_library(RDKIT_${component}_LIBRARY NAMES RDKit${component})
    if(NOT RDKIT_${component}_LIBRARY)
      set(found FALSE)
      continue()
    endif()
    if(NOT TARGET RDKit::${component})
      add_library(RDKit::${component} SHARED IMPORTED)
      set_target_properties(RDKit::${component} PROPERTIES
        IMPORTED_LOCATION "${RDKIT_${component}_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${RDKIT_INCLUDE_DIR}")
    endif()
  endforeach()
  set(VARIMO_RDKIT_FOUND ${found} PARENT_SCOPE)
endfunction()
