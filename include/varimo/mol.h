// The molecular layer (link Varimo::varimo_mol): molecules, their files and
// the property functions read from them.
#pragma once

#include "varimo/mol/mol_properties.h"
#include "varimo/platform/molkit/mol_property.h"
#include "varimo/platform/molkit/molecule.h"
#include "varimo/platform/molkit/molecule_files.h"
